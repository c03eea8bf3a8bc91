# zsh ask.zsh COMPLETION_FILE LINE: prints the completions of the last word of LINE.
#
# Completion functions work only in the line editor. So the script starts another shell on a pseudo-terminal,
# and the line editor of that shell completes LINE. The shell's configuration stays in the home folder for the
# next call.
export ZDOTDIR=$HOME/zsh LINE_TO_COMPLETE=$2 OFFERS=$HOME/zsh/offers
if [[ ! -d $ZDOTDIR ]]; then
  mkdir $ZDOTDIR
  for file in ${1:h}/*.zsh; do
    cp $file $ZDOTDIR/_${${file:t}%.zsh}
  done
  cat >$ZDOTDIR/.zshrc <<'END'
fpath=($ZDOTDIR $fpath)
autoload -Uz compinit && compinit -C -d $ZDOTDIR/dump
# Records the words that are offered. A call with -O, -A or -D only filters words, so it is not recorded.
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
