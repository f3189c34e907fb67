#!/usr/bin/env bash
# run_page.sh PROGRAM PAGE: runs the program made of a page in an empty folder; it must print the page's text blocks.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp --directory)
trap 'rm -rf "$work"' EXIT
awk -v language=text -v output="$work/expected" -f "$here/page.awk" "$2"
[ -s "$work/expected" ] || { echo "$2 does not say what its program prints"; exit 1; }
mkdir "$work/empty"
cd "$work/empty"
LC_ALL=C.UTF-8 "$1" | diff --unified ../expected -
