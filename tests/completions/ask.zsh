# zsh ask.zsh COMPLETION_FILE LINE: prints what can stand at the end of the line. Completion functions
# work in the line editor only, so a shell of its own gets the line typed, on a pseudo-terminal.
zmodload zsh/zpty
folder=$(mktemp -d)
cp $1 $folder/_${${1:t}%.zsh}
export LINE_TO_COMPLETE=$2 OFFERS=$folder/offers
cat >$folder/.zshrc <<'END'
fpath=($ZDOTDIR $fpath)
autoload -Uz compinit && compinit -u -d $ZDOTDIR/dump
zstyle ':completion:*' verbose no
# Keeps what is offered. Calls that ask for no offer but for the list of them go through untouched.
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
ZDOTDIR=$folder zpty shell zsh -d -i
while zpty -r shell; do :; done >$folder/terminal
[[ ! -e $OFFERS ]] || cat $OFFERS
rm -rf $folder
