#!/usr/bin/env bash
# exports.sh [--update] LIBRARY LIST: fails unless the dynamic symbols that LIBRARY defines, weak and data ones
# included, are those in LIST, and shows the difference; or writes LIST anew.
set -euo pipefail

exported() {
  nm --dynamic --defined-only --format=just-symbols "$1" | LC_ALL=C sort
}

if [ "$1" = --update ]; then
  exported "$2" >"$3"
else
  [ -s "$2" ] || { echo "$2 is empty" >&2; exit 1; }
  exported "$1" | diff --unified "$2" - | c++filt
fi
