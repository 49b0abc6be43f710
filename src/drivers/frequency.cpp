// Reads and writes the texts of frequencies.
#include "drivers/frequency.h"

#include "common/text.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace tonewright {
namespace {

// Beyond every frequency, and far from what a number of single precision cannot hold.
constexpr double TooLarge = 1000;

double NumberIn(std::string_view text) {
    return LimitedNumber(text, -TooLarge, TooLarge, 0);
}

} // namespace

std::string FrequencyText(int hundredths) {
    return FormatText("%d.%02d", hundredths / HundredthsOfOne, hundredths % HundredthsOfOne);
}

int ReadFrequency(std::string_view text) {
    const double wanted = NumberIn(text) * HundredthsOfOne;
    return static_cast<int>(std::clamp<double>(wanted, 0, MostHundredths));
}

std::string StepFrequency(std::string_view text, int step) {
    constexpr float hundredth = 0.01f, largest = 31.99f;
    const auto number = static_cast<float>(NumberIn(text));
    const float stepped = std::clamp(number + (step > 0 ? hundredth : -hundredth), 0.0f, largest);
    char buffer[16];
    const auto [end, error] =
        std::to_chars(std::begin(buffer), std::end(buffer), stepped, std::chars_format::fixed, 2);
    return {std::begin(buffer), end};
}

} // namespace tonewright
