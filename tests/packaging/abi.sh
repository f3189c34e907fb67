#!/usr/bin/env bash
# abi.sh [--update] BUILD: compares the binary interface of the libraries in the folder BUILD with the baselines beside
# this script. --update writes the baselines and the lists of exported names instead. Added symbols are no failure here;
# the lists show them.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
root=$here/../..
update=
[ "$1" != --update ] || { update=$1; shift; }

public=() compared=()
for folder in "$root/include" "$root"/platform/{i18n,resources,package}/include; do
  public+=(--headers-dir "$folder")
  compared+=(--headers-dir2 "$folder")
done
failures=0
for library in "$1"/{src/libzrqardatainterfaces,platform/i18n/libkui18n,platform/resources/libzrqar_res}.so; do
  name=$(basename "$library" .so)
  name=${name#lib}
  # Without debug information there would be nothing to compare, and no difference.
  readelf --wide --sections "$library" | grep --quiet '\.debug_info' || { echo "$library: no debug information"; exit 1; }
  if [ -n "$update" ]; then
    "$here/exports.sh" --update "$library" "$here/$name.exports"
    abidw "${public[@]}" --exported-interfaces-only --drop-private-types --type-id-style hash \
      --no-corpus-path --no-comp-dir-path --out-file "$here/$name.abi" "$library"
  else
    grep --quiet "<class-decl .* filepath='./\(include\|platform\)/" "$here/$name.abi" ||
      { echo "$name.abi describes no class of this project"; exit 1; }
    abidiff --fail-no-debug-info --exported-interfaces-only --drop-private-types --no-added-syms \
      "${compared[@]}" "$here/$name.abi" "$library" || failures=1
  fi
done
exit "$failures"
