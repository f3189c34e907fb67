#!/usr/bin/env bash
# trial.sh PACKAGES WORK: installs the Debian packages in the folder PACKAGES on this machine, builds and runs the client
# from the system's paths, and removes the packages again.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
sudo=()
[ "$(id -u)" = 0 ] || sudo=(sudo)
names=()
for package in "$1"/*.deb; do
  names+=("$(dpkg-deb --field "$package" Package)")
done
[ ${#names[@]} = 2 ] || { echo "there are ${#names[@]} packages in $1, not 2"; exit 1; }
! dpkg-query --show "${names[@]}" >/dev/null 2>&1 || { echo "the packages are installed already; left alone"; exit 1; }

trap '"${sudo[@]}" dpkg --purge "${names[@]}" >/dev/null' EXIT
"${sudo[@]}" dpkg --install "$1"/*.deb >/dev/null
libdir=/usr/lib/$(dpkg-architecture --query DEB_HOST_MULTIARCH)
grep --quiet '^prefix=/usr$' "$libdir/pkgconfig/zrqardatainterfaces.pc" || { echo "pkg-config: wrong prefix"; exit 1; }
"$here/../clients/installed/run.sh" "$libdir/pkgconfig/zrqardatainterfaces.pc" g++ "$2"
! readelf --dynamic "$2/by-cmake/client" | grep --quiet 'R.*PATH' || { echo "the client has a run path"; exit 1; }
for package in "$1"/*.deb; do
  dpkg --verify "$(dpkg-deb --field "$package" Package)"
done
