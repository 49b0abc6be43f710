// Reads tips out of their file, and keeps the day of the last one.
#include "shell/tips.h"

#include "common/line_reader.h"
#include "common/settings.h"
#include "common/strings.h"
#include "shell/shell_window.h"

#include <optional>
#include <string_view>

namespace tonewright {
namespace {

constexpr std::uint32_t SecondLine = 2;

// A line as it is shown: up to its end, with its line breaks.
std::string TextOfLine(std::string_view line) {
    using namespace std::string_view_literals;
    line = line.substr(0, line.find_first_of("\n\0"sv));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    std::string text(line);
    constexpr std::string_view lineBreak = "\\n";
    for (auto at = text.find(lineBreak); at != text.npos; at = text.find(lineBreak, at)) {
        text.replace(at, lineBreak.size(), 1, '\n');
    }
    return text;
}

// The text of a line; empty behind the end. Nothing without a file.
std::optional<std::string> ReadLine(std::uint32_t number) {
    auto reader = OpenLines(TipsFilePath().c_str(), TipLimit);
    if (!reader) {
        return std::nullopt;
    }
    std::string_view line;
    for (std::uint32_t at = 1; NextLine(*reader, line) && at < number; ++at) {
    }
    return TextOfLine(line);
}

} // namespace

std::string TipsFilePath() {
    return ApplicationPath + "TNWRGT.TIP";
}

Tip TipOfLine(std::uint32_t number) {
    const auto text = ReadLine(number);
    if (!text) {
        return {.text = {}, .next = number};
    }
    if (!text->empty()) {
        return {.text = *text, .next = number + 1};
    }
    return {.text = ReadLine(1).value_or(""), .next = SecondLine};
}

std::string NextTip() {
    const Tip tip = TipOfLine(TipOfTheDay);
    TipOfTheDay = tip.next;
    return tip.text.empty() ? LoadProgramString(NoTipString) : tip.text;
}

std::uint32_t TipDate(int month, int day, int year) {
    return static_cast<std::uint32_t>((month * 256 + day) * 65536 + year);
}

bool TipDateChanged(std::time_t now) {
    const std::tm *fields = std::localtime(&now);
    if (!fields) {
        return false;
    }
    const std::uint32_t today =
        TipDate(fields->tm_mon + 1, fields->tm_mday, fields->tm_year + 1900);
    const bool changed = today != LastTipDate;
    LastTipDate = today;
    return changed;
}

int RunTip() {
    if (TheShellWindow.ShowTipBox) {
        TheShellWindow.ShowTipBox();
    }
    return 1;
}

} // namespace tonewright
