#!/usr/bin/env bash
# Tests of the example program from the command line: tests/qarread/qarread_test.sh PROGRAM DEMO
# shellcheck disable=SC2002,SC2053,SC2059,SC2086  # patterns, formats and lists of arguments are in variables
set -uo pipefail
program=$(realpath "$1") demo=$(realpath "$2") manual=$(realpath "$(dirname "$0")/../../docs/qarread.1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/files" && cd "$work/files" || exit 1
unset LC_ALL LC_CTYPE LANG LANGUAGE POSIXLY_CORRECT
failures=0

wrong() {
  echo "FAILED: $case: $1"
  failures=$((failures + 1))
}

# expect STATUS OUTPUT ERRORS ARGUMENT...: OUTPUT is a printf format, compared byte by byte; ERRORS is a pattern.
expect() {
  local status=0 wanted=$1 output=$2 errors=$3
  shift 3
  case="qarread $*"
  "${with[@]}" "$program" "$@" >"$work/out" 2>"$work/err" </dev/null || status=$?
  [ $status = "$wanted" ] || wrong "exit status $status instead of $wanted"
  printf "$output" | cmp - "$work/out" || wrong "output: $(cat -v "$work/out")"
  [[ $(<"$work/err") == $errors ]] || wrong "errors: $(cat -v "$work/err")"
}
with=(env)

# table ERRORS STATUS ROWS ARGUMENT...: ROWS are the lines of --stat without the header, with single blanks.
table() {
  local status=0 errors=$1 wanted=$2 rows=$3
  shift 3
  case="qarread --stat $*"
  "$program" --stat "$@" >"$work/out" 2>"$work/err" </dev/null || status=$?
  [ $status = "$wanted" ] || wrong "exit status $status instead of $wanted"
  [ "$(sed 1d "$work/out" | tr -s ' ')" = "$rows" ] || wrong "rows: $(cat -v "$work/out")"
  [[ $(<"$work/err") == $errors ]] || wrong "errors: $(cat -v "$work/err")"
}

# The content is exact: NUL bytes, text that is not UTF-8, chunks of any size.
for byte in {0..255}; do printf "\\x$(printf %x "$byte")"; done >bytes
cat bytes <(seq 100000) bytes >long
: >empty.txt
ln -s nowhere/at/all dangling
for chunk in 1 255 65536 65537 9999999; do
  case="--chunk $chunk"
  "$program" --chunk $chunk bytes empty.txt bytes | cmp - <(cat bytes bytes) || wrong 'content'
  "$program" --chunk $((chunk + 99)) long long | cmp - <(cat long long) || wrong 'long content'
done
expect 0 nowhere/at/all '' --chunk 2 dangling

# Code pages; the library's notices never mix with the content.
printf 'Gr\xfc\xdfe\n' >latin1.txt
printf '\x93\xfa\x96\x7b\x8c\xea\n' >sjis.txt
printf '\x93\xfa\xff\n' >broken.txt
printf '日本語\n' >utf8.log
printf 'brûlée €4\n' >euro.log
latin1='--locale de_DE.ISO-8859-1' sjis='--locale ja_JP.SJIS'
expect 0 'Gr\xc3\xbc\xc3\x9fe\n' '' $latin1 --lcp-to-utf8 txt latin1.txt
expect 0 'Gr\xc3\xbc\xc3\x9fe\n' '' $latin1 --chunk 1 --lcp-to-utf8 md,.txt latin1.txt empty.txt
expect 0 'Gr\xfc\xdfe\n' '' $latin1 --lcp-to-utf8 TXT,xt latin1.txt
expect 0 '日本語\n' '' $sjis --lcp-to-utf8 txt sjis.txt
expect 0 '\x93\xfa\x96\x7b\x8c\xea\n' '' $sjis --utf8-to-lcp log utf8.log
expect 0 '日�\n日本語\n' 'qarread: broken.txt: Invalid character was detected.' $sjis --lcp-to-utf8 txt broken.txt sjis.txt
expect 0 'br\xfbl\xe9e ?4\n' 'qarread: euro.log: Invalid character was detected.' $latin1 --utf8-to-lcp log euro.log
expect 2 '' $'qarread: the locale de_DE.nonsense: The encoding "nonsense" is refused: *\nusage: *' --locale de_DE.nonsense --lcp-to-utf8 txt latin1.txt
expect 2 '' $'qarread: the locale *: The encoding "a\\?\\?\\?\\? ~" is refused: *\nusage: *' --locale $'de_DE.a\e\x7f\xc3\xa9 ~' --lcp-to-utf8 txt latin1.txt
with=(env LC_ALL=de_DE.ISO-8859-1)
expect 0 'Gr\xc3\xbc\xc3\x9fe\n' '' --lcp-to-utf8 txt latin1.txt
with=(env)

# The table: which reader, which transform, the first registration wins.
table 'qarread: euro.log: Invalid*' 0 "link - 14 14 ok dangling
transform lcp-to-utf8 6 8 ok latin1.txt
transform utf8-to-lcp 14 10 ok euro.log
plain - 256 256 ok bytes" $latin1 --lcp-to-utf8 txt --utf8-to-lcp log,txt dangling latin1.txt euro.log bytes
ln -s latin1.txt link.txt
table '' 0 'transform lcp-to-utf8 6 8 ok link.txt' $latin1 --runtime --lcp-to-utf8 txt link.txt
table '' 0 'link - 10 10 ok link.txt' $latin1 --lcp-to-utf8 txt link.txt

# Encodings by name, and refused conversions: no content of a failed path is written.
expect 0 'br\xfbl\xe9e ?4\n' 'qarread: euro.log: UTF-8 to ISO-8859-1: 0 malformed, 1 not in the code page, first at byte 9' \
  --transcode UTF-8:ISO-8859-1:txt,log --transcode UTF-8:UTF-16LE:log euro.log
expect 0 'br\xfbl\xe9e \x804\n' '' --strict --transcode UTF-8:CP1252:log --utf8-to-lcp log euro.log
lost='cannot be converted (utf8-to-lcp: 0 malformed, 1 not in the code page, first at byte 9)'
expect 1 'Gr\xfc\xdfe\n' "qarread: euro.log: $lost" $latin1 --strict --utf8-to-lcp log --chunk 1 euro.log latin1.txt
expect 1 '' 'qarread: broken.txt: cannot be converted (lcp-to-utf8: 1 malformed, *' $sjis --strict --lcp-to-utf8 txt broken.txt
table "qarread: euro.log: $lost" 1 'transform utf8-to-lcp 14 - transform_failed euro.log' $latin1 --strict --utf8-to-lcp log euro.log
table '' 0 'transform UTF-8 to CP1252 14 10 ok euro.log' --transcode UTF-8:CP1252:log euro.log
printf '\xff\xfe' >mark.txt
for arguments in '' --strict --check; do
  expect 1 '' 'qarread: mark.txt: cannot be converted (UTF-16 to UTF-8: the result is empty)' \
    $arguments --transcode UTF-16:UTF-8:txt mark.txt
done
expect 1 '' 'qarread: mark.txt: cannot be converted (lcp-to-utf8: the result is empty)' \
  --locale de_DE.UTF-16 --lcp-to-utf8 txt mark.txt

# Losses; and a file that does not come back byte for byte although nothing is lost.
printf '\xed\x40\n' >twice.txt
expect 0 'latin1.txt: comes back byte for byte\nempty.txt: comes back byte for byte\n' '' \
  --check $latin1 --lcp-to-utf8 txt latin1.txt bytes dangling empty.txt
cp euro.log path.qvz
expect 1 '' 'qarread: path.qvz: cannot be checked, since its path is converted instead of its content' \
  --check --transcode UTF-8:KOI8-R:qvz path.qvz
expect 0 'path.qvz' '' --transcode UTF-8:KOI8-R:qvz path.qvz
expect 0 '' 'qarread: nothing is converted, so nothing is lost' --check --transcode UTF-8:KOI8-R:text bytes latin1.txt
expect 1 '' 'qarread: missing: The file "missing" does not exist. (No such file or directory)' --check missing
expect 1 'euro.log:1:8: U+20AC is not in ISO-8859-1\neuro.log: does not come back byte for byte\n' \
  'qarread: missing: *' --check --strict $latin1 --utf8-to-lcp log euro.log missing
expect 0 'twice.txt: does not come back byte for byte\n' '' --check --transcode SHIFT_JIS:UTF-8:txt twice.txt
# Characters that share bytes, and two characters from one code.
printf '+AOBDIwDpAOkOAdg9-z+2AE-\n' >base64.txt
expect 1 'base64.txt:1:1: U+00E0 is not in KOI8-R\nbase64.txt:1:2: U+4323 is not in KOI8-R
base64.txt:1:3: U+00E9 is not in KOI8-R\nbase64.txt:1:4: U+00E9 is not in KOI8-R
base64.txt:1:5: U+0E01 is not in KOI8-R\nbase64.txt:1:6: U+D83D is not in KOI8-R
base64.txt:1:8: U+D801 is not in KOI8-R\nbase64.txt: does not come back byte for byte\n' '' \
  --check --transcode UTF-7:KOI8-R:txt base64.txt
printf 'a\x88\x62\xff' >hong_kong.txt
expect 1 'hong_kong.txt:1:2: U+00CA is not in ISO-2022-JP\nhong_kong.txt:1:3: U+0304 is not in ISO-2022-JP
hong_kong.txt:1:4: FF is malformed in BIG5-HKSCS\nhong_kong.txt: does not come back byte for byte\n' '' \
  --check --transcode BIG5-HKSCS:ISO-2022-JP:txt hong_kong.txt
with=(env LC_ALL=ja_JP.SJIS)
expect 1 'broken.txt:1:2: FF is malformed in SJIS\nbroken.txt: does not come back byte for byte\n' '' \
  --check --lcp-to-utf8 txt broken.txt
with=(env)
expect 0 '{"path":"bytes","reader":"plain","transform":null,"in":256,"out":256,"status":"ok"}\n' '' --json --stat bytes
expect 1 '{"path":"mark.txt","reader":"transform","transform":"UTF-16 to UTF-8","in":2,"out":null,"status":"transform_failed","reversible":null,"losses":null}\n' '*' --json --check --transcode UTF-16:UTF-8:txt mark.txt

# Each path that fails has one line of errors, and the others are still read.
mkdir dir
ln -s /proc/self/mem unreadable.txt
long_name=$(printf 'x%.0s' {1..300})
expect 1 'nowhere/at/allGr\xfc\xdfe\n' 'qarread: missing: The file "missing" does not exist. (No such file or directory)
qarread: dir: "dir" is neither a regular file nor a symbolic link.
qarread: x*x: cannot be examined (File name too long)' dangling missing dir "$long_name" latin1.txt
expect 1 '' 'qarread: dir: The file "dir" cannot be opened: * (Is a directory)' --runtime dir
expect 1 '' 'qarread: /proc/self/mem: cannot be read (Input/output error)' /proc/self/mem
expect 1 '' 'qarread: unreadable.txt: cannot be read (Input/output error)' --runtime --lcp-to-utf8 txt unreadable.txt
expect 1 '' 'qarread: /proc/self/exe: the target of the link cannot be read (Invalid argument)' /proc/self/exe
table '*' 1 '- - - - QARDATAINTERFACES_FILE_NOT_EXIST missing
- - - - QARDATAINTERFACES_FILE_NOT_EXIST \xFF
plain - 0 - not_good /proc/self/mem
plain - 256 256 ok bytes' missing $'\xff' /proc/self/mem bytes

# A socket is only opened if it is standard input, which may be closed.
python3 -c 'import socket; socket.socket(socket.AF_UNIX).bind("socket")'
case='closed standard input'
"$program" --runtime socket 2>"$work/err" <&- && wrong 'exit status'
grep -q '(No such device or address)$' "$work/err" || wrong "errors: $(cat -v "$work/err")"

# Standard input, and paths from files.
case='standard input'
cat long | "$program" - | cmp - long || wrong 'content'
[ "$({ printf a; sleep 0.1; printf b; } | "$program" -)" = ab ] || wrong 'in two pieces'
[ "$("$program" - <sjis.txt --stdin-name x.y/z.txt --transcode SHIFT_JIS:UTF-8:txt)" = 日本語 ] || wrong 'converted'
rows=$(cat long | "$program" --stat - dangling - | tr -s ' ' | cut -d ' ' -f 3-4 | tail -n +2)
[ "$rows" = "$(stat -c '%s %s' long)"$'\n14 14\n0 0' ] || wrong "sizes: $rows"
[ "$("$program" --catalogue - --stdin-name a/b <bytes)" = 'plain      a/b' ] || wrong 'catalogue'
"$program" --check --transcode UTF-8:ISO-8859-1:md --stdin-name x.md - <euro.log >"$work/out" && wrong 'succeeded'
[ "$(head -n 1 "$work/out")" = 'x.md:1:8: U+20AC is not in ISO-8859-1' ] || wrong "$(<"$work/out")"
"$program" - bytes </ >"$work/out" 2>"$work/err" && wrong 'a directory'
[ "$(<"$work/err")" = 'qarread: -: cannot be read (Is a directory)' ] && cmp bytes "$work/out" || wrong "$(<"$work/err")"
"$program" - <&- 2>/dev/null && wrong 'closed'
printf 'latin1.txt\0missing\0\0-\0latin1.txt' >"$work/list"
expect 1 'Gr\xfc\xdfe\nGr\xfc\xdfe\n' 'qarread: missing: *'$'\n''qarread: : *' --files0-from "$work/list"
case='names from standard input'
"$program" --files0-from - <"$work/list" >"$work/out" 2>"$work/err" && wrong 'succeeded'
[[ $(<"$work/err") == *'qarread: -: '* && $(wc -l <"$work/err") = 3 && $(wc -l <"$work/out") = 2 ]] || wrong "$(<"$work/err")"
expect 1 '' 'qarread: nowhere: No such file or directory' --files0-from nowhere
expect 1 '' 'qarread: /: Is a directory' --files0-from /
expect 0 '' '' --files0-from empty.txt

# Files whose size is reported as 0, read in chunks and whole; the second one is large.
case='sizeless'
for path in /proc/devices /proc/kallsyms; do
  "$program" "$path" | cmp - "$path" || wrong "$path in chunks"
  ln -sf "$path" sizeless.txt
  "$program" --runtime $latin1 --lcp-to-utf8 txt sizeless.txt | cmp - "$path" || wrong "$path whole"
done

# Output that fails.
case='/dev/full'
for arguments in bytes '--stat bytes' '--json --check bytes' '--catalogue bytes' --help --version; do
  "$program" $arguments >/dev/full 2>"$work/err" && wrong "$arguments succeeded"
  [ "$(<"$work/err")" = 'qarread: standard output: No space left on device' ] || wrong "$arguments: $(<"$work/err")"
done
case='closed pipe'
{ "$program" long long; echo $? >"$work/status"; } 2>"$work/err" | head -c 1 >/dev/null
[ "$(<"$work/status") $(<"$work/err")" = '141 ' ] || wrong "$(<"$work/status") $(<"$work/err")"
(trap '' PIPE; "$program" long long; echo $? >"$work/status") 2>"$work/err" | head -c 1 >/dev/null
[ "$(<"$work/status") $(<"$work/err")" = '1 ' ] || wrong "with SIGPIPE ignored: $(<"$work/status") $(<"$work/err")"
"$program" bytes >&- 2>/dev/null && wrong 'closed output'
case='output that takes a part only'
(trap '' XFSZ; ulimit -f 100; "$program" --chunk 9999999 long >"$work/out" 2>/dev/null) && wrong 'succeeded'
cmp <(head -c 102400 long) "$work/out" || wrong 'content'

# Too little memory.
if [ -z "${SANITIZED:-}" ]; then  # sanitizers reserve more than the limit
  case='memory'
  truncate -s 1G large.txt
  (ulimit -v 200000; "$program" $latin1 --lcp-to-utf8 txt large.txt bytes >"$work/out" 2>"$work/err") && wrong 'succeeded'
  cmp bytes "$work/out" || wrong 'content'
  [ "$(<"$work/err")" = 'qarread: large.txt: not enough memory' ] || wrong "$(<"$work/err")"
  yes 'plain text' | head -c 60000000 >text.txt
  for limit in {120000..260000..10000}; do  # runs out of memory in reading or in converting, or succeeds
    (ulimit -v "$limit"; "$program" --check --transcode UTF-8:KOI8-R:txt text.txt >"$work/out" 2>"$work/err") ||
      [ "$(<"$work/err")" = 'qarread: text.txt: not enough memory' ] || wrong "$limit: $(<"$work/err")"
  done
  (ulimit -v 200000; "$program" --chunk 999999999 bytes 2>"$work/err") && wrong 'succeeded'
  [ "$(<"$work/err")" = 'qarread: there is not enough memory' ] || wrong "$(<"$work/err")"
fi

# The command line.
for arguments in '' --bad -x -rx -r '--chunk bytes' '--chunk' '--chunk= 1 bytes' '--stat --catalogue bytes' \
  '--check --stat bytes' '--json bytes' '--json --catalogue bytes' '--files0-from - bytes' '--transcode UTF-8:KOI8-R bytes' \
  '--transcode :UTF-8:txt bytes' '--transcode UTF-8:no-such-page:txt bytes' '--transcode UTF-8:KOI8-R: bytes' \
  --locale={nonsense,xx_XX.UTF-8,de_XX,de_DE.foo,/,.UTF-8,@}' bytes' '--stdin-name= -' '--json=1 --stat bytes' \
  '--lcp-to-utf8 a,,b bytes' '--lcp-to-utf8 tar.gz bytes' '--utf8-to-lcp a/b bytes' '--runtime=1 bytes' \
  '--stat=1 bytes' '--no-such=1 bytes' '--locale C --chunk 1 --locale C bytes' '--files0-from a --files0-from b' \
  '--lcp-to-utf8 a;b bytes' '--check --transcode UTF-8:CP1252:md:txt bytes' \
  --chunk={0,-1,+1,1x,0x10,4294967295,4294967296,99999999999999999999}' bytes'; do
  expect 2 '' 'qarread: *usage: qarread \[-r\] *' $arguments
done
for option in chunk locale stdin-name files0-from transcode lcp-to-utf8; do
  expect 2 '' "qarread: --$option needs a value*" bytes --$option
  expect 2 '' "qarread: --$option needs a value*" --$option '' bytes
done
expect 2 '' 'qarread: --json takes no value*' --json=true --stat bytes
expect 2 '' 'qarread: --chunk may be given only once*' --chunk 1 --chunk 2 bytes
expect 0 'plain      bytes\n' '' --catalogue --catalogue --chunk 4294967294 bytes
cp latin1.txt ./--stat
expect 0 'Gr\xfc\xdfe\n' '' -- --stat
for name in C POSIX C.KOI8-R de_DE de_DE.UTF-8 de_DE@euro de ja_JP.SJIS zh_Hant zh_TW.BIG5 sr_RS@latin C.utf8; do
  expect 0 'Gr\xfc\xdfe\n' '' --locale $name latin1.txt
done
with=(env LC_ALL=de_DE.nonsense)
expect 0 'Gr\xfc\xdfe\n' '' latin1.txt
expect 2 '' 'qarread: the locale de_DE.nonsense: *' --lcp-to-utf8 txt latin1.txt
with=(env)
case='the manual'
for option in $("$program" --help | grep -oE -e '--[a-z0-9-]+' | sort -u); do
  grep -q -e "Fl -${option#--}\>" "$manual" || wrong "$option is missing"
done
for help in -h --help '--help --stat --catalogue'; do
  case=$help
  "$program" $help | grep -q '^usage: qarread \[-r\] ' || wrong 'no usage'
done
expect 0 'qarread 1.0.0.0\n' '' --version
expect 0 'qarread 1.0.0.0\n' '' -V nonsense

# Walks are in the order of the bytes of the names; catalogues are in the order of the 16-bit units.
mkdir -p tree/b/c tree/a.d tree/B
touch tree/{b/c/2,b/c/10,b.x,a.d/f,B/z,！,𝄞}
ln -s .. tree/b/up
mkfifo tree/fifo
walked=(B/z a.d/f b/c/10 b/c/2 b/up b.x fifo ！ 𝄞)
expect 1 '..' 'qarread: tree/fifo: *' -r tree
case='-r'
order=$("$program" -r --stat tree/ tree/b/c 2>/dev/null | sed '1d; s/.* //')
[ "$order" = "$(printf '%s\n' "${walked[@]/#/tree/}" tree/b/c/10 tree/b/c/2)" ] || wrong "order: $order"
expect 1 'plain      10\nplain      2\nplain      B/z\nplain      a.d/f\nplain      b.x\nplain      b/c/10
plain      b/c/2\nlink       b/up\nplain      𝄞\nplain      ！\n' 'qarread: tree/fifo: *' -r --catalogue tree tree/b/c
chmod 000 dir
[ -r dir ] || expect 1 'Gr\xfc\xdfe\n' 'qarread: dir: cannot be listed (Permission denied)' -r dir latin1.txt

# Names are always escaped in output for terminals.
odd=$'a\n\e[2J\\\xc2\x85é'
cp latin1.txt "$odd"
table '' 0 'plain - 6 6 ok a\x0A\x1B[2J\x5C\u0085é' "$odd"
expect 0 'plain      a\\x0A\\x1B[2J\\x5C\\u0085é\n' '' --catalogue "$odd"
expect 1 '' 'qarread: é\\xFF\\x0A: *' $'\xc3\xa9\xff\n'
expect 1 '' 'qarread: x\\x0A: The file "x\\x0A" does not exist. (No such file or directory)' $'x\n'
expect 1 '' 'qarread: \\u202Etxt: *' $'\xe2\x80\xaetxt'

# More than 4 GiB, as a sparse file in memory.
sparse=$(mktemp -p /dev/shm 2>/dev/null || mktemp -p "$work")
trap 'rm -rf "$work" "$sparse"' EXIT
truncate -s 4097M "$sparse"
table '' 0 "plain - 4296015872 4296015872 ok $sparse" "$sparse"

case='demo'
"$demo" "$program" >"$work/out" 2>"$work/err" || wrong "$(<"$work/err")"
for reader in plain link transform; do grep -q "^$reader " "$work/out" || wrong "no $reader"; done

[ $failures = 0 ] && echo 'all passed'
