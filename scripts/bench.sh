#!/usr/bin/env bash
# Measures picks and whole runs beside what else could do the same, prints the table of ratios with
# the gates and aims of each and writes it into docs/performance.md.
#   --check   writes nothing and exits 1 when a gate is missed
#   --picks   prints instead what picks cost on cubes of 1, 2, 4 and 8 million bricks in memory
#   MARQUELL_BENCH_CELLS  cells on an edge of the cube (default 200: 8 million bricks). Gates are
#                         meant for that: a small cube stays in the processor's caches.
#   MARQUELL_BENCH_RUNS   whole runs of each program, in turn (default 3); medians are compared
# The machine should have nothing else to do: rows on two threads need both.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

page=$root/docs/performance.md
edge=${MARQUELL_BENCH_CELLS:-200}
runs=${MARQUELL_BENCH_RUNS:-3}

mode=write
case "${1-}" in
  --check) mode=check ;;
  --picks) mode=picks ;;
  "") ;;
  *) die "unknown option $1 (there are --check and --picks)" ;;
esac
[[ $edge =~ ^[1-9][0-9]*$ && $runs =~ ^[1-9][0-9]*$ ]] ||
  die "MARQUELL_BENCH_CELLS and MARQUELL_BENCH_RUNS take whole numbers from 1"

install_missing "${build_packages[@]}" libbenchmark-dev
configure bench
build bench

bin=$root/build-bench/bin
add_on=$root/build-bench/lib/marquell.so
if [ "$mode" = picks ]; then
  exec "$bin/bench_picks" "$add_on" 100 126 159 200
fi

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

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

megabytes() { awk -v n="$1" -v unit="$2" 'BEGIN { print n * unit / 1e6 }'; }

# Runs both programs on one file; adds the medians to the runs, as bench_report reads them.
# Needs the uncompressed file's size.
compare() {
  local encoding=$1 grid=$2 size=$3 run
  local vtk=$folder/$encoding.vtk ours=$folder/$encoding.marquell
  for ((run = 0; run < runs; ++run)); do
    measure "$vtk" "$bin/bench_vtk_read_write" "$encoding" "$grid" "$folder/out.vtu"
    measure "$ours" "$bin/marquell" run "$root/bench/edits.journal" "$grid" -o "$folder/out.vtu"
  done
  {
    echo "run/$encoding/seconds $(median "$ours" 1) $(median "$vtk" 1)"
    echo "run/$encoding/megabytes $(megabytes "$(median "$ours" 2)" 1024) $(megabytes "$size" 1)"
  } >>"$folder/runs"
}

echo "Measuring whole runs" >&2
size=0
for encoding in raw zlib; do
  grid=$folder/$encoding.vtu
  "$bin/bench_make_grid" "$edge" "$encoding" "$grid" || die "cannot write $grid"
  [ "$encoding" != raw ] || size=$(stat -c %s "$grid")
  compare "$encoding" "$grid" "$size"
  rm -f "$grid" "$folder/out.vtu"
done

echo "Measuring picks" >&2
MARQUELL_BENCH_CELLS=$edge "$bin/bench_ratios" "$add_on" \
  --benchmark_out="$folder/ratios.json" --benchmark_out_format=json >"$folder/log" 2>&1 ||
  die "bench_ratios failed: $(tail -n 1 "$folder/log")"

into=()
[ "$mode" = check ] || into=("$page")
missed=0
"$bin/bench_report" "$folder/ratios.json" "$folder/runs" "${into[@]}" || missed=$?
[ "$missed" -lt 2 ] || exit "$missed"
[ "$mode" != check ] || exit "$missed"
