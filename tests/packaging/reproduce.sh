#!/usr/bin/env bash
# reproduce.sh PACKAGES: builds the packages again from a copy of the sources in another folder, with another time zone
# and another language. Fails unless they have the same bytes as those in the folder PACKAGES, including debug
# information and build ids.
set -euo pipefail
: "${SOURCE_DATE_EPOCH:?}"
first=$(cd "$1" && pwd)
copy=$(mktemp --directory)/elsewhere-with-a-longer-name
trap 'rm -rf "$(dirname "$copy")"' EXIT
TZ=Asia/Tokyo LC_ALL=C "$(dirname "$0")/../../tools/package.sh" "$copy"

count=0
for package in "$first"/*.deb; do
  cmp "$package" "$copy/packages/$(basename "$package")"
  count=$((count + 1))
done
[ "$count" -eq 8 ] || { echo "$count packages compared, not 8"; exit 1; }
echo "$count packages: the same bytes from two folders"
