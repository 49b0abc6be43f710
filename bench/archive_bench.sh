#!/usr/bin/env bash
# Times the archive over collections of banks in the page cache, turn and turn about: its first index
# against `cat` of the same files, an update without changes against `find -newer` over the folder.
# There are collections of 4,000 and of 40,000 banks, or as many as told; all voices of one are
# distinct, of the other two in three are copies. The figures are medians of N turns, a third as many
# for large ones, of the processor time, which other work on the machine changes least; sizes are
# told against those of the files.
#
# usage: bench/archive_bench.sh [PATH OF tonewright-cli] [N] [FILES...]
set -eu
cli=$(realpath "${1:-$(dirname "$0")/../build/release/tonewright-cli}")
runs=${2:-9}
shift $(($# < 2 ? $# : 2))
sizes=("$@")
[ $# -gt 0 ] || sizes=(4000 40000)
source=$(realpath "$(dirname "$0")/make_collection.cpp")

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
export HOME=$folder/home XDG_CONFIG_HOME=$folder/home/.config
mkdir -p "$HOME"
cd "$folder"
c++ -std=c++20 -O2 -o make_collection "$source"
archive=$XDG_CONFIG_HOME/Quillbrook/Tonewright\ 17/Archive.sqlite

# Adds the processor time of a command, in milliseconds, to the file of that name.
take() {
    local name=$1
    shift
    local TIMEFORMAT='%U %S'
    { time "$@" >/dev/null 2>&1; } 2>&1 | awk '{ print 1000 * ($1 + $2) }' >>"$folder/$name.times"
}
median() { sort -n "$folder/$1.times" | awk '{ all[NR] = $1 } END { print all[int((NR + 1) / 2)] }'; }
cat_all() (cd "$1" && cat ./*/*.syx)

# collection KIND FILES TURNS: measures one.
collection() {
    local kind=$1 files=$2 turns=$3 run
    rm -rf "$folder/banks"
    ./make_collection banks "$files" "$kind"
    touch read
    sleep 2.1 # what is younger is read again by the next update
    rm -f ./*.times
    for ((run = 0; run < turns; ++run)); do
        rm -rf "$HOME"
        mkdir "$HOME"
        take cat cat_all banks
        take index "$cli" archive add banks
        take find find banks -newer read
        take update "$cli" archive update
    done
    awk -v kind="$kind" -v files="$files" -v index_="$(median index)" -v cat="$(median cat)" \
        -v update="$(median update)" -v find="$(median find)" \
        -v size="$(stat -c %s "$archive")" -v all="$(cat_all banks | wc -c)" 'BEGIN {
        name = kind " " files
        printf "%s index  %.1f ms  %.1f ms by cat (%.1f times)\n", name, index_, cat, index_ / cat
        printf "%s update  %.1f ms  %.1f ms by find -newer (%.1f times)\n", name, update, find,
            update / find
        printf "%s size  %.1f MB  %.1f MB of files (%.2f)\n", name, size / 1e6, all / 1e6, size / all
    }'
}

for files in "${sizes[@]}"; do
    turns=$((files > 10000 ? (runs + 2) / 3 : runs))
    for kind in distinct copies; do
        collection "$kind" "$files" "$turns"
    done
done
