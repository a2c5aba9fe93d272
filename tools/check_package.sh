#!/usr/bin/env bash
# Checks the packages: check_package.sh BUILD-FOLDER
# The zip must contain the same files as the installation, the licence of each library inside, and a bill of materials that
# names the versions that were built. The NuGet package is made twice and checked.
# The commands of the README show that programs can be built with the installation.
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

for folder in one two; do
    "$root/tools/package_nuget.sh" "$1" "$work/$folder"
done
cmp "$work"/one/*.nupkg "$work"/two/*.nupkg || fail 'a second NuGet package differs' 'see tools/nuget.py'

. "$(dirname "${BASH_SOURCE[0]}")/source_packages.sh"
installed=$work/installed/share
for library in $(libraries); do
    cmp "$installed/doc/orvsys/licenses/$library.txt" "$1/sources/$library/$(fact "$library" text)" ||
        fail "the licence of $library is not in the package" 'see cmake/Packaging.cmake'
done
python3 - "$installed/orvsys/orvsys.cdx.json" "$1/sources/versions" <<'PYTHON' ||
import json, sys, urllib.parse
bill = json.load(open(sys.argv[1], encoding="utf-8"))
parts = [urllib.parse.unquote(part["purl"]) for part in bill["components"]]
built = [line.split() for line in open(sys.argv[2], encoding="utf-8")]
assert sorted(parts) == sorted(f"pkg:deb/debian/{library}@{version}?arch=source" for library, version in built), parts
assert all(part["version"] in part["purl"] for part in bill["components"]), "an upstream version is another one"
PYTHON
    fail 'the bill of materials is wrong' 'the reason stands above'
