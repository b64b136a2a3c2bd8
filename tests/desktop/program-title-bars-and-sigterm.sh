#!/bin/sh
# The real zorvik program on an X server (run under with-xvfb.sh): opened with a waveform file
# of another program, it shows "File Format", then "File Load Error"; the X server holds those
# titles exactly, and the main window's is "Zorvik". A SIGTERM while the message is up ends the
# program the normal way: exit status 0 and the settings file written.
# Usage: program-title-bars-and-sigterm.sh PATH-OF-ZORVIK
set -eu
program=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$program" "$work/zorvik"
printf '[APPLICATION]\r\nName=Other\r\n' >"$work/other.wdf"

. "$(dirname "$0")/x11-helpers.sh"
# The title bar text the X server holds for the window named $1.
title_bar() {
    id=$(window_named "$1")
    xprop -id "$id" -notype _NET_WM_NAME | sed -n 's/^_NET_WM_NAME = "\(.*\)"$/\1/p'
}

"$work/zorvik" "$work/other.wdf" >"$work/out.log" 2>&1 &
pid=$!
got=$(title_bar "File Format")
[ "$got" = "File Format" ] || fail "the File Format message's title bar reads \"$got\""
got=$(title_bar "Zorvik")
[ "$got" = "Zorvik" ] || fail "the main window's title bar reads \"$got\""
# OK on the first message brings the second.
xdotool windowactivate --sync "$(window_named "File Format")" key --clearmodifiers Return
got=$(title_bar "File Load Error")
[ "$got" = "File Load Error" ] || fail "the File Load Error message's title bar reads \"$got\""

# Ended by the system while the message is up.
kill -TERM "$pid"
status=0
wait "$pid" || status=$?
[ "$status" -eq 0 ] || fail "exit status $status after SIGTERM"
[ -f "$work/ZORVIK.INI" ] || fail "no settings file after SIGTERM"
grep -q '^Invert=False' "$work/ZORVIK.INI" || fail "the settings file is not whole"
echo "title bars exact; SIGTERM with a message up: exit 0, settings written"
