#!/usr/bin/env bash
# Reads the product's code with clang-tidy (the checks in .clang-tidy) and cppcheck; exits 1 when one
# of them complains.
#
#   scripts/lint.sh         a room at a time
#   scripts/lint.sh --deep  file by file, and clang's analyzer follows the paths through each: long
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

install_missing "${build_packages[@]}" "${test_packages[@]}"
preset=release
tidy=(clang-tidy-14 --quiet)
if [ "${1:-}" = --deep ]; then
  preset=dev
  tidy+=('--checks=clang-analyzer-*')
fi
folder=$root/build
[ $preset = release ] || folder=$root/build-$preset
[ -f "$folder/compile_commands.json" ] || configure $preset

# What is compiled of the product: what Qt's and our own generators write is left out.
units() {
  sed -n 's/^ *"file": "\(.*\)".*/\1/p' "$folder/compile_commands.json" |
    grep -E "^($folder|$root)/(addon|host|cli|workbench)/" | grep -v _autogen | sort -u
}

log=$(mktemp)
trap 'rm -f "$log"' EXIT
units | xargs -P "$(nproc)" -n 1 "${tidy[@]}" -p "$folder" >"$log" 2>/dev/null || true
complaints=$(grep -E '(error|warning): ' "$log" | sort -u | sed "s#^$root/##" || true)
echo "clang-tidy: $(units | wc -l) units read, $(grep -c . <<<"$complaints" || true) complaints"

rooms=(addon host cli workbench)
cppcheck_says=$(cd "$root" && cppcheck -j "$(nproc)" --quiet --std=c++17 --library=qt \
  --enable=warning,performance,portability --inline-suppr --suppressions-list=scripts/cppcheck.txt \
  -I sdk/include "${rooms[@]}" 2>&1)
echo "cppcheck: $(find "${rooms[@]/#/$root/}" -name '*.cpp' | wc -l) files read," \
  "$(grep -cE '^[^ ].*: (error|warning|performance|portability): ' <<<"$cppcheck_says" || true) complaints"

[ -z "$complaints$cppcheck_says" ] || {
  printf '%s\n' "$complaints" "$cppcheck_says" >&2
  die "the code has complaints to answer"
}
