#!/bin/sh
# Renders the PNG sizes of the Zorvik icon from zorvik.svg.
#
# The PNGs are kept in the repository so that building and installing Zorvik needs no SVG
# renderer; run this script (needs rsvg-convert, Debian package librsvg2-bin) after changing
# the SVG and commit the PNGs it writes into png/.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
svg="$here/zorvik.svg"
mkdir -p "$here/png"
for size in 16 32 48 64 128 256; do
    rsvg-convert --width "$size" --height "$size" --format png \
        --output "$here/png/zorvik-$size.png" "$svg"
    echo "png/zorvik-$size.png"
done
