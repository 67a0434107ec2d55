#!/usr/bin/env bash
# Fails when a source file includes a folder to its right in the layer order.
set -eu
cd "$(dirname "$0")/.."
layers=(model solve persist charts reports transfer)
status=0
check() { # folder, then the folders that it may not include
    local folder=$1; shift
    [ -d "src/$folder" ] || return 0
    for other in "$@"; do
        if grep -rnE "#include [\"<]$other/" "src/$folder"; then
            echo "src/$folder must not include $other/" >&2
            status=1
        fi
    done
}
for ((i = 0; i < ${#layers[@]}; ++i)); do
    check "${layers[i]}" "${layers[@]:i+1}" shell cli
    if grep -rnE '#include <Q[A-Z]' "src/${layers[i]}" 2>/dev/null; then
        echo "src/${layers[i]} must not use the toolkit" >&2
        status=1
    fi
done
check paint shell cli
check cli shell
exit $status
