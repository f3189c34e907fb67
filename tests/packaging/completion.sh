#!/usr/bin/env bash
# completion.sh FILE QARREAD: checks the suggestions of the completion in FILE for the program QARREAD.
set -euo pipefail
# shellcheck source=/dev/null
. "$1"
program=$2
compopt() { :; }  # only while bash itself completes

# offers EXPECTED WORD...: checks that the suggestions for completing the last word have the line EXPECTED.
offers() {
  COMP_WORDS=("$program" "${@:2}") COMP_CWORD=$(($# - 1)) COMPREPLY=()
  _qarread "$program" "${!#}" "${COMP_WORDS[COMP_CWORD - 1]}"
  grep --quiet --line-regexp --fixed-strings -e "$1" <<<"$(printf '%s\n' "${COMPREPLY[@]}")" ||
    { echo "${*:2}: not offered: '$1', but: ${COMPREPLY[*]}"; exit 1; }
}

for option in $("$program" --help | grep --only-matching -e '--[a-z0-9-]*' | sort --unique); do
  offers "$option" "${option:0:3}"
done
offers -r -
offers C.utf8 --locale C
offers C.utf8 --locale = C
offers '' --chunk ''
offers '' --transcode UTF-8 : KO
offers '' some
