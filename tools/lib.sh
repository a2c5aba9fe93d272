# Shared by the scripts: where the cache is, how a step fails, and a private apt that needs no root.
# Sourced, never run. A script that sources it sets `set -euo pipefail` first.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

# With one locale file names are read and sorted in the same way everywhere, whatever the user's languages are.
export LC_ALL=C.UTF-8
unset LANGUAGE
# Services and containers may have no HOME. For a user without an entry in the database it is the root folder.
[ -n "${HOME:-}" ] || HOME=$(getent passwd "$(id -u)" | cut -d: -f6) || true
export HOME=${HOME:-/}
cache=$(realpath -ms "${ORV_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/orvsys}")

# Versions of clang-format differ, so this one defines the formatting, whichever LLVM compiles.
clang_format=clang-format-14

# fail WHAT REMEDY: ends a script that cannot continue, with one line.
fail() {
    printf 'orvsys: %s: %s\n' "$1" "$2" >&2
    exit 1
}

say() { printf 'orvsys: %s\n' "$*" >&2; }

# make_cache: call it before you write to the cache.
make_cache() {
    mkdir -p "$cache" 2>/dev/null && [ -w "$cache" ] ||
        fail "the cache folder $cache cannot be written" 'set ORV_CACHE to a folder that can'
}

# The Debian mirror that this machine itself uses, so that a proxy or a local mirror is honoured.
debian_mirror() {
    local uri
    if [ -n "${ORV_DEBIAN_MIRROR:-}" ]; then
        printf '%s\n' "$ORV_DEBIAN_MIRROR"
        return
    fi
    uri=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' 'Component: main' 2>/dev/null |
        grep -E '/debian/?$' | head -n 1) || true
    [ -n "$uri" ] || fail 'no Debian mirror among the apt sources of this machine' 'set ORV_DEBIAN_MIRROR'
    printf '%s\n' "$uri"
}

# private_apt NAME ARCHITECTURE SOURCES-LINE...: makes an apt of our own, with its own lists and an empty
# status file, and leaves its configuration in $apt_conf. It sees one suite and touches nothing of the system.
private_apt() {
    local name=$1 arch=$2 dir=$cache/apt/$1
    shift 2
    command -v apt-get >/dev/null || fail 'apt-get is missing' 'a Debian or Ubuntu host is needed (or set ORV_WINE)'
    mkdir -p "$dir"/{lists/partial,archives/partial,etc}
    : >"$dir/status"
    printf '%s\n' "$@" >"$dir/etc/sources.list"
    apt_conf=$dir/etc/apt.conf
    cat >"$apt_conf" <<CONF
APT::Architecture "$arch";
APT::Architectures { "$arch"; };
APT::Sandbox::User "root";
Acquire::Languages "none";
Acquire::Retries "3";
APT::Update::Error-Mode "any";
Dir::State "$dir";
Dir::State::lists "$dir/lists";
Dir::State::status "$dir/status";
Dir::Cache "$dir";
Dir::Cache::archives "$dir/archives";
Dir::Etc "$dir/etc";
Dir::Etc::sourcelist "$dir/etc/sources.list";
Dir::Etc::sourceparts "/dev/null";
Dir::Etc::preferencesparts "/dev/null";
Dir::Etc::parts "/etc/apt/apt.conf.d";
#clear DPkg::Pre-Install-Pkgs;
CONF
    APT_CONFIG=$apt_conf apt-get -qq update >"$dir/log" 2>&1 ||
        fail "cannot read the package lists ($(tail -n 1 "$dir/log"))" 'check the network, or set ORV_DEBIAN_MIRROR'
}

# wine_server WINE: prints the path of its server.
wine_server() {
    local server
    server=$(dirname "$1")/wineserver
    [ -x "$server" ] || server=wineserver
    printf '%s\n' "$server"
}

# The environment of every Wine program that we start: a prefix in the build folder, no debug output, no offers to install
# extra runtimes. Debian's Wine aborts if TMPDIR is set ("free(): invalid pointer"), and refuses a prefix for a WINEARCH
# that is not its own.
wine_environment() {
    local platform=${ORV_PLATFORM:-wine10}
    unset TMPDIR WINEARCH
    export WINEPREFIX=${ORV_WINEPREFIX:-$root/build/${platform/wine10/wine}}
    export WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES='mscoree,mshtml='
}
