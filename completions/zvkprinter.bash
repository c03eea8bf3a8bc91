# Completion of zvkprinter(1) for bash. The program's help tells what there is.

_zvkprinter() {
  local word=${COMP_WORDS[COMP_CWORD]} option="" prefix="" i
  if ((COMP_CWORD == 1)); then
    mapfile -t COMPREPLY < <(compgen -W "run serve usb show help" -- "$word")
    return
  fi
  for ((i = 2; i < COMP_CWORD; i++)); do
    if [[ ${COMP_WORDS[i]} == -- ]]; then  # behind it stands a command
      if declare -F _command_offset >/dev/null; then
        _command_offset $((i + 1))
      else
        mapfile -t COMPREPLY < <(compgen -c -f -- "$word")
      fi
      return
    fi
  done

  # Bash takes an option apart at its "=", unless COMP_WORDBREAKS has been told otherwise.
  if [[ $word == --*=* ]]; then
    option=${word%%=*} word=${word#*=} prefix=$option=
  elif [[ $word == = ]]; then
    option=${COMP_WORDS[COMP_CWORD - 1]} word=""
  elif [[ ${COMP_WORDS[COMP_CWORD - 1]} == = ]]; then
    option=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  if [[ -z $option ]]; then
    mapfile -t COMPREPLY < <(
      compgen -W "$(zvkprinter help | sed -nE 's/^  (--[a-z-]+=?).*/\1/p')" -- "$word")
    [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace 2>/dev/null
    return
  fi
  # What the help calls the value tells its kind.
  case $(zvkprinter help | sed -nE "s/^  $option=([^ ]+).*/\1/p") in
    'full|high') mapfile -t COMPREPLY < <(compgen -W "full high" -- "$word") ;;
    'in|out'*) mapfile -t COMPREPLY < <(compgen -W "in out" -- "$word") ;;
    *DIR)
      mapfile -t COMPREPLY < <(compgen -d -- "$word")
      compopt -o filenames 2>/dev/null
      ;;
    *FILE | PATH)
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      compopt -o filenames 2>/dev/null
      ;;
  esac
  COMPREPLY=("${COMPREPLY[@]/#/$prefix}")
}

complete -F _zvkprinter zvkprinter
