#!/usr/bin/env bash
# Runs each fuzz target of the host build for FUZZ_SECONDS (60), from what earlier runs learned.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
cmake --build --preset host --target fuzz_targets || fail 'the fuzz targets do not build' 'the reason stands above'
status=0
for target in build/host/bin/*_fuzz; do
    [ -e "$target" ] || fail 'no fuzz target is built' 'run: make fuzz'
    name=$(basename "$target")
    corpus=build/fuzz/$name
    mkdir -p "$corpus"
    printf '%s: %s s\n' "$name" "${FUZZ_SECONDS:-60}"
    "$target" -max_total_time="${FUZZ_SECONDS:-60}" -print_final_stats=1 -verbosity=0 \
        -artifact_prefix="$corpus-" "$corpus" 2>"$corpus.log" || {
        tail -n 20 "$corpus.log" >&2
        status=1
    }
    grep -E 'number_of_executed_units|new_units_added' "$corpus.log" || true
done
[ $status -eq 0 ] || fail 'a fuzz target found something' 'the input stands in build/fuzz'
