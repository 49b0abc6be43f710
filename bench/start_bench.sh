#!/usr/bin/env bash
# Times the window program from the start of the process to its first painted main window, best and
# median of N. Without a display it runs on the offscreen platform.
#
# usage: bench/start_bench.sh [PATH OF tonewright] [N]
set -eu -o pipefail
program=$(realpath "${1:-$(dirname "$0")/../build/release/tonewright}")
runs=${2:-9}

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
export HOME=$home XDG_CONFIG_HOME=$home/config XDG_RUNTIME_DIR=$home
export TONEWRIGHT_EXIT_AFTER_FIRST_PAINT=1
mkdir -p "$XDG_CONFIG_HOME/Quillbrook"
printf '[Tonewright]\nShowWelcomeWizard = 0\nShowTipOfTheDay = 0\n' \
    >"$XDG_CONFIG_HOME/Quillbrook/Tonewright 17.ini"
if [ -z "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ]; then
    export QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES="*.warning=false"
fi

for ((run = 0; run < runs; ++run)); do
    start=${EPOCHREALTIME/[.,]/}
    timeout 20 "$program"
    end=${EPOCHREALTIME/[.,]/}
    echo $((end - start))
done | sort -n | awk '{ times[NR] = $1 } END {
    printf "start to first painted window, %d runs: best %.3f s, median %.3f s\n", NR,
           times[1] / 1e6, times[int((NR + 1) / 2)] / 1e6
    exit times[int((NR + 1) / 2)] > 500000
}' || { echo "Longer than half a second, or the program failed."; exit 1; }
