#!/usr/bin/env bash
# Formats the sources; with --check says what is not formatted and changes nothing.
set -euo pipefail
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

command -v clang-format >/dev/null || die "clang-format is missing: apt-get install clang-format"
mode=(-i)
case "${1-}" in
  --check) mode=(--dry-run --Werror) ;;
  "") ;;
  *) die "unknown option $1 (there is only --check)" ;;
esac
cd "$root"
find sdk addon host cli workbench tests bench docs -type f \( -name '*.h' -o -name '*.cpp' \) -print0 |
  xargs -0 -n 20 -P "$(nproc)" clang-format "${mode[@]}" ||
  die "sources are not formatted; run scripts/format.sh"
