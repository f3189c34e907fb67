#!/usr/bin/env bash
# Checks that the example in the README is the compiled program, and that it works:
# readme_test.sh README SOURCE PROGRAM
set -euo pipefail
program=$(realpath "$3")
# shellcheck disable=SC2016  # the quotes are those of the README
sed -n '/^```cpp$/,/^```$/p' "$1" | sed '/^```/d' | diff - "$2"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
printf 'Gr\xfc\xdfe\n' >notes.txt
LC_ALL=de_DE.ISO-8859-1 "$program" | diff - <(printf 'Gr\xc3\xbc\xc3\x9fe\n')
