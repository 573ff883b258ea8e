# Shared by the scripts beside it: find what is missing, install it, build.
# Sourced, not run. Sets `root` to the project's folder.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
export CCACHE_NOHASHDIR=1

build_packages=(
  g++ cmake ninja-build pkg-config ca-certificates
  libvtk9-dev libvtk9-qt-dev libdeflate-dev liblz4-dev liblzma-dev libegl-dev libgl1-mesa-dri libcli11-dev libfmt-dev libspdlog-dev nlohmann-json3-dev
)
test_packages=(
  libgtest-dev libgmock-dev libbenchmark-dev binutils valgrind xvfb xauth xdotool openbox imagemagick
  clang-14 libclang-rt-14-dev clang-format clang-tidy-14 cppcheck
)
# Not needed, so not a reason to install anything; comes along when something else does.
helpful_packages=(ccache)

die() {
  echo "${0##*/}: $*" >&2
  exit 1
}

missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || echo "$package"
  done
}

# Installs those of the packages given that are not there. Asks for nothing when all are.
install_missing() {
  command -v dpkg-query >/dev/null && command -v apt-get >/dev/null ||
    die "this script installs Debian packages and needs apt-get; on another system install by hand: $*"
  local missing
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  mapfile -t missing < <(missing_packages "$@" "${helpful_packages[@]}")
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null ||
      die "cannot install without root or sudo; as root run: apt-get install ${missing[*]}"
    sudo true 2>/dev/null || die "cannot become root with sudo; as root run: apt-get install ${missing[*]}"
    as_root=(sudo)
  fi
  echo "Installing ${missing[*]}"
  local log
  log=$(mktemp)
  # A stale or half-reachable package list is no failure yet: what counts is the installation.
  "${as_root[@]}" apt-get update >"$log" 2>&1 || true
  if ! "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y \
    --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
    local reason
    reason=$(grep -m1 '^E: ' "$log" || tail -n1 "$log")
    rm -f "$log"
    die "cannot install ${missing[*]}; is there a network? apt-get says: $reason"
  fi
  rm -f "$log"
}

# configure PRESET [CMAKE-ARGUMENT...]
configure() {
  local preset=$1
  shift
  local arguments=("$@")
  if command -v ccache >/dev/null; then
    arguments+=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
  fi
  (cd "$root" && cmake --preset "$preset" --log-level=WARNING "${arguments[@]}" >/dev/null) ||
    die "configuring preset $preset failed"
}

# build PRESET [TARGET...]
build() {
  local preset=$1
  shift
  local targets=()
  [ $# -gt 0 ] && targets=(--target "$@")
  (cd "$root" && cmake --build --preset "$preset" "${targets[@]}") ||
    die "building preset $preset failed"
}

# summarise_survivors LOG: adds up the lines "N things, M survived" and "N things, M crashes" of the
# programs that try to break something, a line for each thing; the soak's line as it stands.
summarise_survivors() {
  awk '
    /^[0-9]+ journals, .* equal/ { print; next }
    match($0, /[0-9]+ [a-z ]+, [0-9]+ (survived|crashes)/) {
      found = substr($0, RSTART, RLENGTH)
      tried = found + 0
      split(found, halves, ", ")
      thing = halves[1]; sub(/^[0-9]+ /, "", thing)
      good = halves[2]; sub(/^[0-9]+ /, "", good)
      # Parts of a sum that the program itself gives afterwards are set in.
      if ($0 ~ /^(  |[0-9]+: +  )[a-z]/) next
      key = thing ", %d " good
      if (!(key in all)) order[++count] = key
      all[key] += tried
      well[key] += halves[2] + 0
    }
    END {
      for (n = 1; n <= count; ++n) {
        key = order[n]; split(key, halves, ", %d ")
        printf "%d %s, %d %s\n", all[key], halves[1], well[key], halves[2]
      }
    }' "$1"
}
