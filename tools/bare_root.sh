#!/usr/bin/env bash
# bare_root.sh RELEASE FOLDER: creates a bare Debian with git and sudo in the folder; tools/in_root.sh runs commands in
# it. Needs root and debootstrap. Uses the mirror and the proxy that apt uses on this machine. The first root of a
# release is kept as a tar file, from which later ones are unpacked; delete the file to renew it.
set -euo pipefail
[ $# = 2 ] || { echo "usage: tools/bare_root.sh RELEASE FOLDER" >&2; exit 2; }
release=$1 root=$2
kept=${XDG_CACHE_HOME:-$HOME/.cache}/zrqardatainterfaces/$release.tar

mkdir -p "$root" "$(dirname "$kept")"
if [ ! -e "$kept" ]; then
  # shellcheck disable=SC2016  # apt expands these
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
chmod 0755 "$root"  # a temporary folder is accessible only to its owner
cp /etc/resolv.conf /etc/hosts "$root/etc/"  # may have changed since the tar file was made
