#!/usr/bin/env bash
# Runs the tests of built presets in one CTest, which ends with one summary: test.sh PRESET...
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tools/wine_session.sh start
trap 'tools/wine_session.sh stop' EXIT
printf 'subdirs(%s)\n' "$*" >build/CTestTestfile.cmake
jobs=$(nproc)
# If several programs run at once there, the output of any of them is lost now and then.
[ "${ORV_PLATFORM:-}" != wine8 ] || jobs=1
# shellcheck disable=SC2086  # several arguments in one variable, such as "-R text"
ctest --test-dir build --output-on-failure --parallel "$jobs" ${ORV_TEST_ARGUMENTS:-}
