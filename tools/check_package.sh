#!/usr/bin/env bash
# Installs the build, builds the README's first program against that with find_package alone, and runs it:
# check_package.sh BUILD-FOLDER
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cp "$root/tests/package/CMakeLists.txt" "$work/"
# The indented block of that chapter, then the entry.
sed -n '/^## A first program/,/^A result code/s/^    //p' "$root/README.md" | cat - "$root/tests/package/entry.cpp" >"$work/main.cpp"
{
    cmake --install "$1" --prefix "$work/installed"
    (cd "$1" && cpack --config CPackConfig.cmake -B "$work/package")
    python3 -m zipfile -e "$work"/package/*.zip "$work/unpacked"
    diff -r "$work/unpacked"/* "$work/installed"
    # Somebody else's flags: the cookie and the guard would want what this program does not have.
    cmake -S "$work" -B "$work/build" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$root/cmake/i686-windows.cmake" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_PREFIX_PATH="$work/installed" -DCMAKE_FIND_ROOT_PATH_MODE_PACKAGE=BOTH \
        -DCMAKE_CXX_FLAGS='/Zl /GS- /W4 /WX /EHs-c- /GR-' -DCMAKE_EXE_LINKER_FLAGS='/nodefaultlib /manifest:no'
    cmake --build "$work/build"
} >"$work/log" 2>&1 || {
    tail -n 20 "$work/log"
    fail 'the installed package cannot be used' 'the reason stands above'
}
cp "$work/installed/bin/orvsys.dll" "$work/build/"
code=0
"$root/tools/run_wine.sh" "$work/build/component.exe" || code=$?
# Nobody answers: the wait of five seconds ends, which the program calls a failure.
[ "$code" -eq 1 ] || fail "the component ended with $code, not with 1" "its source is the README's first program"
ORV_RUN_SECONDS=0 "$root/tools/run_wine.sh" "$work/build/component.exe" &
waiting=$!
code=1
for _ in 1 2 3 4 5 6 7 8 9 10; do # until one comes while the other waits
    "$root/tools/run_wine.sh" "$work/build/component.exe" && code=0 && break
done
wait "$waiting" || code=1
[ "$code" -eq 0 ] || fail 'two components did not meet' "their source is the README's first program"
