// The generations of Windows, and how other systems tell their name.
#include "common/windows_version.h"

#include <algorithm>
#include <tuple>

namespace tonewright {
namespace {

constexpr unsigned FirstBuildOfWindows11 = 22000;

// From the lowest version to the highest.
struct GenerationRow {
    WindowsVersion version;
    int number;
    const char *name;
};
constexpr GenerationRow Generations[] = {
    {{5, 1, 0}, 12, "Windows XP"},        {{5, 1, 1}, 12, "Windows XP SP1"},
    {{5, 1, 2}, 12, "Windows XP SP2"},    {{5, 1, 3}, 12, "Windows XP SP3"},
    {{6, 0, 0}, 14, "Windows Vista"},     {{6, 0, 1}, 14, "Windows Vista SP1"},
    {{6, 0, 2}, 14, "Windows Vista SP2"}, {{6, 1, 0}, 15, "Windows 7"},
    {{6, 1, 1}, 15, "Windows 7 SP1"},     {{6, 2, 0}, 16, "Windows 8"},
    {{6, 3, 0}, 17, "Windows 8"},         {{10, 0, 0}, Windows10, "Windows 10"},
};

// The value of NAME=value or NAME="value" at the start of a line, without what a shell would take
// off; empty when no line has it.
std::string ValueOf(std::string_view text, std::string_view name) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        if (!line.starts_with(name) || line.substr(name.size(), 1) != "=") {
            continue;
        }
        std::string value;
        bool escaped = false;
        for (const char character : line.substr(name.size() + 1)) {
            if (!escaped && character == '\\') {
                escaped = true;
            } else if (escaped || (character != '"' && character != '\'')) {
                value += character;
                escaped = false;
            }
        }
        return value;
    }
    return {};
}

} // namespace

bool IsWindows10OrLater() {
    return WindowsVersionAtLeast(10, 0, 0);
}

bool IsVersionAtLeast(const WindowsVersion &version, const WindowsVersion &asked) {
    return std::tie(version.major, version.minor, version.servicePack) >=
           std::tie(asked.major, asked.minor, asked.servicePack);
}

WindowsGeneration GenerationOf(const WindowsVersion &version, unsigned build) {
    WindowsGeneration generation{UnknownWindows, "Windows (unknown version)"};
    for (const GenerationRow &row : Generations) {
        if (!IsVersionAtLeast(version, row.version)) {
            return generation;
        }
        generation = {row.number, row.name};
    }
    if (build >= FirstBuildOfWindows11) {
        generation = {Windows11, "Windows 11"};
    }
    return generation;
}

std::string NameInOsRelease(std::string_view text) {
    const std::string pretty = ValueOf(text, "PRETTY_NAME");
    if (!pretty.empty()) {
        return pretty;
    }
    const std::string name = ValueOf(text, "NAME"), version = ValueOf(text, "VERSION");
    return name.empty() || version.empty() ? name : name + " " + version;
}

} // namespace tonewright
