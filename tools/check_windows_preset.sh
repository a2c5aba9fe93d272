#!/usr/bin/env bash
# Builds and installs with the preset for Windows itself, from a copy of the sources without the folder `tools`:
# check_windows_preset.sh BUILD-FOLDER
# The libraries' sources, and the compiler, are those that the build folder was configured with. This runs on Linux, so it
# cannot show that the build works on Windows.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

build=$(realpath "$1")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/clone" "$work/sources"
tar -C "$root" --exclude=./build --exclude=./.git --exclude=./tools --exclude=./fuzz -cf - . | tar -C "$work/clone" -xf -
for library in zlib bzip2 expat; do
    ln -s "$(realpath "$build/sources/$library")" "$work/sources/"
done

# Fetching from a folder that looks like a mirror: an archive with the right digest is unpacked, any other is refused.
pool=$work/mirror/pool/main/z/zlib
mkdir -p "$pool"
tar -C "$(realpath "$build/sources")" -czf "$pool/zlib_1+2.orig.tar.gz" zlib
digest=$(sha256sum <"$pool/zlib_1+2.orig.tar.gz" | cut -c -64)
fetch() { # fetch DIGEST
    printf 'zlib archive %s zlib_1+2.orig.tar.gz\n' "$1" >"$work/dependencies.txt"
    printf 'include("%s")\norv_fetch_sources("%s" "%s")\n' "$root/cmake/FetchSources.cmake" "$work/fetched" \
        "$work/dependencies.txt" >"$work/fetch.cmake"
    cmake -DORV_DEBIAN_MIRROR="file://$work/mirror" -P "$work/fetch.cmake" >"$work/log" 2>&1
}
! fetch "${digest//[0-4]/5}" || fail 'an archive with another digest was taken' 'see cmake/FetchSources.cmake'
fetch "$digest" || fail "an archive was not taken ($(tail -n 3 "$work/log"))" 'see cmake/FetchSources.cmake'
diff -r "$work/fetched/zlib" "$build/sources/zlib" >"$work/log" || fail 'an archive was not unpacked' 'see cmake/FetchSources.cmake'

compiler=$(sed -n 's/^ORV_CLANG_CL:FILEPATH=.*clang-cl-*//p' "$build/CMakeCache.txt")
cd "$work/clone"
{
    cmake --preset windows -DORV_SOURCES="$work/sources" ${compiler:+-DORV_LLVM_VERSION="$compiler"}
    cmake --build --preset windows --target orvsys orvstart orvtool
    cmake --install build/windows --prefix orv
} >"$work/log" 2>&1 || {
    tail -n 20 "$work/log"
    fail 'the preset for Windows does not build' 'the reason stands above'
}
diff <(cd orv && find . -type f | sort) <(cd "$build" && cmake --install . --prefix "$work/scripted" >/dev/null &&
    cd "$work/scripted" && find . -type f ! -name orvsys.cdx.json | sort) || fail 'it installs other files' 'they stand above'
"$root/tools/run_wine.sh" orv/bin/orvtool.exe hash --help >/dev/null || fail 'its orvtool does not run' 'try it by hand'
