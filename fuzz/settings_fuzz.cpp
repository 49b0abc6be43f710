// Any bytes as the lines of a file of settings, in memory: every setting stays within its size, and
// what was read is read again from lines of its own.
#include "common/line_reader.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/setting_line.h"
#include "shell/settings_file.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <string>
#include <vector>

using namespace tonewright;

namespace {

constexpr const char *LineEnd = "\n";

void ReadLines(std::string_view text) {
    LineReader lines = LinesOf(text);
    ReadSettingsLines(ProgramSettings, lines);
}

std::string ValueOf(const ConfigKey &row) {
    const std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value);
    return number ? std::to_string(**number) : *std::get<std::string *>(row.value);
}

bool IsDefault(const ConfigKey &row) {
    const std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value);
    return number ? **number == std::get<std::uint32_t>(row.preset)
                  : *std::get<std::string *>(row.value) == std::get<const char *>(row.preset);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    ResetSettings(ProgramSettings);
    ReadLines({reinterpret_cast<const char *>(data), size});
    std::vector<std::string> expected;
    std::string text;
    for (const ConfigKey &row : ProgramSettings.rows) {
        const std::string value = ValueOf(row);
        expected.emplace_back(CutText(value, ValueLimit(row.name, LineEnd)));
        if (IsDefault(row)) {
            continue;
        }
        Demand((row.flags & SettingWriteOnly) == 0, "what is only written is not read");
        Demand(value.size() <= SettingTextLimit, "a text is at most 260 bytes");
        Demand(std::ranges::all_of(value,
                                   [](char c) { return static_cast<unsigned char>(c) >= 0x20; }),
               "a control character ends a value");
        text += LineOfSetting(row.name, value, LineEnd);
    }
    ResetSettings(ProgramSettings);
    ReadLines(text);
    for (std::size_t row = 0; row < expected.size(); ++row) {
        Demand(ValueOf(ProgramSettings.rows[row]) == expected[row],
               "what is written is read again, and no line as two");
    }
    return 0;
}
