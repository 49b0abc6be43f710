// Reads and writes the texts of frequencies.
#include "drivers/frequency.h"

#include "common/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <iterator>

namespace tonewright {
namespace {

constexpr int HundredthsOfOne = 100;
// Beyond every frequency, and far from what a number of single precision cannot hold.
constexpr double TooLarge = 1000;

// The number at the start of `text`, limited to -TooLarge to TooLarge; 0 when there is none.
double LimitedNumber(std::string_view text) {
    const double number = ReadNumber(text);
    return std::isnan(number) ? 0 : std::clamp(number, -TooLarge, TooLarge);
}

} // namespace

std::string FrequencyText(int hundredths) {
    return FormatText("%d.%02d", hundredths / HundredthsOfOne, hundredths % HundredthsOfOne);
}

int ReadFrequency(std::string_view text) {
    const double wanted = LimitedNumber(text) * HundredthsOfOne;
    return static_cast<int>(std::clamp<double>(wanted, 0, MostHundredths));
}

std::string StepFrequency(std::string_view text, int step) {
    constexpr float hundredth = 0.01f, largest = 31.99f;
    const auto number = static_cast<float>(LimitedNumber(text));
    const float stepped = std::clamp(number + (step > 0 ? hundredth : -hundredth), 0.0f, largest);
    char buffer[16];
    const auto [end, error] =
        std::to_chars(std::begin(buffer), std::end(buffer), stepped, std::chars_format::fixed, 2);
    return {std::begin(buffer), end};
}

} // namespace tonewright
