#!/usr/bin/env bash
# exports.sh [--update] LIBRARY LIST: compares the dynamic symbols that LIBRARY defines, including weak and data
# symbols, with LIST, and shows the difference; --update writes LIST. A version after a name in LIST, that in which the
# name was added, is kept.
set -euo pipefail

exported() {
  nm --dynamic --defined-only --format=just-symbols "$1" | LC_ALL=C sort
}

if [ "$1" = --update ]; then
  exported "$2" | awk 'NR == FNR { line[$1] = $0; next } { print $1 in line ? line[$1] : $1 }' "$3" - >"$3.new"
  mv "$3.new" "$3"
else
  [ -s "$2" ] || { echo "$2 is empty" >&2; exit 1; }
  exported "$1" | diff --unified <(cut --delimiter=" " --fields=1 "$2") - | c++filt
fi
