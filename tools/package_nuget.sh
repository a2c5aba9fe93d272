#!/usr/bin/env bash
# Makes the NuGet package from what a build installs, checks it, and puts it into a folder: package_nuget.sh BUILD FOLDER
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$1/CMakeCache.txt")
DESTDIR='' cmake --install "$1" --prefix "$work" >"$work/log"
mkdir -p "$2"
"$root/tools/nuget.py" make "$work" "$version" "$work/orvsys.nupkg"
"$root/tools/nuget.py" check "$work" "$version" "$work/orvsys.nupkg" || fail 'the NuGet package is wrong' 'the reason stands above'
mv "$work/orvsys.nupkg" "$2/orvsys.$version.nupkg"
