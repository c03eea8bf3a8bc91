# Completion of zvkprinter(1) for fish. The program's help tells what there is.

function __zvkprinter_in_options
    set -l words (commandline -opc)
    test (count $words) -ge 2; and not contains -- -- $words
end

function __zvkprinter_options
    set -l word (commandline -ct)
    if not set -l parts (string match -r '^(--[^=]*)=(.*)' -- $word)
        zvkprinter help | string replace -rf '^  (--[a-z-]+=?)\S* +(.*)' '$1\t$2'
        return
    end
    # What the help calls the value tells its kind.
    switch (zvkprinter help | string replace -rf "^  $parts[2]=(\S+).*" '$1')
        case 'full|high'
            string join \n -- $parts[2]=full $parts[2]=high
        case 'in|out*'
            string join \n -- $parts[2]=in $parts[2]=out
        case '*DIR'
            __fish_complete_directories $parts[3] | string replace -r '^' -- $parts[2]=
        case '*FILE' PATH
            __fish_complete_path $parts[3] | string replace -r '^' -- $parts[2]=
    end
end

# What the command behind "--" would complete by itself.
function __zvkprinter_command
    set -l words (commandline -opc)
    set -l first (math (contains -i -- -- $words) + 1)
    __fish_complete_subcommand --commandline $words[$first..-1] (commandline -ct)
end

complete -c zvkprinter -f
complete -c zvkprinter -n 'test (count (commandline -opc)) -eq 1' -a 'run serve usb show help'
complete -c zvkprinter -n __zvkprinter_in_options -a '(__zvkprinter_options)'
complete -c zvkprinter -n 'contains -- -- (commandline -opc)' -a '(__zvkprinter_command)'
