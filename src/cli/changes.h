// What a call names to be changed: the words NAME=VALUE of edit and of reface-settings set.
#pragma once

#include "cli/command_line.h"
#include "cli/text_output.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

template <typename Parameter> struct Change {
    Parameter parameter;
    std::string_view value;
};

// Reads the words of a call, each of the form that the help calls `form`. `find` gives the
// parameter of a name or nothing; then `unknown` says that there is none. The exit status; a
// failure has been told.
template <typename Parameter, typename Find>
int ReadChanges(std::span<char *const> words, const char *form, Find find,
                const std::string &unknown, std::vector<Change<Parameter>> &changes) {
    for (const char *word : words) {
        const auto assignment = ReadAssignment(word);
        if (!assignment) {
            return TellWrongCall(word, std::string("not ") + form);
        }
        const auto parameter = find(assignment->name);
        if (!parameter) {
            return TellWrongCall(assignment->name, unknown);
        }
        if (std::ranges::find(changes, *parameter, &Change<Parameter>::parameter) !=
            changes.end()) {
            return TellWrongCall(assignment->name, "given more than once");
        }
        changes.push_back({*parameter, assignment->value});
    }
    return ExitDone;
}

} // namespace tonewright
