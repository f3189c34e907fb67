#!/usr/bin/env bash
# instructions.sh TRANSCODE: what the processor executes for each byte of a mebibyte that is converted to UTF-8. The
# start of the program is left out: it is that of converting twice without that of converting once.
set -uo pipefail

# count SCRIPT ENCODING TIMES
count() {
  local output
  output=$(valgrind --tool=callgrind --callgrind-out-file=/dev/null "$transcode" "$@" 2>&1) &&
    sed -n 's/.*Collected : //p' <<<"$output" | grep -x '[0-9]*' && return
  echo "callgrind, of the package valgrind, does not run: $output" >&2
  return 1
}

transcode=$1 failures=0
command -v valgrind >/dev/null || { echo 'skipped: valgrind is not installed'; exit 77; }
while read -r script encoding tenths; do
  once=$(count "$script" "$encoding" 1) && twice=$(count "$script" "$encoding" 2) || exit 1
  each=$(((twice - once) * 100 >> 20))
  echo "$script in $encoding: $each hundredths of an instruction, at most ${tenths}0"
  [ $each -gt 0 ] && [ $each -le "${tenths}0" ] || failures=$((failures + 1))
done <<END
ascii ISO-8859-1 10
western ISO-8859-1 45
cyrillic KOI8-R 86
japanese Shift_JIS 200
END
exit $failures
