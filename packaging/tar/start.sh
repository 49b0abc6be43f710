#!/bin/sh
# Starts a program of this archive, wherever it lies; installed under the name of each of them.
here=$(dirname "$(readlink -f "$0")") || exit
root=${here%/bin}
programs=$root/lib/tonewright

# Extras for all users: the system's own go before those of the archive.
export XDG_CONFIG_DIRS="${XDG_CONFIG_DIRS:-/etc/xdg}:$root/etc/xdg"
# Fonts: the system's, and behind them the archive's.
export FONTCONFIG_FILE="${FONTCONFIG_FILE:-$root/etc/fonts.conf}"
# Plug-ins of another Qt do not fit this one, which comes without those of Wayland.
unset QT_PLUGIN_PATH QT_QPA_PLATFORM_PLUGIN_PATH
case ${QT_QPA_PLATFORM:-} in wayland*) export QT_QPA_PLATFORM=xcb ;; esac

# The libraries that neither this folder nor the system has come from the fallback. One that is
# found may need another one: as often as something new is found. PortAudio and SQLite, which the
# programs load themselves, are named to the loader as a plug-in is, which says in other words that one
# is not there.
missing() {
    cd "$programs" && LD_TRACE_LOADED_OBJECTS=1 \
        LD_PRELOAD="./plugins/platforms/libqxcb.so libportaudio.so.2 libsqlite3.so.0" ./@PROGRAM@ 2>&1 |
        sed -n -e 's/^[[:space:]]*\([^ ]*\) => not found$/\1/p' \
            -e "s/.*object '\([^']*\)' from LD_PRELOAD cannot be preloaded.*/\1/p"
}
own=${LD_LIBRARY_PATH:-}
found=
added=yes
while [ $added = yes ]; do
    added=no
    for library in $(missing); do
        folder=$programs/fallback/$library
        case :$found: in *":$folder:"*) continue ;; esac
        [ -d "$folder" ] || continue
        found=$found${found:+:}$folder
        added=yes
    done
    [ $added = no ] || export LD_LIBRARY_PATH="$found${own:+:$own}"
done
exec "$programs/@PROGRAM@" "$@"
