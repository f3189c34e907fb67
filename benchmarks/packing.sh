#!/usr/bin/env bash
# packing.sh PACK [DIRECTORY]: measures the time that the example takes to pack a directory, relative to bsdtar. Both
# run in turns, seven times, with archives in memory. Prints the median ratio, and the smallest and the largest one.
set -euo pipefail
pack=$(realpath "$1") directory=$(realpath "${2:-/usr/share/doc}")
archives=$(mktemp --directory --tmpdir=/dev/shm)
trap 'rm -rf "$archives"' EXIT

# microseconds COMMAND...
microseconds() {
  local start=${EPOCHREALTIME/./}
  "$@" 2>/dev/null
  echo $((${EPOCHREALTIME/./} - start))
}

for round in {0..7}; do
  ours=$(microseconds "$pack" "$directory" "$archives/ours.tar")
  theirs=$(microseconds bsdtar -cf "$archives/theirs.tar" -C "$directory" .)
  [ "$round" = 0 ] || awk "BEGIN { printf \"%.2f\n\", $ours / $theirs }"  # the first one fills the cache
done | sort -n | awk '{ ratio[NR] = $1 } END { print ratio[4] " (" ratio[1] " to " ratio[NR] ")" }'
