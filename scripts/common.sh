# The functions and lists of packages that the scripts share. A script sources this file. The script's current
# folder is then the project's folder.

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
program_packages=(g++ cmake ninja-build gettext libcli11-dev libpugixml-dev libssl-dev libudev-dev
  libusb-dev nlohmann-json3-dev)
build_packages=("${program_packages[@]}" libpcap-dev)
test_packages=(binutils bsdextrautils ccache clang-format faketime fish git groff libexpat1-dev libgtest-dev
  libxml2-dev man-db mandoc openssl python3-jsonschema scdoc strace tshark xxd zsh)
clang_packages=(clang clang-tidy libclang-rt-dev)
valgrind_packages=(valgrind)
bench_packages=(libbenchmark-dev libboost-dev libexpat1-dev libglib2.0-dev libxml2-dev nettle-dev
  pkg-config valgrind xxd)
coverage_packages=(gcovr)
# The libraries are those of hostapd and wpa_supplicant.
kernel_packages=(qemu-system-x86 busybox-static cpio kmod libdbus-1-3 libnl-3-200 libnl-genl-3-200
  libnl-route-3-200 libpcsclite1 openssl python3-jsonschema xz-utils)
package_packages=(build-essential debhelper dpkg-dev lintian scdoc)
ansible_packages=(ansible-core ansible-lint faketime python3-apt strace)
package_lane_packages=(faketime mmdebstrap proot)

# Ends a script whose tests cannot run on this machine. The status 77 differs from that of failed tests.
readonly StatusCannotRun=77
cannot_run() {
  echo "$(basename "$0") CANNOT RUN here: $*" >&2
  exit "$StatusCannotRun"
}

# Fails if a C++ file is not formatted, or if a tracked text file has a word of scripts/replaced_words.
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
  local unity=()
  # A CI machine starts without a compiler cache. Several sources compiled together take two thirds of the time.
  # Elsewhere a release build compiles each source alone, so that the compiler finds a source whose includes are incomplete.
  [ -z "${CI:-}" ] || unity=(-DCMAKE_UNITY_BUILD=ON)
  cmake --preset "$1" "${unity[@]}" >/dev/null
  cmake --build --preset "$1"
}

# Runs the tests of the preset $1. Prints the counts, and the tests that failed or were skipped, but not those
# that passed.
run_tests() {
  ctest --preset "$1" | sed -E '/^ +Start +[0-9]+: /d; /^ *[0-9]+\/[0-9]+ Test .* Passed /d'
}

# The counts of the assertions of a lane.
passed=0
failed=0

# assert NUMBER TEXT COMMAND...: passes if COMMAND succeeds. If COMMAND fails, its output is in
# $folder/evidence.NUMBER. The numbers increase. The hundreds digit stands for the subject of an assertion. A new
# assertion takes the next number of its subject.
assert() {
  local number=$1 text=$2 evidence=$folder/evidence.of.$$  # two runs at once do not disturb each other
  shift 2
  if "$@" >"$evidence" 2>&1; then
    echo "$number ok      $text"
    passed=$((passed + 1))
    rm "$evidence"
  else
    echo "$number FAILED  $text"
    echo "    asserted: $*"
    tail -n 40 "$evidence" | cut -c 1-300 | sed 's/^/    /'
    mv "$evidence" "$folder/evidence.$number"
    failed=$((failed + 1))
  fi
}

# end_lane NAME: prints the counts. Ends the script with 1 if an assertion failed, or if there was none.
end_lane() {
  echo "$passed passed, $failed failed"
  if [ "$failed" -ne 0 ] || [ "$passed" -eq 0 ]; then
    echo "The $1 lane FAILED. Its logs are in $folder."
    exit 1
  fi
}
