#!/usr/bin/env bash
# run.sh PC_FILE CXX WORK: builds the client with the compiler CXX from the tree that the pkg-config file PC_FILE
# describes, by CMake and by pkg-config, in the folder WORK, and runs both.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
pc=$1 cxx=$2 work=$3
warnings="-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror"
export PKG_CONFIG_LIBDIR
PKG_CONFIG_LIBDIR=$(dirname "$pc")
[ -s "$pc" ]
libdir=$(pkgconf --variable=libdir zrqardatainterfaces)
includedir=$(pkgconf --variable=includedir zrqardatainterfaces)
rm -rf "$work"
mkdir -p "$work"

# Each public header by itself; the pkg-config flags do not make them system headers.
headers=$(cd "$includedir" && find qardatainterfaces ku tavik_core qar opc -name '*.hpp')
[ -n "$headers" ]
sed 's/.*/#include <&>/' <<<"$headers" | split --lines=1 --additional-suffix=.cpp - "$work/header-"
# shellcheck disable=SC2046,SC2086
printf '%s\n' "$work"/header-*.cpp | xargs --max-procs=2 --max-args=1 \
  "$cxx" -std=c++17 -fsyntax-only $warnings $(pkgconf --cflags zrqardatainterfaces)

# shellcheck disable=SC2046,SC2086
"$cxx" -std=c++17 -fvisibility=hidden -fvisibility-inlines-hidden $warnings -o "$work/by-pkgconf" "$here/client.cpp" \
  $(pkgconf --cflags --libs zrqardatainterfaces) -Wl,-rpath,"$libdir"
"$work/by-pkgconf"

cmake -S "$here" -B "$work/by-cmake" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="$warnings" \
  -DCMAKE_PREFIX_PATH="$(pkgconf --variable=prefix zrqardatainterfaces);$libdir/cmake" >"$work/cmake.log"
cmake --build "$work/by-cmake" >>"$work/cmake.log" || { cat "$work/cmake.log"; exit 1; }
"$work/by-cmake/client"
echo "$cxx with $libdir: built and run by pkg-config and by CMake, $(wc -l <<<"$headers") headers on their own"
