#!/usr/bin/env bash
# trial.sh PACKAGES WORK: installs the Debian packages in the folder PACKAGES on this machine, builds programs with
# them, runs these, and removes the packages: once with the stand-ins, and once with packages of the real libraries.
# Nothing may be left.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
clients=$here/../clients
mkdir -p "$2"
packages=$(cd "$1" && pwd) work=$(cd "$2" && pwd)
sudo=()
[ "$(id -u)" = 0 ] || sudo=(sudo)
fail() { echo "trial: $*" >&2; exit 1; }

library=("$packages"/{libzrqardatainterfaces1,libzrqardatainterfaces-dev,qarread}_*.deb)
standins=("$packages"/libzrqar-standins{1,-dev}_*.deb)
libdir=/usr/lib/$(dpkg --print-architecture | sed 's/amd64/x86_64/')-linux-gnu

names() {
  local package
  for package; do dpkg-deb --field "$package" Package; done
}

# All files in the folders of packages.
everything() {
  "${sudo[@]}" find /etc /opt /usr /var/lib -xdev \( -path /var/lib/dpkg -o -path "$packages" -o -path "$work" \) -prune \
    -o -print | LC_ALL=C sort
}

# installed WHAT PACKAGE...: installs the packages, uses them and removes them.
installed() {
  local what=$1 deb
  shift
  mapfile -t present < <(names "$@")
  ! dpkg-query --show "${present[@]}" >/dev/null 2>&1 || fail "the packages are installed already; left alone"
  everything >"$work/before"
  trap '"${sudo[@]}" dpkg --purge "${present[@]}" >/dev/null' EXIT
  "${sudo[@]}" dpkg --install "$@" >"$work/dpkg.log" 2>&1 || fail "$(cat "$work/dpkg.log")"
  for deb; do dpkg --verify "$(dpkg-deb --field "$deb" Package)"; done

  grep --quiet '^prefix=/usr$' "$libdir/pkgconfig/zrqardatainterfaces.pc" || fail "pkg-config: wrong prefix"
  "$clients/installed/run.sh" "$libdir/pkgconfig/zrqardatainterfaces.pc" g++ "$work/client"
  ! readelf --dynamic "$work/client/by-cmake/client" | grep 'R.*PATH' || fail "the client has a run path"
  [ "$(printf 'Gr\xfc\xdfe' >"$work/notes.txt" && qarread --locale de_DE.ISO-8859-1 --lcp-to-utf8 txt "$work/notes.txt")" = Grüße ] ||
    fail "qarread does not convert"
  "$here/completion.sh" /usr/share/bash-completion/completions/qarread qarread
  [ -s /usr/share/man/man1/qarread.1.gz ] || fail "no manual page"

  "${sudo[@]}" dpkg --purge "${present[@]}" >/dev/null
  trap - EXIT
  everything | diff "$work/before" - || fail "something is left, or gone"
  echo "installed, used and removed, $what"
}

# real PACKAGE: makes a package of the real libraries from that of the stand-ins, with another name and other versions
# of the files.
real() {
  local tree file
  tree=$work/$(basename "$1" .deb)
  dpkg-deb --raw-extract "$1" "$tree"
  sed -i -e 's/^Package: libzrqar-standins/Package: realplatform/' -e '/^Conflicts/d' \
    -e 's/^\(Depends: .*\)libzrqar-standins1 ([^)]*)/\1realplatform1/' "$tree/DEBIAN/control"
  rm -r "$tree/DEBIAN/md5sums" "$tree/usr/lib"/*/cmake "$tree/usr/share/lintian" 2>/dev/null || true
  for file in "$tree/usr/lib"/*/*.so.1; do
    [ -e "$file" ] || continue
    mv "$(realpath "$file")" "$file.7"
    ln --force --symbolic "$(basename "$file.7")" "$file"
  done
  dpkg-deb --root-owner-group --build "$tree" "$work/real" >/dev/null
}

installed "with the stand-ins" "${library[@]}" "${standins[@]}"
rm -rf "$work/real" "$work"/libzrqar-*
mkdir "$work/real"
for package in "${standins[@]}"; do real "$package"; done
installed "beside a real platform" "${library[@]}" "$work"/real/*.deb
