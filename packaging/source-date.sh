# shellcheck shell=bash
# Exports SOURCE_DATE_EPOCH, the time that every package of this checkout tells as its own, in seconds
# since 1970: that of the commit, so that two builds of one commit are the same bytes. Without git it
# is the day of the newest entry in CHANGELOG.md, and while that has none the time of the file, which
# an archive made by git sets to the commit's. Sourced, in the checkout's folder; a time that is given
# in the environment stays.

. packaging/version.sh

# The date of the checkout's own commit; nothing where the folder is only below a repository of others.
commit_time() {
    [ "$(git rev-parse --show-cdup 2>/dev/null || echo none)" = "" ] &&
        git log -1 --format=%ct 2>/dev/null
}

if [ -z "${SOURCE_DATE_EPOCH:-}" ]; then
    SOURCE_DATE_EPOCH=$(commit_time ||
        { [ -n "$changes_day" ] && date -u -d "$changes_day" +%s; } ||
        stat -c %Y CHANGELOG.md)
fi
export SOURCE_DATE_EPOCH
