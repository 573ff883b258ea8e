#!/usr/bin/env bash
# Measures what a user of the workbench waits for, on a virtual display with software rendering:
# from the start of the program to the first picture of the example; with 2 million bricks and 2
# million cells of a plane, pictures a second while the view is dragged; the preview of a box.
#   MARQUELL_BENCH_CELLS  cells on an edge of the cube (default 126: 2 million bricks)
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

edge=${MARQUELL_BENCH_CELLS:-126}
plane_edge=$(awk -v n="$edge" 'BEGIN { printf "%d", sqrt(n * n * n) }')

install_missing "${build_packages[@]}" libbenchmark-dev xvfb xauth
configure bench
build bench

bin=$root/build-bench/bin
add_on=$root/build-bench/lib/marquell.so
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
"$bin/bench_make_grid" "$edge" raw "$folder/cube.vtu"
"$bin/bench_make_grid" "$plane_edge" raw "$folder/plane.vti"

on_display() { xvfb-run -a -s "-screen 0 1400x1000x24" "$@"; }

# The middle of five starts; the program quits by itself when the picture stands.
starts=$(for _ in 1 2 3 4 5; do
  on_display "$bin/bench_measure" "$bin/marquell-workbench" --quit-after-picture \
    "$root/examples/pitzDaily/pitzDaily.vtm" | awk '{ print $1 }'
done | sort -n)
echo "start to the first picture of the example: $(sed -n 3p <<<"$starts") s"
on_display "$bin/bench_workbench" "$add_on" "$folder/cube.vtu" "$folder/plane.vti"
