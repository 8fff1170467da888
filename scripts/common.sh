# Shared by the scripts: finds the tree, installs missing packages, configures and builds a preset. Who asks a
# script for help gets the comment at its head; the arguments of scripts/qxsvg are the command's.
set -euo pipefail

Root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
if [[ ${1:-} =~ ^(-h|--help)$ && ${0##*/} != qxsvg ]]; then
  sed -n '2,/^[^#]/s/^# \{0,1\}//p' "$0"
  exit 0
fi

# need_packages build test: installs what scripts/packages.txt lists for these uses and the system
# lacks. Without root rights it says what to install.
need_packages() {
  local Missing=() Name Use
  while read -r Name Use; do
    [[ -z $Name || $Name == \#* ]] && continue
    [[ " $* " == *" $Use "* ]] || continue
    dpkg-query -W -f='${Status}' "$Name" 2>/dev/null | grep -q 'ok installed' || Missing+=("$Name")
  done < "$Root/scripts/packages.txt"
  [[ ${#Missing[@]} -eq 0 ]] && return 0
  local Become=()
  if [[ $(id -u) -ne 0 ]]; then
    if ! command -v sudo >/dev/null; then
      echo "Missing packages: ${Missing[*]}. Install them with apt-get as root and try again." >&2
      return 1
    fi
    Become=(sudo)
  fi
  echo "Installing ${Missing[*]}" >&2
  "${Become[@]}" apt-get update -qq >&2
  DEBIAN_FRONTEND=noninteractive "${Become[@]}" apt-get install -y -qq --no-install-recommends \
    "${Missing[@]}" >&2
}

# build_preset release [target ...]: configures once and builds. Who only names targets of the release
# gets by without the tests and what they need, until somebody builds it whole.
build_preset() {
  local Preset=$1 Tests=()
  shift
  (
    cd "$Root"
    local Cache=build/$Preset/CMakeCache.txt
    if [[ $Preset == release && $# -eq 0 ]]; then
      Tests=(-DQXSVG_TESTS=ON)
      grep -qs '^QXSVG_TESTS:BOOL=OFF' "$Cache" && rm -f "build/$Preset/build.ninja"
    elif [[ $Preset == release ]]; then
      Tests=(-DQXSVG_TESTS=OFF)
    fi
    if [[ ! -f build/$Preset/build.ninja ]]; then
      Log=$(mktemp)
      trap 'rm -f "$Log"' EXIT
      cmake --preset "$Preset" "${Tests[@]}" > "$Log" 2>&1 || { cat "$Log" >&2; exit 1; }
    fi
    if [[ $# -gt 0 ]]; then
      cmake --build "build/$Preset" --target "$@"
    else
      cmake --build "build/$Preset"
    fi
  )
}

# test_preset release [ctest options]: runs the tests of a preset that was built.
test_preset() {
  local Preset=$1
  shift
  ctest --test-dir "$Root/build/$Preset" --output-on-failure -j "$(nproc)" "$@"
}
