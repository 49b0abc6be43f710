// The colour box: a colour by its parts, by its place in the field of colours, by its hexadecimal
// number or by its name.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace tonewright {

// Asks for a colour, beginning with `colour`. Nothing when the box was left without OK.
std::optional<std::uint32_t> ChooseColour(QWidget *owner, std::uint32_t colour);

struct ColourOption {
    std::string name; // UTF-8
    std::uint32_t colour = 0;
};
// Asks for several colours, between which a list of their names changes. False, and nothing
// changed, when the box was left without OK, or for no colour.
bool ChooseColours(QWidget *owner, std::vector<ColourOption> &options);

} // namespace tonewright
