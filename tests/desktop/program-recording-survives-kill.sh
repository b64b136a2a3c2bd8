#!/bin/sh
# The real zorvik program on an X server (run under with-xvfb.sh), with its built-in virtual
# probe: Space switches POWER on, R starts a recording into the folder the settings file names,
# and the program is then killed outright (SIGKILL, no chance to close anything). The recording
# must hold its header and every frame written until then, each line whole: 4 + 128 fields.
# Usage: program-recording-survives-kill.sh PATH-OF-ZORVIK
set -eu
program=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$program" "$work/zorvik"
mkdir "$work/recordings" "$work/home"
printf '[ANALYSIS]\r\nRecordingFolder=%s\r\nRecordingFormat=csv\r\n' "$work/recordings" \
    >"$work/ZORVIK.INI"

. "$(dirname "$0")/x11-helpers.sh"

HOME="$work/home" "$work/zorvik" --demo >"$work/out.log" 2>&1 &
pid=$!
main=$(window_named "Zorvik")
# POWER has the keyboard focus when the window opens: Space switches the probe on.
xdotool windowactivate --sync "$main" key --clearmodifiers space
xdotool windowactivate --sync "$main" key --clearmodifiers r
window_named "Recording" >/dev/null
# Until at least 20 frames are on disk (the virtual probe sends about 14 a second).
tries=0
while :; do
    file=$(ls "$work"/recordings/zorvik-recording-*.csv 2>/dev/null | head -n 1) || true
    if [ -n "$file" ] && [ "$(wc -l <"$file")" -ge 21 ]; then break; fi
    tries=$((tries + 1))
    [ "$tries" -le 300 ] || fail "no recording of 20 frames after 30 s ($(cat "$work/out.log"))"
    sleep 0.1
done
kill -KILL "$pid"
wait "$pid" 2>/dev/null || true

lines=$(wc -l <"$file")
head -n 1 "$file" | grep -q '^index,time,sample_interval,volts_per_count,v0,v1,' ||
    fail "the header is not there: $(head -c 80 "$file")"
# Every line ends in a line feed and has its 132 fields: no half line, however the kill fell.
[ "$(tail -c 1 "$file" | od -An -c | tr -d ' ')" = '\n' ] || fail "the last line is cut"
bad=$(awk -F, 'NR > 1 && NF != 132' "$file" | wc -l)
[ "$bad" -eq 0 ] || fail "$bad lines of $lines do not have 132 fields"
# Frames numbered 0, 1, 2, ... without a gap.
awk -F, 'NR > 1 && $1 != NR - 2 { exit 1 }' "$file" || fail "a frame is missing"
echo "recording killed after $((lines - 1)) frames: header and every line whole"
