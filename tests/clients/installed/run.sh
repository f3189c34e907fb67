#!/usr/bin/env bash
# run.sh PC_FILE CXX WORK: builds programs with the compiler CXX from the tree that the pkg-config file PC_FILE
# describes, one by CMake and one by pkg-config, in the folder WORK, and runs both.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
library=$(cd "$here/../../.." && pwd)
pc=$1 cxx=$2 work=$3
warnings="-Wall -Wextra -Wpedantic -Wshadow -Wconversion -Werror"
PKG_CONFIG_PATH=$(dirname "$pc")
export PKG_CONFIG_PATH
[ -s "$pc" ]
libdir=$(pkgconf --variable=libdir zrqardatainterfaces)
includedir=$(pkgconf --variable=includedir zrqardatainterfaces)
rm -rf "$work"
mkdir -p "$work"

# Each public header by itself; the pkg-config flags do not make them system headers.
headers=$(cd "$includedir" && find qardatainterfaces ku tavik_core qar opc -name '*.hpp')
[ -n "$headers" ]
# shellcheck disable=SC2001  # each line, not the whole
sed 's/.*/#include <&>/' <<<"$headers" | split --lines=1 --additional-suffix=.cpp - "$work/header-"
# shellcheck disable=SC2046,SC2086
printf '%s\n' "$work"/header-*.cpp | xargs --max-procs=2 --max-args=1 \
  "$cxx" -std=c++17 -fsyntax-only $warnings $(pkgconf --cflags zrqardatainterfaces)

# shellcheck disable=SC2046,SC2086
"$cxx" -std=c++17 -fvisibility=hidden -fvisibility-inlines-hidden $warnings -o "$work/by-pkgconf" \
  "$library/examples/readme_example.cpp" $(pkgconf --cflags --libs zrqardatainterfaces) -Wl,-rpath,"$libdir"
"$library/tests/clients/readme_test.sh" "$library/README.md" "$library/examples/readme_example.cpp" "$work/by-pkgconf"

cmake -S "$here" -B "$work/by-cmake" -DCMAKE_CXX_COMPILER="$cxx" -DCMAKE_CXX_FLAGS="$warnings" \
  -DCMAKE_PREFIX_PATH="$(pkgconf --variable=prefix zrqardatainterfaces);$libdir/cmake" >"$work/cmake.log"
cmake --build "$work/by-cmake" --parallel 2 >>"$work/cmake.log" || { cat "$work/cmake.log"; exit 1; }
"$work/by-cmake/client" >"$work/client.log" || { cat "$work/client.log"; exit 1; }
echo "$cxx with $libdir: built and run by pkg-config and by CMake, $(wc -l <<<"$headers") headers on their own"
