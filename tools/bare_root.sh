#!/usr/bin/env bash
# bare_root.sh RELEASE FOLDER: makes the folder the root of a bare Debian with git and sudo; tools/in_root.sh runs
# commands in it. Needs root and debootstrap. The mirror and the way to it are those that apt uses on this machine.
# The first root of a release is kept as a tar file, which the next ones are unpacked from; delete it to renew it.
set -euo pipefail
[ $# = 2 ] || { echo "usage: tools/bare_root.sh RELEASE FOLDER" >&2; exit 2; }
release=$1 root=$2
kept=${XDG_CACHE_HOME:-$HOME/.cache}/zrqardatainterfaces/$release.tar

mkdir -p "$root" "$(dirname "$kept")"
if [ ! -e "$kept" ]; then
  # shellcheck disable=SC2016  # apt fills these in
  mirror=$(apt-get indextargets --format '$(ORIGIN) $(LABEL) $(REPO_URI)' | sed -n 's/^Debian Debian //p' | head -n 1)
  [ -n "$mirror" ] || { echo "bare_root.sh: apt knows no Debian mirror; run apt-get update" >&2; exit 1; }
  log=$(mktemp)
  debootstrap --variant=minbase --include=git,ca-certificates,sudo "$release" "$root" "$mirror" >"$log" 2>&1 ||
    { tail -n 20 "$log" >&2; exit 1; }
  rm "$log"
  apt-config dump | grep -E '^Acquire::(https?|Retries|Check-)' >"$root/etc/apt/apt.conf.d/acquire" || true
  tar --create --one-file-system --file="$kept.$$" --directory="$root" .
  mv "$kept.$$" "$kept"
else
  tar --extract --file="$kept" --directory="$root"
fi
chmod 0755 "$root"  # temporary folders are for one user
cp /etc/resolv.conf /etc/hosts "$root/etc/"  # what they say may change while the root is kept
