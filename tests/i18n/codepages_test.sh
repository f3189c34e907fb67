#!/usr/bin/env bash
# codepages_test.sh CODEPAGES PAGE: every code point through every converter. Nothing is lost in silence, and what is
# kept is what the page says.
set -euo pipefail
described=$(mktemp)
trap 'rm -f "$described"' EXIT
"$1" "$2" >"$described"
diff "$2" "$described" || { echo "write it anew with ./dev codepages" >&2; exit 1; }
