#!/usr/bin/env bash
# Ends the Wine server that uses the prefix in the build folder, then removes the build folder.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

[ ! -e "$root/build/wine" ] || "$root/tools/wine_session.sh" stop
rm -rf "$root/build"
