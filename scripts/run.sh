#!/usr/bin/env bash
# make run: Brizalog from the build folder, which is its program folder. The folder is provisioned
# when files are missing; unless the configured port is linked to a real device, the board
# simulator is started on that port (it follows the system type of hardware.cfg) and stopped
# again when Brizalog exits.
set -euo pipefail
build_dir=${1:-build}
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "make run: no graphical display (DISPLAY is not set); start it from a desktop session, or under xvfb-run." >&2
    exit 1
fi

folder=$(cd "$build_dir" && pwd)
program="$folder/brizalog"
simulator="$folder/tools/brizalog-boardsim"

"$simulator" --folder "$folder" --provision-only

# The port number of hardware.cfg, by the number rule: its leading digits.
port=$(grep -o '<Port>[^<]*</Port>' "$folder/hardware.cfg" | head -n 1 |
    sed -e 's/<Port> *//' -e 's/[^0-9].*//')
port=${port:-3}
link="$folder/ports/COM$port"

simulator_pid=""
stop_simulator() {
    if [ -n "$simulator_pid" ]; then
        kill -TERM "$simulator_pid" 2>/dev/null || true
        wait "$simulator_pid" 2>/dev/null || true
    fi
}
trap stop_simulator EXIT

real_device=""
if [ -L "$link" ]; then
    target=$(readlink -f "$link" || true)
    case "$target" in
        /dev/pts/*) ;;  # a simulator's terminal, perhaps left behind: replaced
        *) [ -e "$target" ] && real_device=$target ;;
    esac
elif [ -e "$link" ]; then
    real_device=$link
fi

if [ -n "$real_device" ]; then
    echo "make run: port $port is $real_device; the board simulator is not started."
else
    "$simulator" --folder "$folder" --port "$port" &
    simulator_pid=$!
    for _ in $(seq 50); do
        [ -L "$link" ] && break
        sleep 0.1
    done
fi

status=0
"$program" || status=$?
exit "$status"
