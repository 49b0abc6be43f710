// The topics of the reference page that the windows of the program open. Those of the settings are
// not among them: each is made of the name of its setting.
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

namespace tonewright {

constexpr std::string_view ReferenceTopics[] = {
    "INDEX",
    "SELECT",
    "COMMUNICATING",
    "AUDITION",
    "CONFIGURE",
    "VOICEEDIT",
    "DATABASE",
    "EXIFEDIT",
    "SETUP",
    "THEME",
    "COLORS",
    "EXTRAS_CAREFULMODE",
    "EXTRAS_WHOLEDETUNE",
    "EXTRAS_AUDITIONKEEPSVOICE",
    "EXTRAS_REFACEZERO64",
    "EXTRAS_SPACEAUDITIONS",
    "EXTRAS_OPENANYDUMP",
    "EXTRAS_ARCHIVE",
    "EXTRAS_BUILTININSTRUMENTS",
    "SYSTEMINFORMATION",
    "WELCOME",
};

// One of them: a text that is none does not compile, so that no window asks for what the page
// lacks.
struct ReferenceTopic {
    const char *name = nullptr; // null: no topic

    constexpr ReferenceTopic() = default;
    consteval ReferenceTopic(const char *listed) : name(listed) {
        if (std::ranges::find(ReferenceTopics, listed) == std::end(ReferenceTopics)) {
            throw "not among ReferenceTopics";
        }
    }
};

} // namespace tonewright
