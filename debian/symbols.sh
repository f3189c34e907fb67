#!/usr/bin/env bash
# symbols.sh: writes the symbols files of the packages from the lists of exported names. A name that was added after the
# first release is followed by the version in which it was added.
set -euo pipefail
cd "$(dirname "$0")"

# symbols LIBRARY DEVELOPMENT DEPENDENCY [DEPENDENCY OF TRANSCODER]: DEVELOPMENT is the package needed to build programs
# that use the library, and DEPENDENCY the package that these programs need at run time.
symbols() {
  echo "lib$1.so.1 $3"
  if [ $# -gt 3 ]; then echo "| $4"; fi
  echo "* Build-Depends-Package: $2"
  awk -v extra=$# '{ print " " $1 "@Base " ($2 ? $2 : "1.0") (extra > 3 && /Transcoder/ ? " 1" : "") }' \
    "../tests/packaging/$1.exports"
}

symbols zrqardatainterfaces libzrqardatainterfaces-dev 'libzrqardatainterfaces1 #MINVER#' >libzrqardatainterfaces1.symbols
# A platform's own libraries satisfy the dependency as well. The additions of kui18n to the contract have their own name.
standins='libzrqar-standins1 #MINVER#'
{
  symbols kui18n libzrqar-standins-dev "$standins | libkui18n1" "$standins | libkui18n1-transcoder"
  symbols zrqar_res libzrqar-standins-dev "$standins | libzrqar-res1"
} >libzrqar-standins1.symbols
