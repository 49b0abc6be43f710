// Taking a line of settings apart, and making one.
#include "shell/setting_line.h"

#include "common/line_reader.h"
#include "common/text.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr std::string_view Between = " = "; // name and value

bool IsControl(char character) {
    return static_cast<unsigned char>(character) < 0x20;
}

} // namespace

std::string_view CutAtControl(std::string_view text) {
    return text.substr(0, std::ranges::find_if(text, IsControl) - text.begin());
}

SettingLine SplitSettingLine(std::string_view line) {
    line = CutAtControl(line);
    const std::size_t nameEnd = std::min(line.find_first_of(" ="), line.size());
    std::string_view rest = line.substr(nameEnd);
    for (const char passed : {' ', '=', ' '}) {
        rest.remove_prefix(std::min(rest.find_first_not_of(passed), rest.size()));
    }
    return {line.substr(0, nameEnd), rest};
}

std::size_t ValueLimit(std::string_view name, std::string_view lineEnd) {
    const std::size_t taken = name.size() + Between.size() + lineEnd.size();
    return LineLimit - std::min(taken, LineLimit);
}

std::string LineOfSetting(std::string_view name, std::string_view value, std::string_view lineEnd) {
    std::string line(name);
    line += Between;
    line += CutText(CutAtControl(value), ValueLimit(name, lineEnd));
    line += lineEnd;
    return line;
}

} // namespace tonewright
