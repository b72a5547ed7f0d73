#!/bin/sh
# Builds the release preset and runs the benchmark programs one behind the other.
#
#   scripts/bench.sh [OPTION...]      options for Google Benchmark, such as --benchmark_filter=...
set -eu
cd "$(dirname "$0")/.."

. scripts/common.sh
scripts/setup.sh
build_preset release

found=
for program in build/release/bench/*; do
    if [ -f "$program" ] && [ -x "$program" ]; then
        found=yes
        echo "== ${program##*/}"
        "$program" "$@"
    fi
done
[ -n "$found" ] || { echo "bench.sh: no benchmark programs were built" >&2; exit 1; }
