#!/usr/bin/env bash
# exports.sh [--update] LIBRARY LIST: fails unless the dynamic symbols that LIBRARY defines, weak and data ones
# included, are those in LIST, and shows the difference; or writes LIST anew. What stands behind a name in LIST, the
# version in which it came if that was not the first, is left alone.
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
