// Words of which a call takes one: the commands read, refuse and explain them by these tables, and
// the shells are offered the same.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tonewright {

struct Choice {
    std::string_view name;
    std::uint32_t value;
};

// Of --sort; the values are those of DatabaseSortMode.
extern const std::array<Choice, 4> SortOrders;

// Of --paper, of which the first one is taken without it.
constexpr std::uint32_t PaperA4 = 0;
constexpr std::uint32_t PaperLetter = 1;
extern const std::array<Choice, 2> Papers;

// Of --bits, of which the first one is taken without it; the values are those of WaveSample.
extern const std::array<Choice, 3> SampleKinds;

// Of --instrument; the values are those of ArchiveFamily.
extern const std::array<Choice, 2> ArchiveInstruments;

// What settings does; the value is the number of its words, the action's with them.
extern const std::array<Choice, 3> SettingsActions;

// The one of that name, in letters of either case; or null.
const Choice *ChoiceOfName(std::span<const Choice> choices, std::string_view name);

// "A, B and C", with another word for the last "and".
std::string InWords(std::span<const Choice> choices, std::string_view conjunction);

} // namespace tonewright
