#!/usr/bin/env bash
# Runs a Windows program on the 32-bit NT interface that the tests use: run_wine.sh PROGRAM ARGUMENT...
# It passes arguments, standard streams and the exit code through. ORV_WINE names another Wine, ORV_WINEPREFIX another
# prefix. ORV_RUN_SECONDS limits the time of the run (600; then the exit code is 124). With 0 there is no limit, and this
# process becomes the program.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

wine=$("$root/tools/get_wine.sh")
wine_environment
# The server prints its messages to the program that starts it, so another program starts it first.
"$(wine_server "$wine")" -k0 2>/dev/null || "$root/tools/wine_session.sh" prepare
[ "${ORV_RUN_SECONDS:-}" != 0 ] || exec "$wine" "$@"
exec timeout --foreground "${ORV_RUN_SECONDS:-600}" "$wine" "$@"
