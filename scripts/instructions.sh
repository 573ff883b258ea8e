#!/usr/bin/env bash
# Counts the instructions of small fixed pieces of work and holds them against the budgets in
# bench/instructions.txt. Exits 1 when a piece takes over 3 % more than its budget, and when it takes
# over 10 % less: then the new budget is to be recorded, or the next slowdown would hide in the gap.
#   --record  writes the counts of now as the budgets
#
# Instructions, not seconds: their number is the same on a busy machine and on an idle one. It is the
# same on different processors too, although loops exist for several and the best one is chosen:
# callgrind runs programs on a processor of its own making, which does not depend on the real one but
# for whether that has AVX2. On one without nothing is compared. Another compiler or C library makes
# other counts; record with those that CI has.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

most_above=3   # percent
most_below=10  # percent
budgets=$root/bench/instructions.txt

mode=check
case "${1-}" in
  --record) mode=record ;;
  "") ;;
  *) die "unknown option $1 (there is only --record)" ;;
esac

if ! grep -qw avx2 /proc/cpuinfo; then
  [ "$mode" = check ] || die "budgets are recorded on a processor with AVX2"
  echo "Instructions not compared: the budgets are those of a processor with AVX2"
  exit 0
fi

install_missing "${build_packages[@]}" "${test_packages[@]}" valgrind
configure release -DMARQUELL_BUILD_TESTS=ON -DMARQUELL_BUILD_BENCH=ON
build release bench_instructions bench_instructions_files >/dev/null

bin=$root/build/bin
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Prints a name and how many instructions the program takes below MeasuredWork.
count() {
  local name=$1
  shift
  # Nothing of the caller's environment: it takes space on the stack, which moves what lies there.
  env -i PATH="$PATH" valgrind --tool=callgrind --callgrind-out-file="$folder/out" \
    --collect-atstart=no --toggle-collect=MeasuredWork "$@" >"$folder/log" 2>&1 ||
    die "counting $name failed: $(grep -m1 '^bench_' "$folder/log" || tail -n 1 "$folder/log")"
  awk -v name="$name" '$1 == "totals:" && $2 > 0 { print name, $2; found = 1 }
    END { exit !found }' "$folder/out" || die "nothing was counted of $name"
}

count_all() {
  local name
  for name in $("$bin/bench_instructions"); do
    count "$name" "$bin/bench_instructions" "$name"
  done
  for name in raw zlib; do
    count "edit-file-$name" "$bin/bench_instructions_files" "$name" "$folder"
  done
}

count_all >"$folder/counts"

if [ "$mode" = record ]; then
  {
    echo "# Instructions of each piece of work that scripts/instructions.sh counts."
    echo "# Written by scripts/instructions.sh --record with $(g++ --version | head -n 1)."
    cat "$folder/counts"
  } >"$budgets"
  echo "Recorded $(wc -l <"$folder/counts") budgets"
  exit 0
fi

awk -v above="$most_above" -v below="$most_below" '
  /^#/ { next }
  NR == FNR { budget[$1] = $2; next }
  !($1 in budget) { print $1 ": no budget; record it"; bad = 1; next }
  {
    change = 100 * ($2 / budget[$1] - 1)
    said = sprintf("%s: %d instructions, %+.1f %% of the budget of %d", $1, $2, change, budget[$1])
    if (change > above) { print said ": too many"; bad = 1 }
    else if (change < -below) { print said ": record the new budget"; bad = 1 }
    else { kept++ }
    delete budget[$1]
  }
  END {
    for (name in budget) { print name ": has a budget and is not counted; record anew"; bad = 1 }
    if (!bad) print "Instructions: all " kept " pieces of work keep their budgets"
    exit bad
  }' "$budgets" "$folder/counts" ||
  die "instruction budgets are not kept; scripts/instructions.sh --record takes the counts above as the new ones"
