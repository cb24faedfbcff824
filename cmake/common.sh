# Shared by the scripts that build: sourced, not run. A script that does not stand at the root says
# in `up` how it gets there.

set -eu
cd "$(dirname "$0")/${up:-.}"
started=$(date +%s)

say() { printf '\n==> %s (%s s)\n' "$*" "$(($(date +%s) - started))"; }

# Ends the script with one line that says what happened.
finish() {
  printf '\n%s\n' "$2"
  exit "$1"
}

# install_packages [list...]: what the lists name beside the library's own.
install_packages() {
  missing=""
  for package in $(cat cmake/packages.txt "$@" | grep -v '^#'); do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing="$missing $package"
  done
  [ -z "$missing" ] && return
  say "Installing:$missing"
  as_root=""
  [ "$(id -u)" = 0 ] || as_root="sudo"
  export DEBIAN_FRONTEND=noninteractive
  { $as_root apt-get update -q && $as_root apt-get install -y -q --no-install-recommends $missing; } \
    >/tmp/tavo-packages.log 2>&1 ||
    finish 1 "Packages could not be installed; see /tmp/tavo-packages.log, or install them yourself:$missing"
}

# build <preset> [-D<variable>=<value>] [target...]
build() {
  preset=$1
  shift
  setting=""
  case "${1:-}" in -D*)
    setting=$1
    shift
    ;;
  esac
  mkdir -p build
  launcher=""
  command -v ccache >/dev/null && launcher="-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"
  cmake --preset "$preset" $launcher ${setting:+"$setting"} >"build/$preset-configure.log" 2>&1 || {
    tail -20 "build/$preset-configure.log"
    finish 1 "The build could not be configured: see build/$preset-configure.log."
  }
  say "Building ($preset)"
  cmake --build --preset "$preset" ${1:+--target "$@"} ||
    finish 1 "The build failed: the first error above says where."
}
