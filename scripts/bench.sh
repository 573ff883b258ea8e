#!/usr/bin/env bash
# Compares `marquell run` with a program that only reads and writes the same file with VTK.
# Prints wall time, peak memory and their ratios. With --check exits 1 when a ratio is missed.
# MARQUELL_BENCH_CELLS sets the number of cells on an edge (default 140: 2.7 million cells).
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

check=no
case "${1-}" in
  --check) check=yes ;;
  "") ;;
  *) die "unknown option $1 (there is only --check)" ;;
esac

install_missing "${build_packages[@]}"
configure bench
build bench marquell_cli marquell bench_make_grid bench_vtk_read_write bench_measure

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
bin=$root/build-bench/bin
"$bin/bench_make_grid" "${MARQUELL_BENCH_CELLS:-140}" "$folder/grid.vtu"

# The best of three, so that a busy machine blurs neither side: "SECONDS KILOBYTES".
best_of_three() {
  local run
  for run in 1 2 3; do
    rm -f "$folder/out.vtu"
    "$bin/bench_measure" "$@" || die "$1 failed"
  done | sort -n | awk 'NR == 1 { s = $1 } NR == 1 || $2 < m { m = $2 } END { print s, m }'
}

read -r vtk_s vtk_kb < <(best_of_three "$bin/bench_vtk_read_write" "$folder/grid.vtu" "$folder/out.vtu")
read -r our_s our_kb < <(best_of_three "$bin/marquell" run "$root/bench/edits.journal" \
  "$folder/grid.vtu" -o "$folder/out.vtu" --quiet)

awk -v vs="$vtk_s" -v vk="$vtk_kb" -v os="$our_s" -v ok="$our_kb" -v check="$check" 'BEGIN {
  printf "%-22s %10s %12s\n", "", "seconds", "peak MB"
  printf "%-22s %10.2f %12.0f\n", "VTK read and write", vs, vk / 1024
  printf "%-22s %10.2f %12.0f\n", "marquell run", os, ok / 1024
  printf "%-22s %10.2f %12.2f\n", "ratio", os / vs, ok / vk
  printf "%-22s %10.2f %12.2f\n", "at most", 1.3, 1.2
  missed = os > 1.3 * vs || ok > 1.2 * vk
  if (missed) print "missed"
  exit check == "yes" && missed
}'
