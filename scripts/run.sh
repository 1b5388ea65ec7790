#!/usr/bin/env bash
# Starts the desktop program from the build folder.
set -euo pipefail
build_dir=${1:-build}
if [ -z "${DISPLAY:-}" ] && [ -z "${WAYLAND_DISPLAY:-}" ] && [ -z "${QT_QPA_PLATFORM:-}" ]; then
    echo "make run: no graphical display (DISPLAY is not set); start it from a desktop session, or under xvfb-run." >&2
    exit 1
fi
exec "$build_dir/brizalog"
