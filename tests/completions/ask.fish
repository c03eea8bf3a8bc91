# fish ask.fish COMPLETION_FILE LINE: prints the completions of the last word of LINE.
for file in (path dirname $argv[1])/*.fish
    source $file
end
for candidate in (complete -C $argv[2])
    string split -m 1 -f 1 \t -- $candidate
end
exit 0
