// Values as people and scripts type them, and the words for a text that stands for none: what the
// parameters of a voice and the settings of an instrument share.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace tonewright {

// A value as a text tells it, or in words why it tells none.
struct ValueReading {
    std::optional<int> value;
    std::string reason;
};

// Decimal digits, with a minus in front of a number below 0, from `minimum` to `maximum`.
ValueReading ReadWholeNumber(std::string_view text, int minimum, int maximum);

// "on" and "off", which may be yes and no or 1 and 0; letters in either case. 1 or 0.
ValueReading ReadSwitch(std::string_view text);
// "on" or "off".
std::string SwitchText(bool isOn);

// The text, or what is said in its stead when it is empty.
std::string InWords(std::string_view text);
// "TEXT is none of ITEM; ITEM".
std::string NoneOf(std::string_view text, std::span<const std::string> items);

} // namespace tonewright
