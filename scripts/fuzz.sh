#!/usr/bin/env bash
# Builds the fuzzing harnesses (clang, libFuzzer, AddressSanitizer and UndefinedBehaviorSanitizer)
# in build-fuzz/ and runs each of them.
#
#   scripts/fuzz.sh [SECONDS]   each harness for SECONDS (FUZZ_SECONDS, 60 by default); a crash
#                               writes its input under build/fuzz/crashes/ and fails the run
#   scripts/fuzz.sh --runs N    each harness for N executions (the long run: 10000000)
#   scripts/fuzz.sh --check     each harness over its seeds and its regression inputs
#                               (fuzz/regressions/HARNESS/), then FUZZ_RUNS (20000) inputs more;
#                               for CI
#
# FUZZ_HARNESSES names the harnesses to run, all eight by default: two runs with different
# harnesses use both cores of a two-core machine.
#
# Seeds come from the test fixtures: the frames of the scenario scripts, the configuration files
# and the logs that the tests start from. The corpus that a run grows stays in build-fuzz/corpus/
# for the next run. One harness runs at a time, on one core.
set -euo pipefail
cd "$(dirname "$0")/.."
export LC_ALL=C

mode=run
seconds=${FUZZ_SECONDS:-60}
runs=${FUZZ_RUNS:-20000}
if [ "${1:-}" = "--check" ]; then
    mode=check
elif [ "${1:-}" = "--runs" ]; then
    mode=runs
    runs=${2:?"--runs needs a number of executions"}
elif [ -n "${1:-}" ]; then
    seconds=$1
fi

build=${FUZZ_BUILD_DIR:-build-fuzz}
crashes=build/fuzz/crashes
all=(serial_intake config_files log_replay log_loader help_viewer csv_export spreadsheet_copy setup_forms)
read -r -a harnesses <<<"${FUZZ_HARNESSES:-${all[*]}}"
# The longest input worth trying: a log's records repeat, and a form's fields are short, so
# longer inputs would only slow the search. The serial intake takes events of up to 4 kB, and
# inputs of several of them.
max_len() {
    case $1 in
        serial_intake) echo 8192 ;;
        log_loader | csv_export) echo 4096 ;;
        setup_forms | spreadsheet_copy) echo 2048 ;;
        *) echo 8192 ;;
    esac
}

if [ ! -f "$build/build.ninja" ]; then
    cmake -S fuzz -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=clang++ >/dev/null
fi
cmake --build "$build" -j2

# ---- Seeds --------------------------------------------------------------------------------
# Each run makes its own, so that two runs side by side do not remove each other's seeds.
seeds=$(mktemp -d "$build/seeds.XXXXXX")
for h in "${all[@]}"; do mkdir -p "$seeds/$h"; done
count=0
# A seed: the selector bytes given as octal escapes, then the file's first 4 kB.
seed() {
    local harness=$1 prefix=$2 file=$3
    count=$((count + 1))
    { printf "$prefix"; head -c 4096 "$file"; } >"$seeds/$harness/seed_$count"
}

# The frames of the scenario scripts, each as one serial event and as two halves, in the system
# types that read them.
frames=$(mktemp)
trap 'rm -rf "$frames" "$seeds"' EXIT
grep -rh '^serial ' tests/scenarios --include='*.script' | cut -d' ' -f2- | sort -u >"$frames"
while IFS= read -r line; do
    frame=$(printf '%b' "$line" | head -c 254)
    case $frame in
        *"<msg>"*) types="3 4" ;;
        *"<V>"*) types="0" ;;
        *) types="1 8" ;;
    esac
    length=${#frame}
    half=$((length / 2))
    for t in $types; do
        count=$((count + 1))
        out=$seeds/serial_intake/seed_$count
        {
            printf "\\$(printf '%03o' "$t")\\000\\$(printf '%03o' "$length")"
            printf '%s' "$frame"
            printf "\\$(printf '%03o' "$half")"
            printf '%s' "${frame:0:half}"
            printf "\\$(printf '%03o' $((length - half)))"
            printf '%s' "${frame:half}"
        } >"$out"
    done
done <"$frames"

# Configuration files: the first-run fixtures and those the scenarios start from.
while IFS= read -r file; do
    case $(basename "$file") in
        hardware.cfg) selector='\000\000' ;;
        channels.cfg) selector='\001\001' ;;
        calibrations.cfg) selector='\002\000' ;;
        *) continue ;;
    esac
    seed config_files "$selector" "$file"
done < <(find tests -name '*.cfg' -path '*fixtures*' -o -name '*.cfg' -path '*.before*')

# Logs, for the replay in the system type that writes them and for the graph windows that read
# them (the member, the clicks, the mouse's place).
while IFS= read -r file; do
    case $(basename "$file") in
        WD_*) type='\000' member='\001' ;;
        BZ_*) type='\001' member='\000' ;;
        CC_*) type='\003' member='\005' ;;
        RE_*) type='\005' member='\002' ;;
        ML_*) type='\010' member='\003' ;;
        *) continue ;;
    esac
    seed log_replay "$type" "$file"
    seed log_loader "$member\\377\\100\\040" "$file"
    # The member, collation and time boxes on, and the boxes "14", "00", "16", "30".
    seed csv_export "$member\\003\\00214\\00200\\00216\\00230" "$file"
done < <(find tests -name '*.txt' -path '*.before/logs/*')

# Help topics and the text maker's source: the help files that a first start makes.
for file in tests/catalogue/fixtures/*.cfg; do
    seed help_viewer '\000' "$file"
    seed help_viewer '\005' "$file"
done
printf 'A line of help\r\nwith "quotes" & more\r\n' >"$seeds/help_viewer/seed_text"

# The spreadsheet copy: unattended or not, 10 s or 5 s, at 14:05:00, "m/s", zero readings, and
# a file that is new, whole or torn.
zeros='\000\000\000\000\000\000\000\000'
readings=$zeros$zeros$zeros$zeros$zeros
row='<tr><td>13.2</td><td>4</td><td>52.8</td><td>0</td><td>0</td><td><td><td>14:05:00</td></tr>\r\n\r\n'
for flags in '\000' '\001' '\002' '\003'; do
    for delay in '\000' '\001'; do
        printf "$flags$delay\016\005\000\003m/s$readings$row<tr><td>1" \
            >"$seeds/spreadsheet_copy/seed_$(printf "$flags$delay" | od -An -tx1 | tr -d ' ')"
    done
done

# The setup forms: the program setup, the four channel forms and the calibration, each with a
# few fields typed: an interval, a wind caption, names and tags, a limit, a factor.
for form in 0 1 2 3 4 5; do
    printf "\\00$form\\002\\00230\\003\\003m/s\\010\\005BATT1\\011\\003<V>\\012\\00532767\\000\\0040.15\\005\\000" \
        >"$seeds/setup_forms/seed_$form"
done

# ---- Runs ---------------------------------------------------------------------------------
mkdir -p "$crashes"
status=0
# No stack is kept for each allocation: that alone costs a fifth of the rate. A crash found is
# replayed with the full report by running its harness on the input.
asan=intercept_memcmp=0:malloc_context_size=0
for h in "${harnesses[@]}"; do
    corpus=$build/corpus/$h
    regressions=fuzz/regressions/$h
    mkdir -p "$corpus" "$regressions"
    # Leaks are not looked for: the harnesses keep their forms between inputs on purpose.
    options=(-detect_leaks=0 "-max_len=$(max_len "$h")" "-artifact_prefix=$crashes/$h-")
    if [ "$mode" = check ]; then
        echo "== $h: seeds, regression inputs and $runs more"
        # A fixed seed: the same inputs at every run, so that only a change of the code fails.
        # The setup forms read and write their files at every input: a quarter of the inputs
        # keeps their share of the check as short as the others'.
        check_runs=$runs
        [ "$h" = setup_forms ] && check_runs=$((runs / 4))
        if ! ASAN_OPTIONS=$asan "$build/fuzz_$h" "${options[@]}" -runs="$check_runs" -seed=1 \
            "$seeds/$h" "$regressions" >"$build/$h.log" 2>&1; then
            tail -30 "$build/$h.log"
            status=1
        fi
        grep -E '^#[0-9]+.*(INITED|DONE)' "$build/$h.log" | tail -1 || true
        continue
    fi
    if [ "$mode" = runs ]; then
        echo "== $h: $runs executions"
        limit=(-runs="$runs")
    else
        echo "== $h: $seconds s"
        limit=(-max_total_time="$seconds")
    fi
    if ! ASAN_OPTIONS=$asan "$build/fuzz_$h" "${options[@]}" "${limit[@]}" -print_final_stats=1 \
        "$corpus" "$seeds/$h" "$regressions" >"$build/$h.log" 2>&1; then
        tail -30 "$build/$h.log"
        status=1
    fi
    grep -E '^(stat::number_of_executed_units|stat::average_exec_per_sec|stat::peak_rss_mb)|^Done' "$build/$h.log" || true
done
if [ "$status" -ne 0 ]; then
    echo "fuzzing found a fault: its input is under $crashes/"
fi
exit "$status"
