#!/usr/bin/env bash
# fuzz.sh BUILD SECONDS [TARGET...]: runs each fuzzer of the build tree for this time, one on each processor at a time.
# A fuzzer starts with its corpus and the inputs that it found before. An input that makes it fail is printed and kept
# in BUILD/found.
set -euo pipefail
[[ $# -ge 2 && $2 =~ ^[1-9][0-9]*$ ]] || { echo "usage: tools/fuzz.sh BUILD SECONDS [TARGET...]" >&2; exit 2; }
export build=$1 seconds=$2 corpora
corpora=$(dirname "$0")/../fuzz/corpus
shift 2
[ $# -gt 0 ] || { cd "$corpora" && set -- * && cd "$OLDPWD"; }

# Recording the stacks of all allocations and a large quarantine of freed memory would halve the speed. Leaks are
# detected when the tests under AddressSanitizer replay the corpora.
export ASAN_OPTIONS=malloc_context_size=0:quarantine_size_mb=4:detect_leaks=0
export LC_ALL=C TMPDIR
TMPDIR=$(mktemp --directory /dev/shm/zrqar.XXXXXX)
trap 'rm -rf "$TMPDIR"' EXIT

fuzz() {
  local target=$1 log=$build/$1.log longest=256
  [ "$target" != unpacking ] || longest=4096
  mkdir -p "$build/found/$target"
  if "$build/fuzz/fuzz_$target" -max_total_time="$seconds" -timeout=60 -max_len="$longest" -entropic=0 -detect_leaks=0 \
    -print_final_stats=1 -artifact_prefix="$build/found/$target-" "$build/found/$target" "$corpora/$target" >"$log" 2>&1; then
    awk -v target="$target" '/_executed_units:/ { all = $2 } /average_exec_per_sec:/ { each = $2 }
      END { printf "%-12s %9d executions, %6d per second\n", target, all, each }' "$log"
    return
  fi
  tail -n 60 "$log"
  sed -n 's/.*Test unit written to //p' "$log" | while read -r input; do
    printf '\n%s\nTo run it again: %s %s\nIts bytes:\n' "$input" "$build/fuzz/fuzz_$target" "$input"
    od -An -v -tx1 "$input"
  done
  return 1
}
export -f fuzz
# shellcheck disable=SC2016 # the other shell expands it
printf '%s\n' "$@" | xargs --max-procs="$(nproc)" --max-args=1 bash -c 'fuzz "$1"' fuzz
