#!/usr/bin/env bash
# Tries the commands of the README on various machines, each with a fresh clone of what is committed, and prints a line for
# each: try_machines.sh [MACHINE...]
# Without a name it tries all, and the lines replace those in docs/machines.md. It needs root, debootstrap, the network,
# 15 GB and about half an hour. Run it before a release. The output of the commands is kept in build/machines.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

machines=(folder tmpdir home locale odd-locale umask terminal cache user no-home debian12 llvm19 debian13)
declare -A words=(
    [folder]="a clone in \"a folder's ä\": make demo test lint package"
    [tmpdir]='TMPDIR is set: make demo'
    [home]='HOME is unset: make demo'
    [locale]='LANG and LC_ALL are unset: make demo'
    [odd-locale]='LANG and LC_ALL name no locale: make demo'
    [umask]='umask 077: make demo'
    [terminal]='no terminal and no input: make demo'
    [cache]='an empty cache: make demo'
    [user]='a user who is not root, an empty cache: make demo'
    [no-home]='the same without a home: make demo says what to do'
    [debian12]='Debian 12, bare, an empty cache: make demo test lint'
    [llvm19]='the same with ORV_LLVM=19: make demo test lint'
    [debian13]='Debian 13, bare, an empty cache: make demo test lint'
)

# made "TARGET..." COMMAND...: makes each target by itself, as a user does. The command starts make.
made() {
    local target
    for target in $1; do
        "${@:2}" make "$target" || return
    done
    echo "LLVM $("${@:2}" tools/llvm.sh version)"
}

try_folder() { made 'demo test lint package' env; }
try_tmpdir() { mkdir -p "$work/tmp" && made demo env TMPDIR="$work/tmp"; }
try_home() { made demo env -u HOME; }
try_locale() { made demo env -u LANG -u LC_ALL; }
try_odd-locale() { made demo env LANG=tr_TR.ISO-8859-9 LC_ALL=xx_YY LANGUAGE=xx; }
try_umask() { made demo bash -c 'umask 077 && exec "$@"' umask; }
try_terminal() { made demo setsid --wait </dev/null; }
try_cache() { made demo env ORV_CACHE="$work/cache"; }

as_nobody() { # as_nobody HOME COMMAND...
    chown -R nobody:nogroup .
    setpriv --reuid=nobody --regid=nogroup --clear-groups env -u ORV_CACHE -u XDG_CACHE_HOME HOME="$1" "${@:2}"
}

try_user() {
    mkdir "$work/home"
    chown nobody "$work/home"
    made demo as_nobody "$work/home"
}

try_no-home() {
    ! as_nobody /nonexistent make demo 2>said || return
    cat said
    grep -qx 'orvsys: the cache folder /nonexistent/.cache/orvsys cannot be written: set ORV_CACHE to a folder that can' said
}

# Makes the root file system of a bare Debian, with the network and the package sources of this machine.
debian() { # debian SUITE
    [ ! -e "$work/$1" ] || return 0
    debootstrap --variant=minbase --include=make,git "$1" "$work/$1" "$(debian_mirror)" &&
        cp /etc/resolv.conf /etc/hosts "$work/$1/etc/" &&
        { apt-config dump | grep -i '^Acquire::\(Check\|ftp\|http\|https\|Retries\)' >"$work/$1/etc/apt/apt.conf.d/90host" || true; } &&
        git clone -q --no-local "$root" "$work/$1/root/orvsys"
}

# inside SUITE COMMAND...: runs the command in the clone there. When it ends, its mounts and all its processes end.
inside() {
    # shellcheck disable=SC2016  # for the other shell
    unshare --mount --propagation private --pid --fork --kill-child bash -euc '
        mount -t proc proc "$0/proc"
        mount --rbind /sys "$0/sys"
        mount --rbind /dev "$0/dev"
        exec chroot "$0" env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin \
            bash -c '\''cd /root/orvsys && exec "$@"'\'' inside "$@"' "$work/$1" "${@:2}"
}

try_debian12() { debian bookworm && made 'demo test lint' inside bookworm; }
try_llvm19() { debian bookworm && made 'demo test lint' inside bookworm env ORV_LLVM=19; }
try_debian13() { debian trixie && made 'demo test lint' inside trixie; }

# Summarises the log of the commands: how many tests passed, with which LLVM, and what lint could not check.
facts() {
    sed -n 's/^[0-9]*% tests passed, \([0-9]*\) tests failed out of \([0-9]*\)$/\2 tests, \1 failed/p
            s/^\(LLVM [0-9]*\)$/\1/p
            s/^orvsys: \(the formatting is not checked\):.*/\1/p' "$1" | paste -sd';' | sed 's/;/; /g'
}

try() { # try MACHINE: prints its line
    local machine=$1 log=$logs/$1 clone="$work/a clone" facts result=ok start=$SECONDS
    [ "$machine" != folder ] || clone="$work/a folder's ä"
    (
        case $machine in
        debian* | llvm*) ;; # they have their own inside
        *)
            git clone -q --no-local "$root" "$clone"
            cd "$clone"
            ;;
        esac
        "try_$machine"
    ) >"$log" 2>&1 || result=FAILED
    rm -rf "$clone"
    facts=$(facts "$log")
    printf '%-6s %4d s  %s%s\n' $result $((SECONDS - start)) "${words[$machine]}" "${facts:+ ($facts)}"
}

keep() { # keep FILE: replaces the lines in the page by those of the file
    awk -v results="$1" '
        /^```text$/ { print; while ((getline text < results) > 0) print text; skips = 1; next }
        /^```$/ { skips = 0 }
        !skips { print }' docs/machines.md >"$work/page"
    cp "$work/page" docs/machines.md
}

cd "$root"
[ "$(id -u)" -eq 0 ] || fail 'root file systems and another user are needed' 'run it as root'
command -v debootstrap >/dev/null || fail 'debootstrap is missing' 'run: apt-get install debootstrap'
for machine in "$@"; do
    [ -n "${words[$machine]:-}" ] || fail "there is no machine '$machine'" "say some of: ${machines[*]}"
done
logs=$root/build/machines
mkdir -p "$logs"
work=$(mktemp -d)
chmod 755 "$work" # another user can enter, too
trap 'rm -rf --one-file-system "$work"' EXIT

chosen=("${@:-${machines[@]}}")
for machine in "${chosen[@]}"; do
    try "$machine"
done | tee "$work/results"
[ $# -gt 0 ] || keep "$work/results"
! grep -q ^FAILED "$work/results"
