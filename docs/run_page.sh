#!/usr/bin/env bash
# run_page.sh PROGRAM PAGE [SOURCE]: runs the program of a page in an empty folder; it must print the page's text blocks.
# If the program is not made from the page, SOURCE is its source; the page must show all of it except blank lines.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT
awk -v language=text -v output="$work/expected" -f "$here/page.awk" "$2"
if [ $# -gt 2 ]; then
  awk -v language=cpp -v output="$work/shown" -f "$here/page.awk" "$2"
  sed '/^#line/d' "$work/shown" | diff --unified --ignore-blank-lines "$3" -
fi
[ -s "$work/expected" ] || { echo "$2 does not say what its program prints"; exit 1; }
mkdir "$work/empty"
cd "$work/empty"
LC_ALL=C.UTF-8 "$1" | diff --unified ../expected -
