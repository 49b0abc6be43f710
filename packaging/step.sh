# shellcheck shell=bash
# The steps of a script that takes long; sourced.
#
#   step LOG WORDS COMMAND...     runs a command into a log and prints a line about it: words, result,
#                                 seconds; fails when the command failed or a compiler (or dpkg)
#                                 warned in the log, of which the end is then shown

step() { # LOG WORDS COMMAND...
    local log=$1 words=$2 begin=$SECONDS result=ok warnings
    shift 2
    "$@" >"$log" 2>&1 || result=failed
    warnings=$(grep -c ': warning: ' "$log" || true)
    [ "$warnings" = 0 ] || result=failed
    printf '%-40s %-7s %5d s' "$words" $result $((SECONDS - begin))
    printf '%s' "$(sed -n 's/\(.*% tests passed.*\)/  \1/p' "$log" | tr -d '\n')"
    [ "$warnings" = 0 ] || printf '  %d warnings' "$warnings"
    printf '\n'
    [ $result = ok ] || { tail -n 20 "$log" | sed 's/^/    /' && echo "    all of it: $log"; }
    [ $result = ok ]
}
