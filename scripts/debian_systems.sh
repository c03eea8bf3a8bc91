# Functions for Debian systems in folders. A script sources this file after common.sh.
# shellcheck shell=bash disable=SC2034

this_release=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
this_architecture=$(dpkg --print-architecture 2>/dev/null || true)

# package_sources [SUITES]: prints the package sources of this machine's release, one per line. SUITES is a
# pattern for the further suites, such as '(-updates|-security)'.
package_sources() {
  apt-get indextargets --format \
    'deb $(REPO_URI) $(RELEASE) $(COMPONENT) #$(ORIGIN) $(CODENAME)' \
    'Created-By: Packages' "Architecture: $this_architecture" |
    grep -E "^[^#]* main #Debian $this_release${1:+$1?}\$" | sed 's/ #.*//' | sort -u
}

# Prints the settings of apt for reaching the package sources, such as proxies. apt in another Debian system
# needs these settings too.
package_settings() {
  apt-config dump | grep -E '^Acquire::((http|https)::|Check-|ForceIPv|Languages|Retries)' || [ $? -eq 1 ]
}

# Updates the lists of packages if apt has no source of Debian's packages. Fails if there is none after that.
find_package_sources() {
  package_sources >/dev/null || { as_root apt-get update -qq && package_sources >/dev/null; }
}

# install_debian ROOT RELEASE SOURCES [OPTION]...: installs a minimal Debian system into the folder ROOT, with
# options of mmdebstrap. The file SOURCES has the package sources.
install_debian() {
  local root=$1 release=$2 sources=$3
  shift 3
  package_settings >"$sources.settings"
  as_root rm -rf --one-file-system "$root"
  as_root timeout --foreground 600 mmdebstrap --quiet --mode=root --variant=apt --aptopt="$sources.settings" \
    --dpkgopt=force-unsafe-io --skip=cleanup/apt/lists "$@" "$release" "$root" "$sources"
}

# --- Packages in a Debian system -----------------------------------------------------------------------
#
# RUN is the command that runs a command as root in the system.

programs=(zvkconfig zvkwifi zvkprinter zvknpa)
packages=(zvkconfig zvkconfig-tools)

# install_built FOLDER ROOT RUN...: installs the packages that scripts/package wrote to FOLDER in the system in
# the folder ROOT. The packages and their tests are then in the folder /srv of this system.
install_built() {
  local folder=$1 srv=$2/srv package
  shift 2
  as_root rm -rf "$srv/packages" "$srv/tests" && as_root mkdir -p "$srv/packages" || return
  for package in "${packages[@]}"; do
    as_root cp "$folder/${package}_"*.deb "$srv/packages" || return
  done
  as_root cp -r "$folder/zvkconfig/debian/tests" "$srv/tests" &&
    "$@" sh -c 'exec apt-get install -y --no-install-recommends /srv/packages/*.deb'
}

# remove_packages RUN...
remove_packages() { "$@" apt-get purge -y --auto-remove "${packages[@]}"; }

# run_installed_test NAME RUN...: runs a test of packaging/debian/tests, which uses only the installed packages.
run_installed_test() {
  local name=$1
  shift
  "$@" sh -euc 'AUTOPKGTEST_TMP=$(mktemp -d) exec "/srv/tests/$1"' sh "$name"
}

# program_starts PATH RUN...: returns true if the program prints its help text.
program_starts() {
  local path=$1 help=--help
  shift
  case "${path##*/}" in
    zvkconfig) help=-h ;;
    zvkprinter) help=help ;;
  esac
  "$@" "$path" "$help" | grep "${path##*/}"
}

# --- Debian systems for other machines -------------------------------------------------------------------

readonly port_folder=$PWD/build/ports

# The packages that a build for another architecture needs: programs of this machine, libraries of the other
# one.
port_tools=(build-essential ccache cmake debhelper faketime gettext libcli11-dev mmdebstrap ninja-build
  nlohmann-json3-dev openssl qemu-user-static scdoc strace)
port_libraries=(libexpat1-dev libfaketime libgtest-dev libpcap-dev libpugixml-dev libssl-dev libudev-dev
  libusb-dev libxml2-dev)

# Prints the GNU name of an architecture, such as arm-linux-gnueabihf.
gnu_name() { dpkg-architecture -a"$1" -qDEB_HOST_GNU_TYPE 2>/dev/null; }

# Prints QEMU's name of the processor of a port, such as arm, or nothing if no emulation is needed.
qemu_name() { [[ $1 == i386 || $1 == trixie ]] || dpkg-architecture -a"$1" -qDEB_HOST_GNU_CPU 2>/dev/null; }

# make_port_system NAME RELEASE ARCHITECTURES PACKAGE...: installs a Debian system into the folder
# build/ports/NAME.root, unless an earlier run has installed the same. Returns 1 and prints the reason if this
# fails. The package sources do not include updates, so that a package has the same version for each
# architecture.
make_port_system() {
  local name=$1 release=$2 architectures=$3 sources=$port_folder/$1.list content
  shift 3
  content="$release $architectures $*"
  [ "$(cat "$port_folder/$name.content" 2>/dev/null)" != "$content" ] || return 0
  mkdir -p "$port_folder"
  rm -f "$port_folder/$name.content"
  if ! find_package_sources || ! package_sources | sed -E "s/^(deb [^ ]+) [^ ]+/\\1 $release/" >"$sources"; then
    echo "apt has no source of Debian's packages"
    return 1
  fi
  install_debian "$port_folder/$name.root" "$release" "$sources" --architectures="$architectures" \
    --include="ca-certificates $*" >"$port_folder/$name.log" 2>&1 || {
    tail -n 15 "$port_folder/$name.log"
    return 1
  }
  echo "$content" >"$port_folder/$name.content"
}

# Makes the Debian system in which the programs are built for an architecture. It has this machine's release.
make_cross_system() {
  make_port_system "$1" "$this_release" "$this_architecture,$1" \
    "crossbuild-essential-$1" "${port_tools[@]}" "${port_libraries[@]/%/:$1}"
}

# in_port NAME COMMAND...: runs a command as root in the Debian system build/ports/NAME.root, in the folder of
# the project. If the caller is not root, the compiler cache is in build/ports, because root would own the new
# files in the caller's cache.
in_port() {
  local name=$1 cache=$port_folder/ccache
  shift
  [ "$(id -u)" -ne 0 ] || cache=${CCACHE_DIR:-$(ccache --get-config cache_dir)}
  mkdir -p "$cache"
  as_root env CCACHE_DIR="$cache" CROSS_EMULATOR="${CROSS_EMULATOR:-}" scripts/in_debian \
    --see="$PWD" --see="$cache" --processor="$(qemu_name "$name")" \
    "$port_folder/$name.root" "$@"
}
