#!/usr/bin/env bash
# How much of the computations the host's tests reach: a summary by file, and every line as HTML in build/coverage/html.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
folder=build/coverage
rm -f $folder/*.profraw
objects=()
for program in $folder/bin/*_host_tests; do
    [ -e "$program" ] || fail 'no test is built for coverage' 'run: make coverage'
    name=$(basename "$program")
    LLVM_PROFILE_FILE=$folder/$name.profraw "$program" >"$folder/$name.log" || {
        tail -n 20 "$folder/$name.log" >&2
        fail "$name fails" 'the reason stands above'
    }
    objects+=(-object "$program")
done
llvm-profdata-14 merge -o $folder/tests.profdata $folder/*.profraw
reports=("${objects[@]:1}" -instr-profile $folder/tests.profdata -ignore-filename-regex '(^|/)tests/')
llvm-cov-14 show "${reports[@]}" -format html -output-dir $folder/html >/dev/null
llvm-cov-14 report "${reports[@]}" | tee $folder/summary.txt
