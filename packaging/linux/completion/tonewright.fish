# Completion of tonewright-cli and tonewright for fish: asks tonewright-cli, which knows what it takes.

# PROGRAM WORD...: what the token at the cursor may become behind these words.
function __tonewright_offer
    # As it is typed, with tilde, variables and quotes, which fish knows how to complete to files.
    set --local typed (commandline --current-token --cut-at-cursor)
    for line in ($argv[1] complete -- $argv[2..-1] (string unescape -- $typed) 2>/dev/null)
        set --local fields (string split \t -- $line)
        switch $fields[1]
            case word
                echo $fields[2]\t$fields[3]
            case files
                set --local ending '.'
                if test (count $fields) -gt 1
                    set ending '\.(?:'(string join '|' $fields[2..-1])')'
                end
                # Of a command that nothing is known of, all files are offered.
                complete --do-complete "__tonewright_any $typed" |
                    string match --entire --regex --ignore-case -- "^[^\t]*(?:/|$ending)(?:\t|\$)"
        end
    end
    return 0
end

function __tonewright_cli_offer
    set --local words (commandline --current-process --tokenize --cut-at-cursor)
    __tonewright_offer $words[1] $words[2..-1]
end

function __tonewright_window_offer
    if string match --quiet -- '-*' (commandline --current-token --cut-at-cursor)
        __tonewright_offer tonewright-cli
    else
        __tonewright_offer tonewright-cli upload # takes a bank, too
    end
end

complete --command tonewright-cli --no-files --arguments '(__tonewright_cli_offer)'
complete --command tonewright --no-files --arguments '(__tonewright_window_offer)'
