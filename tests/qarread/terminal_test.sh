#!/usr/bin/env bash
# The output on a terminal: terminal_test.sh PROGRAM
# A long walk shows its progress and erases it at the end. There is no progress if the terminal is dumb or NO_COLOR is
# set. Control characters of names and texts are never printed.
set -uo pipefail
program=$(realpath "$1")
script --quiet --return --command true /dev/null </dev/null >/dev/null 2>&1 ||
  { echo 'skipped: script cannot open a pseudo-terminal here'; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
unset NO_COLOR
export TERM=xterm
failures=0

wrong() {
  echo "FAILED: $1: $(cat -v "$2")"
  failures=$((failures + 1))
}

# on_terminal SHOWN COMMAND: runs the command on a pseudo-terminal, and writes the terminal's output to SHOWN.
on_terminal() { timeout 20 script --quiet --return --command "$2" /dev/null </dev/null >"$1"; }

for folder in xterm dumb none plain pipe; do
  mkdir $folder && mkfifo $folder/1
  timeout 20 bash -c "{ sleep 1; echo; } >$folder/1" &  # after the program has opened it
done
timeout 20 "$program" -r --runtime pipe >/dev/null 2>errors &
on_terminal xterm.shown "$program -r --runtime xterm >content" &
on_terminal dumb.shown "TERM=dumb $program -r --runtime dumb >content" &
on_terminal none.shown "TERM= $program -r --runtime none >content" &
on_terminal plain.shown "NO_COLOR=1 $program -r --runtime plain >content" &
wait
[[ $(<xterm.shown) == $'\r\e[K'*' paths, 0 MB'*$'\r\e[K' ]] || wrong 'on a terminal' xterm.shown
for shown in dumb.shown none.shown plain.shown errors; do [ ! -s $shown ] || wrong "$shown" $shown; done

mkdir names
printf '\e[31m\xff\n' >names/$'\e[2J\r.txt'
on_terminal check.shown "$program -r --check --transcode UTF-8:ISO-8859-1:txt names nowhere; NO_COLOR=1 $program --stat names/*"
tr -d '\r' <check.shown | LC_ALL=C grep -q '[^[:print:]]' && wrong 'control characters' check.shown
grep -q 'x1B\[2J.x0D\.txt:1:6: FF is malformed in UTF-8' check.shown || wrong 'the place' check.shown

# Typed input is read to its end.
printf 'a\n\x04' | timeout 20 script --quiet --return --command "$program - >typed" /dev/null >/dev/null
[ "$(<typed)" = a ] || wrong 'what is typed' typed
exit $failures
