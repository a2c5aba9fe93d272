#!/usr/bin/env bash
# Builds the DLL once more, from a copy of the sources in another folder, and compares: check_reproducible.sh ORVSYS.DLL
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/elsewhere"
tar -C "$root" --exclude=./build --exclude=./.git -cf - . | tar -C "$work/elsewhere" -xf -
cd "$work/elsewhere"
{ cmake --preset release && cmake --build --preset release --target orvsys; } >"$work/log" 2>&1 || {
    tail -n 20 "$work/log"
    fail 'the second build failed' 'the reason stands above'
}
cmp "$1" build/release/bin/orvsys.dll
