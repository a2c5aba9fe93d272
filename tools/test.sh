#!/usr/bin/env bash
# Runs the tests of built presets under one CTest, which ends with one summary: test.sh PRESET...
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tools/wine_session.sh start
trap 'tools/wine_session.sh stop' EXIT
printf 'subdirs(%s)\n' "$*" >build/CTestTestfile.cmake
jobs=$(nproc)
# With other programs beside it, what a program prints is lost there now and then, whatever program it is.
[ "${ORV_PLATFORM:-}" != wine8 ] || jobs=1
# shellcheck disable=SC2086  # several arguments in one variable, such as "-R text"
ctest --test-dir build --output-on-failure --parallel "$jobs" ${ORV_TEST_ARGUMENTS:-}
