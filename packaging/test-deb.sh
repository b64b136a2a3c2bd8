#!/bin/sh
# Builds the Zorvik Debian package and proves that it installs and runs on a clean Debian 12.
#
# Usage (as root, from the source folder):
#     packaging/test-deb.sh [BUILD_DIR]        BUILD_DIR: a configured build folder (default: build)
#
# What it does:
#   1. builds BUILD_DIR and makes the package with `cpack -G DEB` (zorvik_<version>_<arch>.deb);
#   2. makes a minimal Debian 12 (bookworm) root with debootstrap from the Debian mirror that
#      apt uses on this machine (kept in ZORVIK_DEB_BASE and reused by later runs; each run
#      works on a fresh copy of it, so every run starts from a clean system);
#   3. in a chroot: `apt install ./zorvik_*.deb`, then, as an ordinary user, checks that
#      zorvik --version, zorvik-probe --help and zorvik-cli --help (when packaged) run, that
#      `QT_QPA_PLATFORM=offscreen timeout 5 zorvik --demo` is still running after 5 seconds
#      without a warning of its own, that the file-type, desktop and icon caches know Zorvik
#      (refreshed by dpkg triggers), that no settings file lands in the program folder, that
#      `apt purge zorvik` removes everything again, and that installing it once more onto the
#      system that now has the cache tools runs their triggers;
#   4. prints one line per check and "N passed, M failed"; exits 1 when a check failed.
#
# Needs: debootstrap (package debootstrap), dpkg-dev, cmake, a build of Zorvik, network access
# to the Debian mirror. Slow (the first run downloads a base system); not part of ctest.
#
# Environment:
#   ZORVIK_DEB_BASE   the kept base system (default: /var/tmp/zorvik-deb/base)
#   ZORVIK_DEB_WORK   the system of this run (default: /var/tmp/zorvik-deb/run)
#   ZORVIK_DEB_KEEP   1: keep the system of this run for a look (default: removed at the end)
#   DEBIAN_MIRROR     the mirror to use (default: the first bookworm mirror of apt's sources)
set -eu

source_dir=$(cd "$(dirname "$0")/.." && pwd)
build_dir=$(cd "${1:-$source_dir/build}" && pwd)
base=${ZORVIK_DEB_BASE:-/var/tmp/zorvik-deb/base}
root=${ZORVIK_DEB_WORK:-/var/tmp/zorvik-deb/run}
suite=bookworm

say() { printf '%s\n' "$*"; }
die() { say "test-deb: $*" >&2; exit 2; }

[ "$(id -u)" -eq 0 ] || die "run as root (debootstrap and chroot need it)"
command -v debootstrap >/dev/null || die "debootstrap not found (apt-get install debootstrap)"
command -v cpack >/dev/null || die "cpack not found (apt-get install cmake)"
command -v dpkg-shlibdeps >/dev/null || die "dpkg-shlibdeps not found (apt-get install dpkg-dev)"

# The mirror apt uses here: deb822 sources (URIs:/Suites:) or one-line sources (deb URL SUITE).
find_mirror() {
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -f "$file" ] || continue
        awk -v suite="$suite" '
            /^URIs:/   { uris = $2 }
            /^Suites:/ { for (i = 2; i <= NF; i++) if ($i == suite) hit = 1 }
            /^$/       { if (hit && uris != "") { print uris; exit } hit = 0; uris = "" }
            END        { if (hit && uris != "") print uris }' "$file" | head -n 1
    done
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$file" ] || continue
        awk -v suite="$suite" '$1 == "deb" && $0 !~ /\[/ && $3 == suite { print $2; exit }' "$file"
    done
}
mirror=${DEBIAN_MIRROR:-$(find_mirror | head -n 1)}
[ -n "$mirror" ] || die "no $suite mirror in /etc/apt/sources.list*; set DEBIAN_MIRROR"
security=$(printf '%s' "$mirror" | sed 's#/debian/*$#/debian-security#')

# --- 1. the package ---------------------------------------------------------------------------
say "== building the package in $build_dir"
cmake --build "$build_dir" -j2 >/dev/null
package_dir="$build_dir/deb-test"
rm -rf "$package_dir"
(cd "$build_dir" && cpack -G DEB -B "$package_dir" >/dev/null)
deb=$(ls "$package_dir"/zorvik_*.deb)
say "   $(basename "$deb")"
dpkg-deb --field "$deb" Depends Recommends Suggests | sed 's/^/   /'
has_cli=no
if dpkg-deb --contents "$deb" | grep -q '\./usr/bin/zorvik-cli '; then has_cli=yes; fi
has_help=no
if dpkg-deb --contents "$deb" | grep -q '\./usr/lib/zorvik/Help/index\.html$'; then
    has_help=yes
fi

# --- 2. a clean Debian 12 ---------------------------------------------------------------------
if [ ! -f "$base/.zorvik-base-complete" ]; then
    say "== debootstrap $suite from $mirror into $base (once)"
    rm -rf "$base"
    mkdir -p "$base"
    debootstrap --variant=minbase "$suite" "$base" "$mirror" >"$base.log" 2>&1 ||
        die "debootstrap failed, see $base.log"
    touch "$base/.zorvik-base-complete"
fi

unmount_all() {
    for point in dev/pts dev proc; do
        if mountpoint -q "$root/$point" 2>/dev/null; then umount -l "$root/$point" || true; fi
    done
}
clean_up() {
    unmount_all
    # The run's system is removed unless asked to keep it, and never while anything is still
    # mounted inside it (a bind mount of /dev would take the host's devices with it).
    if [ "${ZORVIK_DEB_KEEP:-0}" != 1 ] && ! grep -q " $root/" /proc/mounts; then
        rm -rf "$root"
    fi
}
trap clean_up EXIT
trap 'exit 2' INT TERM
unmount_all
rm -rf "$root"
say "== fresh copy of the base system in $root"
cp -a "$base" "$root"
rm -f "$root/.zorvik-base-complete"
mount -t proc proc "$root/proc"
mount --bind /dev "$root/dev"
mount --bind /dev/pts "$root/dev/pts"
cp /etc/resolv.conf "$root/etc/resolv.conf"
cat >"$root/etc/apt/sources.list" <<EOF
deb $mirror $suite main
deb $mirror $suite-updates main
deb $security $suite-security main
EOF
cp "$deb" "$root/tmp/"

in_root() { chroot "$root" /usr/bin/env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
    LANG=C.UTF-8 DEBIAN_FRONTEND=noninteractive "$@"; }
as_user() { in_root runuser -u tester -- /usr/bin/env HOME=/home/tester \
    XDG_RUNTIME_DIR=/tmp/runtime-tester "$@"; }

# --- 3. install and check ---------------------------------------------------------------------
say "== apt install ./$(basename "$deb")"
in_root apt-get update -qq
in_root apt-get install -y -qq "./tmp/$(basename "$deb")" >"$root/tmp/install.log" 2>&1 ||
    { cat "$root/tmp/install.log"; die "apt install failed"; }
grep -E '^(Setting up|Processing triggers for)' "$root/tmp/install.log" |
    grep -E 'zorvik|shared-mime-info|desktop-file-utils|hicolor|man-db' | sed 's/^/   /'
in_root useradd --create-home --shell /bin/sh tester
in_root install -d -m 0700 -o tester -g tester /tmp/runtime-tester

passed=0
failed=0
check() { # check NAME COMMAND...: runs COMMAND, counts and reports the result
    name=$1
    shift
    if out=$("$@" 2>&1); then
        passed=$((passed + 1))
        say "PASS: $name"
    else
        failed=$((failed + 1))
        say "FAIL: $name"
        printf '%s\n' "$out" | sed 's/^/      /'
    fi
}
version=$(dpkg-deb --field "$deb" Version)

expect_output() { # expect_output EXPECTED COMMAND...: COMMAND succeeds, its output is EXPECTED
    expected=$1
    shift
    got=$("$@") || { printf '%s\n' "$got"; return 1; }
    [ "$got" = "$expected" ] ||
        { printf 'printed: %s\nexpected: %s\n' "$got" "$expected"; return 1; }
}
expect_start() { # expect_start PREFIX COMMAND...: COMMAND succeeds, output starts with PREFIX
    prefix=$1
    shift
    got=$("$@" 2>&1) || { printf '%s\n' "$got"; return 1; }
    case $got in "$prefix"*) ;; *) printf '%s\n' "$got"; return 1 ;; esac
}
demo_runs() { # zorvik --demo is still running after 5 s and has warned of nothing of its own
    set +e
    as_user QT_QPA_PLATFORM=offscreen timeout 5 zorvik --demo >"$root/tmp/demo.log" 2>&1
    status=$?
    set -e
    cat "$root/tmp/demo.log"
    [ "$status" -eq 124 ] || { echo "exit status $status, expected 124 (still running)"; return 1; }
    ! grep -E '^zorvik:|Could not load the Qt platform plugin' "$root/tmp/demo.log"
}
no_settings_in_program_folder() { ! ls "$root/usr/lib/zorvik/ZORVIK.INI" 2>/dev/null; }
mime_knows_wdf() { grep -x 'application/x-zorvik-wdf:\*\.wdf' "$root/usr/share/mime/globs"; }
desktop_cache_knows_zorvik() {
    grep '^application/x-zorvik-wdf=.*com\.zorvik\.Zorvik\.desktop' \
        "$root/usr/share/applications/mimeinfo.cache"
}
icon_cache_current() { # refreshed when gtk-update-icon-cache is installed, else not needed
    cache="$root/usr/share/icons/hicolor/icon-theme.cache"
    if [ ! -x "$root/usr/bin/gtk-update-icon-cache" ]; then
        echo "no icon cache tool installed: icons are found without a cache"
        return 0
    fi
    grep -q -a 'com\.zorvik\.Zorvik' "$cache" ||
        { echo "$cache lacks com.zorvik.zorvik"; return 1; }
}
help_installed() { [ -f "$root/usr/lib/zorvik/Help/index.html" ]; }
purge_removes_all() {
    # as a run of the program as root leaves it: the program folder is writable for root
    echo "[SETTINGS]" >"$root/usr/lib/zorvik/ZORVIK.INI"
    in_root apt-get purge -y -qq zorvik >/dev/null 2>&1 || return 1
    for path in usr/lib/zorvik usr/bin/zorvik usr/bin/zorvik-probe usr/bin/zorvik-cli \
        usr/share/applications/com.zorvik.zorvik.desktop; do
        if [ -e "$root/$path" ] || [ -L "$root/$path" ]; then echo "left: /$path"; return 1; fi
    done
    ! grep zorvik "$root/usr/share/mime/globs"
}

check "zorvik --version prints \"zorvik $version\"" \
    expect_output "zorvik $version" as_user QT_QPA_PLATFORM=offscreen zorvik --version
check "zorvik-probe --help runs" expect_start "Usage: zorvik-probe" as_user zorvik-probe --help
if [ "$has_cli" = yes ]; then
    check "zorvik-cli --help runs" expect_start "Usage: zorvik-cli" as_user zorvik-cli --help
else
    say "NOTE: this package has no zorvik-cli"
fi
check "QT_QPA_PLATFORM=offscreen timeout 5 zorvik --demo starts without error" demo_runs
check "no settings file in the program folder after a user's run" no_settings_in_program_folder
if [ "$has_help" = yes ]; then
    check "the manual is at /usr/lib/zorvik/Help/index.html" help_installed
else
    say "NOTE: this package has no manual (help/ was empty when it was built)"
fi
check "file-type cache maps *.wdf to application/x-zorvik-wdf" mime_knows_wdf
check "desktop cache opens application/x-zorvik-wdf with Zorvik" desktop_cache_knows_zorvik
check "icon cache lists the Zorvik icon" icon_cache_current
check "apt purge zorvik removes the programs, links, entry, file type and a root-run ZORVIK.INI" \
    purge_removes_all

# Installed again, now onto a system that has the desktop's cache tools: their dpkg triggers,
# not a script of the package, bring the caches up to date.
reinstall_runs_triggers() {
    in_root apt-get install -y "./tmp/$(basename "$deb")" >"$root/tmp/reinstall.log" 2>&1 ||
        { cat "$root/tmp/reinstall.log"; return 1; }
    for trigger in shared-mime-info desktop-file-utils hicolor-icon-theme; do
        grep "^Processing triggers for $trigger " "$root/tmp/reinstall.log" ||
            { echo "no trigger of $trigger ran"; cat "$root/tmp/reinstall.log"; return 1; }
    done
}
check "installed again: the triggers of shared-mime-info, desktop-file-utils and hicolor run" \
    reinstall_runs_triggers
check "installed again: file-type cache maps *.wdf to application/x-zorvik-wdf" mime_knows_wdf
check "installed again: desktop cache opens application/x-zorvik-wdf with Zorvik" \
    desktop_cache_knows_zorvik

say "$passed passed, $failed failed"
[ "$failed" -eq 0 ]
