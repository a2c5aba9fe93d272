#!/usr/bin/env bash
# The reference documentation, as HTML in build/docs/html. A warning of Doxygen is a failure: something public has no
# documentation, or a page refers to what is not there.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tools/setup.sh docs
rm -rf build/docs
mkdir -p build/docs
python3 tools/doc_headers.py include build/docs/include
version=$(sed -n 's/.*OrvVersion[A-Z][a-z]* = \([0-9]*\);/\1/p' include/orv/version.h | paste -sd.)
printf '@INCLUDE = docs/Doxyfile\nPROJECT_NUMBER = %s\n' "$version" | doxygen - 2>build/docs/warnings || fail 'Doxygen failed' "see build/docs/warnings"
if [ -s build/docs/warnings ]; then
    sed "s,^$root/,,; s,^build/docs/,," build/docs/warnings >&2
    fail 'the documentation has gaps' 'they stand above'
fi
printf '%s\n' "build/docs/html/index.html"
