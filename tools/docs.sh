#!/usr/bin/env bash
# The reference documentation, as HTML in build/docs/html. A warning of Doxygen is a failure: something public has no
# documentation, or a page refers to what is not there.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tools/setup.sh docs
rm -rf build/docs
mkdir -p build/docs
# Doxygen loses its way in folders whose names have blanks, so it runs over copies.
work=$(mktemp -d /tmp/orvsys.XXXXXX)
trap 'rm -rf "$work"' EXIT
cp -R ./*.md docs "$work"
mkdir -p "$work/build/docs"
python3 tools/doc_headers.py include "$work/build/docs/include"
version=$(sed -n 's/.*OrvVersion[A-Z][a-z]* = \([0-9]*\);/\1/p' include/orv/version.h | paste -sd.)
printf '@INCLUDE = docs/Doxyfile\nPROJECT_NUMBER = %s\n' "$version" |
    (cd "$work" && doxygen -) 2>build/docs/warnings || fail 'Doxygen failed' 'see build/docs/warnings'
if [ -s build/docs/warnings ]; then
    sed "s,^$work/,,; s,^build/docs/,," build/docs/warnings >&2
    fail 'the documentation has gaps' 'they stand above'
fi
mv "$work/build/docs/html" build/docs/html
printf '%s\n' "build/docs/html/index.html"
