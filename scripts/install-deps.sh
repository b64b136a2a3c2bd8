#!/bin/sh
# Installs the Debian 12 packages Zorvik needs to build, run and test.
set -eu
SUDO=""
if [ "$(id -u)" -ne 0 ]; then SUDO="sudo"; fi
export DEBIAN_FRONTEND=noninteractive
$SUDO apt-get update -qq
# clang and libclang-rt-14-dev bring libFuzzer, for the fuzz targets of fuzz/README.md.
$SUDO apt-get install -y -qq --no-install-recommends \
    cmake ninja-build g++ git pkg-config \
    qt6-base-dev qt6-base-dev-tools libgl-dev qt6-serialport-dev qt6-svg-dev libfftw3-dev \
    libqcustomplot-dev libqcustomplot2.1-qt6 \
    libgtest-dev libgmock-dev googletest libbenchmark-dev \
    xvfb xauth x11-apps x11-utils xdotool openbox imagemagick poppler-utils locales \
    clang-format fonts-dejavu-core clang libclang-rt-14-dev \
    desktop-file-utils appstream man-db dpkg-dev \
    >/dev/null
# A German locale for the tests that check number texts are locale independent.
if ! locale -a 2>/dev/null | grep -qi '^de_DE\.utf8$'; then
    $SUDO sed -i 's/^# *de_DE.UTF-8 UTF-8/de_DE.UTF-8 UTF-8/' /etc/locale.gen
    $SUDO locale-gen >/dev/null
fi
