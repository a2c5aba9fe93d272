#!/usr/bin/env bash
# Configures (once) and builds presets: build.sh PRESET...
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

# A build folder keeps the LLVM and the flags that it was configured with. If these change, it is made again.
configuration() { tools/llvm.sh clang-cl clang && cksum CMakePresets.json cmake/toolchain.cmake cmake/i686-windows.cmake cmake/host.cmake; }

cd "$root"
case " $* " in
*' host '* | *' coverage '*) tools/setup.sh host ;;
*) tools/setup.sh ;;
esac
tools/get_sources.sh >/dev/null # here, where the user sees its messages
for preset in "$@"; do
    wanted=$(configuration)
    [ "$wanted" = "$(cat "build/$preset/configuration" 2>/dev/null)" ] || rm -rf "build/$preset"
    if [ ! -e "build/$preset/build.ninja" ]; then
        log=build/$preset.configure.log
        mkdir -p build
        cmake --preset "$preset" >"$log" 2>&1 || {
            cat "$log" >&2
            rm -rf "build/$preset"
            fail "cannot configure the $preset build" "the reason stands above and in $log"
        }
        printf '%s\n' "$wanted" >"build/$preset/configuration"
    fi
    cmake --build --preset "$preset" || fail "the $preset build failed" 'the reason stands above'
done
