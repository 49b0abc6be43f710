# Completion of tonewright-cli and tonewright for bash: asks tonewright-cli, which knows what it takes.
# shellcheck shell=bash

# _tonewright_unquote WORD: sets $plain to the word as a command would get it, but for tildes and
# variables, which stay, and $quote to the quote that is open at its end.
_tonewright_unquote() {
    local word=$1 letter at
    plain="" quote=""
    for ((at = 0; at < ${#word}; ++at)); do
        letter=${word:at:1}
        case $quote$letter in
        "''" | '""') quote="" ;;
        "'" | '"') quote=$letter ;;
        \\) plain+=${word: ++at:1} ;;
        "\"\\")
            [[ ${word:at + 1:1} == [\"\$\`\\] ]] && letter=${word: ++at:1}
            plain+=$letter
            ;;
        *) plain+=$letter ;;
        esac
    done
}

# _tonewright_offer WORD...: what the last of these words of tonewright-cli may become, as it stands in
# $cur with $lead in front of it. Names are quoted where no $quote is open.
_tonewright_offer() {
    local kind word extension letter pattern file files=()
    COMPREPLY=()
    while IFS=$'\t' read -r kind word extension; do
        if [ "$kind" = word ]; then
            # The part in front of an equal sign is a word of its own for bash.
            word=${word#"$lead"}
            [[ $word == *= ]] && compopt -o nospace 2>/dev/null
            [[ -z $quote && $word == *[^[:alnum:]_.=-]* ]] && printf -v word '%q' "$word"
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
        [ -n "$quote" ] || printf -v file '%q' "$file"
        COMPREPLY+=("$file")
    done
}

_tonewright_cli() {
    local program=$1 cur=$2 lead="" plain quote at words=()
    # Joins what bash has taken apart at equal signs.
    for ((at = 1; at <= COMP_CWORD; ++at)); do
        _tonewright_unquote "${COMP_WORDS[at]}"
        if ((${#words[@]})) && [[ ${COMP_WORDS[at]} == = || ${COMP_WORDS[at - 1]} == = ]]; then
            words[-1]+=$plain
        else
            words+=("$plain")
        fi
    done
    [[ $cur == = ]] && cur=""
    [[ ${words[-1]} == *=* ]] && lead=${words[-1]%%=*}=
    _tonewright_offer "${words[@]}"
}

_tonewright() {
    local program=tonewright-cli cur=$2 lead="" plain quote
    _tonewright_unquote "${COMP_WORDS[COMP_CWORD]}"
    if [[ $cur == -* ]]; then
        _tonewright_offer "$cur"
    else
        _tonewright_offer upload "$cur" # takes a bank, too
    fi
}

complete -F _tonewright_cli tonewright-cli
complete -F _tonewright tonewright
