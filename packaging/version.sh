# shellcheck shell=bash disable=SC2034 # for those who source this file
# The version of this checkout; sourced, in its folder.
#
#   program_version   "17.0a", as the program tells it
#   changes_version   the same, of the newest part of CHANGELOG.md
#   changes_day       "2026-11-22", its day; empty until it has one

program_version=$(sed -n 's/.*ProgramVersion = "\(.*\)";/\1/p' src/common/version.h)
# The heading is "## 17.0a (2026-11-22)", or "## 17.0a (in the making)".
changes_version=$(sed -n '/^## /{s/^## \([^ ]*\).*/\1/p;q}' CHANGELOG.md)
changes_day=$(sed -n '/^## /{s/.*(\([0-9]\{4\}-[0-9][0-9]-[0-9][0-9]\))$/\1/p;q}' CHANGELOG.md)
