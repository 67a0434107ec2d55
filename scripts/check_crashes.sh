#!/usr/bin/env bash
# Kills a session of random edits, saves and backups a hundred times, at random moments: each time the file must be whole, and
# what the next start offers must hold all work until the last backup. Outside of the suite, since it waits for moments.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/build.sh dev vortan_tests
build/dev/tests/vortan_tests --gtest_also_run_disabled_tests --gtest_filter='*AKilledSession*' --gtest_brief=1
