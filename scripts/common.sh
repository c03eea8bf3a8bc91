# The functions and lists of packages that the scripts share. A script sources this file. This also changes the
# current folder to that of the project.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# Prints a heading.
say() { printf '\n== %s\n' "$*"; }

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "This needs root: $*" >&2
    echo "Run the script as root, or install sudo, or install the packages yourself and try again." >&2
    return 1
  fi
}

# Installs the packages that are missing among the arguments, and prints the names of these packages.
install_packages() {
  local missing
  mapfile -t missing < <(comm -23 <(printf '%s\n' "$@" | sort -u) \
    <(dpkg-query -W -f='${db:Status-Status} ${Package}\n' | sed -n 's/^installed //p' | sort))
  if [ "${#missing[@]}" -eq 0 ]; then
    echo "All needed packages are installed."
    return
  fi
  echo "Installing: ${missing[*]}"
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

# The Debian packages that the scripts need. scripts/setup installs all of them.
program_packages=(g++ cmake ninja-build gettext libcli11-dev libpugixml-dev libssl-dev libusb-dev nlohmann-json3-dev)
build_packages=("${program_packages[@]}" libpcap-dev)
test_packages=(binutils bsdextrautils ccache clang-format faketime fish git groff libexpat1-dev libgtest-dev libxml2-dev
  man-db mandoc openssl python3-jsonschema scdoc strace tshark xxd zsh)
clang_packages=(clang clang-tidy libclang-rt-dev)
valgrind_packages=(valgrind)
bench_packages=(libbenchmark-dev libboost-dev libexpat1-dev libglib2.0-dev libxml2-dev nettle-dev
  pkg-config xxd)
coverage_packages=(gcovr)
# The libraries are those of hostapd and wpa_supplicant.
kernel_packages=(qemu-system-x86 busybox-static cpio kmod libdbus-1-3 libnl-3-200 libnl-genl-3-200
  libnl-route-3-200 libpcsclite1 openssl python3-jsonschema xz-utils)
package_packages=(build-essential debhelper dpkg-dev lintian scdoc)
package_lane_packages=(faketime mmdebstrap proot)

# Ends a script whose tests cannot run on this machine. The status 77 differs from that of failed tests.
readonly StatusCannotRun=77
cannot_run() {
  echo "$(basename "$0") CANNOT RUN here: $*" >&2
  exit "$StatusCannotRun"
}

# Fails if a C++ file is not formatted, or if a file has a word of scripts/replaced_words.
check_format() {
  git ls-files '*.cpp' '*.h' | xargs -P "$(nproc)" -n 32 clang-format --dry-run -Werror
  echo "All files are formatted."
  check_words
}

# Fails if a tracked text file has a word of scripts/replaced_words. For each hit it prints the file, the
# line, the word, and what to write instead.
check_words() {
  local hits hit word pattern advice
  hits=$(git grep -noiEI -f <(grep -v '^#' scripts/replaced_words | cut -f 1) -- \
    . ':!LICENSE' ':!fuzz/seeds' ':!scripts/replaced_words') || [ $? -eq 1 ] || return
  if [ -z "$hits" ]; then
    echo "No file has a word of scripts/replaced_words."
    return
  fi
  while IFS= read -r hit; do
    word=${hit#*:*:}
    while IFS=$'\t' read -r pattern advice; do
      [[ $pattern == \#* || ! ${word,,} =~ ^(${pattern,,})$ ]] || break
    done <scripts/replaced_words
    echo "$hit: write $advice"
  done <<<"$hits" >&2
  echo "Words to replace: $(wc -l <<<"$hits")." >&2
  return 1
}

# Configures and builds the preset $1.
build_preset() {
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1"
}

# Runs the tests of the preset $1. Prints the failed and skipped tests and the counts, but not the tests that
# passed.
run_tests() {
  ctest --preset "$1" | sed -E '/^ +Start +[0-9]+: /d; /^ *[0-9]+\/[0-9]+ Test .* Passed /d'
}

# --- Lanes with numbered assertions ----------------------------------------------------------------

passed=0
failed=0

# assert NUMBER TEXT COMMAND...: passes if COMMAND succeeds. The output of COMMAND goes to $folder/evidence. The
# numbers increase. The hundreds digit stands for the subject of an assertion. A new assertion takes the next
# number of its subject.
assert() {
  local number=$1 text=$2
  shift 2
  if "$@" >"$folder/evidence" 2>&1; then
    echo "$number ok      $text"
    passed=$((passed + 1))
  else
    echo "$number FAILED  $text"
    echo "    asserted: $*"
    tail -n 40 "$folder/evidence" | sed 's/^/    /'
    failed=$((failed + 1))
  fi
}

# --- Debian systems in folders ----------------------------------------------------------------------

# Prints the package sources of this machine's release, one per line.
package_sources() {
  apt-get indextargets --format \
    'deb $(REPO_URI) $(RELEASE) $(COMPONENT) #$(ORIGIN) $(CODENAME)' \
    'Created-By: Packages' "Architecture: $architecture" |
    grep -E "^[^#]* main #Debian $release(-updates|-security)?\$" | sed 's/ #.*//' | sort -u
}

# Prints the settings of apt for reaching the package sources, such as proxies. apt in another Debian system
# needs these settings too.
package_settings() {
  apt-config dump | grep -E '^Acquire::((http|https)::|Check-|ForceIPv|Languages|Retries)' || [ $? -eq 1 ]
}

# Prints the package source of a release, without its updates. So all architectures have the same versions.
source_of_release() {
  apt-get indextargets --format 'deb $(REPO_URI) RELEASE $(COMPONENT) #$(ORIGIN) $(RELEASE)' 'Created-By: Packages' |
    grep -E "^[^#]* main #Debian $(. /etc/os-release && echo "$VERSION_CODENAME")\$" |
    sed "s/ #.*//; s/ RELEASE / $1 /" | sort -u
}

readonly port_folder=$PWD/build/ports

# The packages that a build for another architecture needs: programs of this machine, libraries of the other one.
port_tools=(build-essential ccache cmake debhelper gettext libcli11-dev ninja-build nlohmann-json3-dev openssl
  qemu-user-static scdoc strace)
port_libraries=(libexpat1-dev libfaketime libgtest-dev libpcap-dev libpugixml-dev libssl-dev libusb-dev libxml2-dev)

# Prints the GNU name of an architecture, such as arm-linux-gnueabihf.
gnu_name() { dpkg-architecture -a"$1" -qDEB_HOST_GNU_TYPE 2>/dev/null; }

# make_debian NAME RELEASE ARCHITECTURES PACKAGE...: installs a Debian system in the folder build/ports/NAME.root,
# unless it is there from an earlier run. Returns 1 and prints the reason if this fails.
make_debian() {
  local name=$1 release=$2 architectures=$3 root=$port_folder/$1.root content
  shift 3
  content="$release $architectures $*"
  [ "$(cat "$port_folder/$name.content" 2>/dev/null)" != "$content" ] || return 0
  mkdir -p "$port_folder"
  package_settings >"$port_folder/settings"
  source_of_release "$release" >"$port_folder/$name.list" || {
    echo "apt has no source of Debian's packages"
    return 1
  }
  rm -f "$port_folder/$name.content"
  as_root rm -rf --one-file-system "$root"
  as_root timeout --foreground 500 mmdebstrap --mode=root --variant=apt --aptopt="$port_folder/settings" \
    --dpkgopt=force-unsafe-io --skip=cleanup/apt/lists --architectures="$architectures" \
    --include="ca-certificates $*" "$release" "$root" "$port_folder/$name.list" >"$port_folder/$name.log" 2>&1 || {
    tail -n 15 "$port_folder/$name.log"
    return 1
  }
  echo "$content" >"$port_folder/$name.content"
}

# Makes the Debian system in which the programs are built for an architecture. It has this machine's release.
make_port_debian() {
  make_debian "$1" "$(. /etc/os-release && echo "$VERSION_CODENAME")" "$(dpkg --print-architecture),$1" \
    "crossbuild-essential-$1" "${port_tools[@]}" "${port_libraries[@]/%/:$1}"
}

# in_debian NAME COMMAND...: runs a command as root in the Debian system build/ports/NAME.root, in the folder of the
# project.
in_debian() {
  local name=$1
  shift
  as_root env CCACHE_DIR="${CCACHE_DIR:-$(ccache --get-config cache_dir 2>/dev/null || true)}" \
    CROSS_EMULATOR="${CROSS_EMULATOR:-}" tests/ports/in_root "$port_folder/$name.root" "$@"
}
