# fish ask.fish COMPLETION_FILE LINE: prints what can stand at the end of the line.
source $argv[1]
complete -C $argv[2] | string split -f 1 \t
