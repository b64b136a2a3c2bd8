#!/bin/sh
# Runs a command on an X server of its own (Xvfb, 1280 x 1024), so that tests see windows as a
# user's X server shows them: title bars, frames, stacking. With --wm openbox a window manager
# runs too (frames, focus, stacking order). The X server and the window manager end with the
# command; its exit status is the script's.
set -eu
wm=""
if [ "${1:-}" = "--wm" ]; then
    wm=$2
    shift 2
fi
scratch=$(mktemp -d)
cleanup() {
    [ -n "${wm_pid:-}" ] && kill "$wm_pid" 2>/dev/null
    [ -n "${x_pid:-}" ] && kill "$x_pid" 2>/dev/null
    wait 2>/dev/null
    rm -rf "$scratch"
}
trap cleanup EXIT INT TERM
# The server picks a free display number itself and writes it once it accepts clients.
Xvfb -displayfd 5 -screen 0 1280x1024x24 -nolisten tcp -noreset 5>"$scratch/display" \
    >"$scratch/xvfb.log" 2>&1 &
x_pid=$!
tries=0
while [ ! -s "$scratch/display" ]; do
    tries=$((tries + 1))
    if [ "$tries" -gt 200 ] || ! kill -0 "$x_pid" 2>/dev/null; then
        echo "with-xvfb: the X server did not start" >&2
        cat "$scratch/xvfb.log" >&2
        exit 1
    fi
    sleep 0.05
done
DISPLAY=":$(head -n 1 "$scratch/display")"
export DISPLAY
unset WAYLAND_DISPLAY
export QT_QPA_PLATFORM=xcb
if [ -n "$wm" ]; then
    "$wm" --sm-disable --config-file /dev/null >"$scratch/wm.log" 2>&1 &
    wm_pid=$!
    # The window manager is ready once it names itself on the root window.
    tries=0
    until xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; do
        tries=$((tries + 1))
        if [ "$tries" -gt 200 ]; then
            echo "with-xvfb: the window manager $wm did not start" >&2
            cat "$scratch/wm.log" >&2
            exit 1
        fi
        sleep 0.05
    done
fi
status=0
"$@" || status=$?
exit "$status"
