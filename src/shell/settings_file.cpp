// Reading and writing the files of settings.
#include "shell/settings_file.h"

#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/line_reader.h"
#include "common/platform.h"
#include "common/setting_rows.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/version.h"
#include "common/whole_file.h"
#include "shell/setting_line.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

namespace tonewright {
namespace {

constexpr bool IsRead(const ConfigKey &row) {
    return (row.flags & SettingWriteOnly) == 0;
}

// Finds the rows of a list by the beginnings of their names.
struct RowFinder {
    std::span<const ConfigKey> rows;
    // For each character the first row of those that are read whose name begins with it; the number
    // of rows where there is none.
    std::array<std::size_t, 256> firstRows;
    const ConfigKey *firstRead; // of all rows; null for none
    bool wholeNames;            // beginnings find nothing
};

RowFinder FinderOf(const SettingsList &list) {
    const auto rows = list.rows;
    RowFinder finder{.rows = rows,
                     .firstRows = {},
                     .firstRead = nullptr,
                     .wholeNames = list.written == SettingsWritten::WhenChosen};
    finder.firstRows.fill(rows.size());
    for (std::size_t row = rows.size(); row-- > 0;) {
        if (IsRead(rows[row])) {
            finder.firstRows[static_cast<unsigned char>(rows[row].name[0])] = row;
            finder.firstRead = &rows[row];
        }
    }
    return finder;
}

// The first row of those that are read whose name begins with `beginning`, or, of whole names, is
// it; null for none.
const ConfigKey *FindRow(const RowFinder &finder, std::string_view beginning) {
    if (beginning.empty()) {
        return finder.wholeNames ? nullptr : finder.firstRead;
    }
    for (std::size_t row = finder.firstRows[static_cast<unsigned char>(beginning[0])];
         row < finder.rows.size(); ++row) {
        const ConfigKey &candidate = finder.rows[row];
        const std::string_view name = candidate.name;
        if (IsRead(candidate) && name.starts_with(beginning) &&
            (!finder.wholeNames || name == beginning)) {
            return &candidate;
        }
    }
    return nullptr;
}

// True when a line that begins with the character names no row, whatever else it has.
bool BeginsNoRow(const RowFinder &finder, char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte > ' ' && byte != '=' && finder.firstRows[byte] == finder.rows.size();
}

void SetValue(const ConfigKey &row, std::string_view text) {
    if (std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value)) {
        **number = ReadInteger(text);
    } else {
        *std::get<std::string *>(row.value) = CutText(text, SettingTextLimit);
    }
}

std::string LineOfValue(const ConfigKey &row, std::string_view value) {
    return LineOfSetting(row.name, value, PlatformLines("\n"));
}

std::string LineOfRow(const ConfigKey &row) {
    const std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value);
    return LineOfValue(row,
                       number ? std::to_string(**number) : *std::get<std::string *>(row.value));
}

// The lines of all rows.
std::string LinesOfAll(const SettingsList &list) {
    std::string lines;
    for (const ConfigKey &row : list.rows) {
        lines += LineOfRow(row);
    }
    return lines;
}

// The row that a line names, and its value there; null for none.
const ConfigKey *RowOfLine(const RowFinder &finder, std::string_view line,
                           std::string_view &value) {
    if (line.starts_with(';') || BeginsNoRow(finder, line[0])) {
        return nullptr;
    }
    const SettingLine setting = SplitSettingLine(line);
    value = setting.value;
    return FindRow(finder, setting.name);
}

std::string SectionLineOf(const SettingsList &list) {
    return PlatformLines(FormatText("[%s]\n", list.section));
}

// The lines of a file that name no row, as they stand there: settings of a newer program, and what
// the user noted. The comments above everything else, the line of the section and empty lines are
// none of them, since they are written anew.
struct OtherLines {
    std::string_view section; // as its line names it
    std::string text;
    bool inHead = true;
    bool isWhole = true; // the last line had its end; else the next one is the rest of it
    bool isKept = false; // the last line is the end of `text`
};

void TakeOtherLine(OtherLines &others, std::string_view line) {
    if (others.isWhole) { // a rest stays with its beginning
        const std::string_view words = CutAtControl(line);
        others.inHead = others.inHead && (words.empty() || words.starts_with(';'));
        others.isKept = !others.inHead && !words.empty() && words != others.section;
    }
    if (others.isKept) {
        others.text += line;
    }
    others.isWhole = line.ends_with('\n');
}

// Ends the last line of the text, which has none when it was the last one of its file or too long.
void EndOtherLine(OtherLines &others) {
    if (others.isKept && !others.isWhole) {
        others.text += PlatformLines("\n");
    }
    others.isKept = false;
}

// The lines of the rows that the user has chosen, `chosen` being the last of them, and behind them
// the other lines of the file. Nothing, the reason in errno, when it cannot be read.
std::optional<std::string> LinesOfChosen(const SettingsList &list, const ConfigKey &chosen) {
    std::vector<std::string> lines(list.rows.size());
    const auto place = [&](const ConfigKey &row) -> std::string & {
        return lines[static_cast<std::size_t>(&row - list.rows.data())];
    };
    const std::string sectionLine = SectionLineOf(list);
    OtherLines others{.section = CutAtControl(sectionLine), .text = {}};
    if (auto reader = OpenLines(SettingsFilePath(list).c_str())) {
        const RowFinder finder = FinderOf(list);
        std::string_view line, value;
        while (NextLine(*reader, line)) {
            if (const ConfigKey *row = RowOfLine(finder, line, value)) {
                EndOtherLine(others);
                others.inHead = false;
                others.isWhole = line.ends_with('\n');
                place(*row) = LineOfValue(*row, value);
            } else {
                TakeOtherLine(others, line);
            }
        }
        if (reader->error != 0) {
            errno = reader->error;
            return std::nullopt;
        }
    } else if (errno != ENOENT) {
        return std::nullopt;
    }
    EndOtherLine(others);
    place(chosen) = LineOfRow(chosen);
    std::string text;
    for (const std::string &line : lines) {
        text += line;
    }
    return text + others.text;
}

std::string HeadOf(const SettingsList &list) {
    const std::time_t now = std::time(nullptr);
    const char *time = std::ctime(&now);
    std::string heading = ";Tonewright configuration file\n;Edit this at your own risk\n";
    heading +=
        FormatText(";%s %s revision %d\n", LoadProgramString(109), ProgramVersion, ProgramRevision);
    heading += FormatText(";Last updated %24.24s\n;\n", time ? time : "");
    return PlatformLines(heading) + SectionLineOf(list);
}

// `copy` becomes a copy of `path`, if there is such a file. (Paths that were cut at their limit can
// be the same.)
bool KeepAs(const std::string &path, const std::string &copy) {
    return !FileExists(path.c_str()) || copy == path || CopyFileWhole(path.c_str(), copy.c_str());
}

constexpr std::size_t ComparedSize = 64 * 1024 * 1024; // bytes from the start of a file

// True when these are two files that can be read and hold the same.
bool AreEqual(const std::string &one, const std::string &other) {
    std::error_code error;
    if (std::filesystem::equivalent(PathOfUtf8(one), PathOfUtf8(other), error)) {
        return false;
    }
    const auto bytes = ReadFileBytes(one.c_str(), ComparedSize);
    return bytes && bytes == ReadFileBytes(other.c_str(), ComparedSize);
}

std::string BackupPath(const SettingsList &list) {
    return list.folder((std::string("Backup of ") + list.file).c_str());
}

// Keeps the two versions before the one that is to be written. A version that could not be kept in
// the next one's place stays where it is. False, the reason in errno, when not both were kept.
bool KeepVersions(const SettingsList &list) {
    const std::string backup = BackupPath(list);
    const std::string older =
        list.folder((std::string("Backup of Backup of ") + list.file).c_str());
    return KeepAs(backup, older) && KeepAs(SettingsFilePath(list), backup);
}

// The same before a write that may fail, or that has: what failed once is tried again, and a file
// that is its own backup already takes no second place.
bool KeepVersionsOnce(const SettingsList &list) {
    return AreEqual(SettingsFilePath(list), BackupPath(list)) || KeepVersions(list);
}

SettingsWrite WriteLines(const SettingsList &list, const std::string &lines) {
    const std::string path = SettingsFilePath(list);
    bool kept = true;
    int reason = 0;
    const auto keep = [&](Replacing how) {
        kept = how == Replacing::AsAWhole ? KeepVersions(list) : KeepVersionsOnce(list);
        reason = errno;
    };
    if (WriteFileWhole(path.c_str(), HeadOf(list) + lines, keep)) {
        errno = reason;
        return kept ? SettingsWrite::Done : SettingsWrite::NoBackup;
    }
    reason = errno;
    if (reason == EACCES || reason == EPERM || reason == EROFS) {
        KeepVersionsOnce(list);
        errno = reason;
    }
    return SettingsWrite::Failed;
}

void ReadFilesOf(const SettingsList &list) {
    if (list.written == SettingsWritten::WhenChosen) {
        const std::vector<std::string> files = SystemFiles(list.file);
        std::for_each(files.rbegin(), files.rend(),
                      [&list](const std::string &file) { ReadSettingsFile(list, file.c_str()); });
    }
    ReadSettingsFile(list, SettingsFilePath(list).c_str());
}

} // namespace

std::string SettingsFilePath(const SettingsList &list) {
    return list.folder(list.file);
}

void ConfigRead(SettingsWritten written) {
    for (const SettingsList *list : SettingsLists) {
        if (list->written == written) {
            ReadFilesOf(*list);
        }
    }
}

void ConfigRead() {
    for (const SettingsList *list : SettingsLists) {
        ReadFilesOf(*list);
    }
}

int ReadSettingsFile(const SettingsList &list, const char *path,
                     bool (*takes)(const ConfigKey &row)) {
    auto reader = OpenLines(path);
    if (!reader) {
        return 0;
    }
    ReadSettingsLines(list, *reader, takes);
    errno = reader->error;
    return reader->error == 0;
}

void ReadSettingsLines(const SettingsList &list, LineReader &lines,
                       bool (*takes)(const ConfigKey &row)) {
    const RowFinder finder = FinderOf(list);
    std::string_view line, value;
    while (NextLine(lines, line)) {
        if (line == "\n") {
            SkipEmptyLines(lines); // each would set the same row to the same value
        }
        const ConfigKey *row = RowOfLine(finder, line, value);
        if (row && (!takes || takes(*row))) {
            SetValue(*row, value);
        }
    }
}

SettingsWrite WriteSettingsFile(const SettingsList &list) {
    return WriteLines(list, LinesOfAll(list));
}

SettingsWrite WriteChosenSetting(const SettingsList &list, const ConfigKey &chosen) {
    if (list.written == SettingsWritten::AtEnd) {
        return WriteSettingsFile(list);
    }
    const auto lines = LinesOfChosen(list, chosen);
    return lines ? WriteLines(list, *lines) : SettingsWrite::Failed;
}

SettingsWrite ConfigWrite(void (*tell)(const SettingsList &list, SettingsWrite outcome)) {
    SettingsWrite worst = SettingsWrite::Done;
    int reason = 0;
    for (const SettingsList *list : SettingsLists) {
        if (list->written != SettingsWritten::AtEnd) {
            continue;
        }
        const SettingsWrite outcome = WriteSettingsFile(*list);
        if (outcome == SettingsWrite::Done) {
            continue;
        }
        const int here = errno;
        if (tell) {
            tell(*list, outcome);
        }
        if (outcome > worst) {
            worst = outcome;
            reason = here;
        }
    }
    errno = reason;
    return worst;
}

bool ConfigIsWritten() {
    return std::ranges::all_of(SettingsLists, [](const SettingsList *list) {
        if (list->written != SettingsWritten::AtEnd) {
            return true;
        }
        const auto bytes = ReadFileBytes(SettingsFilePath(*list).c_str(), ComparedSize);
        return bytes &&
               std::string_view(reinterpret_cast<const char *>(bytes->data()), bytes->size())
                   .ends_with(SectionLineOf(*list) + LinesOfAll(*list));
    });
}

const char *WordsOfOutcome(SettingsWrite outcome) {
    return outcome == SettingsWrite::Failed ? "the settings could not be written"
                                            : "a version of the settings could not be kept as a "
                                              "backup";
}

} // namespace tonewright
