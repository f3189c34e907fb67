#!/usr/bin/env bash
# Makes files of all kinds and reads them with the program qarread. If the folder PACKING of the packing programs is
# given, packs and unpacks the files, too: examples/demo.sh PROGRAM [PACKING]
set -euo pipefail
program=$(realpath "$1") packing=${2:+$(realpath "$2")}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

heading='' normal=''
if [ -t 1 ] && [ -z "${NO_COLOR:-}" ] && [ "${TERM:-dumb}" != dumb ]; then heading=$'\e[1m' normal=$'\e[0m'; fi

qarread() { "$program" "$@"; }
pack() { "$packing/pack" "$@"; }
unpack() { "$packing/unpack" "$@"; }
list() { "$packing/list" "$@"; }

say() { printf '\n%s%s%s\n' "$heading" "$1" "$normal"; }

# show STATUS COMMAND: prints the command, runs it, and stops if its exit status is another one.
show() {
  local status=0
  echo "\$ $2"
  eval "$2" 2>&1 || status=$?
  [ "$status" = "$1" ] || { echo "demo: exit status $status instead of $1" >&2; exit 1; }
}

mkdir -p app/text app/sjis
echo 'Plain files come out as they are.' >app/README
head -c 300000 /dev/zero >app/data.bin
: >app/empty.txt
ln -s README app/current
ln -s releases/2 app/dangling
printf 'Gr\xfc\xdfe aus K\xf6ln, 5 \xb0C\n' >app/text/greeting.txt    # Latin-1
printf 'Crème brûlée 4 £\n' >app/text/menu.utf8
printf 'Crème brûlée 4 €\n' >app/text/price.utf8                     # Latin-1 has no euro sign
printf '\x93\xfa\x96\x7b\x8c\xea\n' >app/sjis/language.txt           # Shift_JIS
printf '\x93\xfa\xff\x96\x7b\n' >app/sjis/broken.txt                 # FF is malformed

say 'The reader and the transform of each path. The local code page is Latin-1.'
latin1='--locale en_US.ISO-8859-1 --lcp-to-utf8 txt --utf8-to-lcp utf8'
show 1 "qarread $latin1 -r --stat app/README app/current app/dangling app/data.bin app/empty.txt app/text app/missing"

say 'The content of a plain file; and of a link, which is its target, whether that exists or not.'
show 0 'qarread app/README'
show 0 "qarread app/dangling | od -A n -t x1z -w24"

say 'Latin-1 becomes UTF-8.'
show 0 'od -A n -t x1z -w24 app/text/greeting.txt'
show 0 "qarread $latin1 app/text/greeting.txt"

say 'UTF-8 becomes Latin-1. What Latin-1 lacks is replaced, and the library says so.'
show 0 "qarread $latin1 app/text/menu.utf8 | od -A n -t x1z -w24"
show 0 "qarread $latin1 app/text/price.utf8 | od -A n -t x1z -w24"

say 'What a conversion would lose, and where. Check this before packaging.'
show 1 "qarread $latin1 --check app/text/menu.utf8 app/text/price.utf8"

say 'The same with Shift_JIS, and with messages in Japanese.'
sjis='--locale ja_JP.SJIS --lcp-to-utf8 txt'
show 1 "qarread $sjis -r --stat app/sjis app/missing"
show 0 "qarread $sjis app/sjis/language.txt app/sjis/broken.txt"

say 'The entries of an archive catalogue, in its order.'
show 0 "qarread $sjis -r --catalogue app"

[ -n "$packing" ] || exit 0
rm -r app/sjis

say 'Pack on a system with the code page Latin-1. In the archive, text is UTF-8.'
show 0 'pack --locale de_DE.ISO-8859-1 --lcp-to-utf8 txt --macro HOME=/opt/app app app.tar.gz'
show 0 'list app.tar.gz'

say 'Unpack on a system with the code page CP850: iconv gives the same text, and other files are unchanged.'
show 0 'unpack --locale de_DE.CP850 --utf8-to-lcp txt app.tar.gz unpacked'
show 0 'od -A n -t x1z -w24 unpacked/text/greeting.txt'
show 0 'iconv -f ISO-8859-1 -t CP850 app/text/greeting.txt | cmp - unpacked/text/greeting.txt'
show 1 'diff -r --brief --no-dereference app unpacked'
