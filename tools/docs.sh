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
doxygen docs/Doxyfile 2>build/docs/warnings || fail 'Doxygen failed' "see build/docs/warnings"
if [ -s build/docs/warnings ]; then
    sed "s,^$root/,,; s,^build/docs/,," build/docs/warnings >&2
    fail 'the documentation has gaps' 'they stand above'
fi
printf '%s\n' "build/docs/html/index.html"
