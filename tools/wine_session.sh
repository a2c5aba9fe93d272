#!/usr/bin/env bash
# The server behind every program that run_wine.sh starts: wine_session.sh prepare|start|stop
# `prepare` makes the prefix when there is none, and runs a program; `start` also keeps a server alive, with which a program starts in a
# tenth of a second; `stop` ends it, and every program with it.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

wine=$("$root/tools/get_wine.sh")
server=$(wine_server "$wine")
wine_environment

prepare() {
    mkdir -p "$(dirname "$WINEPREFIX")"
    # Making the prefix and starting the server are a program's first run; what that prints about fonts and drivers is
    # of no use here.
    timeout 120 "$wine" cmd /c exit >"$WINEPREFIX.log" 2>&1 ||
        fail "Wine does not start ($(tail -n 1 "$WINEPREFIX.log" | grep . || echo it says nothing))" 'see the README on ORV_WINE'
}

case ${1:-} in
prepare) prepare ;;
start)
    mkdir -p "$WINEPREFIX" # some servers want it
    "$server" -p 2>/dev/null || true # fails when one is already there
    prepare
    ;;
stop) "$server" -k 2>/dev/null || true ;; # fails when none is there
*) fail 'wine_session.sh' 'say prepare, start or stop' ;;
esac
