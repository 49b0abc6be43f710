// The frequency of an operator, in Hz or as a ratio, as a text with two decimals. Whatever the
// user's language, the decimal point is a dot.
#pragma once

#include <string>
#include <string_view>

namespace tonewright {

constexpr int HundredthsOfOne = 100;
// The largest frequency, in hundredths.
constexpr int MostHundredths = 3199;

// "1.05" for 105 hundredths; `hundredths` is not negative.
std::string FrequencyText(int hundredths);

// The number at the start of a text, in hundredths, cut towards zero and limited to 0 to
// MostHundredths; 0 for a text that is none. Since the number is binary, 1.15 gives 114.
int ReadFrequency(std::string_view text);

// The text one hundredth higher, or lower when `step` is not above 0, limited to "0.00" to "31.99".
// The number is taken in single precision.
std::string StepFrequency(std::string_view text, int step);

} // namespace tonewright
