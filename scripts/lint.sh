#!/usr/bin/env bash
# Formatting, layers and static analysis of the project's own code. Needs a configured dev build.
set -eu
cd "$(dirname "$0")/.."
scripts/check_layers.sh
mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run -Werror "${files[@]}"
echo "Formatting and layers are in order"
# The compiler's precompiled headers are of no use to clang-tidy.
mkdir -p build/lint
sed -E 's/ -Winvalid-pch -include [^ "]*cmake_pch\.hxx//g' build/dev/compile_commands.json >build/lint/compile_commands.json
# The analyser gives most of what it gives in its first steps; the sanitizers look deeper.
shallow=()
for word in -Xclang -analyzer-config -Xclang max-nodes=10000; do shallow+=("--extra-arg=$word"); done
mapfile -t sources < <(git ls-files 'src/*.cpp')
printf '%s\n' "${sources[@]}" |
    xargs -P "$(nproc)" -n 4 clang-tidy -p build/lint --quiet "${shallow[@]}" 2> >(grep -v 'warnings generated' >&2)
echo "clang-tidy found nothing"
