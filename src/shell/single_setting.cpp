// Finding, reading and replacing the line of one setting.
#include "shell/single_setting.h"

#include "common/file_bytes.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/whole_file.h"
#include "shell/setting_line.h"
#include "shell/settings_file.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

namespace tonewright {
namespace {

constexpr std::size_t SizeLimit = 64 * 1024 * 1024; // bytes of a file that is edited in place

std::string_view TrimBlanks(std::string_view text) {
    const std::size_t first = std::min(text.find_first_not_of(" \t"), text.size());
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return last == std::string_view::npos || last < first ? std::string_view()
                                                          : text.substr(first, last + 1 - first);
}

// The name in a line "[Name]"; nothing for any other line.
std::optional<std::string_view> SectionOfLine(std::string_view line) {
    line = TrimBlanks(line);
    const std::size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos) {
        return std::nullopt;
    }
    return TrimBlanks(line.substr(1, end - 1));
}

// Where the line of a setting stands in the text of a file, or where it would be added.
struct LinePlace {
    bool hasSection = false;
    bool hasLine = false;
    std::size_t start = 0; // of the line; without one, behind the section's last line
    std::size_t size = 0;  // of the line, its line end included
};

LinePlace FindLine(std::string_view text, std::string_view section, std::string_view name) {
    LinePlace place{.start = text.size()};
    bool inside = false;
    for (std::size_t at = 0; at < text.size();) {
        if (!inside) {
            // Nothing but the next line with a bracket can begin the section.
            const std::size_t bracket = text.find('[', at);
            if (bracket == std::string_view::npos) {
                break;
            }
            at = text.substr(0, bracket).rfind('\n') + 1; // 0 when there is no line feed
        }
        const std::size_t end = std::min(text.find('\n', at), text.size() - 1) + 1;
        const std::string_view line = text.substr(at, end - at);
        if (const auto begun = SectionOfLine(line)) {
            if (inside) {
                break;
            }
            inside = EqualNoCase(*begun, section);
        } else if (inside && EqualNoCase(SplitSettingLine(TrimBlanks(line)).name, name)) {
            return {.hasSection = true, .hasLine = true, .start = at, .size = line.size()};
        }
        // Blank lines at the end of a section stay behind what is added.
        if (inside && !TrimBlanks(line).empty()) {
            place.hasSection = true;
            place.start = end;
        }
        at = end;
    }
    return place;
}

// The text of a file; nothing when it cannot be read or is too long.
std::optional<std::string> ReadWholeText(const char *path) {
    const auto bytes = ReadFileBytes(path, SizeLimit + 1);
    if (!bytes || bytes->size() > SizeLimit) {
        return std::nullopt;
    }
    return std::string(bytes->begin(), bytes->end());
}

// The value of a setting; nothing when the file, the section or the setting is missing.
std::optional<std::string> FindValue(const char *path, const char *section, const char *name) {
    const auto text = ReadWholeText(path);
    if (!text) {
        return std::nullopt;
    }
    const LinePlace place = FindLine(*text, section, name);
    if (!place.hasLine) {
        return std::nullopt;
    }
    const std::string_view line = std::string_view(*text).substr(place.start, place.size);
    return std::string(
        CutText(TrimBlanks(SplitSettingLine(TrimBlanks(line)).value), SettingTextLimit));
}

} // namespace

std::string ReadSingleText(const char *path, const char *section, const char *name,
                           const std::string &fallback) {
    return FindValue(path, section, name).value_or(fallback);
}

std::string ReadSingleText(const SettingsList &list, const char *name,
                           const std::string &fallback) {
    return ReadSingleText(SettingsFilePath(list).c_str(), list.section, name, fallback);
}

std::uint32_t ReadSingleInteger(const char *path, const char *section, const char *name,
                                std::uint32_t fallback) {
    const auto text = FindValue(path, section, name);
    return text ? ReadInteger(*text) : fallback;
}

std::uint32_t ReadSingleInteger(const SettingsList &list, const char *name,
                                std::uint32_t fallback) {
    return ReadSingleInteger(SettingsFilePath(list).c_str(), list.section, name, fallback);
}

bool WriteSingleText(const char *path, const char *section, const char *name,
                     const std::string &value) {
    std::string text;
    if (FileExists(path)) {
        auto present = ReadWholeText(path);
        if (!present) {
            return false;
        }
        text = std::move(*present);
    }
    LinePlace place = FindLine(text, section, name);
    const std::string_view model =
        place.hasLine ? std::string_view(text).substr(place.start, place.size) : text;
    const std::string lineEnd = model.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
    // A file that ends in the middle of a line gets its line end first.
    if (!place.hasLine && place.start > 0 && text[place.start - 1] != '\n') {
        text.insert(place.start, lineEnd);
        place.start += lineEnd.size();
    }
    std::string lines;
    if (!place.hasSection) {
        lines = "[" + std::string(section) + "]" + lineEnd;
    }
    lines += LineOfSetting(name, value, lineEnd);
    text.replace(place.start, place.size, lines);
    return WriteFileWhole(path, text);
}

} // namespace tonewright
