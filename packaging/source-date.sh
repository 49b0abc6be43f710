# shellcheck shell=bash
# Exports SOURCE_DATE_EPOCH, the time that every package of this checkout tells as its own, in seconds
# since 1970: that of the commit, so that two builds of one commit are the same bytes. Without git it
# is the day of the newest entry in CHANGELOG.md, and while that has none the time of the file, which
# an archive made by git sets to the commit's. Sourced, in the checkout's folder; a time that is given
# in the environment stays. (Those for Windows are the same as long as the libraries in the cache of
# packaging/windows/dependencies are, whose compiler and tools are Debian's of the day.)

. packaging/debian-packages.sh
. packaging/version.sh

if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
    # A folder that is only below a repository of others has none of its own. Where git does not tell
    # the time, another one in its stead would make other bytes of the same commit. Whose the checkout
    # is does not matter, as its scripts are running already.
    if [ -e .git ]; then
        need_packages git
        SOURCE_DATE_EPOCH=$(git -c safe.directory="$PWD" log -1 --format=%ct) || {
            echo "The time of the commit is not known; SOURCE_DATE_EPOCH may give it." >&2
            return 1
        }
    elif [ -n "$changes_day" ]; then
        SOURCE_DATE_EPOCH=$(date -u -d "$changes_day" +%s)
    else
        SOURCE_DATE_EPOCH=$(stat -c %Y CHANGELOG.md)
    fi
fi
export SOURCE_DATE_EPOCH

# Removes what a folder of CMake's holds of a build with another date: that one is told in the pictures
# within the programs and as the day of the build.
clean_what_tells_another_date() { # FOLDER
    [ "$(cat "$1/source-date" 2>/dev/null)" != "$SOURCE_DATE_EPOCH" ] || return 0
    ninja -C "$1" clean >&2
    echo "$SOURCE_DATE_EPOCH" >"$1/source-date"
}
