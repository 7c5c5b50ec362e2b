# Sourced by ./run and ./test: installs the Debian packages that are missing, configures and builds.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build_packages=(g++ cmake ninja-build libboost-regex-dev libgl-dev libglu1-mesa-dev libcli11-dev nlohmann-json3-dev qt6-base-dev
  qt6-svg-dev)
window_packages=(qt6-qpa-plugins libgl1-mesa-dri libqt6svg6)
picture_packages=(xvfb xauth openbox imagemagick)
test_packages=(clang clang-format libclang-rt-14-dev libgtest-dev libgmock-dev libx11-dev libxtst-dev xvfb xauth openbox)

# install_missing PACKAGE...: asks the package manager only when something is missing.
install_missing() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return
  local as_root=()
  [ "$(id -u)" -eq 0 ] || as_root=(sudo)
  echo "Installing: ${missing[*]}"
  "${as_root[@]}" apt-get update -qq
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
}

# build PRESET [CMAKE_ARGUMENT...] [-- TARGET...]: configures a preset and builds it, or only the targets named.
build() {
  local preset=$1 arguments=()
  shift
  while [ $# -gt 0 ] && [ "$1" != -- ]; do
    arguments+=("$1")
    shift
  done
  [ $# -gt 0 ] && shift
  cmake --preset "$preset" "${arguments[@]}" >/dev/null
  cmake --build --preset "$preset" ${1+--target "$@"}
}
