#!/usr/bin/env bash
# Configures (once) and builds presets: build.sh PRESET...
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
case " $* " in
*' host '* | *' coverage '*) tools/setup.sh host ;;
*) tools/setup.sh ;;
esac
llvm=$(tools/llvm.sh clang-cl clang)
for preset in "$@"; do
    # A build keeps to the LLVM that it was configured with: with another one it starts anew.
    if [ -e "build/$preset" ] && [ "$llvm" != "$(cat "build/$preset/llvm" 2>/dev/null)" ]; then
        rm -rf "build/$preset"
    fi
    if [ ! -e "build/$preset/build.ninja" ]; then
        log=build/$preset.configure.log
        mkdir -p build
        cmake --preset "$preset" >"$log" 2>&1 || {
            cat "$log" >&2
            rm -rf "build/$preset"
            fail "cannot configure the $preset build" "the reason stands above and in $log"
        }
        printf '%s\n' "$llvm" >"build/$preset/llvm"
    fi
    cmake --build --preset "$preset" || fail "the $preset build failed" 'the reason stands above'
done
