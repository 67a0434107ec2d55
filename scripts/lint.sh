#!/usr/bin/env bash
# Formatting, layers and static analysis of the project's own code. Needs a configured dev build.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/check_layers.sh
mapfile -t files < <(git ls-files '*.cpp' '*.h')
clang-format --dry-run -Werror "${files[@]}"
echo "Formatting and layers are in order"

# A folder is one unit, since headers cost more than all that is ours; so names at file level must differ within it. The
# charts and the commands, which are alike, and what is there once for each kind of build stand alone. `starts` tells where in
# its unit a source begins.
units=build/lint
rm -rf $units && mkdir -p $units
# The compiler's precompiled headers are of no use to clang-tidy.
edits=(-e 's/ -Winvalid-pch -include [^ "]*cmake_pch\.hxx//g')
while read -r file; do
    grep -qF "$PWD/$file\"" build/dev/compile_commands.json || continue  # for another system
    unit=$(dirname "$file")
    case $unit in src/charts | src/cli | src/cli/output) unit=$file ;; esac
    unit=${unit//\//_}
    unit=$units/${unit%.cpp}.cpp
    [ -e "$unit" ] || edits+=(-e "s|$PWD/$file|$PWD/$unit|g")
    echo "$unit $(($(cat "$unit" 2>/dev/null | wc -l) + 1)) $file" >>$units/starts
    cat "$file" >>"$unit"
done < <(git ls-files 'src/*.cpp')
sed -E "${edits[@]}" build/dev/compile_commands.json >$units/compile_commands.json
# The analyser gives most of what it gives in its first steps; the sanitizers look deeper.
shallow=()
for word in -Xclang -analyzer-config -Xclang max-nodes=10000; do shallow+=("--extra-arg=$word"); done
printf '%s\n' $units/*.cpp |
    xargs -P "$(nproc)" -n 1 clang-tidy -p $units --quiet "${shallow[@]}" 2> >(grep -v 'warnings generated' >&2) |
    awk -v here="$PWD/" -v starts=$units/starts '
        BEGIN { while ((getline line < starts) > 0) { split(line, f, " "); unit[++n] = f[1]; from[n] = f[2]; file[n] = f[3] } }
        index($0, here) == 1 { $0 = substr($0, length(here) + 1) }
        { split($0, part, ":"); at = 0
          for (i = 1; i <= n; ++i) if (unit[i] == part[1] && from[i] <= part[2] + 0) at = i
          if (at) $0 = file[at] ":" part[2] - from[at] + 1 substr($0, length(part[1] part[2]) + 2)
          print }'
echo "clang-tidy found nothing"
