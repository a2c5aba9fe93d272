#!/usr/bin/env bash
# Starts or stops the server behind every program that run_wine.sh starts: wine_session.sh start|stop
# With a live server a program starts in a tenth of a second. `start` makes the prefix when there is none.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

wine=$("$root/tools/get_wine.sh")
server=$(dirname "$wine")/wineserver
[ -x "$server" ] || server=wineserver
wine_environment
case ${1:-} in
start)
    mkdir -p "$(dirname "$WINEPREFIX")"
    "$server" -p 2>/dev/null || true # fails when one is already there
    # Making the prefix is a program's first run; what that prints about fonts and drivers is of no use here.
    timeout 120 "$wine" cmd /c exit >"$WINEPREFIX.log" 2>&1 ||
        fail "Wine does not start ($(tail -n 1 "$WINEPREFIX.log"))" 'see the README on ORV_WINE'
    ;;
stop)
    "$server" -k 2>/dev/null || true # fails when none is there
    ;;
*) fail 'wine_session.sh' 'say start or stop' ;;
esac
