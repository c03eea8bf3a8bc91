# Completion of zvkconfig(1) for fish.

function __zvkconfig_at # COUNT: so many words stand before
    test (count (commandline -opc)) -eq $argv[1]
end

function __zvkconfig_switch # SWITCH...: one of them is the first word
    set -l words (commandline -opc)
    test (count $words) -ge 2; and contains -- $words[2] $argv
end

function __zvkconfig_takes_options
    set -l words (commandline -opc)
    __zvkconfig_switch -c -ca -cer -csr -icer -rcerdefs; and test "$words[3]" != -file
end

function __zvkconfig_takes_file
    set -l words (commandline -opc)
    __zvkconfig_switch -c -ca -cer -csr -icer -rcerdefs -npa; or return
    __zvkconfig_at 2; or begin
        __zvkconfig_at 3; and test $words[3] = -file
    end
end

function __zvkconfig_devices
    set -l devices /dev/usb/lp*
    string join -- \n $devices
end

function __zvkconfig_values # OPTION VALUE
    switch $argv[1]
        case --mode
            string join \n Managed Ad-Hoc
        case --channel
            seq 11
        case --security
            if __zvkconfig_switch -c
                string join \n None WEP WPA WPA2
            else if __zvkconfig_switch -ca
                string join \n OPEN SHARED WPA-PER WPA-ENT 802.1x
            end
        case --encryption
            string join \n TKIP AES WEP NONE WEP-DYNAMIC WEP-STATIC WPA-TKIP WPA-AES
        case --802-auth-ext
            string replace -r '^' -- (string match -r '.*\||' -- $argv[2]) \
                EAP-MD5 MSCHAPv2 LEAP PEAP EAP-TLS EAP-TTLS
        case --802-auth-inner
            string join \n CHAP MSCHAP MSCHAPv2 PAP
        case --WEP-transmit
            seq 4
        case --802-CA-cer-file --802-signed-cer-file --cer-path
            __fish_complete_path $argv[2]
    end
end

# The options with their "=", which fish itself would leave out.
function __zvkconfig_options
    set -l word (commandline -ct | string replace -ra '["\']' '')
    if set -l parts (string match -r '^(--[^=]*)=(.*)' -- $word)
        __zvkconfig_values $parts[2] $parts[3] | string replace -r '^' -- $parts[2]=
        return
    end
    printf '%s=\t%s\n' \
        --ssid 'Name of the network' \
        --mode 'Managed or ad-hoc' \
        --channel 'Channel of an ad-hoc network' \
        --security 'Security of the network' \
        --passwd 'Password of the network' \
        --psk 'Pre-shared key' \
        --encryption Encryption \
        --WEP-key1 'First WEP key' \
        --WEP-key2 'Second WEP key' \
        --WEP-key3 'Third WEP key' \
        --WEP-key4 'Fourth WEP key' \
        --WEP-transmit 'Number of the WEP key to send with' \
        --802-auth-ext 'Authentication methods' \
        --802-auth-inner 'Inner authentication' \
        --802-user 'User name' \
        --802-pwd 'Password of the user' \
        --cer-common 'Common name' \
        --cer-org Organisation \
        --cer-unit 'Organisational unit' \
        --cer-state State \
        --cer-country Country \
        --cer-city City \
        --cer-altname 'Alternative name' \
        --cer-friendly-name 'Name of the certificate' \
        --cer-path 'Where to write the request' \
        --802-CA-cer-file 'CA certificate' \
        --802-signed-cer-file 'Signed certificate'
end

complete -c zvkconfig -f
complete -c zvkconfig -n 'not __zvkconfig_at 1' -a '(__zvkconfig_devices)'
complete -c zvkconfig -n __zvkconfig_takes_file -o file -r -F -d 'Read the options from a file'
complete -c zvkconfig -n __zvkconfig_takes_options -a '(__zvkconfig_options)'

function __zvkconfig_add_switch
    complete -c zvkconfig -n '__zvkconfig_at 1' -a "-$argv[1]" -d $argv[2]
end

__zvkconfig_add_switch c 'Basic configuration'
__zvkconfig_add_switch ca 'Advanced configuration'
__zvkconfig_add_switch s 'Print the SSID'
__zvkconfig_add_switch ip 'Print the IP address'
__zvkconfig_add_switch t 'Trouble code'
__zvkconfig_add_switch a 'Adapter descriptor'
__zvkconfig_add_switch 802s '802.1x authentication status'
__zvkconfig_add_switch cer 'Organisation and common name of the certificate'
__zvkconfig_add_switch rcerdefs 'Print the proposals for a certificate request'
__zvkconfig_add_switch csr 'Make a certificate request'
__zvkconfig_add_switch icer 'Install a certificate'
__zvkconfig_add_switch npa 'Send a packet'
__zvkconfig_add_switch r 'Reset the adapter'
__zvkconfig_add_switch h 'Print the help text'
