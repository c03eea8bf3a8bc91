# shellcheck shell=bash disable=SC1090  # the caller names the file
# bash ask.bash COMPLETION_FILE LINE: prints the completions of the last word of LINE.
. "$1"
line=$2
# readline splits a line at blanks, and at "=" and ":" outside quotation marks.
pattern='^("[^"]*"?|=|:|[^ =:"]+)'
COMP_WORDS=()
rest=$line
while [[ $rest ]]; do
  if [[ $rest == " "* ]]; then
    rest=${rest#" "}
    [[ $rest ]] || COMP_WORDS+=("")
  elif [[ $rest =~ $pattern ]]; then
    COMP_WORDS+=("${BASH_REMATCH[0]}")
    rest=${rest:${#BASH_REMATCH[0]}}
  fi
done
COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
"_${COMP_WORDS[0]}"
((${#COMPREPLY[@]} == 0)) || printf '%s\n' "${COMPREPLY[@]}"
