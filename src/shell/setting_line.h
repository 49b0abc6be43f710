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

// How many bytes of a value have room in the line of a setting, which is read as one line with its
// line end.
std::size_t ValueLimit(std::string_view name, std::string_view lineEnd);

// The line of a text with its line end. The text is cut at its first control character, so that it
// makes no line of its own, and in front of the UTF-8 character that goes beyond its limit, so that
// no rest of it is read as the next line.
std::string LineOfSetting(std::string_view name, std::string_view value, std::string_view lineEnd);

} // namespace tonewright
