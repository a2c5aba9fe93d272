#!/usr/bin/env bash
# Makes sure that this machine has what the build needs: setup.sh [host|docs]
# Missing packages are installed when we may, and named when we may not. `host` adds what the sanitizer build needs,
# `docs` what the reference documentation needs.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

missing=()
needs() { # needs PACKAGE COMMAND...: one of the commands must exist
    local package=$1 command
    shift
    for command in "$@"; do
        command -v "$command" >/dev/null && return
    done
    missing+=("$package")
}
needs cmake cmake
needs ninja-build ninja
needs clang-14 clang-cl-14 clang-cl
needs lld-14 lld-link-14 lld-link
needs llvm-14 llvm-dlltool-14 llvm-dlltool
needs python3 python3
needs patchelf patchelf
needs dpkg-dev dpkg-source
[ "${1:-}" != docs ] || needs doxygen doxygen
if [ "${1:-}" = host ]; then
    needs clang-14 clang++-14
    [ -e /usr/include/i386-linux-gnu/sys/cdefs.h ] || [ -e /usr/include/sys/cdefs.h ] || missing+=(libc6-dev-i386)
    ls /usr/lib/gcc/x86_64-linux-gnu/*/32/libgcc.a >/dev/null 2>&1 || missing+=(gcc-multilib g++-multilib)
    ls /usr/lib/llvm-14/lib/clang/*/lib/linux/libclang_rt.asan-i386.a >/dev/null 2>&1 || missing+=(libclang-rt-14-dev)
fi
[ ${#missing[@]} -gt 0 ] || exit 0

packages="${missing[*]}"
as_root=()
if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null && sudo -n true 2>/dev/null || fail "missing: $packages" "run: apt-get install $packages"
    as_root=(sudo -n)
fi
command -v apt-get >/dev/null || fail "missing: $packages" 'install them, or what your system calls them'
say "installing $packages"
export DEBIAN_FRONTEND=noninteractive
log=$(mktemp)
trap 'rm -f "$log"' EXIT
# The lists may be absent on a fresh machine, or older than the mirror.
"${as_root[@]}" apt-get -qq update >"$log" 2>&1 || true
# shellcheck disable=SC2086  # one word a package
"${as_root[@]}" apt-get -qq install -y --no-install-recommends $packages >"$log" 2>&1 ||
    fail "cannot install $packages ($(tail -n 1 "$log"))" 'check the network, or install them by hand'
