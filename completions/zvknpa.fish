# Completion of zvknpa(1) for fish. The program's help tells what there is.

function __zvknpa_words
    set -l word (commandline -ct)
    switch $word
        case '--form=*'
            string join \n -- --form=text --form=capture
        case '--*=*'
        case '-*'
            zvknpa --help | string replace -rf '^  (--[a-z-]+=?)\S* +(.*)' '$1\t$2'
        case '*'
            __fish_complete_path $word
    end
end

complete -c zvknpa -f -a '(__zvknpa_words)'
