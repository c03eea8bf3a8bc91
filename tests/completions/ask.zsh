# zsh ask.zsh COMPLETION_FILE LINE: prints what can stand at the end of the line. Completion functions
# work in the line editor only, so a shell of its own gets the line there, on a pseudo-terminal. What it
# needs is kept in the home folder for the next time.
export ZDOTDIR=$HOME/zsh LINE_TO_COMPLETE=$2 OFFERS=$HOME/zsh/offers
if [[ ! -d $ZDOTDIR ]]; then
  mkdir $ZDOTDIR
  for file in ${1:h}/*.zsh; do
    cp $file $ZDOTDIR/_${${file:t}%.zsh}
  done
  cat >$ZDOTDIR/.zshrc <<'END'
fpath=($ZDOTDIR $fpath)
autoload -Uz compinit && compinit -C -d $ZDOTDIR/dump
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
fi
: >$OFFERS
script --quiet --command "zsh -d -i" $ZDOTDIR/terminal >/dev/null </dev/null
cat $OFFERS
