#!/usr/bin/env bash
# Names of any bytes, read by the example program: tests/qarread/names_test.sh PROGRAM
set -euo pipefail
program=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
unset LC_ALL LC_CTYPE LANG LANGUAGE POSIXLY_CORRECT
failures=0

wrong() {
  echo "FAILED: $1"
  failures=$((failures + 1))
}

# make FOLDER NAME...: files that hold their names, and all their content, in the order of the bytes of the names.
make() {
  local folder=$1 name
  mkdir "$folder"
  for name in "${@:2}"; do printf %s "$name" >"$folder/$name"; done
  (cd "$folder" && printf '%s\0' "${@:2}" | LC_ALL=C sort --zero-terminated | tr --delete '\0') >"$folder.content"
}

# Every name of one byte or two, of 255 bytes, and some that look like options.
printf -v all '\\x%x ' {1..46} {48..255}
names=()
for first in $all; do
  printf -v first %b "$first"
  [ "$first" = . ] || names+=("$first")
  for second in $all; do
    printf -v second %b "$second"
    [ "$first$second" = .. ] || names+=("$first$second")
  done
done
for byte in '\xff' '\n' '\x1b' '\xc3' x '\x5c'; do
  printf -v name "$byte%.0s" {1..255}
  names+=("$name")
done
make short "${names[@]}"
make options -r --stat --catalogue --help --runtime --chunk=0 --nonsense --- "-$'\xff'" -- 

"$program" -r short >content 2>errors || wrong "short: $(head -c 300 errors)"
cmp content short.content || wrong 'content of short'
(cd options && "$program" -- *) | cmp - options.content || wrong 'content of options'

# With the mark that the factory leaves out; "//" means "/".
echo decoy >short.mark
"$program" //:short.mark >content 2>/dev/null && wrong 'another file was read'

# Nothing but text of one line each comes out, with no character that could do anything to a terminal.
export LC_ALL=C.UTF-8
for arguments in '-r --stat short' '-r --catalogue short' "short/a/"$'\xff'$'\n'; do
  IFS=' ' read -r -d '' -a words <<<"$arguments" || true
  "$program" "${words[@]}" >lines 2>&1 || true
  [ -s lines ] || wrong "$arguments: nothing"
  ! grep --invert-match --line-regexp --quiet '[[:print:]]*' lines || wrong "$arguments: control characters"
done
rows=$("$program" -r --stat short | wc --lines)
[ "$rows" = $((${#names[@]} + 1)) ] || wrong "$rows rows for ${#names[@]} names"

# The same in a process code in which most of these bytes are text.
LC_ALL=ja_JP.SJIS "$program" -r short | cmp - short.content || wrong 'content of short in Shift_JIS'

[ $failures = 0 ] && echo "all passed: ${#names[@]} names"
