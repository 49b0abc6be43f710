#!/usr/bin/env bash
# Times `check` and `list` over 4,000 bank files in the page cache against `cat` of the same files,
# all into /dev/null, best of N.
#
# usage: bench/cli_bench.sh [PATH OF tonewright-cli] [N]
set -eu
cli=$(realpath "${1:-$(dirname "$0")/../build/release/tonewright-cli}")
runs=${2:-7}
files=4000

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

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
cat "${paths[@]}" >/dev/null
"$cli" check 10000.syx >/dev/null

# best COMMAND...: the shortest of N runs, in microseconds.
best() {
    local shortest=0 run start end
    for ((run = 0; run < runs; ++run)); do
        start=${EPOCHREALTIME/[.,]/}
        "$@" "${paths[@]}" >/dev/null
        end=${EPOCHREALTIME/[.,]/}
        if [ "$shortest" = 0 ] || [ $((end - start)) -lt "$shortest" ]; then
            shortest=$((end - start))
        fi
    done
    echo "$shortest"
}

cat=$(best cat)
check=$(best "$cli" check)
list=$(best "$cli" list)
echo "$files files, best of $runs runs:"
awk -v cat="$cat" -v check="$check" -v list="$list" 'BEGIN {
    printf "cat    %7.1f ms\n", cat / 1000
    printf "check  %7.1f ms  %.2f times cat\n", check / 1000, check / cat
    printf "list   %7.1f ms  %.2f times cat\n", list / 1000, list / cat
    exit check > 3 * cat || list > 3 * cat
}' || { echo "More than three times cat."; exit 1; }
