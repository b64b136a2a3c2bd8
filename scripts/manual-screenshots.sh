#!/bin/bash
# Regenerates the pictures of the user manual (help/images/*.png) with the real program.
#
# The script starts the built program on a virtual X display (Xvfb), drives it with xdotool the
# way a user would (POWER, the knobs, the cursors, STORE, PRINT with Page Setup, MENU with both
# pages of Options, FILE with its menu, About and System Info, HELP, the graph's menu and the
# analysis windows) and photographs its windows
# with ImageMagick. Nothing of the user's own desktop or settings is touched: the program runs
# from a copy in a scratch folder, with its own ZORVIK.INI.
#
# Usage:
#   scripts/manual-screenshots.sh [--build DIR] [--out DIR] [--keep]
#
#   --build DIR  the build folder with zorvik, zorvik-probe and Help/ (default: build)
#   --out DIR    where the pictures go (default: help/images)
#   --keep       keep the scratch folder (its path is printed) to look at what happened
#
# Needs: Xvfb, xdotool, xwininfo, ImageMagick (import, convert) and fonts-dejavu-core, all
# installed by scripts/install-deps.sh. Build first (this also puts the manual in build/Help):
#   cmake --build build --target zorvik zorvik-probe
#
# A picture whose window does not open is reported as skipped and the old picture is left as it
# is. A new picture must be listed in help/CMakeLists.txt and shown on a page: the manual's
# tests check both. Run the script from the repository's top folder; it takes about half a
# minute.
set -eu

BUILD=build
OUT=help/images
KEEP=0
while [ $# -gt 0 ]; do
    case "$1" in
    --build) BUILD=$2; shift 2 ;;
    --out) OUT=$2; shift 2 ;;
    --keep) KEEP=1; shift ;;
    -h | --help) sed -n '2,25p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) echo "manual-screenshots: unknown option $1 (try --help)" >&2; exit 2 ;;
    esac
done

for tool in Xvfb xdotool xwininfo import convert; do
    command -v "$tool" >/dev/null || {
        echo "manual-screenshots: $tool is missing; run scripts/install-deps.sh" >&2
        exit 1
    }
done
for program in zorvik zorvik-probe; do
    [ -x "$BUILD/$program" ] || {
        echo "manual-screenshots: $BUILD/$program is missing; build it first" >&2
        exit 1
    }
done
mkdir -p "$OUT"
OUT=$(cd "$OUT" && pwd)

# --- scratch folder, display, clean-up -----------------------------------------------------
# The program shows its own path in the splash and the About box, so it runs from a short,
# plain folder when that one is free.
STAGE_ROOT=${TMPDIR:-/tmp}/zorvik
if mkdir "$STAGE_ROOT" 2>/dev/null; then :; else STAGE_ROOT=$(mktemp -d "${TMPDIR:-/tmp}/zorvik.XXXXXX"); fi
STAGE=$STAGE_ROOT
cp "$BUILD/zorvik" "$STAGE/zorvik"
[ -d "$BUILD/Help" ] && cp -r "$BUILD/Help" "$STAGE/Help"
SCRATCH=$STAGE/.shots
mkdir -p "$SCRATCH"

DISPLAY_NUMBER=90
while [ -e "/tmp/.X$DISPLAY_NUMBER-lock" ] || [ -e "/tmp/.X11-unix/X$DISPLAY_NUMBER" ]; do
    DISPLAY_NUMBER=$((DISPLAY_NUMBER + 1))
done
PIDS=""
cleanup() {
    for pid in $PIDS; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
    if [ "$KEEP" = 1 ]; then echo "manual-screenshots: scratch folder kept: $STAGE"; else rm -rf "$STAGE"; fi
}
trap cleanup EXIT
trap 'exit 130' INT TERM

Xvfb ":$DISPLAY_NUMBER" -screen 0 1280x1024x24 -nolisten tcp -noreset >"$SCRATCH/xvfb.log" 2>&1 &
XVFB_PID=$!
PIDS="$PIDS $XVFB_PID"
export DISPLAY=":$DISPLAY_NUMBER"
export XDG_RUNTIME_DIR=$SCRATCH/runtime
mkdir -m 700 "$XDG_RUNTIME_DIR"
unset QT_SCALE_FACTOR QT_QPA_PLATFORM

# --- helpers ---------------------------------------------------------------------------------
# until SECONDS COMMAND...: runs COMMAND every 0.1 s until it succeeds; fails after SECONDS.
until_ok() {
    local deadline=$(($(date +%s%N) + $1 * 1000000000))
    shift
    while ! "$@" 2>/dev/null; do
        [ "$(date +%s%N)" -lt "$deadline" ] || return 1
        sleep 0.1
    done
}
visible_window() { xdotool search --onlyvisible --name "$1" | head -n 1 | grep .; }
# window REGEX [SECONDS]: the id of the visible window whose title matches REGEX.
window() {
    until_ok "${2:-10}" visible_window "$1" >/dev/null || return 1
    visible_window "$1"
}
window_gone() { ! visible_window "$1" >/dev/null; }
all_windows() { xdotool search --onlyvisible --name . 2>/dev/null | sort; }
# new_window BEFORE [SECONDS]: a visible window that is not in the list BEFORE.
new_window_now() { comm -13 <(echo "$1") <(all_windows) | head -n 1 | grep .; }
new_window() {
    until_ok "${2:-3}" new_window_now "$1" >/dev/null || return 1
    new_window_now "$1"
}
window_closed() { ! all_windows | grep -qx "$1"; }
# A dropped-down menu has no title: it is found as a new window of the program.
program_windows() { xdotool search --onlyvisible --classname zorvik 2>/dev/null | sort; }
new_popup_now() { comm -13 <(echo "$1") <(program_windows) | head -n 1 | grep .; }
new_popup() {
    until_ok "${2:-3}" new_popup_now "$1" >/dev/null || return 1
    new_popup_now "$1"
}
click() { xdotool mousemove --window "$1" "$2" "$3" click 1; }
# Takes the keyboard focus away from the program, so that no control shows its focus frame.
unfocus() {
    xdotool windowfocus "$(xwininfo -root | awk '/Window id/ {print $4}')" 2>/dev/null || true
    xdotool mousemove 1270 1010
    sleep 0.3
}
# pixel WINDOW X Y: the colour at (X, Y) of the window, as "r,g,b".
pixel() {
    import -window "$1" -crop "1x1+$2+$3" +repage png:- 2>/dev/null |
        convert - -format '%[fx:round(255*r)],%[fx:round(255*g)],%[fx:round(255*b)]' info:
}
# is_colour WINDOW X Y R G B: the pixel is near that colour.
is_colour() {
    local p r g b
    p=$(pixel "$1" "$2" "$3")
    [ -n "$p" ] || return 1
    IFS=, read -r r g b <<<"$p"
    [ $((r > $4 ? r - $4 : $4 - r)) -lt 90 ] && [ $((g > $5 ? g - $5 : $5 - g)) -lt 90 ] &&
        [ $((b > $6 ? b - $6 : $6 - b)) -lt 90 ]
}
# save_png SOURCE NAME [CONVERT-OPTIONS...]: writes OUT/NAME.png, small: a palette of 256
# colours (plenty for a window's flat colours), no metadata, best compression.
save_png() {
    local source=$1 name=$2
    shift 2
    convert "$source" "$@" +dither -colors 256 -strip -define png:compression-level=9 \
        "$OUT/$name.png"
    echo "  $name.png"
}
# painted WINDOW: the window shows more than one flat colour (it has been drawn).
painted() {
    [ "$(import -window "$1" png:- 2>/dev/null |
        convert - -format '%[fx:standard_deviation>0.01]' info:)" = 1 ]
}
# Without a window manager a new window can open below the one it belongs to: it is raised,
# and photographed once it has been drawn.
bring_up() {
    xdotool windowraise "$1" 2>/dev/null || true
    until_ok 5 painted "$1" || true
}
# shot WINDOW NAME [CROP]: saves the window (or the CROP "WxH+X+Y" of it) as OUT/NAME.png.
shot() {
    local raw=$SCRATCH/$2.raw.png
    bring_up "$1"
    import -window "$1" "$raw"
    if [ -n "${3:-}" ]; then
        save_png "$raw" "$2" -crop "$3" +repage
    else
        save_png "$raw" "$2"
    fi
}
# shot_together NAME WINDOW...: saves the part of the screen that the windows cover together
# (a window with a menu dropped down from it) as OUT/NAME.png.
shot_together() {
    local name=$1 left=100000 top=100000 right=0 bottom=0 w X Y WIDTH HEIGHT
    shift
    for w in "$@"; do
        eval "$(xdotool getwindowgeometry --shell "$w")"
        [ "$X" -lt "$left" ] && left=$X
        [ "$Y" -lt "$top" ] && top=$Y
        [ $((X + WIDTH)) -gt "$right" ] && right=$((X + WIDTH))
        [ $((Y + HEIGHT)) -gt "$bottom" ] && bottom=$((Y + HEIGHT))
    done
    import -window root -crop "$((right - left))x$((bottom - top))+$left+$top" +repage \
        "$SCRATCH/$name.raw.png"
    save_png "$SCRATCH/$name.raw.png" "$name"
}
# escape_closes WINDOW: presses Esc in the window; true once the window has closed.
escape_closes() {
    xdotool windowfocus --sync "$1" key Escape 2>/dev/null || true
    sleep 0.2
    window_closed "$1"
}
skipped() { echo "  $1.png skipped: $2"; }
die() {
    echo "manual-screenshots: $1 (the program's output: $SCRATCH/zorvik.log)" >&2
    KEEP=1
    exit 1
}
# start_program ARGS...: starts the staged program and waits for its front panel, whose window
# id lands in MAIN. The splash is photographed on the way when SPLASH=1.
start_program() {
    "$STAGE/zorvik" "$@" >>"$SCRATCH/zorvik.log" 2>&1 &
    PROGRAM_PID=$!
    PIDS="$PIDS $PROGRAM_PID"
    if [ "${SPLASH:-0}" = 1 ]; then
        local splash
        if splash=$(window '^About Zorvik'); then shot "$splash" splash; else skipped splash "no splash"; fi
    fi
    until_ok 15 window_gone '^About Zorvik' || die "the splash did not close"
    MAIN=$(window '^Zorvik$' 15) || die "the front panel did not show"
}
stop_program() {
    kill "$PROGRAM_PID" 2>/dev/null || true
    wait "$PROGRAM_PID" 2>/dev/null || true
}
# Places of the controls in the 800 x 600 window (the front panel at its design size).
POWER=(601 47); POWER_LAMP=(652 47); STORE=(734 47); H_SCALE=(675 217); V_SCALE=(641 435)
FILE=(42 454); HELP=(113 454); MENU=(184 454); PRINT=(255 454); V_CURS=(326 454)
H_CURS=(397 454); GRAPH=(400 300); TRIG_LAMP=(338 536)
TRIGGER_FRAME="224x94+324+482"
power_on() {
    click "$1" "${POWER[@]}"
    until_ok 15 is_colour "$1" "${POWER_LAMP[@]}" 0 255 0 || die "POWER did not reach the probe"
}
# Steps a graph cursor (1 to 4) with its arrow key.
cursor_steps() {
    xdotool key "$1"
    for _ in $(seq "$3"); do xdotool key "$2"; done
}

echo "manual-screenshots: pictures go to $OUT"
until_ok 10 xwininfo -root >/dev/null || die "Xvfb did not start (see $SCRATCH/xvfb.log)"

# --- 1. the program with its built-in virtual probe -------------------------------------------
SPLASH=1 start_program --demo
unfocus
shot "$MAIN" panel-off

# The knobs stay where the program starts them (1 us and 20 V per division): the demo's tour
# begins, each time POWER finds it, with a still 312.5 kHz sine of 40 V that fills the graph.
power_on "$MAIN"
until_ok 5 is_colour "$MAIN" "${TRIG_LAMP[@]}" 0 230 0 || die "the trigger lamp did not show TRIG"
sleep 0.3
unfocus
shot "$MAIN" panel-running
shot "$MAIN" trigger-trig "$TRIGGER_FRAME"

# The same picture with numbered marks, for the tour of the front panel.
MARKS=(
    "1 26 26" "2 532 22" "3 548 358" "4 30 386" "5 42 432" "6 113 432" "7 184 432" "8 255 432"
    "9 326 432" "10 397 432" "11 468 432" "12 566 22" "13 700 22" "14 590 110" "15 580 364"
    "16 716 501" "17 604 522" "18 716 522" "19 146 503" "20 304 503" "21 532 503" "22 118 590"
)
DRAW=()
for mark in "${MARKS[@]}"; do
    read -r n x y <<<"$mark"
    DRAW+=(-fill "rgb(255,214,0)" -stroke black -strokewidth 1
        -draw "circle $x,$y $((x + 9)),$y"
        -fill black -stroke none -draw "text $((x - (${#n} == 1 ? 3 : 7))),$((y + 5)) '$n'")
done
save_png "$SCRATCH/panel-running.raw.png" panel-numbered -font DejaVu-Sans-Bold -pointsize 12 \
    "${DRAW[@]}"

# STORE holds the still sine (the tour moves on after about five seconds).
click "$MAIN" "${STORE[@]}"
sleep 0.3
unfocus
shot "$MAIN" store

click "$MAIN" "${V_CURS[@]}"
click "$MAIN" "${H_CURS[@]}"
click "$MAIN" "${GRAPH[@]}"
cursor_steps 2 Right 11 # Cursor2 from 2 to 4.2 divisions: 3.2 us, one period of 312.5 kHz
cursor_steps 3 Up 5     # Cursor3 from -3 to -2 divisions: the negative peaks, -40 V
cursor_steps 4 Up 20    # Cursor4 from -2 to +2 divisions: the positive peaks, +40 V
xdotool key Escape
unfocus
shot "$MAIN" cursors

# PRINT (the picture is taken when the button is released), then Page Setup from the preview.
click "$MAIN" "${PRINT[@]}"
if PREVIEW=$(window '^Print Preview' 10); then
    click "$PREVIEW" 90 14
    if SETUP=$(window '^Page Setup' 5); then
        click "$SETUP" 228 172
        xdotool type --delay 5 "Bench test: 312.5 kHz sine, 40 V peak"
        click "$SETUP" 228 200
        xdotool type --delay 5 "Zorvik front panel"
        unfocus
        shot "$SETUP" pagesetup
        click "$SETUP" 437 77 # Preview: back to the preview, which shows the new page
        until_ok 5 window_gone '^Page Setup' || die "Page Setup did not close"
    else
        skipped pagesetup "Page Setup did not open"
    fi
    click "$PREVIEW" 218 14 # the zoom list: 50 %
    sleep 0.4
    xdotool key Up Up Return
    sleep 0.8
    unfocus
    shot "$PREVIEW" preview "425x612+0+0"
    xdotool windowfocus --sync "$PREVIEW" key Escape
    until_ok 5 window_gone '^Print Preview' || die "the print preview did not close"
else
    skipped preview "the print preview did not open"
fi

# Release STORE again: live trace and reference together.
click "$MAIN" "${STORE[@]}"
sleep 0.5

# MENU: the Options window, both pages.
BEFORE=$(all_windows)
click "$MAIN" "${MENU[@]}"
if OPTIONS=$(new_window "$BEFORE" 3); then
    unfocus
    shot "$OPTIONS" options-communications
    xdotool windowfocus --sync "$OPTIONS" key ctrl+Tab # the next page: Colors
    unfocus
    shot "$OPTIONS" options-colors
    xdotool windowfocus --sync "$OPTIONS" key Escape
    until_ok 5 window_closed "$OPTIONS" || true
else
    skipped options-communications "MENU opened no window"
    skipped options-colors "MENU opened no window"
fi

# FILE: the File window, the About box and System Info from its menu bar, and the File window
# again with its File menu dropped down.
BEFORE=$(all_windows)
click "$MAIN" "${FILE[@]}"
if FILEFORM=$(new_window "$BEFORE" 3); then
    bring_up "$FILEFORM"
    BEFORE_ABOUT=$(all_windows)
    xdotool windowfocus --sync "$FILEFORM" key alt+a # "&About" on the File window's menu bar
    if ABOUT=$(new_window "$BEFORE_ABOUT" 3); then
        unfocus
        shot "$ABOUT" about
        BEFORE_INFO=$(all_windows)
        xdotool windowfocus --sync "$ABOUT" key alt+s # "&System Info..."
        if INFO=$(new_window "$BEFORE_INFO" 3); then
            unfocus
            shot "$INFO" sysinfo
            xdotool windowfocus --sync "$INFO" key Escape
            until_ok 5 window_closed "$INFO" || true
        else
            skipped sysinfo "System Info... opened no window"
        fi
        xdotool windowfocus --sync "$ABOUT" key Escape
        until_ok 5 window_closed "$ABOUT" || true
    else
        skipped about "the File window's About opened no window"
    fi
    bring_up "$FILEFORM"
    BEFORE_MENU=$(program_windows)
    xdotool windowfocus --sync "$FILEFORM" key alt+f
    if FILEMENU=$(new_popup "$BEFORE_MENU" 3); then
        until_ok 5 painted "$FILEMENU" || true
        shot_together file "$FILEFORM" "$FILEMENU"
    else
        shot "$FILEFORM" file
    fi
    # Esc closes the menu, then leaves the menu bar, then closes the window.
    until_ok 5 escape_closes "$FILEFORM" || die "the File window did not close"
else
    skipped file "FILE opened no window"
    skipped about "FILE opened no window"
    skipped sysinfo "FILE opened no window"
fi

# HELP (acts when released): the manual in the help window.
if [ ! -f "$STAGE/Help/index.html" ]; then
    skipped help-window "$BUILD/Help/index.html is missing (build the target zorvik)"
elif click "$MAIN" "${HELP[@]}" && HELPWIN=$(window 'Help' 5); then
    sleep 0.8
    unfocus
    shot "$HELPWIN" help-window "860x500+0+0"
else
    skipped help-window "HELP opened no window"
fi
stop_program

# --- 2. a probe that waits for its trigger ------------------------------------------------
# zorvik-probe sends a 0.2 V sine; its trigger level of 0.5 V is never reached.
"$BUILD/zorvik-probe" --amplitude 0.2 --link "$STAGE/ttyProbe" >"$SCRATCH/probe.log" 2>&1 &
PIDS="$PIDS $!"
until_ok 5 test -e "$STAGE/ttyProbe" || die "zorvik-probe did not start"
{
    echo "[PORTS]"
    echo "COM1=$STAGE/ttyProbe"
    for n in 2 3 4 5 6 7 8; do echo "COM$n=$STAGE/no-such-port-$n"; done
} >"$STAGE/ZORVIK.INI"
start_program
power_on "$MAIN"
until_ok 5 is_colour "$MAIN" "${TRIG_LAMP[@]}" 255 176 0 || die "the trigger lamp did not show WAIT"
unfocus
shot "$MAIN" trigger-wait "$TRIGGER_FRAME"
stop_program

# --- 3. no probe at all --------------------------------------------------------------------
{
    echo "[PORTS]"
    for n in 1 2 3 4 5 6 7 8; do echo "COM$n=$STAGE/no-such-port-$n"; done
} >"$STAGE/ZORVIK.INI"
start_program
click "$MAIN" "${POWER[@]}"
if BOX=$(window '^Communication Error' 10); then
    sleep 0.3
    unfocus
    shot "$BOX" comm-error
else
    skipped comm-error "no message appeared"
fi
stop_program

# --- 4. the analysis windows, with the built-in virtual probe ---------------------------------
# No settings file: the windows open at their first places, beside the front panel.
# Its home is the scratch folder, where the recording goes.
rm -f "$STAGE/ZORVIK.INI"
mkdir -p "$SCRATCH/home"
HOME="$SCRATCH/home" start_program --demo
power_on "$MAIN"
sleep 1
# key KEY: presses KEY in the front panel, where the analysis keys work.
key() {
    xdotool windowactivate --sync "$MAIN" 2>/dev/null || xdotool windowfocus --sync "$MAIN"
    xdotool key "$1"
}
BEFORE=$(program_windows)
xdotool mousemove --window "$MAIN" "${GRAPH[@]}" click 3
if POPUP=$(new_popup "$BEFORE"); then
    sleep 0.3
    shot_together graph-menu "$MAIN" "$POPUP"
    xdotool key Escape
else
    skipped graph-menu "the graph's menu did not open"
fi
# shoot_window KEY TITLE NAME SECONDS: KEY in the front panel opens the window TITLE, which is
# photographed as NAME after SECONDS and closed with Esc.
shoot_window() {
    key "$1"
    if W=$(window "^$2\$"); then
        sleep "$4"
        shot "$W" "$3"
        xdotool windowfocus --sync "$W" key Escape 2>/dev/null || true
    else
        skipped "$3" "the window did not open"
    fi
}
shoot_window m Measurements measurements 1.5
shoot_window f Spectrum spectrum 1.5
# STORE keeps the still sine as the reference; STORE again lets the tour run on against it,
# until its next signal leaves the band.
click "$MAIN" "${STORE[@]}"
sleep 0.5
click "$MAIN" "${STORE[@]}"
key k
if W=$(window '^Compare with Reference$'); then
    sleep 7
    unfocus
    shot_together compare "$MAIN" "$W"
    xdotool windowfocus --sync "$W" key Escape 2>/dev/null || true
else
    skipped compare "the window did not open"
fi
key r
if W=$(window '^Recording$'); then
    sleep 2
    shot "$W" recording
    key r
    xdotool windowfocus --sync "$W" key Escape 2>/dev/null || true
else
    skipped recording "the window did not open"
fi
shoot_window ctrl+g "Graph Image" graph-image 0.3
stop_program

echo "manual-screenshots: done"
