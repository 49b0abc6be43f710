#!/usr/bin/env bash
# Times the commands of catalogues over 128,000 records (57 MB) in the page cache against `cat` of
# the same file, turn and turn about, all into /dev/null. The catalogue is made by `db add` of 4,000
# banks, whose time is told for each voice. The figures are medians of N turns, of the processor
# time, which other work on the machine changes least; memory is what a command has at most.
#
# usage: bench/catalogue_bench.sh [PATH OF tonewright-cli] [N]
set -eu
cli=$(realpath "${1:-$(dirname "$0")/../build/release/tonewright-cli}")
runs=${2:-15}
files=4000

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder/home XDG_CONFIG_HOME=$folder/home/.config
mkdir -p "$folder/banks" "$HOME"
cd "$folder/banks"

# One bank of 32 voices that differ in name and algorithm, copied.
awk 'BEGIN {
    for (voice = 0; voice < 32; ++voice) {
        for (i = 0; i < 110; ++i) bytes[voice * 128 + i] = (i * 7 + voice) % 64
        bytes[voice * 128 + 110] = voice
        for (i = 111; i < 118; ++i) bytes[voice * 128 + i] = i % 5
        for (i = 118; i < 128; ++i) bytes[voice * 128 + i] = 65 + (voice * 7 + i * 5) % 26
    }
    printf "\\360\\103\\000\\011\\040\\000"
    for (i = 0; i < 4096; ++i) { printf "\\%03o", bytes[i]; sum += bytes[i] }
    printf "\\%03o\\367", (128 - sum % 128) % 128
}' >../bank.txt
printf '%b' "$(sed 's/\\/\\0/g' ../bank.txt)" >../bank
for ((number = 10000; number < 10000 + files; ++number)); do
    cp ../bank "Bank number $number of many.syx"
done

# Adds the processor time of a command, in milliseconds, to the file of that name.
take() {
    local name=$1
    shift
    local TIMEFORMAT='%U %S'
    { time "$@" >/dev/null; } 2>&1 | awk '{ print 1000 * ($1 + $2) }' >>"$folder/$name.times"
}
median() { sort -n "$folder/$1.times" | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }
# The most memory that a command has, in MB, as a process of its own sees it at its end.
c++ -O2 -x c++ -o ../memory_of - <<'SOURCE'
#include <cstdio>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
int main(int, char **arguments) {
    if (fork() == 0) {
        return execv(arguments[1], arguments + 1);
    }
    int status = 0;
    rusage usage{};
    wait4(-1, &status, 0, &usage);
    std::fprintf(stderr, "%.1f\n", static_cast<double>(usage.ru_maxrss) / 1024);
    return status != 0;
}
SOURCE
memory() { { "$folder/memory_of" "$@" >/dev/null; } 2>&1; }

names=(./*.syx)
half=$((files / 2))
take first "$cli" db add "${names[@]:0:half}"
take second "$cli" db add "${names[@]:half}"
catalogue="$HOME/Documents/My Tonewright 17 Documents/Voices.syx_db"
voices=$((files * 32))
if [ "$("$cli" db list | wc -l)" != "$voices" ]; then
    echo "not all voices were added" >&2
    exit 1
fi

for ((run = 0; run < runs; ++run)); do
    take cat cat "$catalogue"
    take list "$cli" db list
    take find "$cli" db find 'number 12345'
    take check "$cli" db check
    take sorted "$cli" db list --sort name
    take source "$cli" db list --sort source
    take names "$cli" db names
done

echo "$voices records, medians of $runs turns:"
awk -v voices="$voices" -v first="$(median first)" -v second="$(median second)" 'BEGIN {
    printf "add        %7.1f microseconds a voice, the second half %.1f\n", 1000 * (first + second) / voices,
        2000 * second / voices
}'
base=$(median cat)
printf 'cat        %7.1f ms\n' "$base"
for name in list find check sorted source names; do
    case $name in
    sorted) words=(list --sort name) ;;
    source) words=(list --sort source) ;;
    find) words=(find 'number 12345') ;;
    *) words=("$name") ;;
    esac
    awk -v name="$name" -v time="$(median "$name")" -v base="$base" \
        -v memory="$(memory "$cli" db "${words[@]}")" 'BEGIN {
        printf "%-10s %7.1f ms  %.2f times cat, %.1f MB\n", name, time, time / base, memory
    }'
done
