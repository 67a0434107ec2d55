#!/usr/bin/env bash
# Builds the batch tool for Windows, without drawing, and solves the plans with known answers in it, under wine. Each
# answer must be the one that the batch tool of this system gives. Not part of every test run.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install_packages.sh g++-mingw-w64-x86-64-posix wine wine64
scripts/build.sh dev vortan-cli vortan-helpc
scripts/build.sh mingw vortan-cli
work=$(mktemp -d)
trap 'WINEPREFIX=$work/wine wineserver -k || true; rm -rf "$work"' EXIT
export WINEPREFIX=$work/wine WINEDEBUG=-all LC_ALL=C.UTF-8
windows() { wine build/mingw/vortan-cli.exe "$@"; }
count=0
for plan in tests/data/golden/solve/*.vta tests/data/golden/crash/*.vta examples/*.vta; do
    here=0 there=0
    build/dev/vortan-cli solve --json "$plan" >"$work/here" 2>"$work/here.err" || here=$?
    windows solve --json "$plan" >"$work/there" 2>"$work/there.err" || there=$?
    [ "$here" -eq "$there" ]
    cmp "$work/here" <(tr -d '\r' <"$work/there") || { cat "$work/there.err" >&2; echo "$plan differs" >&2; exit 1; }
    count=$((count + 1))
done
[ "$count" -gt 40 ]
echo "$count plans have the same solution, to the last digit"
for seed in 1 2; do
    cmp <(build/dev/vortan-cli risk --detailed --seed $seed --json examples/house.vta) \
        <(windows risk --detailed --seed $seed --json examples/house.vta | tr -d '\r')
done
# Files: a name with letters of no code page, a replaced file, both forms, and back to the same bytes.
windows convert examples/house.vta "$work/плån.vtb"
windows convert examples/launch.vta "$work/плån.vtb"
windows convert "$work/плån.vtb" "$work/back.vta"
build/dev/vortan-cli convert examples/launch.vta "$work/plan.vtb"
build/dev/vortan-cli convert "$work/plan.vtb" "$work/here.vta"
cmp "$work/plan.vtb" "$work/плån.vtb"
cmp "$work/here.vta" "$work/back.vta"
[ -z "$(find "$work" -maxdepth 1 -name '*.tmp')" ]
{ windows chart gantt examples/house.vta -o "$work/x.svg" 2>&1 || true; } | grep -q 'neither pictures nor workbooks'
echo "Files are written and read under names of any letters"
