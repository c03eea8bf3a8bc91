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

is_installed() {
  [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Installs the packages that are missing, and says which.
install_packages() {
  local package missing=()
  for package in "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  if [ "${#missing[@]}" -eq 0 ]; then
    echo "All needed packages are installed."
    return
  fi
  echo "Installing: ${missing[*]}"
  as_root apt-get update -qq
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
}

build_packages=(g++ cmake ninja-build libpcap-dev libpugixml-dev libssl-dev libusb-dev
  nlohmann-json3-dev)
test_packages=(binutils ccache clang clang-format clang-tidy faketime fish groff libclang-rt-dev
  libexpat1-dev libgtest-dev libxml2-dev man-db mandoc openssl scdoc strace tshark valgrind zsh)
bench_packages=(libbenchmark-dev libboost-dev libexpat1-dev libglib2.0-dev libxml2-dev nettle-dev
  pkg-config xxd)
fuzz_packages=(clang libclang-rt-dev)
kernel_packages=(qemu-system-x86 busybox-static cpio kmod openssl xz-utils)
package_packages=(build-essential debhelper dpkg-dev lintian scdoc)
package_lane_packages=(faketime mmdebstrap proot)

# Ends a lane that cannot run on this machine, which is not the same as one that failed.
readonly StatusCannotRun=77
cannot_run() {
  echo "$(basename "$0") CANNOT RUN here: $*" >&2
  exit "$StatusCannotRun"
}

# Configures and builds a preset.
build_preset() {
  cmake --preset "$1" >/dev/null
  cmake --build --preset "$1"
}
