#!/usr/bin/env bash
# End-to-end performance harness: runs the zorvik program with the virtual probe on a
# pseudo-terminal, offscreen (or under Xvfb), and prints the figures a user feels next to their
# goals. See docs/PERFORMANCE.md for what each figure means and how it was measured.
#
#   scripts/perf-harness.sh [--build DIR] [--no-build] [--xvfb] [--quick] [--repeat N]
#                           [--analysis] [--only startup,session,latency,unpaced,real]
#
#   --build DIR   build folder (default: build)
#   --no-build    use the programs already built there
#   --xvfb        run under Xvfb with the xcb platform instead of offscreen
#   --quick       shorter runs (for a first look; the documented figures use the defaults)
#   --repeat N    run every measurement N times (default 1)
#   --analysis    session and unpaced with the Measurements and Spectrum windows open and a
#                 recording running
#   --only LIST   run only these measurements (comma-separated)
#
# Exit status: 0 when every goal is met, 1 when one is missed, 2 when a measurement failed.
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build="$root/build"
do_build=1
xvfb=0
quick=0
repeat=1
analysis=0
only="startup,session,latency,unpaced,real"

while [ $# -gt 0 ]; do
    case "$1" in
        --build) build=$(realpath -m "$2"); shift 2 ;;
        --no-build) do_build=0; shift ;;
        --xvfb) xvfb=1; shift ;;
        --quick) quick=1; shift ;;
        --repeat) repeat="$2"; shift 2 ;;
        --only) only="$2"; shift 2 ;;
        --analysis) analysis=1; shift ;;
        -h|--help) sed -n '2,18p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
        *) echo "perf-harness: unknown option $1" >&2; exit 2 ;;
    esac
done

if [ "$quick" = 1 ]; then
    args=(--runs 5 --idle-seconds 5 --line-seconds 10 --latency-seconds 20
          --unpaced-frames 20000 --file-rounds 10)
    real_idle=5
else
    args=()
    real_idle=10
fi
if [ "$analysis" = 1 ]; then
    args+=(--analysis)
fi

if [ "$do_build" = 1 ]; then
    cmake -S "$root" -B "$build" -G Ninja >/dev/null
    # Two cores at most: the machine is shared.
    cmake --build "$build" -j2 --target zorvik zorvik-probe zorvik_perf_harness
fi
harness="$build/zorvik_perf_harness"
for program in "$harness" "$build/zorvik" "$build/zorvik-probe"; do
    [ -x "$program" ] || { echo "perf-harness: $program is not built" >&2; exit 2; }
done

log=$(mktemp -d "${TMPDIR:-/tmp}/zorvik-perf.XXXXXX")
results="$log/results"
: > "$results"
failed=0

if [ "$xvfb" = 1 ]; then
    display=(xvfb-run -a -s "-screen 0 1920x1200x24" env QT_QPA_PLATFORM=xcb)
    platform="Xvfb (xcb)"
else
    display=(env QT_QPA_PLATFORM=offscreen)
    platform="offscreen"
fi

echo "== Machine"
echo "  $(grep -m1 'model name' /proc/cpuinfo | cut -d: -f2 | sed 's/^ //'), $(nproc) cores," \
     "$(uname -sr), $(awk '/MemTotal/ {printf "%.0f GiB", $2/1048576}' /proc/meminfo)"
echo "  display: $platform; load average at the start: $(cut -d' ' -f1-3 /proc/loadavg)"
echo "  logs: $log"

run_mode() {
    local mode=$1 n=$2 out="$log/$1-$2.txt" status=0
    echo "== $mode (run $n of $repeat)"
    "${display[@]}" "$harness" "$mode" "${args[@]}" > "$out" 2>&1 || status=$?
    grep -v '^RESULT' "$out" | sed 's/^/  /' || true
    grep '^RESULT' "$out" | awk -F' [|] ' '{split($1, f, " "); printf "  %-32s %10s %-9s %s\n", f[2], f[3], f[4], $2}'
    grep '^RESULT' "$out" >> "$results" || true
    if [ "$status" -ne 0 ]; then
        echo "  (exit status $status)"
        failed=1
    fi
}

# The zorvik program itself, untouched, started as a user starts it and then left alone with
# POWER off: processor time and wake-ups counted by the kernel, and its peak memory.
run_real() {
    local n=$1 folder pid
    echo "== real (run $n of $repeat): the zorvik program left idle with POWER off"
    folder=$(mktemp -d "$log/real.XXXXXX")
    cp "$build/zorvik" "$folder/"
    "${display[@]}" "$folder/zorvik" > "$folder/out.txt" 2>&1 &
    local launcher=$!
    # Under xvfb-run the program is a grandchild; find it by its path.
    for _ in $(seq 50); do
        pid=$(pgrep -f "^$folder/zorvik" | head -1 || true)
        [ -n "$pid" ] && break
        sleep 0.1
    done
    if [ -z "${pid:-}" ]; then
        echo "  the program did not start"; failed=1; return
    fi
    sleep 5 # the splash stays 3 s, then the window settles
    local ticks0 switches0 ticks1 switches1 hz
    hz=$(getconf CLK_TCK)
    ticks0=$(awk '{print $14 + $15}' "/proc/$pid/stat")
    switches0=$(cat /proc/"$pid"/task/*/status | awk '/ctxt_switches/ {s += $2} END {print s}')
    sleep "$real_idle"
    ticks1=$(awk '{print $14 + $15}' "/proc/$pid/stat")
    switches1=$(cat /proc/"$pid"/task/*/status | awk '/ctxt_switches/ {s += $2} END {print s}')
    local rss
    rss=$(awk '/VmHWM/ {printf "%.1f", $2/1024}' "/proc/$pid/status")
    kill "$pid" 2>/dev/null || true
    wait "$launcher" 2>/dev/null || true
    {
        echo "RESULT real_idle_cpu_percent $(awk -v t=$((ticks1 - ticks0)) -v hz="$hz" -v s="$real_idle" 'BEGIN {printf "%.3f", 100 * t / hz / s}') % | the zorvik program idle, POWER off: processor time ($real_idle s, kernel ticks)"
        echo "RESULT real_idle_wakeups $((switches1 - switches0)) wake-ups | the zorvik program idle: times its threads were woken ($real_idle s)"
        echo "RESULT real_idle_peak_rss_mib $rss MiB | the zorvik program: peak resident memory after start-up"
    } > "$folder/results"
    awk -F' [|] ' '{split($1, f, " "); printf "  %-32s %10s %-9s %s\n", f[2], f[3], f[4], $2}' "$folder/results"
    cat "$folder/results" >> "$results"
}

for n in $(seq "$repeat"); do
    for mode in startup session latency unpaced real; do
        case ",$only," in *",$mode,"*) ;; *) continue ;; esac
        if [ "$mode" = real ]; then run_real "$n"; else run_mode "$mode" "$n"; fi
    done
done

# Goals: key, comparison, limit, text. A figure measured several times counts by its worst run.
echo "== Goals (worst of $repeat run(s); $platform; load average now: $(cut -d' ' -f1-3 /proc/loadavg))"
missed=0
check() {
    local key=$1 op=$2 limit=$3 text=$4 worst
    case "$op" in
        '<'|'<=') worst=$(awk -v k="$key" '$2 == k {if (!n++ || $3 > w) w = $3} END {if (n) print w}' "$results") ;;
        *) worst=$(awk -v k="$key" '$2 == k {if (!n++ || $3 < w) w = $3} END {if (n) print w}' "$results") ;;
    esac
    [ -n "$worst" ] || return 0
    local ok
    ok=$(awk -v v="$worst" -v l="$limit" -v op="$op" 'BEGIN {
        print (op == "<" ? v < l : op == "<=" ? v <= l : op == ">=" ? v >= l : 0) ? "met" : "MISSED" }')
    [ "$ok" = met ] || missed=1
    printf "  %-34s %10s   goal %-2s %-7s %-6s %s\n" "$key" "$worst" "$op" "$limit" "$ok" "$text"
}
check unpaced_frames_per_s '>=' 2000 "frames per second accepted, probe unpaced"
check unpaced_frames_lost '<=' 0 "frames lost by the receiver"
check latency_ms_p99 '<' 16 "last byte on the wire to the painted graph, p99"
check line_cpu_percent '<' 2 "processor time at the line rate"
check idle_start_cpu_percent '<' 0.05 "processor time idle after start-up (0 %)"
check idle_start_timer_events '<=' 0 "timers firing idle after start-up"
check idle_off_cpu_percent '<' 0.05 "processor time idle after POWER off (0 %)"
check idle_off_timer_events '<=' 0 "timers firing idle after POWER off"
check real_idle_cpu_percent '<' 0.05 "the zorvik program idle (0 %)"
check line_stall_ms '<' 20 "longest stall, streaming at the line rate"
check latency_stall_ms '<' 20 "longest stall, streaming (latency run)"
check unpaced_stall_ms '<' 20 "longest stall, streaming unpaced"
check search_stall_ms '<' 20 "longest stall, searching for the port"
check files_stall_ms '<' 20 "longest stall, saving and loading .wdf files"
check startup_ms_median '<' 300 "start-up to the first painted panel, median"
check startup_ms_max '<' 300 "start-up to the first painted panel, slowest"
check startup_peak_rss_mib_max '<' 80 "peak memory after start-up"
check session_peak_rss_mib '<' 80 "peak memory over a whole session"
check real_idle_peak_rss_mib '<' 80 "peak memory of the zorvik program"

if [ "$failed" = 1 ]; then exit 2; fi
exit "$missed"
