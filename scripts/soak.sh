#!/usr/bin/env bash
# The long forms of what scripts/test.sh tries for some seconds: every promise of docs/robustness.md,
# one after the other, with a line for each of what was tried and what survived. Exits 1 when
# something did not.
#
#   scripts/soak.sh [SECONDS [PROMISE...]]
#
#   SECONDS  for random journals, and for each fuzz target (default 3600: some fifteen hours in all)
#   PROMISE  journals, damage, kills, faults, zones, fuzz, sanitizers (default: all of them)
#
# A failing one leaves its log in soak/.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

seconds=${1-3600}
[[ $seconds =~ ^[1-9][0-9]*$ ]] || die "not a number of seconds: $seconds"
shift $(($# > 0 ? 1 : 0))
promises=("$@")
[ $# -gt 0 ] || promises=(journals damage kills faults zones fuzz sanitizers)

install_missing "${build_packages[@]}" "${test_packages[@]}"
configure release -DMARQUELL_BUILD_TESTS=ON
build release
bin=$root/build/bin
logs=$root/soak
mkdir -p "$logs"

# One seed a day: every day tries something new, and a day's failure can be tried again.
seed=$(date +%Y%m%d)

journals() { "$bin/soak" "$seconds" "$seed"; }
damage() {
  MUTATED_FILES=1000000 MUTATION_SEED=$seed \
    "$bin/host_io_test" --gtest_brief=1 --gtest_filter='MutatedFiles.*:DamagedFormats.*'
}
kills() {
  KILLS=2000 FAILING_WRITES=100000 INTERRUPTS=1000 "$bin/cli_endtoend_test" --gtest_brief=1 \
    --gtest_filter='Killed.*:FailingWrites.*:FullDisk.*:InterruptAtWriting.*'
}
faults() { "$bin/addon_fault_test" --gtest_brief=1; }
zones() { MARQUELL_WHOLE_ZONES=1 "$bin/addon_size_test" --gtest_brief=1; }
fuzz() { FUZZ_SEED=$seed "$root/scripts/fuzz.sh" "$seconds"; }
sanitizers() { "$root/scripts/sanitize.sh" address && "$root/scripts/sanitize.sh" thread; }

failed=()
for promise in "${promises[@]}"; do
  declare -F "$promise" >/dev/null || die "there is no promise $promise"
  log=$logs/$promise.log
  (cd "$root" && "$promise") >"$log" 2>&1 || failed+=("$promise")
  echo "$promise"
  summarise_survivors "$log" | sed 's/^/  /'
done
[ ${#failed[@]} -eq 0 ] || die "did not hold: ${failed[*]}; the logs lie in $logs"
