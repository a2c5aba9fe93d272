#!/usr/bin/env bash
# Shows how much of the computations the host's tests and the fuzz targets reach: lines and branches by file,
# and every line as HTML in build/coverage/html. Fails if a unit is below 90 % of its lines and
# tests/host/uncovered.txt does not name it.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
folder=build/coverage
rm -f $folder/*.profraw
objects=()
for program in $folder/bin/*_host_tests; do
    [ -e "$program" ] || fail 'no test is built for coverage' 'run: make coverage'
    name=$(basename "$program")
    LLVM_PROFILE_FILE=$folder/$name.profraw "$program" >"$folder/$name.log" 2>&1 || {
        tail -n 20 "$folder/$name.log" >&2
        fail "$name fails" 'the reason stands above'
    }
    objects+=(-object "$program")
done
LLVM_PROFILE_FILE=$root/$folder/fuzz-%p.profraw ctest --test-dir $folder -R '[.]fuzz[.]' >$folder/fuzz.log || {
    tail -n 20 $folder/fuzz.log >&2
    fail 'a fuzz target fails' 'the reason stands above'
}
for program in $folder/bin/*_fuzz; do
    objects+=(-object "$program")
done
"$(tools/llvm.sh llvm-profdata)" merge -o $folder/tests.profdata $folder/*.profraw

# Not counted: the tests, orvtool, other people's code, and included headers of units that are not built here.
others='(^|/)(tests|fuzz|apps)/|/(zlib|bzip2|expat)/|/src/nt/'
others+='|/include/orv/(fs/(file|lock_file)|registry/registry_(types|enumerator)|runtime/heap_object|security|sync|thread)'
# A program has no counts for inline functions that it does not call, and llvm-cov warns of them.
llvm_cov() {
    "$(tools/llvm.sh llvm-cov)" "$@" "${objects[@]:1}" -instr-profile $folder/tests.profdata -ignore-filename-regex "$others" \
        2> >(grep -v 'functions have mismatched data' >&2)
}
llvm_cov show -format html -show-branches=count -output-dir $folder/html >/dev/null
llvm_cov report -show-region-summary=false | tee $folder/summary.txt

# The last columns of the report are: lines, missed, percentage, branches, missed, percentage.
awk -v least=90 '
    NR == FNR { if (/^[^#]/) { name = $0; sub(/:.*/, "", name); named[name] = 1 } next }
    /%/ && !/^TOTAL/ {
        covered = $(NF - 3)
        sub(/%/, "", covered)
        covered += 0
        if (covered < least && !($1 in named)) { print $1 ": " covered " % of its lines, and no reason"; failed = 1 }
        if (covered >= least && $1 in named) print $1 ": " covered " % of its lines, and still named"
    }
    END { exit failed }' tests/host/uncovered.txt $folder/summary.txt ||
    fail 'the tests reach too little' 'test it, or name it with its reason in tests/host/uncovered.txt'
say "every line, with its branches: $root/$folder/html/index.html"
