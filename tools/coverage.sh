#!/usr/bin/env bash
# coverage.sh BUILD [OPTION OF LLVM-COV...]: what the programs of the build tree that ran have reached of the libraries:
# a table, and each line that has not run, or has a branch that has not. Fails if there is such a line that does not say
# why it need not run.
set -euo pipefail
[ $# -gt 0 ] || { echo "usage: tools/coverage.sh BUILD [OPTION OF LLVM-COV...]" >&2; exit 2; }
build=$1
shift
libraries=("$build/src/libzrqardatainterfaces.so" "--object=$build/platform/i18n/libkui18n.so"
  "--object=$build/platform/resources/libzrqar_res.so" "--instr-profile=$build/all.profdata")
llvm-profdata-19 merge --output="$build/all.profdata" "$build"/profiles/*.profraw
llvm-cov-19 report --show-mcdc-summary --show-region-summary=0 "${libraries[@]}" "$@"
llvm-cov-19 show --show-branches=count --show-instantiations=false "${libraries[@]}" "$@" |
  awk -f "$(dirname "$0")/uncovered.awk"
