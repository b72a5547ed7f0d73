#!/bin/sh
# The main job from end to end: identifies a recording, shows its channels, reads its samples, puts metadata beside it and
# copies it, into its own format and into the storage format; lists a folder and converts it; keeps a table of results and
# appends to it; shows a frequency response.
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
quietly build_preset release dax daxcsv daxresults daxuff daxwav

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

folder=$work/recordings
mkdir "$folder"
cp /usr/share/sounds/alsa/*.wav "$folder"
step "Which tests lie in a folder? The longest last" dax ls "$folder" --sort duration
descriptor=$(dax info "$folder/Noise.wav" | sed -n 's/^Descriptor *//p')
step "One of them, found again by the line of text that describes it" dax ls -l "$descriptor"
step "The folder converted into storage files, two at a time" \
    dax copy "$folder/*.wav" --to "$work/archive" --format Z4TimeSeries --suffix _2026 --jobs 2
step "What is there now" dax ls "$work/archive"

table=$work/damage.csv
cat >"$table" <<'END'
Part,Damage [%],Cycles,Measured
axle,1.5,120000,2026-05-04T10:15:00
"arm, left",,0,2026-05-04T10:20:00
hub,0.25,98000,2026-05-04T10:30:00
END
cat >"$work/more.csv" <<'END'
Part,Damage [%],Cycles,Measured
"arm, left",0.75,64000,2026-05-11T09:00:00
END
results=$work/damage.z4m
step "A table of results as text" dax read "$table"
step "The same in a storage file, which survives a kill" dax copy "$table" "$results"
step "Rows that came a week later" dax append "$work/more.csv" "$results"
step "Its columns with their limits" dax info "$results"
step "And some of it" dax read "$results" --col Part --col Damage --rows 2-

response=$work/hammer.uff
awk 'BEGIN {
    print "    -1\n    58\nAccelerance of a beam\nNONE\n04-May-26 11:00:00\nNONE\nNONE"
    printf "%5d%10d%5d%10d %-10s%10d%4d %-10s%10d%4d\n", 4, 0, 0, 0, "BEAM", 2, 3, "HAMMER", 1, 3
    printf "%10d%10d%10d%13.5E%13.5E%13.5E\n", 5, 200, 1, 0, 0.5, 0
    printf "%10d%5d%5d%5d %-20s %-20s\n", 18, 0, 0, 0, "Frequency", "Hz"
    printf "%10d%5d%5d%5d %-20s %-20s\n", 12, 0, 0, 0, "Acceleration", "m/s^2"
    printf "%10d%5d%5d%5d %-20s %-20s\n", 13, 0, 0, 0, "Force", "N"
    printf "%10d%5d%5d%5d %-20s %-20s\n", 0, 0, 0, 0, "NONE", "NONE"
    for (line = 0; line < 200; ++line) {
        r = line * 0.5 / 40; a = 1 - r * r; b = 0.04 * r; q = a * a + b * b
        printf "%13.5E%13.5E%s", -r * r * a / q, r * r * b / q, line % 3 == 2 || line == 199 ? "\n" : ""
    }
    print "    -1"
}' >"$response"
step "A frequency response in a universal file" dax info "$response"
step "Around its resonance" dax read "$response" --lines 39-41
