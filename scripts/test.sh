#!/bin/sh
# Builds the project and runs all its tests.
#
#   scripts/test.sh [--only PART]
#
# PART is one of
#   clang   the second compiler, compile only
#   asan    the tests under the address and undefined-behaviour sanitizers
#   dev     the tests as they are run daily
# Without --only they run in this order, so that the output ends with the summary of the whole run.
set -eu
cd "$(dirname "$0")/.."

only=
case "${1-}" in
"") ;;
--only) only=${2-} ;;
--help | -h)
    sed -n '2,/^set/{/^set/d;s/^# \{0,1\}//;p}' "$0"
    exit 0
    ;;
*)
    echo "test.sh: unknown argument $1; see test.sh --help" >&2
    exit 1
    ;;
esac
case "$only" in
"" | clang | asan | dev) ;;
*)
    echo "test.sh: no part '$only'; see test.sh --help" >&2
    exit 1
    ;;
esac

. scripts/common.sh
scripts/setup.sh

part_clang() {
    build_preset clang
}

part_asan() {
    build_preset asan
    ctest --preset asan --parallel "$(nproc)"
}

part_dev() {
    build_preset dev
    ctest --preset dev --parallel "$(nproc)"
}

for part in clang asan dev; do
    if [ -z "$only" ] || [ "$only" = "$part" ]; then
        echo "== $part"
        "part_$part"
    fi
done
