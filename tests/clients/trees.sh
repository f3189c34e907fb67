#!/usr/bin/env bash
# trees.sh SHARED STATIC CXX WORK: builds programs with the compiler CXX in the folder WORK in the ways of other
# projects: from the sources of the library, on a platform that has the real libraries, and with the static library.
# SHARED and STATIC are prefixes where the library is installed.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
library=$(cd "$here/../.." && pwd)
shared=$1 static=$2 cxx=$3 work=$4
rm -rf "$work"
mkdir -p "$work"
work=$(cd "$work" && pwd)

# check WHAT PROGRAM: checks the output of the program.
check() {
  (mkdir -p "$work/run" && cd "$work/run" && LC_ALL=de_DE.UTF-8 "$2") | diff - <(
    echo Grüße
    echo 'QARDATAINTERFACES_FILE_NOT_EXIST: Die Datei „missing“ existiert nicht.'
  )
  echo "$1: built and run"
}

# build FOLDER NAME [CMAKE ARGUMENT...]: configures and builds the project FOLDER in WORK/NAME.
build() {
  {
    cmake -S "$here/$1" -B "$work/$2" -DCMAKE_CXX_COMPILER="$cxx" --no-warn-unused-cli "${@:3}"
    cmake --build "$work/$2" --parallel "$(nproc)"
  } >"$work/$2.log" 2>&1 || { cat "$work/$2.log"; exit 1; }
}

# check_own_only NAME: checks that the project in WORK/NAME has no tests of the library, and installs only its own program
# and plug-in.
check_own_only() {
  ctest --test-dir "$work/$1" --show-only | grep 'Total Tests: 0' >/dev/null || { echo "$1: has tests"; exit 1; }
  cmake --install "$work/$1" --prefix "$work/$1-installed" >"$work/$1.log"
  (cd "$work/$1-installed" && find . -type f | sort) | diff - <(printf '%s\n' ./bin/program ./lib/libplugin.so)
}

build subdirectory in-tree -DLIBRARY="$library"
check add_subdirectory "$work/in-tree/program"
check_own_only in-tree

build subdirectory fetched -DLIBRARY="$library" -DHOW=FetchContent -DBUILD_SHARED_LIBS=OFF
check 'FetchContent, static' "$work/fetched/program"
check_own_only fetched
! ldd "$work/fetched/program" | grep 'kui18n\|zrqar' || { echo "the static program wants shared libraries"; exit 1; }

# The installed static library.
build platform static -DCMAKE_PREFIX_PATH="$static"
check 'find_package, static' "$work/static/program"
export PKG_CONFIG_PATH=$static/lib/pkgconfig
# shellcheck disable=SC2046
"$cxx" -std=c++17 -o "$work/by-pkgconf" "$here/program.cpp" $(pkgconf --cflags --libs zrqardatainterfaces)
check 'pkg-config, static' "$work/by-pkgconf"
# A program without any shared library; glibc warns that ICU uses dlopen.
# shellcheck disable=SC2046
"$cxx" -std=c++17 -static -o "$work/all-static" "$here/program.cpp" $(pkgconf --static --cflags --libs zrqardatainterfaces) 2>"$work/all-static.log"
check 'pkg-config --static' "$work/all-static"

# A platform that has the real libraries, with another version than the stand-ins.
mkdir -p "$work/real/lib" "$work/real/include"
cp -r "$shared"/include/{ku,opc,qar,tavik_core} "$work/real/include"
for name in libkui18n libzrqar_res; do
  cp "$shared/lib/$name.so.1" "$work/real/lib/$name.so.1.7"
  ln -s "$name.so.1.7" "$work/real/lib/$name.so.1"
  ln -s "$name.so.1" "$work/real/lib/$name.so"
done
build platform own-targets -DLIBRARY="$library" -DPLATFORM="$work/real"
check "a platform's own targets" "$work/own-targets/program"
build ../.. alone -DZRQAR_TESTS=OFF -DZRQAR_BENCHMARKS=OFF -DPLATFORM="$work/real" \
  -DCMAKE_PROJECT_zrqardatainterfaces_INCLUDE="$here/platform/platform.cmake"
[ ! -e "$work/alone/platform/i18n" ] || { echo "the stand-in is built"; exit 1; }
"$work/alone/examples/qarread" "$0" | cmp - "$0"
echo "upon a platform, by itself: built and run"
cmake --install "$work/own-targets" --prefix "$work/beside" >"$work/beside.log"
! find "$work/beside" | grep 'kui18n\|zrqar_res\|opc' || { echo "stand-ins are installed"; exit 1; }
# Where the loader looks for a platform's libraries.
export LD_LIBRARY_PATH=$work/real/lib
build platform beside-real -DCMAKE_PREFIX_PATH="$work/beside;$work/real"
check "find_package beside a platform's own libraries" "$work/beside-real/program"
ldd "$work/beside-real/program" | grep "libkui18n.so.1 => $work/real/" >/dev/null || { echo "another libkui18n"; exit 1; }

unset LD_LIBRARY_PATH

# Without a build type the library is optimised, if it is not part of another project.
cmake -S "$library" -B "$work/plain" -DZRQAR_TESTS=OFF -DZRQAR_BENCHMARKS=OFF >"$work/plain.log"
grep --quiet '^CMAKE_BUILD_TYPE:.*=RelWithDebInfo$' "$work/plain/CMakeCache.txt" || { echo "no build type"; exit 1; }
