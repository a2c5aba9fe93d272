#!/usr/bin/env bash
# Formats everything that is ours in place.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
git ls-files --cached --others --exclude-standard '*.h' '*.cpp' | xargs clang-format-14 -i
