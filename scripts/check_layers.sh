#!/usr/bin/env bash
# Fails when a source file includes a folder to its right in the order of layers, or of rooms of the desktop, or what
# its layer must not use; and when there is a folder that this script does not know.
set -eu
cd "$(dirname "$0")/.."
core=(model solve persist charts reports transfer help)
layers=("${core[@]}" paint)
programs=(shell cli)
rooms=(desk widgets forms entry trees pages problems help main)
status=0
# forbid <folder> <pattern of a line> <what is wrong with it>
forbid() {
    if grep -rnE "$2" "src/$1"; then
        echo "src/$1 must not $3" >&2
        status=1
    fi
}
# known <folder> <names>: all folders there, and no others
known() {
    local folder=$1
    shift
    if ! diff <(printf '%s\n' "$@" | sort) <(find "$folder" -mindepth 1 -maxdepth 1 -type d -printf '%f\n' | sort) >&2; then
        echo "$folder has other folders than those whose order is known" >&2
        status=1
    fi
}
known src "${layers[@]}" "${programs[@]}"
known src/shell "${rooms[@]}"
for ((i = 0; i < ${#layers[@]}; ++i)); do
    for other in "${layers[@]:i+1}" "${programs[@]}"; do
        forbid "${layers[i]}" "#include [\"<]$other/" "include $other"
    done
done
for ((i = 0; i < ${#rooms[@]}; ++i)); do
    for other in "${rooms[@]:i+1}"; do
        forbid "shell/${rooms[i]}" "#include [\"<]shell/$other/" "include shell/$other"
    done
done
for folder in "${core[@]}"; do
    forbid "$folder" '#include [<"]Q[A-Z]' "use the toolkit"
done
for folder in persist charts reports transfer paint shell cli; do
    forbid "$folder" '#include "solve/(Solution|Network|Bookings|ForwardRun|ReverseRun)\.h"' "see behind solve/Solver.h"
done
for folder in "${layers[@]}" "${programs[@]}"; do
    [ "$folder" = reports ] || forbid "$folder" '#include [<"]xlsxwriter' "make workbooks itself"
done
if grep -nE '#include [<"](xlsxwriter|reports/xlsx/)' src/reports/*.{h,cpp}; then
    echo "src/reports must not use src/reports/xlsx or what is behind it" >&2
    status=1
fi
for folder in "${layers[@]}" "${programs[@]}"; do
    [ "$folder" = transfer ] || forbid "$folder" '#include [<"]pugixml' "read XML itself"
done
forbid cli '#include ["<]shell/' "include shell"
if grep -nE '#include [<"](Q[A-Z]|paint/|reports/xlsx/)' src/cli/*.{h,cpp}; then
    echo "src/cli must not use what src/cli/output is there to load" >&2
    status=1
fi
forbid cli '#include [<"]Q(Application|Widget|Dialog|MessageBox|MainWindow)' "open windows"
forbid shell '#include ["<]cli/' "include cli"
exit $status
