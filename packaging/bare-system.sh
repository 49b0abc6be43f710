# shellcheck shell=bash disable=SC2034
# Bare Debian systems in folders, and commands inside them; sourced by the scripts that show that
# something works on a machine that holds nothing yet. Wants root.
#
# How a script begins:
#   want_root "$@"                goes on as root, by sudo when need be
#   bare_option "$@"              reads the first of the arguments, which is none of the script's own,
#                                 into systems, bare_folder, bare_mirror or bare_store, and says in
#                                 bare_taken how many arguments that were; 1 when it is no such option
#   $bare_usage                   what --help says about these options
# What it may set itself:
#   bare_binds=(SOURCE:TARGET...) folders of this machine that are seen inside the roots
#
# What it gets:
#   make_bare_root SYSTEM ROOT    a minimal root with its updates and this machine's way to the
#                                 network; an older one in its place is removed
#   put_checkout ROOT FOLDER      a clean checkout of HEAD in a folder of the root, which every user
#                                 may enter
#   add_user ROOT USER            a user with an empty home
#   in_root ROOT USER FOLDER COMMAND...   a shell command in a folder of the root, with that user's
#                                 environment and nothing of this one's; what follows the command
#                                 are its arguments $1, $2... Its result
#   paint_window ROOT USER PICTURE TITLE COMMAND   starts a command of a user on a display of its own,
#                                 until a window of that title has been painted, for two minutes at
#                                 most; makes a picture of the display, and ends both. Fails when there
#                                 is no such window, or when the command has ended by itself
#   remove_root ROOT
#   step                          as step.sh has it
# Wanted packages: BARE_PACKAGES, for paint_window WINDOW_PACKAGES

. "${BASH_SOURCE[0]%/*}/step.sh"

bare_systems=(bookworm trixie) # Debian 12 and 13
bare_folder=                   # where roots and logs go
bare_mirror=http://deb.debian.org
bare_store=
bare_binds=()
systems=()
bare_usage="SYSTEM           ${bare_systems[*]}; all of them when none is named
--folder FOLDER  where roots and logs go; a folder in build/ when it is not given. What an earlier run
                 has left there is removed
--mirror URL     what stands before /debian and /debian-security; $bare_mirror when it is not given
--store FOLDER   where tar files of the bare systems are kept for the next time"

want_root() {
    [ "$(id -u)" = 0 ] || [[ " $* " == *" --help "* ]] || exec sudo "$0" "$@"
}

bare_option() {
    local value=${2:-}
    bare_taken=2
    case $1 in
    --folder) bare_folder=$(realpath -m "$value") ;;
    --mirror) bare_mirror=$value ;;
    --store) bare_store=$(realpath -m "$value") ;;
    *)
        bare_taken=1 value=$1
        [[ -n "$1" && " ${bare_systems[*]} " == *" $1 "* ]] || return
        systems+=("$1")
        ;;
    esac
    [ -n "$value" ]
}

# Runs a command with mounts and processes of its own: whichever way it ends, or this script, none
# of them stays.
apart() {
    setpriv --pdeathsig KILL unshare --mount --pid --fork --kill-child "$@" </dev/null
}

make_bare_root() { # SYSTEM ROOT
    local kept="${bare_store:+$bare_store/minbase-$1.tar}"
    remove_root "$2" && mkdir -p "$2" && touch "$2/.bare-system" || return
    if [ -n "$kept" ] && [ -e "$kept" ]; then
        tar -x --numeric-owner -f "$kept" -C "$2" || return
    else
        apart debootstrap --variant=minbase "$1" "$2" "$bare_mirror/debian" || return
        if [ -n "$kept" ]; then
            mkdir -p "$bare_store" &&
                tar -c --numeric-owner --exclude=./.bare-system -f "$kept.$$" -C "$2" . &&
                mv "$kept.$$" "$kept" || return
        fi
    fi
    printf 'deb %s main\n' "$bare_mirror/debian $1" "$bare_mirror/debian $1-updates" \
        "$bare_mirror/debian-security $1-security" >"$2/etc/apt/sources.list" &&
        rm -f "$2"/etc/apt/sources.list.d/* &&
        apt-config dump Acquire | grep -v ::IndexTargets >"$2/etc/apt/apt.conf.d/99machine" &&
        cp -L /etc/resolv.conf "$2/etc/resolv.conf" &&
        chmod 755 "$2"
}

# Only what make_bare_root has begun here: a mark stands in it before anything else.
remove_root() { # ROOT
    [ -n "$(ls -A "$1" 2>/dev/null)" ] || return 0
    [ -e "$1/.bare-system" ] || {
        echo "$1 is no bare system that was made here, so it stays." >&2
        return 1
    }
    rm -rf --one-file-system "$1"
}

put_checkout() { # ROOT FOLDER
    mkdir -p "$1$2" && chmod 755 "$1$2" &&
        git archive HEAD | tar -x --no-same-owner -C "$1$2"
}

add_user() { # ROOT USER
    chroot "$1" useradd --create-home --skel /nonexistent --shell /bin/bash "$2"
}

in_root() { # ROOT USER FOLDER COMMAND...
    # shellcheck disable=SC2016
    apart bash -c 'set -eu
        root=$1 user=$2 folder=$3 command=$4 binds=$5
        shift 5
        mount --bind "$root" "$root" # a mount of its own, as the root of a machine is
        mount -t proc proc "$root/proc"
        mount --rbind /dev "$root/dev"
        mount -t tmpfs tmpfs "$root/dev/shm"
        mount -t tmpfs tmpfs "$root/tmp"
        while IFS=: read -r source target; do
            [ -n "$source" ] || continue
            mkdir -p "$root$target"
            mount --bind "$source" "$root$target"
        done <<<"$binds"
        unset TERM
        cd "$root"
        pivot_root . . # users of a mere chroot could make no name spaces
        umount --lazy .
        status=0
        setpriv --reuid "$user" --regid "$user" --init-groups --reset-env \
            sh -c "cd \"\$0\" && $command" "$folder" "$@" </dev/null || status=$?
        exit $status' inside "$1" "$2" "$3" "$4" "$(printf '%s\n' "${bare_binds[@]}")" "${@:5}"
}

# The display is one of this machine, of which a picture tells by its colors that more than a frame is
# painted: the main window has about 1000 of them.
paint_window() { # ROOT USER PICTURE TITLE COMMAND
    local number=$3.display begin=$SECONDS colors=0 there=yes display server manager program
    local -a binds=("${bare_binds[@]}")
    rm -f "$number"
    Xvfb -displayfd 5 -ac -screen 0 1024x768x24 -nolisten tcp 5>"$number" 2>/dev/null &
    server=$!
    while [ ! -s "$number" ]; do
        if [ $((SECONDS - begin)) -ge 60 ] || ! kill -0 $server; then
            kill $server || true
            return 1
        fi
        sleep 0.2
    done
    display=:$(cat "$number")
    DISPLAY=$display jwm >/dev/null 2>&1 &
    manager=$!
    local -a bare_binds=("${binds[@]}" /tmp/.X11-unix:/tmp/.X11-unix)
    in_root "$1" "$2" / "DISPLAY=$display $5" &
    program=$!
    begin=$SECONDS
    while [ "$colors" -lt 500 ] && [ $((SECONDS - begin)) -lt 120 ] && kill -0 $program; do
        sleep 1
        DISPLAY=$display xdotool search --onlyvisible --name "^$4\$" || continue
        sleep 2 # for the boxes before it
        DISPLAY=$display import -window root "$3" && colors=$(identify -format %k "$3")
    done
    echo "$3: $colors colors after $((SECONDS - begin)) s"
    [ "$colors" -ge 500 ] || DISPLAY=$display import -window root "$3" || true
    kill -0 $program || there=no
    kill $program $manager $server || true
    wait $program $manager $server || true
    rm -f "$number"
    [ "$colors" -ge 500 ] && [ $there = yes ]
}
