#!/usr/bin/env bash
# clang-tidy over the sources given, or over all of them: scripts/lint.sh [FILE...]
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
[ -f build/release/compile_commands.json ] || cmake --preset release >/dev/null
files=("$@")
[ ${#files[@]} -gt 0 ] || mapfile -t files < <(git ls-files -- 'src/*.cpp' 'tests/*.cpp' 'examples/*.cpp')
printf '%s\0' "${files[@]}" | xargs -0 -n 1 -P "$(nproc)" clang-tidy --quiet --extra-arg=-Wno-unknown-warning-option -p build/release
