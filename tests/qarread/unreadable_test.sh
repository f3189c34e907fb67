#!/usr/bin/env bash
# A walk reports what it must not read, reads the rest and fails: tests/qarread/unreadable_test.sh PROGRAM
# Root may read everything, so root runs the test as another user.
set -uo pipefail
program=$(realpath "$1")
work=$(mktemp -d)
trap 'chmod -R u+rwx "$work"; rm -rf "$work"' EXIT
cd "$work" || exit 1
as=()
if [ "$(id -u)" = 0 ]; then
  as=(setpriv --reuid=65534 --regid=65534 --clear-groups)
  chown 65534 "$work"
  "${as[@]}" "$program" --version >/dev/null 2>&1 || { echo 'skipped: no other user can run the program'; exit 77; }
fi
"${as[@]}" bash -c 'mkdir -p tree/closed tree/open && echo a >tree/a && echo o >tree/open/o && echo z >tree/z &&
  chmod 0 tree/z tree/closed'
failed=0

# shellcheck disable=SC2053  # the right-hand side is a pattern
# expect STATUS OUTPUT ERRORS ARGUMENT...: ERRORS is a pattern.
expect() {
  local status=0
  "${as[@]}" "$program" "${@:4}" >out 2>err </dev/null || status=$?
  [ "$status" = "$1" ] && [ "$(<out)" = "$2" ] && [[ $(<err) == $3 ]] && return
  echo "FAILED: qarread ${*:4}: status $status, output $(<out), errors $(<err)"
  failed=1
}
expect 1 $'a\no' 'qarread: tree/closed: *Permission denied*qarread: tree/z: *Permission denied*' -r tree
expect 1 '' 'qarread: tree/closed: *Permission denied*' -r tree/closed
expect 1 'o' 'qarread: tree/closed: *Permission denied*' -r tree/closed tree/open
expect 1 '{"path":"tree/closed","reader":null,"transform":null,"in":null,"out":null,"status":"error"}' '*' \
  --json --stat -r tree/closed
expect 0 'o' '' -r tree/open
exit $failed
