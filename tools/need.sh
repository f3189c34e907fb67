#!/usr/bin/env bash
# need.sh PACKAGE...: installs the Debian packages that are missing, and says so first; silent if none is.
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: tools/need.sh PACKAGE..." >&2; exit 2; }

missing=()
for package; do
  [ "$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
    missing+=("$package")
done
[ ${#missing[@]} -gt 0 ] || exit 0

sudo=()
if [ "$(id -u)" != 0 ]; then
  command -v sudo >/dev/null || { echo "To be installed, by root: apt-get install ${missing[*]}" >&2; exit 1; }
  sudo=(sudo)
fi
echo "Installing ${missing[*]}" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# Nobody is asked: standard input may be no terminal, and sudo does not pass the environment on.
"${sudo[@]}" sh -c 'apt-get update --quiet=2 &&
  DEBIAN_FRONTEND=noninteractive apt-get install --quiet=2 --no-install-recommends "$@"' sh "${missing[@]}" \
  </dev/null >"$log" 2>&1 || { tail -n 20 "$log" >&2; exit 1; }
