#!/usr/bin/env bash
# Chooses the LLVM that everything here is built and checked with: the newest one on this machine, from version 14 on, that
# has every program that a build needs. Programs of different versions are never mixed.
#
#   llvm.sh version        prints its version: 19
#   llvm.sh PROGRAM...     prints where its programs are, one a line: llvm.sh clang-cl lld-link
#
# ORV_LLVM names another: a version, or a folder with the programs.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

oldest=14
needed='clang-cl lld-link llvm-lib llvm-rc llvm-mt llvm-dlltool llvm-readobj clang clang++'

# where CANDIDATE PROGRAM: prints where the program is. A candidate is a version, which the names of its programs contain
# (clang-cl-19); a folder, which ends with a slash; or "plain", for programs without a version in their names, as other
# distributions and LLVM's own packages have them.
where() {
    case $1 in
    plain) command -v "$2" ;;
    */) command -v "$1$2" ;;
    *) command -v "$2-$1" ;;
    esac
}

version_of() {
    case $1 in
    plain | */) "$(where "$1" clang-cl)" --version | sed -n 's/.*clang version \([0-9]*\)\..*/\1/p' ;;
    *) printf '%s\n' "$1" ;;
    esac
}

lacks() { # lacks CANDIDATE: prints the first program that it does not have
    local program
    for program in $needed; do
        where "$1" "$program" >/dev/null || {
            printf '%s\n' "$program"
            return
        }
    done
}

# The newest first; of two with the same version, the one whose names contain the version.
candidates() {
    local version
    compgen -c clang-cl- | sed -n 's/^clang-cl-\([0-9]*\)$/\1 \1/p' | sort -u
    ! where plain clang-cl >/dev/null || version=$(version_of plain)
    [ -z "${version:-}" ] || printf '%s plain\n' "$version"
}

choose() {
    local version candidate program incomplete='' remedy="name a version from $oldest on, or a folder with its programs"
    case ${ORV_LLVM:-} in
    '') ;;
    */*) candidate=$(realpath -m "$ORV_LLVM")/ ;;
    *) candidate=$ORV_LLVM ;;
    esac
    if [ -n "${candidate:-}" ]; then
        program=$(lacks "$candidate")
        [ -z "$program" ] || fail "ORV_LLVM=$ORV_LLVM has no $program" "$remedy"
        version=$(version_of "$candidate")
        [ "$version" -ge $oldest ] || fail "ORV_LLVM=$ORV_LLVM is version $version" "$remedy"
        printf '%s\n' "$candidate"
        return
    fi
    while read -r version candidate; do
        [ "$version" -ge $oldest ] || continue
        program=$(lacks "$candidate")
        if [ -z "$program" ]; then
            printf '%s\n' "$candidate"
            return
        fi
        incomplete=${incomplete:-LLVM $version has no $program}
    done < <(candidates | sort -k1,1nr -k2,2)
    fail "${incomplete:-there is no clang-cl from version $oldest on}" 'run: tools/setup.sh'
}

[ $# -gt 0 ] || fail 'llvm.sh' 'say version, or the name of a program'
candidate=$(choose)
for program in "$@"; do
    if [ "$program" = version ]; then
        version_of "$candidate"
    else
        where "$candidate" "$program" ||
            fail "LLVM $(version_of "$candidate") has no $program" 'install it, or set ORV_LLVM'
    fi
done
