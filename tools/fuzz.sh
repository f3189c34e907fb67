#!/usr/bin/env bash
# fuzz.sh BUILD SECONDS: lets each fuzzer of the build tree run for that long, from its corpus and from what it has found
# before. What makes one fail is left in BUILD/found.
set -euo pipefail
[[ $# = 2 && $2 =~ ^[1-9][0-9]*$ ]] || { echo "usage: tools/fuzz.sh BUILD SECONDS" >&2; exit 2; }
build=$1 seconds=$2
for corpus in "$(dirname "$0")"/../fuzz/corpus/*; do
  target=$(basename "$corpus")
  mkdir -p "$build/found/$target"
  echo "$target"
  LC_ALL=C TMPDIR=/dev/shm "$build/fuzz/fuzz_$target" -max_total_time="$seconds" -print_final_stats=1 -max_len=4096 \
    -artifact_prefix="$build/found/" "$build/found/$target" "$corpus" 2>"$build/$target.log" ||
    { tail -n 40 "$build/$target.log"; exit 1; }
  grep -E 'number_of_executed_units|DONE' "$build/$target.log"
done
