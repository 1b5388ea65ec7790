#!/usr/bin/env bash
# Runs one scenario: brizalog-script on a fresh program folder, then compares what it printed,
# its exit status and the files it left with what the scenario expects.
set -uo pipefail
runner=$1
script=$2
base=${script%.script}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

if [ -d "$base.before" ]; then
    cp -a "$base.before/." "$folder/"
fi

actual_out="$folder.out"
(cd "$(dirname "$script")" && "$runner" "$folder" "$script") >"$actual_out" 2>&1
status=$?
expected_status=0
[ -f "$base.status" ] && expected_status=$(cat "$base.status")

failed=0
if [ "$status" != "$expected_status" ]; then
    echo "exit status $status, expected $expected_status"
    failed=1
fi
if [ -f "$base.out" ]; then
    if ! diff -u "$base.out" "$actual_out"; then
        echo "printed output differs from $base.out"
        failed=1
    fi
fi
if [ -d "$base.after" ]; then
    while IFS= read -r -d '' expected; do
        rel=${expected#"$base.after/"}
        if [ ! -f "$folder/$rel" ]; then
            echo "missing file: $rel"
            failed=1
        elif ! cmp -s "$expected" "$folder/$rel"; then
            echo "file differs: $rel"
            diff <(od -c "$expected") <(od -c "$folder/$rel") | head -20
            failed=1
        fi
    done < <(find "$base.after" -type f -print0)
fi
rm -f "$actual_out"
if [ "$failed" -ne 0 ]; then
    echo "scenario failed: $script"
    exit 1
fi
echo "scenario passed: $(basename "$script")"
