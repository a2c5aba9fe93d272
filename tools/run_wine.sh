#!/usr/bin/env bash
# Runs a Windows program on the 32-bit NT interface that the tests use: run_wine.sh PROGRAM ARGUMENT...
# Everything passes through: arguments, standard streams, exit code. ORV_WINE names another Wine, ORV_WINEPREFIX
# another prefix; ORV_RUN_SECONDS bounds the run (600, exit code 124; 0 for no bound, and then this process becomes
# the program).
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

wine=$("$root/tools/get_wine.sh")
wine_environment
# The program that starts the server gets to see what that says: let it be another one.
"$(wine_server "$wine")" -k0 2>/dev/null || "$root/tools/wine_session.sh" prepare
[ "${ORV_RUN_SECONDS:-}" != 0 ] || exec "$wine" "$@"
exec timeout --foreground "${ORV_RUN_SECONDS:-600}" "$wine" "$@"
