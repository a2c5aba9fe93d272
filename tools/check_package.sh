#!/usr/bin/env bash
# The package is what the installation lays out, file by file: check_package.sh BUILD-FOLDER
# That programs can be built with it, the commands of the README show.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
{
    cmake --install "$1" --prefix "$work/installed"
    (cd "$1" && cpack --config CPackConfig.cmake -B "$work/package")
    python3 -m zipfile -e "$work"/package/*.zip "$work/unpacked"
    diff -r "$work/unpacked"/* "$work/installed"
} >"$work/log" 2>&1 || {
    tail -n 20 "$work/log"
    fail 'the package is not what is installed' 'the reason stands above'
}
