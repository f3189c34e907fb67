#!/usr/bin/env bash
# codepages_test.sh CODEPAGES PAGE: checks every code point with every converter. Nothing may be lost silently, and the
# tables must be those of the page, if it was made with the same version of ICU.
set -euo pipefail
described=$(mktemp)
trap 'rm -f "$described"' EXIT
"$1" "$2" >"$described"
made_with() { grep '^Made with ' "$1"; }
page=$(made_with "$2") here=$(made_with "$described")
[ "$page" = "$here" ] || { echo "no fault found; not compared with the tables. The page: $page Here: $here"; exit 0; }
diff "$2" "$described" || { echo "write it anew with ./dev codepages" >&2; exit 1; }
