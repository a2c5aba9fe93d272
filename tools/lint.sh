#!/usr/bin/env bash
# Checks the formatting of our own code, analyses it, and checks which folder includes which. Needs a configured release
# build, whose compilation database says how each file is compiled.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
if command -v $clang_format >/dev/null; then
    git ls-files -z --cached --others --exclude-standard '*.h' '*.cpp' | xargs -0 $clang_format --dry-run -Werror ||
        fail 'the formatting differs' 'run: tools/format.sh'
else
    say "the formatting is not checked: it is what $clang_format makes, and this system does not have that"
fi

tools/check_floors.py || fail 'an include points up' 'docs/architecture.md says which folder may include which'

# One process for each file, as many at once as there are processors. The static copy of the library is omitted: it is
# compiled from the same files.
python3 tools/tidy.py build/release || fail 'clang-tidy found something' 'the reason stands above'
say 'nothing to complain about'
