#!/usr/bin/env bash
# Tests of the example program as a shell sees it: tests/qarread/qarread_test.sh PROGRAM DEMO
# shellcheck disable=SC2053,SC2059,SC2086  # patterns, formats and lists of arguments are passed about in variables
set -uo pipefail
program=$(realpath "$1") demo=$(realpath "$2")
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

# table ERRORS STATUS ROWS ARGUMENT...: the rows of --stat without their header, blanks squeezed.
table() {
  local status=0 errors=$1 wanted=$2 rows=$3
  shift 3
  case="qarread --stat $*"
  "$program" --stat "$@" >"$work/out" 2>"$work/err" </dev/null || status=$?
  [ $status = "$wanted" ] || wrong "exit status $status instead of $wanted"
  [ "$(sed 1d "$work/out" | tr -s ' ')" = "$rows" ] || wrong "rows: $(cat -v "$work/out")"
  [[ $(<"$work/err") == $errors ]] || wrong "errors: $(cat -v "$work/err")"
}

# Content, bit for bit: NUL bytes, text that is not UTF-8, chunks of any size.
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

# Code pages; the library's notice never mixes with the content.
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

# A path that fails is one line, and the others still run.
mkdir dir
ln -s /proc/self/mem unreadable.txt
long_name=$(printf 'x%.0s' {1..300})
expect 1 'nowhere/at/allGr\xfc\xdfe\n' 'qarread: missing: The file "missing" does not exist. (No such file or directory)
qarread: dir: "dir" is neither a regular file nor a symbolic link.
qarread: x*x: cannot be examined (File name too long)' dangling missing dir "$long_name" latin1.txt
expect 1 '' 'qarread: dir: The file "dir" cannot be opened: * (Is a directory)' --runtime dir
expect 1 '' 'qarread: /proc/self/mem: cannot be read (Input/output error)' /proc/self/mem
expect 1 '' 'qarread: unreadable.txt: cannot be read (Input/output error)' --runtime --lcp-to-utf8 txt unreadable.txt
expect 1 '' 'qarread: /proc/self/exe: the link does not tell its target (Invalid argument)' /proc/self/exe
table '*' 1 '- - - - QARDATAINTERFACES_FILE_NOT_EXIST missing
- - - - QARDATAINTERFACES_FILE_NOT_EXIST \xFF
plain - 0 - not_good /proc/self/mem
plain - 256 256 ok bytes' missing $'\xff' /proc/self/mem bytes

# Files that do not tell their size, of which the second is large; in chunks and whole.
case='sizeless'
for path in /proc/devices /proc/kallsyms; do
  "$program" "$path" | cmp - "$path" || wrong "$path in chunks"
  ln -sf "$path" sizeless.txt
  "$program" --runtime $latin1 --lcp-to-utf8 txt sizeless.txt | cmp - "$path" || wrong "$path whole"
done

# Output that fails.
case='/dev/full'
for arguments in bytes '--stat bytes' '--catalogue bytes' --help; do
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

# The command line.
for arguments in '' --bad -x -r '--chunk bytes' '--chunk' '--chunk= 1 bytes' '--stat --catalogue bytes' \
  '--lcp-to-utf8 a,,b bytes' '--lcp-to-utf8 tar.gz bytes' '--utf8-to-lcp a/b bytes' '--runtime=1 bytes' \
  --chunk={0,-1,+1,1x,0x10,4294967295,4294967296,99999999999999999999}' bytes'; do
  expect 2 '' 'qarread: *usage: qarread \[-r\] *' $arguments
done
expect 0 'plain      bytes\n' '' --catalogue --chunk 4294967294 bytes
cp latin1.txt ./--stat
expect 0 'Gr\xfc\xdfe\n' '' -- --stat
case='--help'
"$program" --help | grep -q '^usage: qarread \[-r\] ' || wrong 'no usage'

# Walks, in the order of the bytes of the names; catalogues, in that of their 16-bit units.
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

# Names never reach the terminal as they are.
odd=$'a\n\e[2J\\\xc2\x85é'
cp latin1.txt "$odd"
table '' 0 'plain - 6 6 ok a\x0A\x1B[2J\x5C\u0085é' "$odd"
expect 0 'plain      a\\x0A\\x1B[2J\\x5C\\u0085é\n' '' --catalogue "$odd"
expect 1 '' 'qarread: é\\xFF\\x0A: *' $'\xc3\xa9\xff\n'
expect 1 '' 'qarread: x\\x0A: The file "x\\x0A" does not exist. (No such file or directory)' $'x\n'
expect 1 '' 'qarread: \\u202Etxt: *' $'\xe2\x80\xaetxt'

# More than 4 GiB; holes cost least in memory.
sparse=$(mktemp -p /dev/shm 2>/dev/null || mktemp -p "$work")
trap 'rm -rf "$work" "$sparse"' EXIT
truncate -s 4097M "$sparse"
table '' 0 "plain - 4296015872 4296015872 ok $sparse" "$sparse"

case='demo'
"$demo" "$program" >"$work/out" 2>"$work/err" || wrong "$(<"$work/err")"
for reader in plain link transform; do grep -q "^$reader " "$work/out" || wrong "no $reader"; done

[ $failures = 0 ] && echo 'all passed'
