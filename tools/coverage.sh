#!/usr/bin/env bash
# coverage.sh BUILD [OPTION OF LLVM-COV...]: prints how much of the libraries the programs of the build tree have
# covered, and each line that has not run or has a branch which was never taken. Fails if there is such a line that is
# not in not_covered.txt, and if an entry of that list matches no such line.
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: tools/coverage.sh BUILD [OPTION OF LLVM-COV...]" >&2; exit 2; }
build=$1
shift
tools=$(dirname "$0")
libraries=("$build/src/libzrqardatainterfaces.so" "--object=$build/platform/i18n/libkui18n.so"
  "--object=$build/platform/resources/libzrqar_res.so" "--instr-profile=$build/all.profdata")
llvm-profdata-19 merge --output="$build/all.profdata" "$build"/profiles/*.profraw
llvm-cov-19 report --show-mcdc-summary --show-region-summary=0 "${libraries[@]}" "$@"
llvm-cov-19 show --show-branches=count --show-instantiations=false "${libraries[@]}" "$@" |
  awk -v list="$tools/not_covered.txt" -f "$tools/uncovered.awk"
