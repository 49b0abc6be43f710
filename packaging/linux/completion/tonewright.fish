# Completion of tonewright-cli and tonewright for fish: asks tonewright-cli, which knows what it takes.

function __tonewright_offer --description 'PROGRAM WORD...: what the last word may become'
    set --local cur $argv[-1]
    for line in ($argv[1] complete -- $argv[2..-1] 2>/dev/null)
        set --local fields (string split \t -- $line)
        switch $fields[1]
            case word
                echo $fields[2]\t$fields[3]
            case files
                set --local ending '.'
                if test (count $fields) -gt 1
                    set ending '\.(?:'(string join '|' $fields[2..-1])')'
                end
                __fish_complete_path $cur | string match --entire --regex --ignore-case -- "^[^\t]*(?:/|$ending)(?:\t|\$)"
        end
    end
    return 0
end

function __tonewright_cli_offer
    set --local words (commandline --current-process --tokenize --cut-at-cursor)
    __tonewright_offer $words[1] $words[2..-1] (commandline --current-token --cut-at-cursor)
end

function __tonewright_window_offer
    set --local cur (commandline --current-token --cut-at-cursor)
    if string match --quiet -- '-*' $cur
        __tonewright_offer tonewright-cli $cur
    else
        __tonewright_offer tonewright-cli upload $cur # takes a bank, too
    end
end

complete --command tonewright-cli --no-files --arguments '(__tonewright_cli_offer)'
complete --command tonewright --no-files --arguments '(__tonewright_window_offer)'
