#!/usr/bin/env bash
# Tests the scripts in unusual environments, case by case: test_environment.sh ORVTOOL
# Prints what differs, and a last line "N passed, N failed". tools/try_machines.sh has the cases that take minutes.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

tool=$1
work=$(mktemp -d)
odd="$work/a folder's ä"
mkdir "$odd"
passed=0
failed=0

ended() {
    ORV_WINEPREFIX=$odd/prefix "$root/tools/wine_session.sh" stop
    rm -rf "$work"
}
trap ended EXIT

# is CODE OUTPUT COMMAND...: the command ends with that code, and its standard output and error match the pattern.
is() {
    local expected=$1 pattern=$2 code=0 output
    shift 2
    output=$("$@" 2>&1) || code=$?
    # shellcheck disable=SC2053  # a pattern
    if [ $code -eq "$expected" ] && [[ $output == $pattern ]]; then
        passed=$((passed + 1))
        return
    fi
    failed=$((failed + 1))
    printf '%s: exit code %s, not %s, or not "%s": %s\n' "$*" $code "$expected" "$pattern" "$output"
}

number() { "$@" "$root/tools/run_wine.sh" "$tool" number 5; }

# A Wine whose first start in a prefix fails, as the real one did once.
wine=$("$root/tools/get_wine.sh")
mkdir "$odd/bin"
cat >"$odd/bin/wine" <<WINE
#!/bin/sh
[ -e '$work/started' ] || { touch '$work/started'; echo 'wine: chdir to /tmp/wine-x'; exit 1; }
exec '${wine//\'/\'\\\'\'}' "\$@"
WINE
ln -s "$(realpath "$(command -v "$(wine_server "$wine")")")" "$odd/bin/wineserver"
chmod +x "$odd/bin/wine"
export ORV_WINEPREFIX=$odd/prefix
is 0 "orvsys: Wine did not start (wine: chdir to /tmp/wine-x); * $odd/prefix.first.log" \
    env ORV_WINE="$odd/bin/wine" "$root/tools/wine_session.sh" start
is 0 'wine: chdir to *' cat "$odd/prefix.first.log"
is 1 '*orvsys: Wine does not start (it says nothing): see *' \
    env ORV_WINE=/bin/false ORV_WINEPREFIX="$work/never" "$root/tools/wine_session.sh" prepare
is 2 '*' ls "$work/never" # a prefix that is not finished is removed

is 0 '5 0x5' number env TMPDIR=/tmp
is 0 '5 0x5' number env TMPDIR="$odd"
is 0 '5 0x5' number env WINEARCH=win64
is 0 '5 0x5' number env -u LANG -u LC_ALL
is 0 '*5 0x5' number env LANG=tr_TR.ISO-8859-9 LC_ALL=xx_YY LANGUAGE=xx
is 0 '5 0x5' number env -u HOME ORV_CACHE="$cache"
is 0 '5 0x5' number setsid --wait
cp "$tool" "$(dirname "$tool")/orvsys.dll" "$odd/"
is 0 '5 0x5' "$root/tools/run_wine.sh" "$odd/$(basename "$tool")" number 5

# Where the cache is, and that it is checked for write access first.
home=$(getent passwd "$(id -u)" | cut -d: -f6)
# shellcheck disable=SC2016  # for the other shell
cache_of() { "$@" bash -c '. "$0/tools/lib.sh"; printf "%s in %s" "$cache" "$HOME"' "$root"; }
is 0 "$home/.cache/orvsys in $home" cache_of env -u HOME -u ORV_CACHE -u XDG_CACHE_HOME
is 0 "/x/orvsys in /h" cache_of env -u ORV_CACHE XDG_CACHE_HOME=/x HOME=/h
is 0 "$PWD/x in /h" cache_of env ORV_CACHE=x HOME=/h
for getter in get_wine get_sources; do
    is 1 'orvsys: the cache folder /dev/null/x cannot be written: set ORV_CACHE to a folder that can' \
        env -u ORV_WINE ORV_CACHE=/dev/null/x "$root/tools/$getter.sh"
done

# Version 99 lacks its linker; 98 is complete, and newer than what is really here; 13 is too old.
have_llvm() { # have_llvm VERSION PROGRAM...
    local program
    for program in "${@:2}"; do
        ln -s /bin/true "$odd/bin/$program-$1"
    done
}
programs='clang clang++ clang-cl lld-link llvm-dlltool llvm-lib llvm-mt llvm-rc llvm-readobj'
# shellcheck disable=SC2086  # each program is one word
have_llvm 98 $programs
# shellcheck disable=SC2086
have_llvm 99 ${programs/lld-link/}
# shellcheck disable=SC2086
have_llvm 13 $programs
llvm() { env -u ORV_LLVM PATH="$odd/bin:$PATH" "$@"; }
is 0 $'98\n'"$odd/bin/clang-cl-98" llvm "$root/tools/llvm.sh" version clang-cl
is 1 'orvsys: LLVM 98 has no clang-tidy: *' llvm "$root/tools/llvm.sh" clang-tidy
is 1 'orvsys: ORV_LLVM=99 has no lld-link: *' llvm env ORV_LLVM=99 "$root/tools/llvm.sh" version
is 1 'orvsys: ORV_LLVM=13 is version 13: *' llvm env ORV_LLVM=13 "$root/tools/llvm.sh" version
rm "$odd"/bin/*-98
real=$(env -u ORV_LLVM "$root/tools/llvm.sh" version)
is 0 "$real" llvm "$root/tools/llvm.sh" version
folder=$(dirname "$(realpath "$("$root/tools/llvm.sh" clang-cl)")")
is 0 "$("$root/tools/llvm.sh" version)"$'\n'"$folder/clang-cl" env ORV_LLVM="$folder" "$root/tools/llvm.sh" version clang-cl

printf '%s passed, %s failed\n' $passed $failed
[ $failed -eq 0 ]
