#!/usr/bin/env bash
# run.sh [FILE]: installs what is missing, builds, and starts VORTAN on the plan (by default the example of a house).
# Without a display it solves the plan in the batch tool instead, and draws its Gantt chart into a file.
set -eu
plan=${1:-}
[ -z "$plan" ] || plan=$(realpath "$plan")
cd "$(dirname "$0")"
plan=${plan:-$PWD/examples/house.vta}
scripts/install_packages.sh
if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    scripts/build.sh release vortan
    echo "Starting VORTAN on $plan ..."
    exec build/release/vortan "$plan"
fi
scripts/build.sh release vortan-cli
echo "There is no display. Solving $plan ..."
build/release/vortan-cli solve "$plan"
build/release/vortan-cli chart gantt "$plan" -o build/gantt.svg
echo "Its Gantt chart is in $PWD/build/gantt.svg"
