#!/usr/bin/env bash
# Builds everything and runs every test: the add-on's under sanitizers, then all of them. Each fuzz
# target tries every input that it ever found worth keeping, and then others for half a minute. The code
# is read by clang-tidy and cppcheck, and small pieces of work are held against their budgets of
# instructions.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${build_packages[@]}" "${test_packages[@]}"
"$root/scripts/format.sh" --check

configure asan
build asan
(cd "$root" && ctest --preset asan -j "$(nproc)" --quiet --output-log build-asan/ctest.log) ||
  { cat "$root/build-asan/ctest.log"; die "tests failed under the sanitizers"; }
echo "Under the sanitizers: $(grep 'tests passed' "$root/build-asan/ctest.log")"

"$root/scripts/fuzz.sh" 30

# What scripts/instructions.sh needs of the benchmark programs it builds itself.
configure release -DMARQUELL_BUILD_TESTS=ON -DMARQUELL_BUILD_BENCH=OFF
build release
"$root/scripts/lint.sh"
"$root/scripts/instructions.sh"
cd "$root"
result=0
ctest --preset release -j "$(nproc)" --output-log build/ctest.log || result=$?
echo "Tried to break, and what became of it:"
summarise_survivors build/Testing/Temporary/LastTest.log | sed 's/^/  /'
grep 'tests passed' build/ctest.log
exit $result
