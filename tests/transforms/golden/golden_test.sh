#!/usr/bin/env bash
# golden_test.sh QARREAD PAGE: real text in a code page, through a factory with both transforms; once as it is, and once
# so long that it has many blocks, which end anywhere.
set -uo pipefail
program=$(realpath "$1") golden=$(cd "$(dirname "$0")" && pwd) page=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
for kind in lcp utf8; do
  cp "$golden/$page.$kind" "short.$kind"
  { cat short.$kind; for odd in x xx xxx xxxx; do cat short.$kind; printf %s $odd; done; } >"long.$kind"
  for _ in {1..8}; do cat "long.$kind" "long.$kind" >twice && mv twice "long.$kind"; done
done
failures=0
for length in short long; do
  for kinds in lcp:utf8 utf8:lcp; do
    from=${kinds%:*} to=${kinds#*:}
    "$program" --locale "en.$page" --lcp-to-utf8 lcp --utf8-to-lcp utf8 "$length.$from" >found 2>notices &&
      cmp found "$length.$to" && [ ! -s notices ] && [ "$(stat --format=%s found)" -gt 40 ] ||
      { echo "FAILED: $length text from $from to $to in $page"; failures=$((failures + 1)); }
  done
done
exit $failures
