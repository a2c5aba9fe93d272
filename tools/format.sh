#!/usr/bin/env bash
# Formats everything that is ours in place.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
command -v $clang_format >/dev/null || fail "$clang_format is missing" "run: apt-get install $clang_format"
git ls-files -z --cached --others --exclude-standard '*.h' '*.cpp' | xargs -0 $clang_format -i
