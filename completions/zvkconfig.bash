# Completion of zvkconfig(1) for bash.

_zvkconfig_values() {  # OPTION VALUE SWITCH: prints the values of OPTION that begin with VALUE
  local listed=""
  case $1 in
    --mode) compgen -W "Managed Ad-Hoc" -- "$2" ;;
    --channel) compgen -W "1 2 3 4 5 6 7 8 9 10 11" -- "$2" ;;
    --security)
      case $3 in
        -c) compgen -W "None WEP WPA WPA2" -- "$2" ;;
        -ca) compgen -W "OPEN SHARED WPA-PER WPA-ENT 802.1x" -- "$2" ;;
      esac
      ;;
    --encryption)
      compgen -W "TKIP AES WEP NONE WEP-DYNAMIC WEP-STATIC WPA-TKIP WPA-AES" -- "$2"
      ;;
    --802-auth-ext)
      # A list in quotation marks, for the shell would take its "|" for a pipe.
      [[ $2 == *"|"* ]] && listed=${2%"|"*}"|"
      compgen -P "$listed" -W "EAP-MD5 MSCHAPv2 LEAP PEAP EAP-TLS EAP-TTLS" -- "${2#"$listed"}"
      ;;
    --802-auth-inner) compgen -W "CHAP MSCHAP MSCHAPv2 PAP" -- "$2" ;;
    --WEP-transmit) compgen -W "1 2 3 4" -- "$2" ;;
    --802-CA-cer-file | --802-signed-cer-file | --cer-path) compgen -f -- "$2" ;;
  esac
}

_zvkconfig_devices() {
  local device
  for device in /dev/usb/lp*; do
    [[ -e $device && $device == "$1"* ]] && echo "$device"
  done
}

_zvkconfig() {
  local switches="-c -ca -s -ip -t -a -802s -cer -rcerdefs -csr -icer -npa -r -h"
  local options="--ssid= --mode= --channel= --security= --passwd= --psk= --encryption= --WEP-key1=
    --WEP-key2= --WEP-key3= --WEP-key4= --WEP-transmit= --802-auth-ext= --802-auth-inner=
    --802-user= --802-pwd= --cer-common= --cer-org= --cer-unit= --cer-state= --cer-country=
    --cer-city= --cer-altname= --cer-friendly-name= --cer-path= --802-CA-cer-file=
    --802-signed-cer-file="
  local switch=${COMP_WORDS[1]-} word=${COMP_WORDS[COMP_CWORD]} option="" prefix=""
  # Bash takes an option apart at its "=", unless COMP_WORDBREAKS has been told otherwise.
  if [[ $word == --*=* ]]; then
    option=${word%%=*} word=${word#*=} prefix=$option=
  elif [[ $word == = ]]; then
    option=${COMP_WORDS[COMP_CWORD - 1]} word=""
  elif [[ ${COMP_WORDS[COMP_CWORD - 1]} == = ]]; then
    option=${COMP_WORDS[COMP_CWORD - 2]}
  fi

  local takes_options="" takes_file=""
  case $switch in
    -c | -ca | -cer | -csr | -icer | -rcerdefs) takes_options=yes takes_file=yes ;;
    -npa) takes_file=yes ;;
  esac

  if ((COMP_CWORD == 1)); then
    mapfile -t COMPREPLY < <(compgen -W "$switches" -- "$word")
  elif [[ ${COMP_WORDS[2]} == -file && $takes_file ]] && ((COMP_CWORD > 2)); then
    if ((COMP_CWORD == 3)); then
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      compopt -o filenames 2>/dev/null
    else
      mapfile -t COMPREPLY < <(_zvkconfig_devices "$word")
    fi
  elif [[ $option ]]; then
    [[ $takes_options ]] || return
    mapfile -t COMPREPLY < <(_zvkconfig_values "$option" "${word#[\"\']}" "$switch")
    COMPREPLY=("${COMPREPLY[@]/#/$prefix}")
    case $option in *-file | *-path) compopt -o filenames 2>/dev/null ;; esac
  else
    local file_switch=""
    [[ $takes_file ]] && ((COMP_CWORD == 2)) && file_switch=-file
    mapfile -t COMPREPLY < <(
      compgen -W "$file_switch ${takes_options:+$options}" -- "$word"
      _zvkconfig_devices "$word"
    )
    [[ ${COMPREPLY[0]-} == *= ]] && compopt -o nospace 2>/dev/null
  fi
}

complete -F _zvkconfig zvkconfig
