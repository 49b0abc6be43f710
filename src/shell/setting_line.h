// One line of a file of settings: "Name = value".
#pragma once

#include <string>
#include <string_view>

namespace tonewright {

// The text in front of its first control character.
std::string_view CutAtControl(std::string_view text);

// A name and a value, with any number of blanks and equal signs between the two. The value ends at
// the first control character, which may stand in front of all.
struct SettingLine {
    std::string_view name, value;
};
SettingLine SplitSettingLine(std::string_view line);

// The line of a text, without its line end. The text is cut at its first control character, so
// that it makes no line of its own.
std::string LineOfSetting(const char *name, std::string_view value);

} // namespace tonewright
