#!/usr/bin/env bash
# Builds the DLL once more and compares the bytes: check_reproducible.sh ORVSYS.DLL
# The second build has a copy of the sources in another folder, a build folder of another name, and another cache folder.
# The name of the other folder has characters with which careless scripts fail.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
elsewhere="$work/a folder's ä"
mkdir "$elsewhere" "$work/cache"
ln -s "$cache"/sources-* "$work/cache/"
tar -C "$root" --exclude=./build --exclude=./.git -cf - . | tar -C "$elsewhere" -xf -
cd "$elsewhere"
{ ORV_CACHE=$work/cache cmake --preset release -B build/other && cmake --build build/other --target orvsys; } >"$work/log" 2>&1 || {
    tail -n 20 "$work/log"
    fail 'the second build failed' 'the reason stands above'
}
cmp "$1" build/other/bin/orvsys.dll
