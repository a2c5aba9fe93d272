#!/usr/bin/env bash
# The server behind every program that run_wine.sh starts: wine_session.sh prepare|start|stop
# `prepare` makes the prefix when there is none, and runs a program; `start` also keeps a server alive, with which a
# program starts in a tenth of a second; `stop` ends it, and every program with it.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

wine=$("$root/tools/get_wine.sh")
server=$(wine_server "$wine")
wine_environment

# A program's first run makes the prefix and starts the server; what it prints about fonts and drivers is of no use here.
# A prefix that was not finished would never work: none is left.
first_run() {
    local is_new=''
    [ -e "$WINEPREFIX" ] || is_new=yes
    mkdir -p "$WINEPREFIX" # some servers want it
    [ "$job" != start ] || "$server" -p 2>/dev/null || true # fails when one is already there
    timeout 120 "$wine" cmd /c exit >"$WINEPREFIX.log" 2>&1 && return
    "$server" -k 2>/dev/null || true
    [ -z "$is_new" ] || rm -rf "$WINEPREFIX"
    return 1
}

last_words() { tail -n 1 "$WINEPREFIX.log" | grep . || echo 'it says nothing'; }

prepare() {
    first_run && return
    # In a fresh prefix the program was once there before the server's folder ("chdir to ..."). Twice has another reason.
    say "Wine did not start ($(last_words)); it is tried once more, what it said is kept in $WINEPREFIX.first.log"
    mv "$WINEPREFIX.log" "$WINEPREFIX.first.log"
    first_run || fail "Wine does not start ($(last_words))" "see $WINEPREFIX.log, and the README on ORV_WINE"
}

job=${1:-}
case $job in
prepare | start) prepare ;;
stop) "$server" -k 2>/dev/null || true ;; # fails when none is there
*) fail 'wine_session.sh' 'say prepare, start or stop' ;;
esac
