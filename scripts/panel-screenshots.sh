#!/bin/sh
# Photographs the real front panel under Xvfb as a new user first sees it: `zorvik --demo` is
# started and POWER pressed, nothing else (the demo's first trace fills the graph at the knob
# positions the program starts with). The window is saved at 100 % and 200 % display scaling,
# enlarged to the full screen and shrunk to its minimum on 1280 x 1024 and 2560 x 1440 screens,
# and made wide and short (1600 x 620).
#
#   scripts/panel-screenshots.sh [build-dir] [out-dir]
#
# build-dir defaults to ./build, out-dir to <build-dir>/panel-shots. With README=1 in the
# environment the 100 % picture is also copied to docs/images/zorvik-panel.png.
# Needs Xvfb, xdotool and ImageMagick's `import` (scripts/install-deps.sh installs them).
set -eu

here=$(cd "$(dirname "$0")/.." && pwd)
build=$(cd "${1:-$here/build}" && pwd)
out=${2:-$build/panel-shots}
mkdir -p "$out"
out=$(cd "$out" && pwd)

for tool in Xvfb xdotool import; do
    command -v "$tool" >/dev/null || { echo "panel-screenshots: $tool is missing" >&2; exit 1; }
done
[ -x "$build/zorvik" ] || { echo "panel-screenshots: no $build/zorvik" >&2; exit 1; }

# Each run gets a copy of the program in a folder of its own, so that the settings file it
# writes beside itself neither comes from nor goes to the build folder.
work=$(mktemp -d)
xvfb_pid=""
app_pid=""
cleanup() {
    [ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null || true
    [ -n "$xvfb_pid" ] && kill "$xvfb_pid" 2>/dev/null || true
    rm -rf "$work"
}
trap cleanup EXIT INT TERM

# start_screen WIDTH HEIGHT: a fresh Xvfb on a free display number.
start_screen() {
    n=90
    while [ -e "/tmp/.X11-unix/X$n" ] || [ -e "/tmp/.X$n-lock" ]; do n=$((n + 1)); done
    Xvfb ":$n" -screen 0 "${1}x${2}x24" -nolisten tcp >/dev/null 2>&1 &
    xvfb_pid=$!
    DISPLAY=":$n"
    export DISPLAY
    i=0
    until xdotool getdisplaygeometry >/dev/null 2>&1; do
        i=$((i + 1))
        [ $i -lt 100 ] || { echo "panel-screenshots: Xvfb did not start" >&2; exit 1; }
        sleep 0.1
    done
}

stop_screen() {
    [ -n "$app_pid" ] && kill "$app_pid" 2>/dev/null && wait "$app_pid" 2>/dev/null || true
    app_pid=""
    kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null || true
    xvfb_pid=""
}

# start_app SCALE: the program on the current screen; sets $win to its main window.
start_app() {
    rm -rf "$work/app"
    mkdir -p "$work/app"
    cp "$build/zorvik" "$work/app/zorvik"
    QT_SCALE_FACTOR=$1 QT_QPA_PLATFORM=xcb "$work/app/zorvik" --demo >"$work/app.log" 2>&1 &
    app_pid=$!
    # The splash shows first (about three seconds); the panel has the title "Zorvik".
    win=$(xdotool search --sync --onlyvisible --name '^Zorvik$' | head -n 1)
    i=0
    while xdotool search --onlyvisible --classname zorvik 2>/dev/null | grep -vx "$win" >/dev/null; do
        i=$((i + 1))
        [ $i -lt 100 ] || break
        sleep 0.1
    done
    sleep 0.5
}

# click_at X Y: a left click at design point (X, Y) of the 800 x 600 panel, wherever the
# window now stands and however large it is.
click_at() {
    eval "$(xdotool getwindowgeometry --shell "$win")"
    px=$((X + $1 * WIDTH / 800))
    py=$((Y + $2 * HEIGHT / 600))
    xdotool mousemove "$px" "$py" click 1
    sleep 0.2
}

# wheel_at X Y N: N notches of the wheel (up for N > 0) over design point (X, Y).
wheel_at() {
    eval "$(xdotool getwindowgeometry --shell "$win")"
    xdotool mousemove $((X + $1 * WIDTH / 800)) $((Y + $2 * HEIGHT / 600))
    n=$3
    button=4
    if [ "$n" -lt 0 ]; then button=5; n=$((-n)); fi
    xdotool click --repeat "$n" --delay 40 "$button"
    sleep 0.2
}

# POWER, and the first traces of the demo's tour (a still 312.5 kHz sine of 40 V).
set_up_panel() {
    click_at 601 47      # POWER
    xdotool mousemove 0 0
    sleep 2              # the port search and the first frames
}

shot() {
    sleep 0.5
    import -window "$win" "$out/$1.png"
    echo "$out/$1.png"
}

fit_screen() {
    eval "$(xdotool getdisplaygeometry --shell)"
    xdotool windowmove "$win" 0 0 windowsize "$win" "$WIDTH" "$HEIGHT"
    sleep 1
}

shrink() {
    xdotool windowsize "$win" 1 1
    sleep 1
}

# 100 % and 200 % display scaling.
start_screen 1280 1024
start_app 1
set_up_panel
shot panel-100
stop_screen

start_screen 2000 1400
start_app 2
set_up_panel
shot panel-200
stop_screen

# The elastic layout: full screen and smallest on two screen sizes.
for screen in 1280x1024 2560x1440; do
    start_screen "${screen%x*}" "${screen#*x}"
    start_app 1
    set_up_panel
    fit_screen
    shot "panel-full-$screen"
    shrink
    shot "panel-min-$screen"
    stop_screen
done

# Wide and short.
start_screen 2560 1440
start_app 1
set_up_panel
xdotool windowmove "$win" 0 0 windowsize "$win" 1600 620
sleep 1
shot panel-1600x620
stop_screen

if [ "${README:-0}" = 1 ]; then
    cp "$out/panel-100.png" "$here/docs/images/zorvik-panel.png"
    echo "$here/docs/images/zorvik-panel.png"
fi
