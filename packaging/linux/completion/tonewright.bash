# Completion of tonewright-cli and tonewright for bash: asks tonewright-cli, which knows what it takes.
# shellcheck shell=bash

# _tonewright_offer WORD...: what the last of these words of tonewright-cli may become, as it stands in
# $cur with $lead in front of it.
_tonewright_offer() {
    local kind word extension letter pattern file files=()
    COMPREPLY=()
    while IFS=$'\t' read -r kind word extension; do
        if [ "$kind" = word ]; then
            # The part in front of an equal sign is a word of its own for bash.
            word=${word#"$lead"}
            [[ $word == *= ]] && compopt -o nospace 2>/dev/null
            [[ $word == *[^[:alnum:]_.=-]* ]] && printf -v word '%q' "$word"
            COMPREPLY+=("$word")
            continue
        fi
        if [ -z "$word" ]; then
            mapfile -t files < <(compgen -f -- "$cur")
            continue
        fi
        mapfile -t files < <(compgen -d -- "$cur")
        for extension in $word $extension; do
            pattern=""
            while [ -n "$extension" ]; do # in letters of either case
                letter=${extension:0:1}
                pattern+="[${letter,}${letter^}]"
                extension=${extension:1}
            done
            mapfile -t -O "${#files[@]}" files < <(compgen -f -X "!*.$pattern" -- "$cur")
        done
    done < <("$program" complete -- "$@" 2>/dev/null)
    # Among other words bash would take all for names of files, and quote an equal sign.
    if ((${#COMPREPLY[@]} == 0)); then
        compopt -o filenames 2>/dev/null
        COMPREPLY=("${files[@]}")
        return
    fi
    for file in "${files[@]}"; do
        printf -v file '%q' "$file"
        COMPREPLY+=("$file")
    done
}

_tonewright_cli() {
    local program=$1 cur=$2 lead="" at words=()
    # Joins what bash has taken apart at equal signs.
    for ((at = 1; at <= COMP_CWORD; ++at)); do
        if ((${#words[@]})) && [[ ${COMP_WORDS[at]} == = || ${COMP_WORDS[at - 1]} == = ]]; then
            words[-1]+=${COMP_WORDS[at]}
        else
            words+=("${COMP_WORDS[at]}")
        fi
    done
    [[ $cur == = ]] && cur=""
    [[ ${words[-1]} == *=* ]] && lead=${words[-1]%%=*}=
    _tonewright_offer "${words[@]}"
}

_tonewright() {
    local program=tonewright-cli cur=$2 lead=""
    if [[ $cur == -* ]]; then
        _tonewright_offer "$cur"
    else
        _tonewright_offer upload "$cur" # takes a bank, too
    fi
}

complete -F _tonewright_cli tonewright-cli
complete -F _tonewright tonewright
