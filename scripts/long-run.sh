#!/usr/bin/env bash
# The long run: Brizalog against the board simulator over a real pseudo-terminal, for minutes,
# in a fresh program folder; not part of `make test`.
#
#   scripts/long-run.sh [--minutes M] [--rate FRAMES_PER_S] [--system T] [--delay SECONDS]
#                       [--desktop] [--build DIR]
#
# By default (10 minutes, 1000 frames a second, system 1, a logging interval of 10 s) it runs
# the core on the Qt serial port and timers without windows (brizalog-longrun) and reports the
# frames the simulator sent, the frames that reached the port and were decoded, the records
# logged against those expected, the memory after the first minute, at its peak and at the end,
# and the processor time. With --desktop it runs the desktop program under Xvfb instead and
# reports its processor time and memory, read from /proc.
set -euo pipefail
cd "$(dirname "$0")/.."
export LC_ALL=C

minutes=10
rate=1000
system=1
delay=10
desktop=0
build=build
while [ $# -gt 0 ]; do
    case $1 in
        --minutes) minutes=$2; shift 2 ;;
        --rate) rate=$2; shift 2 ;;
        --system) system=$2; shift 2 ;;
        --delay) delay=$2; shift 2 ;;
        --desktop) desktop=1; shift ;;
        --build) build=$2; shift 2 ;;
        *) echo "usage: $0 [--minutes M] [--rate R] [--system T] [--delay S] [--desktop] [--build DIR]" >&2
           exit 2 ;;
    esac
done
seconds=$(awk "BEGIN { printf \"%d\", $minutes * 60 }")

targets=(brizalog-boardsim brizalog-longrun)
[ "$desktop" = 1 ] && targets+=(brizalog)
cmake --build "$build" -j2 --target "${targets[@]}" >/dev/null

folder=$(mktemp -d /tmp/brizalog-long-run.XXXXXX)
simulator_pid=""
program_pid=""
cleanup() {
    [ -n "$program_pid" ] && kill -TERM "$program_pid" 2>/dev/null || true
    [ -n "$simulator_pid" ] && kill -TERM "$simulator_pid" 2>/dev/null || true
    wait 2>/dev/null || true
}
trap cleanup EXIT

"$build/tools/brizalog-boardsim" --folder "$folder" --provision-only
sed -i -e "s|<LogOn>[^<]*</LogOn>|<LogOn>1</LogOn>|" \
    -e "s|<LogDelay>[^<]*</LogDelay>|<LogDelay>$delay</LogDelay>|" \
    -e "s|<SystemType>[^<]*</SystemType>|<SystemType>$system</SystemType>|" "$folder/hardware.cfg"

"$build/tools/brizalog-boardsim" --folder "$folder" --system "$system" --rate "$rate" --count \
    >"$folder/simulator.txt" 2>&1 &
simulator_pid=$!
for _ in $(seq 50); do
    [ -L "$folder/ports/COM3" ] && break
    sleep 0.1
done

echo "long run: $minutes min, $rate frames/s, system $system, logging every $delay s, in $folder"
if [ "$desktop" = 0 ]; then
    "$build/tools/brizalog-longrun" "$folder" "$seconds" >"$folder/report.txt" 2>"$folder/errors.txt"
else
    cp "$build/brizalog" "$folder/brizalog"
    xvfb-run -a -s "-screen 0 1280x1024x24" sh -c '
        "$1/brizalog" & pid=$!
        echo $pid >"$1/program.pid"
        sleep 3
        xdotool key Return || true
        wait $pid' sh "$folder" >"$folder/errors.txt" 2>&1 &
    for _ in $(seq 100); do
        [ -s "$folder/program.pid" ] && break
        sleep 0.1
    done
    program_pid=$(cat "$folder/program.pid")
    sleep 60
    rss_minute=$(awk '/VmRSS/ { print $2 }' "/proc/$program_pid/status")
    ticks=$(getconf CLK_TCK)
    cpu_start=$(awk '{ print $14 + $15 }' "/proc/$program_pid/stat")
    peak=0
    for _ in $(seq $((seconds - 60))); do
        sleep 1
        rss=$(awk '/VmRSS/ { print $2 }' "/proc/$program_pid/status")
        [ "$rss" -gt "$peak" ] && peak=$rss
    done
    cpu_end=$(awk '{ print $14 + $15 }' "/proc/$program_pid/stat")
    {
        echo "seconds measured $((seconds - 60)) (after the first minute)"
        echo "rss after one minute kB $rss_minute"
        echo "rss peak kB $peak"
        echo "rss final kB $(awk '/VmRSS/ { print $2 }' "/proc/$program_pid/status")"
        awk "BEGIN { printf \"cpu percent of a core %.2f\n\", \
            100 * ($cpu_end - $cpu_start) / $ticks / ($seconds - 60) }"
    } >"$folder/report.txt"
    kill -TERM "$program_pid" 2>/dev/null || true
    program_pid=""
fi

kill -TERM "$simulator_pid"
wait "$simulator_pid" || true
simulator_pid=""

cat "$folder/report.txt"
grep -h 'frames sent' "$folder/simulator.txt" || true
# Every frame the simulator wrote is read by the program, or was still waiting in the terminal
# when nobody read (before the start, after the end): the rest is lost on the way.
if [ "$desktop" = 0 ]; then
    sent=$(sed -n 's/.*frames sent \([0-9]*\).*/\1/p' "$folder/simulator.txt")
    flushed=$(sed -n 's/.*(frames \([0-9]*\)).*/\1/p' "$folder/simulator.txt")
    unread=$(sed -n 's/.*frames unread at the stop \([0-9]*\).*/\1/p' "$folder/simulator.txt")
    received=$(sed -n 's/^frames received \([0-9]*\)/\1/p' "$folder/report.txt")
    if [ -n "$sent" ] && [ -n "$received" ]; then
        echo "frames lost on the way $((sent - received - ${flushed:-0} - ${unread:-0}))" \
            "(sent, less those received, flushed unread and unread at the stop)"
    fi
fi
files_per_tick=1
[ "$system" = 8 ] && files_per_tick=3
records=$(cat "$folder"/logs/*_*.txt 2>/dev/null | grep -c '<T>' || true)
echo "records logged $records, expected about $((seconds / delay * files_per_tick))"
if [ -s "$folder/errors.txt" ]; then
    echo "said on the way:"
    cat "$folder/errors.txt"
fi
