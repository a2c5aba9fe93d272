#!/usr/bin/env bash
# Makes sure that this machine has what the build needs: setup.sh [host|docs|lint]...
# Missing packages are installed if we have the rights, and named otherwise; then each command is looked for again. `host`
# adds what the sanitizer build needs, `docs` what the reference documentation needs, `lint` what the analysis needs.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

needs() { # needs COMMAND PACKAGE: notes the package if there is no such command
    command -v "$1" >/dev/null || lacks "$1" "$2"
}

lacks() { # lacks WHAT PACKAGE...
    missing+=("$1")
    shift
    packages+=("$@")
}

named() { printf '%s\n' "${missing[@]}" | paste -sd, | sed 's/,/, /g'; }

look_for_llvm() {
    # Without a version these are the packages of the version that the distribution prefers.
    local suffix=
    [[ ! ${ORV_LLVM:-} =~ ^[0-9]+$ ]] || suffix=-$ORV_LLVM
    llvm=$("$root/tools/llvm.sh" version 2>&1) && return
    llvm=${llvm#orvsys: }
    lacks "${llvm%%: *}" "clang$suffix" "clang-tools$suffix" "lld$suffix" "llvm$suffix"
    llvm=
}

# The host's compiler has to build 32-bit programs, for which it needs a C library, GCC's C++ library and the run-time
# library of its sanitizers.
look_for_host_build() {
    local said
    [ -n "$llvm" ] || return 0 # in the next round
    said=$("$("$root/tools/llvm.sh" clang++)" -m32 -fsanitize=address,undefined,fuzzer -x c++ -o /dev/null - 2>&1 \
        <<<$'#include <cstddef>\nextern "C" int LLVMFuzzerTestOneInput(const unsigned char *, std::size_t) { return 0; }') ||
        lacks "a 32-bit build with sanitizers ($(grep -m 1 -E 'error|cannot' <<<"$said"))" \
            libc6-dev-i386 gcc-multilib g++-multilib "libclang-rt-$llvm-dev"
}

# The one version that defines the formatting does not exist everywhere; then the formatting is not checked.
look_for_formatter() {
    ! apt-cache show $clang_format >/dev/null 2>&1 || needs $clang_format $clang_format
}

look() {
    missing=() packages=()
    needs cmake cmake
    needs ninja ninja-build
    needs python3 python3
    needs patchelf patchelf
    needs dpkg-source dpkg-dev
    look_for_llvm
    case $wanted in *' docs '*) needs doxygen doxygen ;; esac
    case $wanted in *' host '*) look_for_host_build ;; esac
    case $wanted in *' lint '*)
        look_for_formatter
        needs git git
        [ -z "$llvm" ] || "$root/tools/llvm.sh" clang-tidy >/dev/null 2>&1 || lacks clang-tidy "clang-tidy-$llvm"
        ;;
    esac
}

install() {
    local as_root=() log
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null && sudo -n true 2>/dev/null ||
            fail "missing: $(named)" "run: apt-get install ${packages[*]}"
        as_root=(sudo -n)
    fi
    command -v apt-get >/dev/null || fail "missing: $(named)" 'install them, by the names that your system has for them'
    say "installing ${packages[*]}"
    export DEBIAN_FRONTEND=noninteractive
    log=$(mktemp)
    umask 022 # all users can read what is installed
    # The lists may be absent on a fresh machine, or older than the mirror.
    "${as_root[@]}" apt-get -qq update >"$log" 2>&1 || true
    "${as_root[@]}" apt-get -qq install -y --no-install-recommends "${packages[@]}" >"$log" 2>&1 || {
        cat "$log" >&2
        rm -f "$log"
        fail "cannot install ${packages[*]}" 'the reason stands above: check the network, or install them by hand'
    }
    rm -f "$log"
}

wanted=" $* "
before=
look
while [ ${#missing[@]} -gt 0 ]; do
    # A package may install a command that the next search needs: search again as long as the results differ.
    [ "${missing[*]}" != "$before" ] || fail "still missing after installing ${packages[*]}: $(named)" 'install it by hand'
    before=${missing[*]}
    install
    hash -r
    look
done
