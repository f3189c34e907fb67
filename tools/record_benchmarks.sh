#!/usr/bin/env bash
# record_benchmarks.sh BUILD: runs the benchmarks of the build tree and updates the table and the picture of
# docs/performance.md.
set -euo pipefail
[ $# = 1 ] || { echo "usage: tools/record_benchmarks.sh BUILD" >&2; exit 2; }
tools=$(cd "$(dirname "$0")" && pwd)
docs=$tools/../docs
work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT
{
  echo
  echo "$(date -u +%F), $(nproc) processors, $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1), Linux $(uname -r)."
  echo
  "$1/benchmarks/zrqar_bench" '' "$work/speeds.csv"
  echo
} | tee "$work/table.md"
awk -f "$tools/speed_picture.awk" "$work/speeds.csv" >"$work/speed.svg"
cp "$work/speed.svg" "$docs/speed.svg"
sed -i -e '/^<!-- table:/,/^<!-- end of table/{/^<!--/!d}' -e "/^<!-- table:/r $work/table.md" "$docs/performance.md"
