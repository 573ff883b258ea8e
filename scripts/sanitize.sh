#!/usr/bin/env bash
# Builds everything but the window under sanitizers and runs its tests.
#
#   scripts/sanitize.sh address  AddressSanitizer, UndefinedBehaviorSanitizer, leaks
#   scripts/sanitize.sh thread   ThreadSanitizer, on the tests that use several threads
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${build_packages[@]}" "${test_packages[@]}"
case "${1-}" in
  address)
    preset=asan-host
    filter=()
    ;;
  thread)
    preset=tsan
    filter=(-R 'engine_test|boundaries_test|preview_test|fakehost_test|host_.*_test|Soak')
    # The sanitizer sees the locks of these threads, and not those within the other libraries' code.
    export VTK_SMP_BACKEND_IN_USE=STDThread
    ;;
  *) die "say address or thread" ;;
esac
configure $preset
build $preset
cd "$root"
ctest --preset $preset -j "$(nproc)" "${filter[@]}" ||
  die "what the sanitizers say beside the tests' own words lies in $root/build-$preset/reports"
