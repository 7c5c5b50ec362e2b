#!/usr/bin/env bash
# clang-tidy over the sources given, or over all of them: scripts/lint.sh [FILE...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
cmake --preset clang -DVELMORA_BUILD_BENCH=ON -DVELMORA_BUILD_FUZZ=ON >/dev/null
files=("$@")
[ ${#files[@]} -gt 0 ] || mapfile -t files < <(git ls-files -- '*.cpp')
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet -p build/clang
