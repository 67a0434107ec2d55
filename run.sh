#!/usr/bin/env bash
# run.sh [FILE]: installs what is missing, builds, and solves the plan (by default the example of a house).
set -eu
plan=${1:-}
[ -z "$plan" ] || plan=$(realpath "$plan")
cd "$(dirname "$0")"
scripts/install_packages.sh
scripts/build.sh release vortan-cli
echo "Solving ${plan:-examples/house.vta} ..."
exec build/release/vortan-cli solve "${plan:-examples/house.vta}"
