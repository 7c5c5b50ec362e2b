#!/usr/bin/env bash
# scripts/reliability.sh [PRESET]: the long form of the tests in tests/reliability, in the build of that preset (debug,
# with the sanitizers, unless another is given): 100 programs killed in a save, every record and 10,000 flipped bits of
# each sample, points, fields, rescue copies and settings damaged likewise, pipes and devices, lines of a gigabyte,
# 100,000 commands in any order, 5,000 journals done again. Takes hours, and three gigabytes of the disk for temporary
# files.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
preset=${1:-debug}
cmake --preset "$preset" -DVELMORA_BUILD_TESTS=ON >/dev/null
cmake --build --preset "$preset" --target reliability_test batch_test
VELMORA_RELIABILITY=long "build/$preset/bin/reliability_test" --gtest_brief=1
VELMORA_RELIABILITY=long "build/$preset/bin/batch_test" --gtest_filter='JournalWalk.*' --gtest_brief=1
