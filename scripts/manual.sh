#!/usr/bin/env bash
# manual.sh OUTDIR [PRESET]: writes the manual as a folder of linked web pages, which begins at index.html, and as manual.pdf.
set -eu
[ $# -ge 1 ] || { echo "manual.sh OUTDIR [PRESET]" >&2; exit 2; }
out=$(realpath -m "$1")
preset=${2:-release}
cd "$(dirname "$0")/.."
scripts/build.sh "$preset" vortan-manual
"build/$preset/src/vortan-manual" "$out" "build/$preset/src/help-pictures"
echo "Written: $out/index.html and $out/manual.pdf"
