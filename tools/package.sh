#!/usr/bin/env bash
# package.sh FOLDER: builds the Debian packages from a copy of the sources in FOLDER/source, into FOLDER/packages.
set -euo pipefail
[ $# = 1 ] || { echo "usage: tools/package.sh FOLDER" >&2; exit 2; }
mkdir -p "$1"
folder=$(cd "$1" && pwd)
cd "$(dirname "$0")/.."

rm -rf "$folder/source" "$folder/packages"
mkdir "$folder/source" "$folder/packages"
git ls-files -z --cached --others --exclude-standard | xargs --null cp --parents --target-directory "$folder/source"
cd "$folder/source"
export CCACHE_BASEDIR=  # otherwise ccache makes paths relative in some folders, and the bytes differ
dpkg-buildpackage --build=binary --unsigned-changes --no-pre-clean >"$folder/log" 2>&1 || { cat "$folder/log"; exit 1; }
mv ../*.deb ../packages
