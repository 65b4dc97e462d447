# Shell functions that install missing packages and build. A script that uses them must run in the source directory.

# need PACKAGE... - installs missing packages; quick if none is missing
need() {
  local missing=()
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}"
  local root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "Not root and no sudo: please install ${missing[*]}" >&2; return 1; }
    root=(sudo)
  fi
  "${root[@]}" apt-get update -qq
  "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

BUILD_PACKAGES=(g++ cmake ninja-build pkgconf qtbase5-dev libffi-dev)

# log COMMAND... - shows the command's output only if it fails
log() {
  mkdir -p build
  "$@" >build/build.log 2>&1 || { cat build/build.log; return 1; }
}

# progress - reads ninja's output and shows only how many steps are done: on a terminal, in one line that it updates;
# elsewhere, in a new line at most every ten seconds
progress() {
  local line last=$SECONDS
  while IFS= read -r line; do
    [[ $line =~ ^\[([0-9]+)/([0-9]+)\] ]] || continue
    local state="  ${BASH_REMATCH[1]} of ${BASH_REMATCH[2]} steps"
    if [ -t 1 ]; then
      printf '\r%s ' "$state"
    elif ((SECONDS >= last + 10)); then
      echo "$state"
      last=$SECONDS
    fi
  done
  [ ! -t 1 ] || printf '\r%40s\r' ''
}

# build PRESET OPTION... - configures and builds
build() {
  echo "Building ($1)"
  log cmake --preset "$@"
  cmake --build --preset "$1" 2>&1 | tee build/build.log | progress || { cat build/build.log; return 1; }
}
