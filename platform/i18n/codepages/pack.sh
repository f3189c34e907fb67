#!/bin/sh
# pack.sh MAKE_UCM MAKECONV PKGDATA GENCCODE FOLDER PAGE...
# Compiles the code pages and packs them, as C source, into FOLDER.
set -eu
make_ucm=$1 makeconv=$2 pkgdata=$3 genccode=$4 work=$5
shift 5

rm -rf "$work"
mkdir -p "$work/temporary"
"$make_ucm" "$work" "$@"
cd "$work"
"$makeconv" --quiet ./*.ucm >makeconv.log 2>&1 || { tail makeconv.log >&2; exit 1; }
printf '%s\n' *.cnv >pages.txt
"$pkgdata" --quiet --mode common --name zrqar_codepages --sourcedir . --destdir . --tempdir temporary pages.txt
"$genccode" --quiet --entrypoint zrqar_codepages --destdir . zrqar_codepages.dat
