#!/usr/bin/env bash
# Runs the benchmarks: bench.sh [PART...]
# The whole table is kept, as text and as charts, in docs/benchmarks. With parts of benchmarks' names only those run, and
# nothing is kept. At the end it lists the rows that lose to their peer and that docs/benchmarks.md does not explain.
set -euo pipefail
. "$(dirname "${BASH_SOURCE[0]}")/lib.sh"

cd "$root"
table=$(mktemp)
trap 'rm -f "$table"' EXIT
size=$(wc -c <build/release/bin/orvsys.dll)
{
    ORV_RUN_SECONDS=0 tools/run_wine.sh build/release/bin/orvbench.exe "$@" | tr -d '\r'
    printf '\norvsys.dll has %s bytes.\n' "$size"
} | tee "$table"
[ $# -eq 0 ] || exit 0
mkdir -p docs/benchmarks
cp "$table" docs/benchmarks/results.txt
tools/bench_chart.py docs/benchmarks/results.txt docs/benchmarks.md docs/benchmarks
