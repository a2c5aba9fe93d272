#!/usr/bin/env bash
# Runs the tests of built presets under one CTest, which ends with one summary: test.sh PRESET...
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tools/get_wine.sh >/dev/null
printf 'subdirs(%s)\n' "$*" >build/CTestTestfile.cmake
ctest --test-dir build --output-on-failure ${ORV_TEST_ARGUMENTS:-}
