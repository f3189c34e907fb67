#!/usr/bin/env bash
# fresh.sh RELEASE [--user]: tests the project on a bare Debian. Creates one, clones the last commit into it, and runs
# ./dev demo, ./dev test and ./dev trial there, as root without a terminal, or with --user as an ordinary user with sudo
# at a terminal. Needs debootstrap, and root or sudo.
set -euo pipefail
usage() { echo "usage: tools/fresh.sh RELEASE [--user]" >&2; exit 2; }
case ${1:-} in '' | -*) usage ;; esac
case $#${2:-} in 1 | 2--user) ;; *) usage ;; esac
release=$1
[ "$(id -u)" = 0 ] || exec sudo "$0" "$@"
tools=$(cd "$(dirname "$0")" && pwd)

work=$(mktemp --directory --tmpdir="${TMPDIR:-/var/tmp}" "zrqardatainterfaces-$release.XXXXXX")
trap 'rm --recursive --force --one-file-system "$work"' EXIT
trap 'exit 130' INT TERM HUP

# say WHAT: prints the time since the last call.
say() { echo "-- $release: $1, $SECONDS s"; SECONDS=0; }

root=$work/root
[ -z "$(git -C "$tools" status --porcelain)" ] || echo "-- uncommitted changes are not tested"
"$tools/bare_root.sh" "$release" "$root"
say "a bare root"
home=/root way="root without a terminal"
if [ "${2:-}" = --user ]; then
  home=/home/someone way="a user at a terminal"
  "$tools/in_root.sh" "$root" useradd --create-home --shell /bin/bash someone
  echo 'someone ALL=(ALL) NOPASSWD: ALL' >"$root/etc/sudoers.d/someone"
fi
git clone --quiet --no-hardlinks "$tools/.." "$root$home/clone"
"$tools/in_root.sh" "$root" chown --recursive --reference="$home" "$home/clone"
for command in demo test trial; do
  if [ "${2:-}" = --user ]; then
    "$tools/in_root.sh" "$root" runuser --login someone --command \
      "cd clone && script --quiet --return --command './dev $command' /dev/null"
  else
    "$tools/in_root.sh" "$root" setsid --wait sh -c "cd $home/clone && ./dev $command" </dev/null 2>&1 | cat
  fi
  say "./dev $command by $way"
done
