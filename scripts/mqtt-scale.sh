#!/usr/bin/env bash
# Many sites on one broker: SITES headless loggers, each with its own board simulator at one
# frame a second, in a round of the nine system types, all publishing per tick and per frame into
# one local mosquitto, for MINUTES minutes. Prints the messages the loggers had delivered and the
# messages a subscriber received, the CPU and memory of each logger, and the broker's.
#
#   scripts/mqtt-scale.sh [BUILD_DIR] [SITES] [MINUTES]     (defaults: build 100 10)
#
# With --desktop it measures the desktop program instead: two copies side by side under Xvfb
# (DISPLAY, or :17), each on its own simulator at 10 frames a second in system 8, one publishing
# per frame and one not, and prints the processor time of each over SECONDS (default 120):
#
#   scripts/mqtt-scale.sh --desktop [BUILD_DIR] [SECONDS]
#
# Not part of the test suite: it takes the machine for its whole length.
set -euo pipefail

mode=sites
if [[ ${1:-} == --desktop ]]; then
    mode=desktop
    shift
fi
build=$(realpath "${1:-build}")
sites=${2:-100}
minutes=${3:-10}
logger="$build/brizalog-logger"
boardsim="$build/tools/brizalog-boardsim"
[[ -x $logger && -x $boardsim ]] || { echo "build brizalog-logger and brizalog-boardsim first" >&2; exit 2; }

work=$(mktemp -d /tmp/brizalog-mqtt-scale.XXXXXX)
port=$(python3 -c 'import socket; s=socket.socket(); s.bind(("127.0.0.1",0)); print(s.getsockname()[1])')
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null || true; done
    wait 2>/dev/null || true
}
trap cleanup EXIT

ticks() { awk '{print $14 + $15}' "/proc/$1/stat"; }
rss_kb() { awk '/^VmRSS/ {print $2}' "/proc/$1/status"; }

start_broker() {
cat > "$work/mosquitto.conf" <<EOF
listener $port 127.0.0.1
allow_anonymous true
persistence false
max_queued_messages 100000
user $(id -un)
EOF
/usr/sbin/mosquitto -c "$work/mosquitto.conf" > "$work/broker.log" 2>&1 &
broker=$!
pids+=("$broker")
sleep 1
}

if [[ $mode == desktop ]]; then
    seconds=${2:-120}
    display=${DISPLAY:-:17}
    start_broker
    if ! xdpyinfo -display "$display" > /dev/null 2>&1; then
        Xvfb "$display" -screen 0 1366x768x24 > /dev/null 2>&1 &
        pids+=("$!")
        sleep 1
        DISPLAY=$display openbox > /dev/null 2>&1 &
        pids+=("$!")
        sleep 1
    fi
    desktops=()
    for side in on off; do
        folder="$work/$side"
        mkdir -p "$folder"
        cp "$build/brizalog" "$folder/brizalog"
        "$boardsim" --folder "$folder" --provision-only > /dev/null
        sed -i "s#<SystemType>[0-9]*</SystemType>#<SystemType>8</SystemType>#; s#<LogOn>[0-9]*</LogOn>#<LogOn>1</LogOn>#" \
            "$folder/hardware.cfg"
        "$boardsim" --folder "$folder" --port 3 --system 8 --rate 10 > /dev/null 2>&1 &
        pids+=("$!")
    done
    printf '<MqttEnabled>1</MqttEnabled>\r\n<MqttHost>127.0.0.1</MqttHost>\r\n<MqttPort>%s</MqttPort>\r\n<MqttPerFrame>1</MqttPerFrame>\r\n' \
        "$port" > "$work/on/options.cfg"
    for side in on off; do
        DISPLAY=$display "$work/$side/brizalog" 2> "$work/$side/errors.txt" &
        desktops+=("$!")
        pids+=("$!")
        sleep 3
        DISPLAY=$display xdotool key Return || true  # the splash
    done
    sleep 30
    before=($(ticks "${desktops[0]}") $(ticks "${desktops[1]}"))
    sleep "$seconds"
    after=($(ticks "${desktops[0]}") $(ticks "${desktops[1]}"))
    hz=$(getconf CLK_TCK)
    awk -v on=$((after[0] - before[0])) -v off=$((after[1] - before[1])) -v hz="$hz" -v s="$seconds" \
        'BEGIN { printf "desktop, system 8, 10 frames/s, %d s: publishing per frame %.2f %%, not publishing %.2f %% of one core\n", s, 100 * on / hz / s, 100 * off / hz / s }'
    timeout 2 mosquitto_sub -h 127.0.0.1 -p "$port" -t 'brizalog/+/availability' -v -W 1 || true
    exit 0
fi

start_broker
mosquitto_sub -h 127.0.0.1 -p "$port" -q 1 -v -t 'brizalog/#' -t 'homeassistant/#' \
    > "$work/received.txt" &
pids+=("$!")
sleep 1

loggers=()
for ((i = 1; i <= sites; i++)); do
    folder="$work/site$i"
    type=$(((i - 1) % 9))
    "$boardsim" --folder "$folder" --provision-only > /dev/null
    sed -i "s#<Port>[0-9]*</Port>#<Port>3</Port>#; s#<LogDelay>[0-9.]*</LogDelay>#<LogDelay>10</LogDelay>#;
            s#<LogOn>[0-9]*</LogOn>#<LogOn>1</LogOn>#; s#<SystemType>[0-9]*</SystemType>#<SystemType>$type</SystemType>#;
            s#<PersonalString>.*</PersonalString>#<PersonalString>Site $i</PersonalString>#" \
        "$folder/hardware.cfg"
    printf '<MqttEnabled>1</MqttEnabled>\r\n<MqttHost>127.0.0.1</MqttHost>\r\n<MqttPort>%s</MqttPort>\r\n<MqttPerFrame>1</MqttPerFrame>\r\n' \
        "$port" > "$folder/options.cfg"
    "$boardsim" --folder "$folder" --port 3 --system "$type" --rate 1 > /dev/null 2>&1 &
    pids+=("$!")
done
sleep 2
for ((i = 1; i <= sites; i++)); do
    "$logger" "$work/site$i" 2> "$work/site$i/logger.err" &
    loggers+=("$!")
    pids+=("$!")
done

broker_start=$(ticks "$broker")
started=$(date +%s)
echo "$sites sites publishing into 127.0.0.1:$port for $minutes min; folder $work"
sleep $((minutes * 60))
elapsed=$(($(date +%s) - started))

hz=$(getconf CLK_TCK)
total_ticks=0
max_rss=0
sum_rss=0
for pid in "${loggers[@]}"; do
    t=$(ticks "$pid")
    r=$(rss_kb "$pid")
    total_ticks=$((total_ticks + t))
    sum_rss=$((sum_rss + r))
    ((r > max_rss)) && max_rss=$r
done
broker_ticks=$(($(ticks "$broker") - broker_start))
broker_rss=$(rss_kb "$broker")

for pid in "${loggers[@]}"; do kill -TERM "$pid"; done
for pid in "${loggers[@]}"; do wait "$pid" || true; done
sleep 2

delivered=0
dropped=0
for ((i = 1; i <= sites; i++)); do
    line=$(grep -o 'stopped: [0-9]* messages delivered, [0-9]* dropped' "$work/site$i/logger.err" || true)
    d=$(echo "$line" | awk '{print $2}')
    x=$(echo "$line" | awk '{print $5}')
    delivered=$((delivered + ${d:-0}))
    dropped=$((dropped + ${x:-0}))
done
received=$(wc -l < "$work/received.txt")
records=$(cat "$work"/site*/logs/*.txt 2>/dev/null | grep -c '<T>' || true)

awk -v s="$sites" -v e="$elapsed" -v tt="$total_ticks" -v hz="$hz" -v sr="$sum_rss" \
    -v mr="$max_rss" -v bt="$broker_ticks" -v br="$broker_rss" -v d="$delivered" \
    -v r="$received" -v x="$dropped" -v rec="$records" 'BEGIN {
    printf "sites %d, %d s\n", s, e
    printf "messages delivered by the loggers %d, received by a subscriber %d, dropped %d\n", d, r, x
    printf "log records written %d\n", rec
    printf "per logger: CPU %.2f %% of one core (mean), RSS %.1f MiB mean, %.1f MiB max\n",
        100 * tt / hz / e / s, sr / s / 1024, mr / 1024
    printf "broker: CPU %.2f %% of one core, RSS %.1f MiB, %.0f messages/s in\n",
        100 * bt / hz / e, br / 1024, d / e
}'
