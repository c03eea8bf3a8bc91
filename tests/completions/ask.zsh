# zsh ask.zsh COMPLETION_FILE LINE: prints what can stand at the end of the line. Completion functions
# work in the line editor only, so a shell of its own gets the line there, on a pseudo-terminal.
folder=$(mktemp -d)
cp $1 $folder/_${${1:t}%.zsh}
export ZDOTDIR=$folder LINE_TO_COMPLETE=$2 OFFERS=$folder/offers
cat >$folder/.zshrc <<'END'
fpath=($ZDOTDIR $fpath)
autoload -Uz compinit && compinit -u -d $ZDOTDIR/dump
# Keeps what is offered. Calls that only sort out what fits go through untouched.
compadd() {
  if [[ -z ${(M)@:#-[OAD]} ]]; then
    local -a offered
    builtin compadd -A offered "$@"
    (( $#offered )) && print -rl -- $offered >>$OFFERS
  fi
  builtin compadd "$@"
}
zle-line-init() {
  BUFFER=$LINE_TO_COMPLETE CURSOR=$#LINE_TO_COMPLETE
  zle complete-word
  exit
}
zle -N zle-line-init
END
script --quiet --command "zsh -d -i" $folder/terminal >/dev/null </dev/null
[[ ! -e $OFFERS ]] || cat $OFFERS
rm -rf $folder
