#!/usr/bin/env bash
# Fails when a source file includes a folder to its right in the layer order, or what its layer must not use.
set -eu
cd "$(dirname "$0")/.."
core=(model solve persist charts reports transfer)
layers=("${core[@]}" paint)
status=0
# forbid <folder> <pattern of a line> <what is wrong with it>
forbid() {
    [ -d "src/$1" ] || return 0
    if grep -rnE "$2" "src/$1"; then
        echo "src/$1 must not $3" >&2
        status=1
    fi
}
for ((i = 0; i < ${#layers[@]}; ++i)); do
    for other in "${layers[@]:i+1}" shell cli; do
        forbid "${layers[i]}" "#include [\"<]$other/" "include $other"
    done
done
for folder in "${core[@]}"; do
    forbid "$folder" '#include [<"]Q[A-Z]' "use the toolkit"
done
for folder in persist charts paint shell cli; do
    forbid "$folder" '#include "solve/(Solution|Network|Bookings|ForwardRun|ReverseRun)\.h"' "see behind solve/Solver.h"
done
forbid cli '#include ["<]shell/' "include shell"
forbid cli '#include [<"]Q(Application|Widget|Dialog|MessageBox|MainWindow)' "open windows"
forbid shell '#include ["<]cli/' "include cli"
exit $status
