// Any bytes as a file of settings: every setting stays within its size, what was read is written
// and read again, and a single key can be written into any file. Slow, since every run writes and
// reads files; the fuzzer of settings in memory looks at many more inputs.
#include "common/folders.h"
#include "common/settings.h"
#include "shell/settings_file.h"
#include "shell/single_setting.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <filesystem>
#include <vector>

using namespace tonewright;

namespace {

// Short enough for its line to be read in one piece.
constexpr std::size_t ShortText = 200;

struct Values {
    std::vector<std::uint32_t> numbers;
    std::vector<std::string> texts;
    bool operator==(const Values &) const = default;
};

Values AllValues() {
    Values all;
    for (const ConfigKey &row : ProgramSettings.rows) {
        if (std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value)) {
            all.numbers.push_back(**number);
        } else {
            all.texts.push_back(*std::get<std::string *>(row.value));
        }
    }
    return all;
}

void ReadAndWrite(const std::string &path) {
    Demand(ReadSettingsFile(ProgramSettings, path.c_str()) == 1, "a file is read");
    const Values read = AllValues();
    for (const std::string &text : read.texts) {
        Demand(text.size() <= SettingTextLimit, "a text is at most 260 bytes");
        Demand(
            std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) >= 0x20; }),
            "a control character ends a value");
    }
    ConfigWrite();
    const bool allShort = std::ranges::all_of(
        read.texts, [](const std::string &text) { return text.size() <= ShortText; });
    if (allShort) {
        ConfigRead();
        Demand(AllValues() == read, "what is written is read again");
    }
}

void WriteOneKey(const std::string &path, const std::vector<std::uint8_t> &before) {
    const char *const section = "Tonewright";
    Demand(WriteSingleText(path.c_str(), section, "ThemeCurrent", "Slate"), "a key is written");
    Demand(ReadSingleText(path.c_str(), section, "ThemeCurrent", "") == "Slate",
           "a key that was written is found");
    const auto once = FuzzRead(path);
    // In front of the line and behind it nothing has changed.
    const std::size_t least = std::min(before.size(), once.size());
    std::size_t front = 0;
    while (front < least && before[front] == once[front]) {
        ++front;
    }
    std::size_t back = 0;
    while (back < least - front &&
           before[before.size() - 1 - back] == once[once.size() - 1 - back]) {
        ++back;
    }
    Demand(std::count(once.begin() + static_cast<std::ptrdiff_t>(front),
                      once.end() - static_cast<std::ptrdiff_t>(back), '\n') <= 3,
           "at most a line end, a section and a key");
    Demand(WriteSingleText(path.c_str(), section, "ThemeCurrent", "Slate"), "once more");
    Demand(FuzzRead(path) == once, "writing the same value changes nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    ResetSettings();
    AnswerYesToEverything();
    const std::string path = FuzzFile("input.ini", {data, size});
    PlatformFolders.applicationData = std::filesystem::path(path).parent_path().string();
    MakeProgramFolders();
    ReadAndWrite(path);
    WriteOneKey(path, {data, data + size});
    return 0;
}
