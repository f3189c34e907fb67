#!/usr/bin/env bash
# reproduce.sh BUILD: builds the packages again from a copy of the sources in another folder, under another time zone
# and another language, and fails unless libraries and packages have the same bytes as those in the folder BUILD.
set -euo pipefail
: "${SOURCE_DATE_EPOCH:?}"
first=$(cd "$1" && pwd)
copy=$(mktemp --directory)/elsewhere-with-a-longer-name
trap 'rm -rf "$(dirname "$copy")"' EXIT
mkdir "$copy"
git ls-files -z --cached --others --exclude-standard | xargs --null cp --parents --target-directory "$copy"

cd "$copy"
export TZ=Asia/Tokyo LC_ALL=C
export CCACHE_DISABLE=1  # what a cache keeps would be the same anywhere
{
  cmake --preset package
  cmake --build --preset package
  cpack --config build/package/CPackConfig.cmake
} >log 2>&1 || { cat log; exit 1; }

count=0
for file in src/libzrqardatainterfaces.so platform/i18n/libkui18n.so platform/resources/libzrqar_res.so \
  $(cd "$first" && ls packages/*.deb); do
  cmp "$first/$file" "build/package/$file"
  count=$((count + 1))
done
[ "$count" -eq 5 ] || { echo "$count files compared, not 3 libraries and 2 packages"; exit 1; }
echo "3 libraries and 2 packages: the same bytes from two folders"
