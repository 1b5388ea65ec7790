#!/usr/bin/env bash
# Fails when any C++ file of the project differs from what clang-format makes of it.
set -euo pipefail
cd "$1"
files=$(find src tools tests bench fuzz -name '*.h' -o -name '*.cpp' | sort)
[ -n "$files" ] || exit 0
# shellcheck disable=SC2086
clang-format --dry-run -Werror $files
echo "all $(echo "$files" | wc -l) files formatted"
