#!/usr/bin/env bash
# Makes the reference documentation, as HTML in build/docs/html. Fails at a warning of Doxygen, which means that a public
# declaration has no documentation or that a page refers to something that does not exist. Fails also at a link that leads
# nowhere, in the HTML and in the Markdown pages of the repository and of an installation.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
tools/setup.sh docs
rm -rf build/docs
mkdir -p build/docs
tools/check_links.py markdown . >&2 || fail 'links lead nowhere' 'they stand above'
tools/doc_headers.py include build/docs/include
tools/doc_pages.py . build/docs/pages build/docs/html
version=$(sed -n 's/.*OrvVersion[A-Z][a-z]* = \([0-9]*\);/\1/p' include/orv/version.h | paste -sd.)
# Doxygen fails in folders whose names have blanks, so it works in another one.
work=$(mktemp -d /tmp/orvsys.XXXXXX)
trap 'rm -rf "$work"' EXIT
cp -R docs "$work"
mkdir "$work/build"
cp -R build/docs "$work/build/docs"
printf '@INCLUDE = docs/Doxyfile\nPROJECT_NUMBER = %s\n' "$version" |
    (cd "$work" && doxygen -) 2>build/docs/warnings || fail 'Doxygen failed' 'see build/docs/warnings'
cp -R "$work/build/docs/html" build/docs/
if [ -s build/docs/warnings ]; then
    sed "s,^$work/,,; s,^build/docs/,," build/docs/warnings >&2
    fail 'the documentation has gaps' 'they stand above'
fi
tools/doc_menu.py build/docs/html

if ! { cmake -S docs -B build/docs/installation &&
    DESTDIR='' cmake --install build/docs/installation --prefix build/docs/installed; } >build/docs/log; then
    fail 'the pages cannot be installed' 'see build/docs/log'
fi
if ! { tools/check_links.py html build/docs/html &&
    tools/check_links.py markdown build/docs/installed/share/doc/orvsys; } >&2; then
    fail 'links lead nowhere' 'they stand above'
fi
printf '%s\n' "build/docs/html/index.html"
