#!/usr/bin/env bash
# A walk that takes long shows on a terminal how far it has come, and leaves no trace of that:
# tests/qarread/progress_test.sh PROGRAM
set -uo pipefail
program=$(realpath "$1")
script --quiet --return --command true /dev/null </dev/null >/dev/null 2>&1 ||
  { echo 'skipped: script cannot open a pseudo-terminal here'; exit 77; }
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
mkdir slow quiet && mkfifo {slow,quiet}/1
for folder in slow quiet; do
  timeout 10 bash -c "sleep 0.7; echo >$folder/1" &  # in vain, should nobody open it
done
timeout 10 "$program" -r --runtime quiet >/dev/null 2>errors &
timeout 10 script --quiet --return --command "$program -r --runtime slow >content" /dev/null </dev/null >shown
wait
[[ $(<shown) == $'\r\e[K'*' paths, 0 MB'*$'\r\e[K' ]] || { echo "FAILED: $(cat -v shown)"; exit 1; }
[ ! -s errors ] || { echo "FAILED: without a terminal: $(<errors)"; exit 1; }
