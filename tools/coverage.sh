#!/usr/bin/env bash
# How much of the computations the host's tests reach, the runs of the fuzz targets included: lines and branches by file,
# and every line as HTML in build/coverage/html. Fails when a unit stays below 90 % of its lines that
# tests/host/uncovered.txt does not name.
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
LLVM_PROFILE_FILE=$root/$folder/fuzz-%p.profraw ctest --test-dir $folder -R '[.]fuzz[.]' >$folder/fuzz.log || {
    tail -n 20 $folder/fuzz.log >&2
    fail 'a fuzz target fails' 'the reason stands above'
}
for program in $folder/bin/*_fuzz; do
    objects+=(-object "$program")
done
"$(tools/llvm.sh llvm-profdata)" merge -o $folder/tests.profdata $folder/*.profraw

# Left out: the tests, orvtool, other people's code, and headers of what is not built here, which are only included.
others='(^|/)(tests|fuzz|apps)/|/(zlib|bzip2|expat)/|/src/nt/'
others+='|/include/orv/(fs/(file|lock_file)|registry/registry_(types|enumerator)|runtime/heap_object|security|sync|thread)'
# Inline functions that a program does not call have no counts in it; llvm-cov warns of them.
llvm_cov() {
    "$(tools/llvm.sh llvm-cov)" "$@" "${objects[@]:1}" -instr-profile $folder/tests.profdata -ignore-filename-regex "$others" \
        2> >(grep -v 'functions have mismatched data' >&2)
}
llvm_cov show -format html -show-branches=count -output-dir $folder/html >/dev/null
llvm_cov report -show-region-summary=false | tee $folder/summary.txt

# A line of the report ends: lines, missed, percentage, branches, missed, percentage.
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
