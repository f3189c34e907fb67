#!/usr/bin/env bash
# need.sh PACKAGE...: installs missing Debian packages and prints their names first. Prints nothing if none is missing.
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
  command -v sudo >/dev/null ||
    { echo "Packages are missing. Run as root: apt-get install ${missing[*]}" >&2; exit 1; }
  sudo=(sudo)
fi
echo "Installing ${missing[*]}" >&2
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# Not interactive, since standard input may be no terminal. The variable is set inside sudo, which clears the
# environment.
"${sudo[@]}" sh -c 'apt-get update --quiet=2 &&
  DEBIAN_FRONTEND=noninteractive apt-get install --quiet=2 --no-install-recommends "$@"' sh "${missing[@]}" \
  </dev/null >"$log" 2>&1 || { tail -n 20 "$log" >&2; exit 1; }
