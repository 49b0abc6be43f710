#!/usr/bin/env bash
# Times `check` and `list` over 4,000 bank files in the page cache against a bare loop that opens,
# reads and closes the same files, and `identify` against `cat` of them, turn and turn about, all
# into /dev/null. The figures are medians of N turns, of the processor time, which other work on the
# machine changes least; `start` is that of the program with a single file.
#
# usage: bench/cli_bench.sh [PATH OF tonewright-cli] [N]
set -eu
cli=$(realpath "${1:-$(dirname "$0")/../build/release/tonewright-cli}")
runs=${2:-15}
files=4000

bare_source=$(realpath "$(dirname "$0")/bare_loop.cpp")

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
c++ -O2 -o bare_loop "$bare_source"

# One bank of 32 voices that differ in name and algorithm, copied.
awk 'BEGIN {
    for (voice = 0; voice < 32; ++voice) {
        for (i = 0; i < 110; ++i) bytes[voice * 128 + i] = (i * 7 + voice) % 64
        bytes[voice * 128 + 110] = voice
        for (i = 111; i < 118; ++i) bytes[voice * 128 + i] = i % 5
        for (i = 118; i < 128; ++i) bytes[voice * 128 + i] = 65 + (voice + i) % 26
    }
    printf "\\360\\103\\000\\011\\040\\000"
    for (i = 0; i < 4096; ++i) { printf "\\%03o", bytes[i]; sum += bytes[i] }
    printf "\\%03o\\367", (128 - sum % 128) % 128
}' >bank.txt
printf '%b' "$(sed 's/\\/\\0/g' bank.txt)" >bank
for ((number = 10000; number < 10000 + files; ++number)); do
    cp bank "$number.syx"
done
paths=(./*.syx)

# Adds the processor time of a command, in milliseconds, to the file of that name.
take() {
    local name=$1
    shift
    local TIMEFORMAT='%U %S'
    { time "$@" >/dev/null; } 2>&1 | awk '{ print 1000 * ($1 + $2) }' >>"$name.times"
}

median() { sort -n "$1.times" | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }

./bare_loop "${paths[@]}"
"$cli" check "${paths[@]}" >/dev/null
for ((run = 0; run < runs; ++run)); do
    take bare ./bare_loop "${paths[@]}"
    take check "$cli" check "${paths[@]}"
    take list "$cli" list "${paths[@]}"
    take identify "$cli" identify "${paths[@]}"
    take cat cat "${paths[@]}"
    take start "$cli" check 10000.syx
done

echo "$files files, medians of $runs turns:"
awk -v bare="$(median bare)" -v check="$(median check)" -v list="$(median list)" \
    -v start="$(median start)" -v identify="$(median identify)" -v cat="$(median cat)" 'BEGIN {
    printf "bare loop  %7.1f ms\n", bare
    printf "start      %7.1f ms\n", start
    printf "check      %7.1f ms  %.2f times the loop\n", check, check / bare
    printf "list       %7.1f ms  %.2f times the loop\n", list, list / bare
    printf "identify   %7.1f ms  cat %.1f ms\n", identify, cat
}'
