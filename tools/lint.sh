#!/usr/bin/env bash
# Formatting and static analysis of everything that is ours. Needs a configured release build, whose compilation
# database says how each file is compiled.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
for tool in clang-format-14 clang-tidy-14; do
    command -v $tool >/dev/null || fail "$tool is missing" "run: apt-get install ${tool}"
done
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.h' '*.cpp')
clang-format-14 --dry-run -Werror "${sources[@]}" || fail 'the formatting differs' 'run: tools/format.sh'

tools/check_floors.py || fail 'an include points up' 'docs/architecture.md says which folder may include which'

# One process a file, as many at once as there are processors. The static copy of the library is left out: it is
# compiled from the same files.
python3 tools/tidy.py build/release || fail 'clang-tidy found something' 'the reason stands above'
say 'nothing to complain about'
