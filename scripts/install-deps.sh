#!/usr/bin/env bash
# Installs the Debian packages that building, testing and running Brizalog need, and only
# those that are missing. Safe to run again and again: with everything present it does nothing.
set -euo pipefail

packages=(
    cmake ninja-build g++ make
    qt6-base-dev qt6-serialport-dev qt6-charts-dev libgl-dev
    libmosquitto-dev mosquitto mosquitto-clients openssl
    libgtest-dev libgmock-dev libbenchmark-dev
    xvfb xauth clang-format ccache
    dpkg-dev file desktop-file-utils appstream lintian
    clang libclang-rt-14-dev xdotool
)

missing=()
for p in "${packages[@]}"; do
    if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
        missing+=("$p")
    fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
if [ "$(id -u)" -ne 0 ]; then
    sudo="sudo"
fi
echo "Installing missing packages: ${missing[*]}"
$sudo apt-get update -q
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -q "${missing[@]}"
