#!/usr/bin/env bash
# Builds everything and runs every test; the add-on's tests once more under sanitizers. Small pieces
# of work are held against their budgets of instructions.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${build_packages[@]}" "${test_packages[@]}"
"$root/scripts/format.sh" --check

configure asan
build asan
(cd "$root" && ctest --preset asan -j "$(nproc)" --quiet --output-log build-asan/ctest.log) ||
  { cat "$root/build-asan/ctest.log"; die "tests failed under the sanitizers"; }
echo "Under the sanitizers: $(grep 'tests passed' "$root/build-asan/ctest.log")"

# What scripts/instructions.sh needs of the benchmark programs it builds itself.
configure release -DMARQUELL_BUILD_TESTS=ON -DMARQUELL_BUILD_BENCH=OFF
build release
"$root/scripts/instructions.sh"
cd "$root"
ctest --preset release -j "$(nproc)"
