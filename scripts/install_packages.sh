#!/usr/bin/env bash
# Installs the Debian packages that are missing, quietly. Needs root or sudo only when something is missing.
set -eu
packages=(g++ cmake ninja-build ccache libcli11-dev libgtest-dev libbenchmark-dev
          qt6-base-dev qt6-svg-dev libxlsxwriter-dev libpugixml-dev zlib1g-dev fonts-dejavu-core fonts-liberation "$@")
missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0
echo "Installing: ${missing[*]}"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { "${as_root[@]}" apt-get update -qq &&
       DEBIAN_FRONTEND=noninteractive "${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    echo "Could not install: ${missing[*]}" >&2
    exit 1
fi
