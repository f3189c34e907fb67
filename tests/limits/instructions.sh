#!/usr/bin/env bash
# instructions.sh TRANSCODE: limits the number of instructions for each byte that the transforms of the local code page
# convert. A transform of named encodings, which reports losses, may need 2 % more for text without losses. The start of
# the program is not counted: converting once is subtracted from converting twice.
set -uo pipefail

# count WAY FROM TO SCRIPT TIMES: the instructions of a whole process
count() {
  local output
  output=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null "$transcode" "$@" 2>&1) &&
    sed -n 's/.*Collected : //p' <<<"$output" | grep -x '[0-9]*' && return
  echo "callgrind, of the package valgrind, does not run: $output" >&2
  return 1
}

# each WAY FROM TO SCRIPT: hundredths of an instruction for each byte
each() {
  local once twice
  once=$(count "$@" 1) && twice=$(count "$@" 2) && echo $(((twice - once) * 100 >> 20))
}

transcode=$1 failures=0
command -v valgrind >/dev/null || { echo 'skipped: valgrind is not installed'; exit 77; }
grep -qw avx2 /proc/cpuinfo && has_avx2=true || has_avx2=false
while read -r from to script with_avx2 without; do
  local_one=$(each local "$from" "$to" "$script") && named=$(each named "$from" "$to" "$script") || exit 1
  $has_avx2 && most=${with_avx2}0 || most=${without}0
  echo "$from to $to, $script: $local_one hundredths of an instruction, at most $most; named, $named"
  [ "$local_one" -gt 0 ] && [ "$local_one" -le "$most" ] || failures=$((failures + 1))
  [ "$named" -gt 0 ] && [ $((named * 100)) -le $((local_one * 102 + 100)) ] || failures=$((failures + 1)) # rounded
done <<END
ISO-8859-1 UTF-8 ascii 10 10
ISO-8859-1 UTF-8 western 29 45
KOI8-R UTF-8 cyrillic 86 86
Shift_JIS UTF-8 japanese 128 128
UTF-8 KOI8-R cyrillic 67 125
UTF-8 UTF-16LE emoji 58 300
END
exit $failures
