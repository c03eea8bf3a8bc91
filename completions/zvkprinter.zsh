#compdef zvkprinter
# Completion of zvkprinter(1) for zsh. The program's help tells what there is.

_zvkprinter() {
  local -i behind=$words[(i)--]
  local -a names
  if (( CURRENT == 2 )); then
    compadd run serve usb show help
  elif (( behind < CURRENT )); then  # behind -- stands a command
    shift behind words
    (( CURRENT -= behind ))
    _normal
  elif [[ $PREFIX != --*=* ]]; then
    names=(${(f)"$(zvkprinter help | sed -nE 's/^  (--[a-z-]+=).*/\1/p')"})
    compadd -S '' -a names
    names=(${(f)"$(zvkprinter help | sed -nE 's/^  (--[a-z-]+) .*/\1/p')"})
    compadd -a names
  else
    compset -P '*='
    # What the help calls the value tells its kind.
    case $(zvkprinter help | sed -nE "s/^  ${words[CURRENT]%%=*}=([^ ]+).*/\1/p") in
      'full|high') compadd full high ;;
      'in|out'*) compadd in out ;;
      *DIR) _files -/ ;;
      *FILE | PATH) _files ;;
    esac
  fi
}

_zvkprinter "$@"
