#!/usr/bin/env bash
# Builds the core, its unit tests and the scenario runner under AddressSanitizer and
# UndefinedBehaviorSanitizer in build-asan/ and runs their tests: the unit tests of every
# subsystem and every scenario. The window tests, the style check and the package's tests stay
# with `make test`.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${SANITIZE_BUILD_DIR:-build-asan}

# Configured each time, so that the list of test programs below is that of the sources as they
# stand.
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DBRIZALOG_SANITIZE=ON >/dev/null
mapfile -t targets < <(ninja -C "$build" -t targets all |
    grep -oE '^(test_[a-z_]+|brizalog-script):' | tr -d ':' | sort -u)
cmake --build "$build" -j2 --target "${targets[@]}"
export ASAN_OPTIONS=detect_leaks=1:abort_on_error=1
export UBSAN_OPTIONS=print_stacktrace=1
ctest --test-dir "$build" -E '^(qt\.|style\.|install\.)' --output-on-failure -j2
