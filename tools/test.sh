#!/usr/bin/env bash
# Runs the tests of built presets under one CTest, which ends with one summary: test.sh PRESET...
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tools/wine_session.sh start
trap 'tools/wine_session.sh stop' EXIT
printf 'subdirs(%s)\n' "$*" >build/CTestTestfile.cmake
# shellcheck disable=SC2086  # several arguments in one variable, such as "-R text"
ctest --test-dir build --output-on-failure --parallel "$(nproc)" ${ORV_TEST_ARGUMENTS:-}
