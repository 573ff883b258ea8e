#!/usr/bin/env bash
# Makes the pictures of the documents anew, from the example data. Needs no display.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${build_packages[@]}"
configure release
build release marquell_cli marquell qelrender tool_pictures

cd "$root"
marquell=build/bin/marquell
mkdir -p docs/pictures docs/help/pictures

"$marquell" run examples/pitzDaily/edits.journal examples/pitzDaily/pitzDaily.vtm --dry-run --force \
  --image-pair docs/pictures/before-after.png --image-variable "p (cell)" \
  --image-width 760 --image-height 320
for journal in docs/help/journals/*.journal; do
  name=$(basename "$journal" .journal)
  "$marquell" run "$journal" examples/part/gmsh_part.vtu --dry-run --force --image-variable phi \
    --image "docs/help/pictures/$name.png" --image-width 560 --image-height 380
done
mkdir -p docs/help/pictures/tools
build/bin/tool_pictures docs/help/pictures/tools
echo "Wrote docs/pictures and docs/help/pictures"
