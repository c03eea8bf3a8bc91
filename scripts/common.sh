# Shared by the scripts: where the project is, what it says, what it installs. Sourced, not run.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }

as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    echo "This needs root: $*" >&2
    echo "Run it as root, or install sudo, or install these packages yourself and try again." >&2
    return 1
  fi
}

# Installs the packages that are missing, and says which.
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

# What each script needs, as Debian's packages; scripts/setup installs all of it.
program_packages=(g++ cmake ninja-build libpugixml-dev libssl-dev libusb-dev)
build_packages=("${program_packages[@]}" libpcap-dev nlohmann-json3-dev)
test_packages=(binutils bsdextrautils ccache clang-format faketime fish groff libexpat1-dev libgtest-dev libxml2-dev
  man-db mandoc openssl scdoc strace tshark xxd zsh)
clang_packages=(clang clang-tidy libclang-rt-dev)
valgrind_packages=(valgrind)
bench_packages=(libbenchmark-dev libboost-dev libexpat1-dev libglib2.0-dev libxml2-dev nettle-dev
  pkg-config xxd)
coverage_packages=(gcovr)
kernel_packages=(qemu-system-x86 busybox-static cpio kmod openssl xz-utils)
package_packages=(build-essential debhelper dpkg-dev lintian scdoc)
package_lane_packages=(faketime mmdebstrap proot)

# Ends a lane that cannot run on this machine, which is not the same as one that failed.
readonly StatusCannotRun=77
cannot_run() {
  echo "$(basename "$0") CANNOT RUN here: $*" >&2
  exit "$StatusCannotRun"
}

check_format() {
  git ls-files '*.cpp' '*.h' | xargs -P "$(nproc)" -n 32 clang-format --dry-run -Werror
  echo "All files are formatted."
}

# Configures and builds a preset.
build_preset() {
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1"
}

# Runs the tests of a preset; shows what failed, what was skipped and the count, not the hundreds that
# passed.
run_tests() {
  ctest --preset "$1" | sed -E '/^ +Start +[0-9]+: /d; /^ *[0-9]+\/[0-9]+ Test .* Passed /d'
}
