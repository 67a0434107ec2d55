#!/usr/bin/env bash
# build.sh PRESET [TARGET...]: configures and builds a preset, showing output only when something fails.
set -eu
cd "$(dirname "$0")/.."
preset=$1
shift
log=$(mktemp)
trap 'rm -f "$log"' EXIT
targets=()
[ $# -gt 0 ] && targets=(--target "$@")
echo "Building ($preset) ..."
if ! { cmake --preset "$preset" && cmake --build --preset "$preset" "${targets[@]}"; } >"$log" 2>&1; then
    tail -n 60 "$log" >&2
    exit 1
fi
