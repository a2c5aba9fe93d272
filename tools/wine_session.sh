#!/usr/bin/env bash
# Controls the Wine server that every program of run_wine.sh uses: wine_session.sh prepare|start|stop
# `prepare` makes the prefix if there is none, and runs a program. `start` also keeps the server alive, so that a program
# starts in a tenth of a second. `stop` ends the server and all its programs.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

wine=$("$root/tools/get_wine.sh")
server=$(wine_server "$wine")
wine_environment

# The first run of a program makes the prefix and starts the server; its messages about fonts and drivers are of no use here.
# A prefix that was not finished would never work, so it is removed.
first_run() {
    local is_new=''
    [ -e "$WINEPREFIX" ] || is_new=yes
    mkdir -p "$WINEPREFIX" # some servers need it
    [ "$job" != start ] || "$server" -p 2>/dev/null || true # fails if one is already running
    timeout 120 "$wine" cmd /c exit >"$WINEPREFIX.log" 2>&1 && return
    "$server" -k 2>/dev/null || true
    [ -z "$is_new" ] || rm -rf "$WINEPREFIX"
    return 1
}

last_words() { tail -n 1 "$WINEPREFIX.log" | grep . || echo 'it says nothing'; }

prepare() {
    first_run && return
    # In a fresh prefix the program once started before the server's folder existed ("chdir to ..."). A second failure has
    # another reason.
    say "Wine did not start ($(last_words)); it is tried once more, what it said is kept in $WINEPREFIX.first.log"
    mv "$WINEPREFIX.log" "$WINEPREFIX.first.log"
    first_run || fail "Wine does not start ($(last_words))" "see $WINEPREFIX.log, and the README on ORV_WINE"
}

job=${1:-}
case $job in
prepare | start) prepare ;;
stop) "$server" -k 2>/dev/null || true ;; # fails if none is running
*) fail 'wine_session.sh' 'say prepare, start or stop' ;;
esac
