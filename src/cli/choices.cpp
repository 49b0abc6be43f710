// The words of which a call takes one.
#include "cli/choices.h"

#include "common/text.h"
#include "common/wave_file.h"
#include "database/record_sort.h"
#include "extras/archive_store.h"

#include <algorithm>

namespace tonewright {

const std::array<Choice, 4> SortOrders = {{
    {"name", SortByName},
    {"source", SortBySource},
    {"date", SortByDate},
    {"position", SortByPosition},
}};

const std::array<Choice, 2> Papers = {{{"A4", PaperA4}, {"Letter", PaperLetter}}};

const std::array<Choice, 3> SampleKinds = {{
    {"16", static_cast<std::uint32_t>(WaveSample::Integer16)},
    {"24", static_cast<std::uint32_t>(WaveSample::Integer24)},
    {"32f", static_cast<std::uint32_t>(WaveSample::Float32)},
}};

const std::array<Choice, 2> ArchiveInstruments = {{
    {"dx7", ArchiveFamilyDx7},
    {"reface", ArchiveFamilyReface},
}};

const std::array<Choice, 3> SettingsActions = {{{"list", 1}, {"get", 2}, {"set", 3}}};

const Choice *ChoiceOfName(std::span<const Choice> choices, std::string_view name) {
    const auto row = std::ranges::find_if(
        choices, [name](const Choice &choice) { return EqualNoCase(choice.name, name); });
    return row == choices.end() ? nullptr : &*row;
}

std::string InWords(std::span<const Choice> choices, std::string_view conjunction) {
    std::string words;
    for (std::size_t at = 0; at < choices.size(); ++at) {
        if (at > 0) {
            words += at + 1 < choices.size() ? ", " : ' ' + std::string(conjunction) + ' ';
        }
        words += choices[at].name;
    }
    return words;
}

} // namespace tonewright
