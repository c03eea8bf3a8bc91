#compdef zvknpa
# Completion of zvknpa(1) for zsh. The program's help tells what there is.

_zvknpa() {
  local -a names
  if [[ $PREFIX == --form=* ]]; then
    compset -P '*='
    compadd text capture
  elif [[ $PREFIX == --*=* ]]; then
    return 1
  elif [[ $PREFIX == -* ]]; then
    names=(${(f)"$(zvknpa --help | sed -nE 's/^  (--[a-z-]+=).*/\1/p')"})
    compadd -S '' -a names
    names=(${(f)"$(zvknpa --help | sed -nE 's/^  (--[a-z-]+) .*/\1/p')"})
    compadd -a names
  else
    _files
  fi
}

_zvknpa "$@"
