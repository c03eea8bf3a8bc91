# fish ask.fish COMPLETION_FILE LINE: prints what can stand at the end of the line.
source $argv[1]
for candidate in (complete -C $argv[2])
    string split -m 1 -f 1 \t -- $candidate
end
exit 0
