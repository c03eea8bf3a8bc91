#compdef zvkconfig
# Completion of zvkconfig(1) for zsh.

_zvkconfig_values() {  # OPTION SWITCH
  local -a values
  case $1 in
    --mode) values=(Managed Ad-Hoc) ;;
    --channel) values=({1..11}) ;;
    --security)
      case $2 in
        -c) values=(None WEP WPA WPA2) ;;
        -ca) values=(OPEN SHARED WPA-PER WPA-ENT 802.1x) ;;
      esac
      ;;
    --encryption) values=(TKIP AES WEP NONE WEP-DYNAMIC WEP-STATIC WPA-TKIP WPA-AES) ;;
    --802-auth-ext)
      compset -P '*\|'
      values=(EAP-MD5 MSCHAPv2 LEAP PEAP EAP-TLS EAP-TTLS)
      ;;
    --802-auth-inner) values=(CHAP MSCHAP MSCHAPv2 PAP) ;;
    --WEP-transmit) values=(1 2 3 4) ;;
    --802-CA-cer-file | --802-signed-cer-file | --cer-path) _files; return ;;
  esac
  compadd -a values
}

_zvkconfig() {
  local -a switches=(
    '-c:basic configuration'
    '-ca:advanced configuration'
    '-s:print the SSID'
    '-ip:print the IP address'
    '-t:trouble code'
    '-a:adapter descriptor'
    '-802s:802.1x authentication status'
    '-cer:organisation and common name of the certificate'
    '-rcerdefs:print the proposals for a certificate request'
    '-csr:make a certificate request'
    '-icer:install a certificate'
    '-npa:send a packet'
    '-r:reset the adapter'
    '-h:print the help text')
  local -a options=(
    '--ssid=:name of the network'
    '--mode=:managed or ad-hoc'
    '--channel=:channel of an ad-hoc network'
    '--security=:security of the network'
    '--passwd=:password of the network'
    '--psk=:pre-shared key'
    '--encryption=:encryption'
    '--WEP-key1=:first WEP key'
    '--WEP-key2=:second WEP key'
    '--WEP-key3=:third WEP key'
    '--WEP-key4=:fourth WEP key'
    '--WEP-transmit=:number of the WEP key to send with'
    '--802-auth-ext=:authentication methods'
    '--802-auth-inner=:inner authentication'
    '--802-user=:user name'
    '--802-pwd=:password of the user'
    '--cer-common=:common name'
    '--cer-org=:organisation'
    '--cer-unit=:organisational unit'
    '--cer-state=:state'
    '--cer-country=:country'
    '--cer-city=:city'
    '--cer-altname=:alternative name'
    '--cer-friendly-name=:name of the certificate'
    '--cer-path=:where to write the request'
    '--802-CA-cer-file=:CA certificate'
    '--802-signed-cer-file=:signed certificate')
  local -a devices=(/dev/usb/lp*(N)) file_switch=('-file:read the options from a file')
  local switch=$words[2] takes_options= takes_file=
  case $switch in
    -c | -ca | -cer | -csr | -icer | -rcerdefs) takes_options=yes takes_file=yes ;;
    -npa) takes_file=yes ;;
  esac

  if (( CURRENT == 2 )); then
    _describe switch switches
  elif [[ $words[3] == -file && -n $takes_file ]] && (( CURRENT > 3 )); then
    if (( CURRENT == 4 )); then _files; else compadd -a devices; fi
  elif [[ -n $takes_options && $PREFIX == --*=* ]]; then
    compset -P '*='
    _zvkconfig_values ${words[CURRENT]%%=*} $switch
  else
    [[ -n $takes_file ]] && (( CURRENT == 3 )) && _describe -o option file_switch
    [[ -n $takes_options ]] && _describe -o option options -S ''
    compadd -a devices
  fi
}

_zvkconfig "$@"
