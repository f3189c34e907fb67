#!/usr/bin/env bash
# hardening.sh FILE...: checks that each binary has the protections against exploits. Examines the binaries, since a
# compiler flag may have had no effect.
set -euo pipefail

failures=0
# check WHAT PATTERN COMMAND...: checks that a line of the command's output matches.
check() {
  local output
  output=$("${@:3}")
  grep --quiet --extended-regexp "$2" <<<"$output" || { echo "$file: no $1"; failures=1; }
}

# Functions that other binaries can call and that do not begin with a landing pad (endbr64).
without_landing_pad() {
  objdump --disassemble --no-show-raw-insn "$1" |
    awk 'NR == FNR { exported[$1]; next }
         /^[0-9a-f]+ <.*>:$/ { name = substr($2, 2, length($2) - 3); first = name in exported; next }
         first { if ($2 != "endbr64") print name; else good++; first = 0 }
         END { if (!good) print "(no function found)" }' \
      <(nm --dynamic --defined-only "$1" | awk '$2 ~ /[TW]/ { print $3 }') -
}

[ $# -gt 0 ] || { echo "no file to check"; exit 1; }
for file; do
  check "read-only relocations" '^ +GNU_RELRO ' readelf --wide --segments "$file"
  check "immediate binding" 'FLAGS_1.*\<NOW\>' readelf --wide --dynamic "$file"
  check "stack without execution" 'GNU_STACK .* RW +0x' readelf --wide --segments "$file"
  check "stack protector" '\<__stack_chk_fail\>' nm --dynamic --undefined-only "$file"
  case $file in
    *.so*)
      check "mark for control-flow protection" 'IBT, SHSTK' readelf --wide --notes "$file"
      missing=$(without_landing_pad "$file")
      [ -z "$missing" ] || { echo "$file: functions without a landing pad: $missing"; failures=1; }
      ;;
    *) check "position independence" 'FLAGS_1.*\<PIE\>' readelf --wide --dynamic "$file" ;;
  esac
  case $file in # the others call nothing that could be fortified
    *libzrqardatainterfaces.so*) check "fortified call" '__[a-z_]+_chk@GLIBC' nm --dynamic --undefined-only "$file" ;;
  esac
done
exit "$failures"
