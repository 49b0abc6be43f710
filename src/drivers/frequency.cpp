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

// The number at the start of `text`, read as atof does in the C locale and limited to -TooLarge to
// TooLarge; 0 when there is none, or nan.
double NumberAtStart(std::string_view text) {
    text = text.substr(0, PathLimit); // so that only an exponent leads out of range
    const std::size_t start = text.find_first_not_of(" \t\r\n\f\v");
    text.remove_prefix(std::min(start, text.size()));
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    const std::string_view digits = isHexadecimal ? text.substr(2) : text;
    if (digits.starts_with('-')) {
        return 0; // a second sign ends the number
    }
    double number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number,
                        isHexadecimal ? std::chars_format::hex : std::chars_format::general);
    if (error == std::errc::result_out_of_range) {
        const std::string_view read(digits.data(), static_cast<std::size_t>(end - digits.data()));
        const bool isTooSmall = read.find('-') != read.npos; // the exponent's
        number = isTooSmall ? 0 : TooLarge;
    }
    if (std::isnan(number)) {
        return 0;
    }
    return std::min(number, TooLarge) * (negative ? -1 : 1);
}

} // namespace

std::string FrequencyText(int hundredths) {
    return FormatText("%d.%02d", hundredths / HundredthsOfOne, hundredths % HundredthsOfOne);
}

int ReadFrequency(std::string_view text) {
    const double wanted = NumberAtStart(text) * HundredthsOfOne;
    return static_cast<int>(std::clamp<double>(wanted, 0, MostHundredths));
}

std::string StepFrequency(std::string_view text, int step) {
    constexpr float hundredth = 0.01f, largest = 31.99f;
    const auto number = static_cast<float>(NumberAtStart(text));
    const float stepped = std::clamp(number + (step > 0 ? hundredth : -hundredth), 0.0f, largest);
    char buffer[16];
    const auto [end, error] =
        std::to_chars(std::begin(buffer), std::end(buffer), stepped, std::chars_format::fixed, 2);
    return {std::begin(buffer), end};
}

} // namespace tonewright
