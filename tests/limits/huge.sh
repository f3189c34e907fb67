#!/usr/bin/env bash
# huge.sh QARREAD HUGE: tests texts of more than 2 GiB. Needs 7 GiB of memory and 7 GiB of disk, too much for every run.
set -eu  # not pipefail: `head` ends endless commands by SIGPIPE
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
page=de_DE.ISO-8859-1 length=$(((1 << 31) + 12345))

# One letter in a hundred is not ASCII.
yes "$(printf '%*s' 99 '' | tr ' ' a)" | tr '\n' '\351' | head -c $length >"$work/x.lcp"
"$1" --locale $page --lcp-to-utf8 lcp "$work/x.lcp" >"$work/x.utf8"
[ "$(stat --format=%s "$work/x.utf8")" = $((length + length / 100)) ]
"$1" --locale $page --utf8-to-lcp utf8 "$work/x.utf8" | cmp - "$work/x.lcp"
echo 'right: more than 2 GiB of ISO-8859-1 to UTF-8, and back'
"$2"
