#!/usr/bin/env bash
# Installs what is missing, builds, and edits a real flow field; the result, and a picture of before and after, lie in demo/.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${build_packages[@]}"
configure release -DMARQUELL_BUILD_TESTS=OFF
build release marquell_cli marquell

mkdir -p "$root/demo"
cd "$root"
echo
echo "Editing examples/pitzDaily/pitzDaily.vtm with examples/pitzDaily/edits.journal"
build/bin/marquell run examples/pitzDaily/edits.journal examples/pitzDaily/pitzDaily.vtm \
  -o demo/edited.vtm --force --summary --report demo/report.json \
  --image-pair demo/before-after.png --image-variable "p (cell)" --image-width 760 --image-height 320
echo
echo "Wrote demo/edited.vtm, demo/report.json and demo/before-after.png"
