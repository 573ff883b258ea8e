#!/usr/bin/env bash
# Builds the fuzz targets and runs each on its corpus for the given time, then its corpus once more,
# watched for leaks. What covers more than the corpus does lies in build-fuzz/found/ afterwards; an
# input that breaks something in build-fuzz/crashes/.
#
#   scripts/fuzz.sh SECONDS [TARGET...]
#   scripts/fuzz.sh corpus [TARGET...]   the corpus alone
#
# FUZZ_SEED says where chance begins (default 1): what a clean checkout breaks with one seed, it
# breaks with that seed again.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

seconds=${1-}
[[ $seconds =~ ^([1-9][0-9]*|corpus)$ ]] || die "say a number of seconds, or corpus"
shift $(($# > 0 ? 1 : 0))

install_missing "${build_packages[@]}" "${test_packages[@]}"
configure fuzz
build fuzz

programs=$root/build-fuzz/fuzz
found=$root/build-fuzz/found
crashes=$root/build-fuzz/crashes
mkdir -p "$crashes"
targets=("$@")
[ $# -gt 0 ] || mapfile -t targets < <(ls "$root/fuzz/corpus")

# The words that inputs of a target are made of; nothing for those made of bytes alone.
dictionary_of() {
  case "$1" in
    command_parser | command_line | session) echo "$root/fuzz/dictionaries/command.dict" ;;
    journal | host_commands) echo "$root/fuzz/dictionaries/host.dict" ;;
  esac
}

# The libraries that are not instrumented share containers with those that are.
export ASAN_OPTIONS=detect_container_overflow=0

# Runs one target; what it said lies in its log, its exit code in its result.
run_target() {
  local target=$1 dictionary log=$crashes/$1.log corpus=$root/fuzz/corpus/$1
  local limits=(-timeout=60 -rss_limit_mb=2048 -artifact_prefix="$crashes/$target-")
  # Looking for leaks after every input would take most of the time.
  local options=(-seed="${FUZZ_SEED:-1}" -detect_leaks=0 -print_final_stats=1)
  if [ "$seconds" = corpus ]; then options+=(-runs=0); else options+=(-max_total_time="$seconds"); fi
  dictionary=$(dictionary_of "$target")
  [ -z "$dictionary" ] || options+=(-dict="$dictionary")
  local result=0
  { "$programs/$target" "${limits[@]}" "${options[@]}" "$found/$target" "$corpus" >"$log" 2>&1 &&
    "$programs/$target" "${limits[@]}" -runs=0 "$corpus" >>"$log" 2>&1; } || result=$?
  echo $result >"$crashes/$target.result"
}

for target in "${targets[@]}"; do
  [ -x "$programs/$target" ] || die "there is no target $target"
  mkdir -p "$found/$target"
  while [ "$(jobs -pr | wc -l)" -ge "$(nproc)" ]; do wait -n; done
  run_target "$target" &
done
wait

total=0
crashed=()
for target in "${targets[@]}"; do
  log=$crashes/$target.log
  count=0
  [ "$(cat "$crashes/$target.result")" -eq 0 ] || { count=1 && crashed+=("$target"); }
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n1)
  total=$((total + ${runs:-0}))
  printf '%-16s %9d inputs, %d crashes\n' "$target:" "${runs:-0}" "$count"
done
for target in "${crashed[@]}"; do
  log=$crashes/$target.log
  echo "$target: $(grep -m1 -E 'does not hold|ERROR|runtime error' "$log" || tail -n1 "$log")" >&2
  echo "  input: $(sed -n 's/.*Test unit written to //p' "$log" | tail -n1)" >&2
  echo "  log: $log" >&2
done
echo "$total fuzzed inputs, ${#crashed[@]} crashes"
[ ${#crashed[@]} -eq 0 ]
