# shellcheck shell=bash
# Completion for qarread in bash.
_qarread() {
  local word=${2#=} previous=$3
  [[ $previous != = ]] || previous=${COMP_WORDS[COMP_CWORD - 2]}  # --locale=NAME is three words, as is FROM:TO
  case $previous in
    --locale) mapfile -t COMPREPLY < <(compgen -W "$(locale -a 2>/dev/null)" -- "$word") ;;
    --chunk | --lcp-to-utf8 | --utf8-to-lcp | --transcode | --stdin-name | :) compopt +o bashdefault +o default ;;  # no files
    *)
      [[ $word == -* ]] || return 0
      # The options are taken from the program's help.
      local options
      options=$("$1" --help 2>/dev/null | grep --only-matching --extended-regexp '(^|[ [|])--?[[:alpha:]][[:alnum:]-]*')
      mapfile -t COMPREPLY < <(compgen -W "${options//[[|]/}" -- "$word")
      ;;
  esac
}
complete -o bashdefault -o default -F _qarread qarread
