#!/usr/bin/env bash
# Ends the Wine server that lives on the build folder's prefix, then removes the build folder.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

[ ! -e "$root/build/wine" ] || "$root/tools/wine_session.sh" stop
rm -rf "$root/build"
