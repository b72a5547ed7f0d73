#!/bin/sh
# The main job from end to end: identifies a recording, shows its channels, reads its samples, puts metadata beside it and
# copies it, into its own format and into the storage format.
#
#   scripts/demo.sh [FILE]
#
# Without FILE it takes a recording that the package alsa-utils ships. Any step that fails ends the script with its status.
set -eu

recording=/usr/share/sounds/alsa/Front_Center.wav
if [ $# -gt 0 ]; then
    [ -f "$1" ] || { echo "demo.sh: no such file: $1" >&2; exit 1; }
    recording=$(realpath "$1")
fi
cd "$(dirname "$0")/.."

log=$(mktemp)
work=$(mktemp -d)
trap 'rm -rf "$log" "$work"' EXIT

# The steps that build speak only when they fail.
quietly() {
    "$@" >"$log" 2>&1 || { cat "$log" >&2; exit 1; }
}

# Says what is done and why, shows the command, and runs it.
step() {
    printf '\n# %s\n$' "$1"
    shift
    printf ' %s' "$@"
    printf '\n'
    "$@"
}

. scripts/common.sh
echo "Setting up and building; the first time this takes some minutes."
quietly scripts/setup.sh
quietly build_preset release dax daxwav

PATH=$PWD/build/release/bin:$PATH
export PATH
input=$work/recording.${recording##*.}
copy=$work/copy.${recording##*.}
stored=$work/stored.z4t
cp "$recording" "$input"

step "What is this file?" dax identify "$recording"
step "Which channels does it hold?" dax info "$recording"
step "Its samples, from point 1001 on" dax read "$recording" --first 1001 --count 8
step "What is known about it, in a file beside it, as its format has no place for that" \
    dax meta "$input" --put 'Test.Vehicle=A 4711' --put 'Test.Run=7'
step "The same channels in a new file, and what the format couldn't hold" dax copy "$input" "$copy"
step "And in a storage file" dax copy "$input" "$stored"
step "The metadata came along" dax meta "$stored" --set-only Test
step "A text filled from them" dax eval "$copy" 'Run #Test.Run# of vehicle #Test.Vehicle#'
step "A copy that is named by them" dax copy "$stored" "$work" --name '#Test.Vehicle#_run#Test.Run#.wav' --strict
step "Is all of it as it was written?" dax check "$stored"
step "Its statistics, worked out from the data" dax stats "$stored" --calc
step "Some of its samples" dax read "$stored" --first 1001 --count 3

printf '\n# Are the samples of the copies the same?\n'
dax read "$recording" --out "$work/recording.csv" >/dev/null
for file in "$copy" "$stored"; do
    dax read "$file" --out "$work/copied.csv" --overwrite >/dev/null
    cmp "$work/recording.csv" "$work/copied.csv"
done
echo "Yes: $(($(wc -l <"$work/recording.csv") - 1)) rows, time and values, agree in all three files."
