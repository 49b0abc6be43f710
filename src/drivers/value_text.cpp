// Reads values and says why a text is none.
#include "drivers/value_text.h"

#include "common/text.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <system_error>

namespace tonewright {

ValueReading ReadWholeNumber(std::string_view text, int minimum, int maximum) {
    int number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error == std::errc() && stop == end && number >= minimum && number <= maximum) {
        return {number, ""};
    }
    return {std::nullopt,
            InWords(text) + FormatText(" is no whole number from %d to %d", minimum, maximum)};
}

ValueReading ReadSwitch(std::string_view text) {
    const auto isOneOf = [text](std::initializer_list<const char *> words) {
        return std::ranges::any_of(words,
                                   [text](const char *word) { return EqualNoCase(text, word); });
    };
    if (isOneOf({"on", "yes", "1"})) {
        return {1, ""};
    }
    if (isOneOf({"off", "no", "0"})) {
        return {0, ""};
    }
    return {std::nullopt, InWords(text) + " is neither on nor off"};
}

std::string SwitchText(bool isOn) {
    return isOn ? "on" : "off";
}

std::string InWords(std::string_view text) {
    return text.empty() ? "an empty text" : std::string(text);
}

std::string NoneOf(std::string_view text, std::span<const std::string> items) {
    std::string reason = InWords(text) + " is none of ";
    for (const std::string &item : items) {
        reason += (&item == items.data() ? "" : "; ") + item;
    }
    return reason;
}

} // namespace tonewright
