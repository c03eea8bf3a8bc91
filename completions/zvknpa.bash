# Completion of zvknpa(1) for bash. The program's help tells what there is.

_zvknpa() {
  local word=${COMP_WORDS[COMP_CWORD]} option="" prefix=""
  # Bash takes an option apart at its "=", unless COMP_WORDBREAKS has been told otherwise.
  if [[ $word == --*=* ]]; then
    option=${word%%=*} word=${word#*=} prefix=$option=
  elif [[ $word == = ]]; then
    option=${COMP_WORDS[COMP_CWORD - 1]} word=""
  elif ((COMP_CWORD > 1)) && [[ ${COMP_WORDS[COMP_CWORD - 1]} == = ]]; then
    option=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  case $option in
    --form) mapfile -t COMPREPLY < <(compgen -W "text capture" -- "$word") ;;
    ?*) COMPREPLY=() ;;
    *)
      if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(
          compgen -W "$(zvknpa --help | sed -nE 's/^  (--[a-z-]+=?).*/\1/p')" -- "$word")
        [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace 2>/dev/null
      else
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
        compopt -o filenames 2>/dev/null
      fi
      ;;
  esac
  COMPREPLY=("${COMPREPLY[@]/#/$prefix}")
}

complete -F _zvknpa zvknpa
