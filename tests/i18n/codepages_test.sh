#!/usr/bin/env bash
# codepages_test.sh CODEPAGES PAGE: every code point through every converter. Nothing is lost in silence, and what is
# kept is what the page says, of the ICU that it is for.
set -euo pipefail
described=$(mktemp)
trap 'rm -f "$described"' EXIT
"$1" >"$described"
made_with() { sed -n 's/^Made with \(ICU [0-9]*\).*/\1/p' "$1"; }
page=$(made_with "$2") here=$(made_with "$described")
[ -n "$page" ] && [ -n "$here" ] || { echo "a table does not say which ICU it is for" >&2; exit 1; }
[ "$page" = "$here" ] || { echo "no fault found; not compared with the table, which is for $page: this is $here"; exit 0; }
diff "$2" "$described" || { echo "write it anew with ./dev codepages" >&2; exit 1; }
