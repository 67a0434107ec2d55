#!/usr/bin/env bash
# test.sh [PRESET]: installs what is missing, builds and runs all tests (preset dev; asan for the sanitizers).
set -eu
cd "$(dirname "$0")"
preset=${1:-dev}
scripts/install_packages.sh
scripts/check_layers.sh
# Of the other presets only the tests are of use.
targets=()
[ "$preset" = dev ] || targets=(vortan_tests vortan_shell_tests)
scripts/build.sh "$preset" "${targets[@]}"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
echo "Testing ($preset) ..."
if ! ctest --preset "$preset" -j "$(nproc)" >"$log" 2>&1; then
    cat "$log" >&2
    exit 1
fi
tail -n 3 "$log"
