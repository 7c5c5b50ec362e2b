# Sourced by the other scripts: installs the Debian packages that are missing, configures and builds.
#
# Each package that a find_package, a header, a program or a plugin loaded at run time needs is named here by itself,
# also where another package happens to bring it: recommended packages are not installed.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

# The exit status of a package source that does not answer; 1 is any other failure.
source_is_silent=75

# Compiler, build tools and libraries of the two programs.
build_packages=(g++ libstdc++-12-dev cmake ninja-build mold libboost-dev libboost-regex-dev libcli11-dev
  nlohmann-json3-dev libgl-dev libegl-dev libopengl-dev libglx-dev libx11-dev qt6-base-dev qt6-base-dev-tools
  libqt6opengl6-dev qt6-svg-dev libzip-dev libexpat1-dev libcoin-dev libcgns-dev libocct-data-exchange-dev
  libocct-modeling-algorithms-dev libocct-modeling-data-dev libocct-foundation-dev pybind11-dev python3-dev python3-numpy)
# What the window loads as it runs: platforms, drawing, icons, letters.
window_packages=(qt6-qpa-plugins qt6-wayland libqt6svg6 libgl1 libglx-mesa0 libegl1 libgl1-mesa-dri fontconfig
  fonts-dejavu-core)
# A picture of the window where there is no display.
picture_packages=(xvfb xauth openbox imagemagick)
test_packages=(git clang libclang-rt-14-dev clang-format libgtest-dev libgmock-dev libbenchmark-dev libxtst-dev
  xvfb openbox python3 python3-numpy python3-pytest python3-jsonschema python3-meshio python3-h5py python3-vtk9
  assimp-utils admesh libgts-bin mypy)

# Making Debian packages of it and looking at them.
package_packages=(dpkg-dev file librsvg2-bin lintian desktop-file-utils appstream man-db)

# missing_packages PACKAGE...: prints those that are not installed.
missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || echo "$package"
  done
}

# with_patience COMMAND...: three tries, since a package source may be busy for a while.
with_patience() {
  local try
  for try in 1 2 3; do
    "$@" && return
    [ "$try" -eq 3 ] || sleep $((10 * try))
  done
  return 1
}

# install_missing PACKAGE...: asks the package manager only when something is missing.
install_missing() {
  local missing as_root=() name
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" -ne 0 ]; then
    as_root=(sudo)
    if ! command -v sudo >/dev/null; then
      echo "Please have these packages installed (neither root nor sudo here): ${missing[*]}" >&2
      exit 1
    fi
  fi
  echo "Installing ${#missing[@]} packages, this may take some minutes: ${missing[*]}"
  local answers=yes
  with_patience "${as_root[@]}" apt-get update -qq --error-on=any || answers=no
  for name in "${missing[@]}"; do
    apt-cache show "$name" >/dev/null 2>&1 || stop_without "$answers" "There is no package $name in this system's sources"
  done
  with_patience "${as_root[@]}" apt-get install -y -qq --no-install-recommends --download-only "${missing[@]}" >/dev/null ||
    stop_without no "The packages cannot be fetched"
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 "${missing[@]}" >/dev/null
}

# stop_without ANSWERS REASON: ends the script. A source that does not answer is told apart from a package that it lacks.
stop_without() {
  echo "$2" >&2
  [ "$1" = yes ] && exit 1
  echo "The package source does not answer; try again later" >&2
  exit "$source_is_silent"
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
  echo "Building ${*:-everything} (preset $preset), some minutes the first time"
  cmake --preset "$preset" "${arguments[@]}" >/dev/null
  cmake --build --preset "$preset" ${1+--target "$@"}
}
