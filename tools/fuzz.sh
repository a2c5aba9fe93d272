#!/usr/bin/env bash
# Runs fuzz targets of the host build, all or those that are named, for FUZZ_SECONDS (60) each: fuzz.sh [TARGET...]
# A target starts from its seeds and from the inputs that earlier runs found. If a small set of all these inputs reaches more
# code than the seeds do, it replaces them: at most 30 files and 10,000 bytes a target in fuzz/seeds.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
targets=("${@/%/_fuzz}")
[ $# -gt 0 ] || targets=(build/host/bin/*_fuzz)

# reached TARGET FOLDER: how many edges of the code the inputs in the folder reach.
reached() {
    "$1" -runs=0 "$2" 2>&1 | sed -n 's/.* cov: \([0-9]*\) .*/\1/p' | tail -n 1
}

keep_seeds() {
    local target=$1 seeds=$2 corpus=$3 all=$3-all chosen=$3-chosen size name files=0 bytes=0
    rm -rf "$all" "$chosen"
    mkdir "$all" "$chosen"
    # Count the edges, not how often each is taken: then few inputs are enough.
    "$target" -set_cover_merge=1 -use_counters=0 -max_len=1000 -verbosity=0 "$all" "$seeds" "$corpus" 2>"$corpus.log" ||
        fail "the inputs of $(basename "$target") cannot be merged" "see $corpus.log"
    # The largest inputs first: they usually reach most.
    while read -r size name; do
        [ $files -lt 30 ] && [ $((bytes + size)) -le 10000 ] || continue
        cp "$all/$name" "$chosen/"
        files=$((files + 1))
        bytes=$((bytes + size))
    done < <(find "$all" -type f -printf '%s %f\n' | sort -k1,1nr -k2)
    if [ "$(reached "$target" "$chosen")" -gt "$(reached "$target" "$seeds")" ]; then
        rm -f "$seeds"/*
        cp "$chosen"/* "$seeds/"
        printf '%s: the seeds are new, %s files with %s bytes\n' "$(basename "$target")" $files $bytes
    fi
    rm -r "$all" "$chosen"
}

status=0
for target in "${targets[@]}"; do
    target=build/host/bin/$(basename "$target")
    [ -e "$target" ] || fail "$target is not built" 'run: make fuzz'
    name=$(basename "$target")
    seeds=fuzz/seeds/${name%_fuzz}
    corpus=build/fuzz/$name
    mkdir -p "$corpus" "$seeds"
    printf '%s: %s s\n' "$name" "${FUZZ_SECONDS:-60}"
    "$target" -max_total_time="${FUZZ_SECONDS:-60}" -print_final_stats=1 -verbosity=0 \
        -artifact_prefix="$corpus-" "$corpus" "$seeds" 2>"$corpus.log" || {
        tail -n 20 "$corpus.log" >&2
        status=1
        continue
    }
    grep -E 'number_of_executed_units|new_units_added' "$corpus.log" || true
    keep_seeds "$target" "$seeds" "$corpus"
done
[ $status -eq 0 ] || fail 'a fuzz target found something' 'the input stands in build/fuzz'
