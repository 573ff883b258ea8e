#!/usr/bin/env bash
# Makes the documents' pictures of the workbench anew, by the real windows on a display of their own.
# What the windows look like in a dark palette and at 200 % goes to build/windows/, to be looked at.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${build_packages[@]}" "${test_packages[@]}"
configure release -DMARQUELL_BUILD_TESTS=ON
build release shoot_windows

cd "$root"
log=build/windows/log

# shoot SCREEN FOLDER [OPTION...]
shoot() {
  local screen=$1
  shift
  mkdir -p "$1"
  # Title bars and places come from a window manager. It goes with the display.
  timeout --kill-after=5 300 xvfb-run -a -s "-screen 0 ${screen}x24" sh -c \
    'openbox & manager=$!
     until xdotool get_desktop; do sleep 0.1; done
     build/bin/shoot_windows "$@"; status=$?
     kill $manager; exit $status' sh "$@" >"$log" 2>&1 ||
    { tail -n 30 "$log" >&2; die "no pictures in $1; all that was said is in $log"; }
}

mkdir -p build/windows
shoot 1900x1000 docs/images
shoot 1900x1000 build/windows/dark --dark
QT_SCALE_FACTOR=2 shoot 3800x2000 build/windows/twice
echo "Wrote docs/images, build/windows/dark and build/windows/twice"
