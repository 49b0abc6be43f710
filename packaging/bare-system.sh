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
#   remove_root ROOT
#   step                          as step.sh has it
# Wanted packages: BARE_PACKAGES

. "${BASH_SOURCE[0]%/*}/step.sh"

bare_systems=(bookworm trixie) # Debian 12 and 13
bare_folder=                   # where roots and logs go
bare_mirror=http://deb.debian.org
bare_store=
bare_binds=()
systems=()
bare_usage="SYSTEM           ${bare_systems[*]}; all of them when none is named
--folder FOLDER  where roots and logs go; a folder in build/ when it is not given
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
    remove_root "$2" && mkdir -p "$2" || return
    if [ -n "$kept" ] && [ -e "$kept" ]; then
        tar -x --numeric-owner -f "$kept" -C "$2" || return
    else
        apart debootstrap --variant=minbase "$1" "$2" "$bare_mirror/debian" || return
        if [ -n "$kept" ]; then
            mkdir -p "$bare_store" && tar -c --numeric-owner -f "$kept.$$" -C "$2" . &&
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

remove_root() { # ROOT
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
