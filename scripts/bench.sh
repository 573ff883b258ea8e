#!/usr/bin/env bash
# Compares `marquell run`, which reads, picks, alters and writes, with a program that only reads and
# writes the same file with VTK. Prints wall time and peak memory of both and their ratios; with
# --check exits 1 when a ratio is missed. With --picks prints instead what picks cost on cubes of 1,
# 2, 4 and 8 million bricks in memory.
#   MARQUELL_BENCH_CELLS  cells on an edge of the cube (default 140: 2.7 million cells)
#   MARQUELL_BENCH_RUNS   runs of each program, in turn (default 5); the medians are compared
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

most_time=1.3
most_memory=1.2
edge=${MARQUELL_BENCH_CELLS:-140}
runs=${MARQUELL_BENCH_RUNS:-5}

check=no
picks=no
case "${1-}" in
  --check) check=yes ;;
  --picks) picks=yes ;;
  "") ;;
  *) die "unknown option $1 (there are --check and --picks)" ;;
esac
[[ $edge =~ ^[1-9][0-9]*$ && $runs =~ ^[1-9][0-9]*$ ]] ||
  die "MARQUELL_BENCH_CELLS and MARQUELL_BENCH_RUNS take whole numbers from 1"

install_missing "${build_packages[@]}"
configure bench
build bench

if [ "$picks" = yes ]; then
  exec "$root/build-bench/bin/bench_picks" "$root/build-bench/lib/marquell.so" 100 126 159 200
fi

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
bin=$root/build-bench/bin

# The middle one of the numbers in a column of the file.
median() {
  awk -v column="$2" '{ print $column }' "$1" | sort -n |
    awk '{ v[NR] = $1 } END { m = int((NR + 1) / 2); print NR % 2 ? v[m] : (v[m] + v[m + 1]) / 2 }'
}

# Runs a program, adds "SECONDS KILOBYTES" to the file.
measure() {
  local results=$1
  shift
  rm -f "$folder/out.vtu"
  "$bin/bench_measure" "$@" >>"$results" 2>"$folder/log" ||
    die "$(basename "$1") failed: $(tail -n 1 "$folder/log")"
}

# Prints one table and answers whether its ratios hold.
compare() {
  local encoding=$1 grid=$folder/$1.vtu run
  "$bin/bench_make_grid" "$edge" "$encoding" "$grid" || die "cannot write $grid"
  for ((run = 0; run < runs; ++run)); do
    measure "$folder/$encoding.vtk" \
      "$bin/bench_vtk_read_write" "$encoding" "$grid" "$folder/out.vtu"
    measure "$folder/$encoding.marquell" \
      "$bin/marquell" run "$root/bench/edits.journal" "$grid" -o "$folder/out.vtu"
  done
  rm -f "$grid"
  awk -v vs="$(median "$folder/$encoding.vtk" 1)" -v vk="$(median "$folder/$encoding.vtk" 2)" \
    -v os="$(median "$folder/$encoding.marquell" 1)" \
    -v ok="$(median "$folder/$encoding.marquell" 2)" \
    -v encoding="$encoding" -v cells=$((edge * edge * edge)) -v runs="$runs" \
    -v ms="$most_time" -v mk="$most_memory" 'BEGIN {
      printf "\n%d cells, %s, medians of %d\n", cells, encoding, runs
      printf "%-20s %10s %12s\n", "", "seconds", "peak MB"
      printf "%-20s %10.2f %12.0f\n", "VTK read and write", vs, vk / 1024
      printf "%-20s %10.2f %12.0f\n", "marquell run", os, ok / 1024
      printf "%-20s %10.2f %12.2f\n", "ratio", os / vs, ok / vk
      printf "%-20s %10.2f %12.2f\n", "at most", ms, mk
      exit os > ms * vs || ok > mk * vk
    }'
}

missed=()
for encoding in raw zlib; do
  compare "$encoding" || missed+=("$encoding")
done
if [ ${#missed[@]} -gt 0 ]; then
  echo "missed: ${missed[*]}"
  [ "$check" = no ] || exit 1
fi
