#!/bin/sh
# Exports plans as Microsoft Project XML, imports them again, and compares what a solve leaves of both, byte for byte.
# Plans of which the export lists something that it leaves out are only exported. Each XML file is validated too, if CHECK
# names a program for that: it is given the file, and says what is wrong.
#
#   [CHECK="python3 check.py"] scripts/check_exchange.sh BUILD/vortan-cli PLAN.vta...
set -u
cli=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0 same=0 partly=0
for plan in "$@"; do
  "$cli" solve "$plan" --save "$work/before.vta" >/dev/null 2>&1
  if ! "$cli" convert "$plan" "$work/plan.xml" 2>"$work/lost"; then
    echo "$plan: not exported: $(head -1 "$work/lost")"
    failed=1
    continue
  fi
  if [ -n "${CHECK:-}" ] && ! $CHECK "$work/plan.xml"; then
    echo "$plan: not valid"
    failed=1
  fi
  if grep -q "All of it\|not part of the export\|passwords" "$work/lost"; then
    partly=$((partly + 1))
    continue
  fi
  "$cli" convert "$work/plan.xml" "$work/back.vta" 2>"$work/lost" || cat "$work/lost"
  "$cli" solve "$work/back.vta" --save "$work/after.vta" >/dev/null 2>&1
  if ! cmp -s "$work/before.vta" "$work/after.vta"; then
    echo "$plan: comes back otherwise: $(diff "$work/before.vta" "$work/after.vta" | head -2 | tail -1)"
    failed=1
  else
    same=$((same + 1))
  fi
done
echo "$same plans come back equal, $partly are exported in part"
exit $failed
