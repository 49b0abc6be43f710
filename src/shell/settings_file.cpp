// The table of settings, and the reading and writing of the configuration file.
#include "shell/settings_file.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/line_reader.h"
#include "common/open_file.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr const char *FileName = "Tonewright 17.ini";
constexpr const char *Section = "Tonewright";

constexpr std::uint32_t Restart = SettingRestart;
constexpr std::uint32_t WriteOnly = SettingWriteOnly;

constexpr ConfigKey BoolKey(const char *name, std::uint32_t *value, std::uint32_t control = 0,
                            std::uint32_t flags = 0) {
    return {name, value, SettingBool | flags, control};
}

constexpr ConfigKey IntegerKey(const char *name, std::uint32_t *value, std::uint32_t control = 0,
                               std::uint32_t flags = 0) {
    return {name, value, SettingInteger | flags, control};
}

constexpr ConfigKey TextKey(const char *name, std::string *value, std::uint32_t flags = 0) {
    return {name, value, SettingText | flags, 0};
}

constexpr ConfigKey Keys[] = {
    TextKey("ApplicationPath", &ApplicationPath, WriteOnly),
    IntegerKey("AuditionCurrentOctave", &AuditionCurrentOctave),
    IntegerKey("AuditionCurrentVelocity", &AuditionCurrentVelocity),
    TextKey("BuildDate", &BuildDate, WriteOnly),
    TextKey("ColourTableFile", &ColourTableFile),
    BoolKey("CreateBackups", &CreateBackups, 139),
    IntegerKey("CurrentMidiChannel", &CurrentMidiChannel, 118, SettingSpin),
    TextKey("DatabaseCurrentName", &DatabaseCurrentName),
    TextKey("DatabaseFooterFontName", &DatabaseFooterFontName),
    IntegerKey("DatabaseFooterFontSize", &DatabaseFooterFontSize),
    TextKey("DatabaseHeaderFontName", &DatabaseHeaderFontName),
    IntegerKey("DatabaseHeaderFontSize", &DatabaseHeaderFontSize),
    TextKey("DatabaseItemFontName", &DatabaseItemFontName),
    IntegerKey("DatabaseItemFontSize", &DatabaseItemFontSize),
    BoolKey("DatabaseMakePrettyNames", &DatabaseMakePrettyNames, 114),
    IntegerKey("DatabaseManFieldDelay", &DatabaseManFieldDelay),
    BoolKey("DatabaseNoDuplicates", &DatabaseNoDuplicates, 116),
    IntegerKey("DatabaseSortMode", &DatabaseSortMode),
    TextKey("DefaultPrinterName", &DefaultPrinterName),
    IntegerKey("DialogUpdateTime", &DialogUpdateTime),
    IntegerKey("DocumentBrowserFlags", &DocumentBrowserFlags),
    TextKey("DocumentBrowserPath", &DocumentBrowserPath),
    BoolKey("DownloadOnOpen", &DownloadOnOpen, 112),
    IntegerKey("FileMenuRange", &FileMenuRange),
    IntegerKey("FileTipDelay", &FileTipDelay),
    BoolKey("FileTipShow", &FileTipShow, 117),
    IntegerKey("FileWindowX", &FileWindowX),
    IntegerKey("FileWindowY", &FileWindowY),
    IntegerKey("ImageFileOpenIndex", &ImageFileOpenIndex),
    IntegerKey("LastTipDate", &LastTipDate),
    IntegerKey("MaxUndoLevel", &MaxUndoLevel, 141, SettingSpin | Restart),
    BoolKey("MiddleButtonAudition", &MiddleButtonAudition, 146),
    TextKey("OpenExportPath", &OpenExportPath),
    TextKey("OpenImportPath", &OpenImportPath),
    TextKey("OpenPath", &OpenPath),
    BoolKey("OpenRecentDocument", &OpenRecentDocument, 140),
    IntegerKey("PatchLevel", &PatchLevel, 0, WriteOnly),
    TextKey("RecentDocumentPath", &RecentDocumentPath),
    IntegerKey("RememberFileHistoryCount", &RememberFileHistoryCount, 144, SettingSpin | Restart),
    BoolKey("RememberFileHistoryCover", &RememberFileHistoryCover, 145, Restart),
    BoolKey("RememberFileHistoryEnable", &RememberFileHistoryEnable, 143, Restart),
    IntegerKey("RememberFileHistorySize", &RememberFileHistorySize),
    BoolKey("SelectKeyboardAutodetect", &SelectKeyboardAutodetect),
    TextKey("SelectKeyboardMidiIn", &SelectKeyboardMidiIn),
    TextKey("SelectKeyboardMidiOut", &SelectKeyboardMidiOut),
    TextKey("SelectKeyboardName", &SelectKeyboardName),
    IntegerKey("SetupPageIndex", &SetupPageIndex),
    BoolKey("ShowDriverMessage", &ShowDriverMessage),
    BoolKey("ShowStartupWindow", &ShowStartupWindow, 105),
    BoolKey("ShowTipOfTheDay", &ShowTipOfTheDay, 133),
    IntegerKey("SoftButtons", &SoftButtons, 134, SettingDropDown),
    BoolKey("StartMonday", &StartMonday),
    IntegerKey("SysexWait", &SysexWait),
    IntegerKey("TipFont01Size", &TipFont01Size),
    IntegerKey("TipOfTheDay", &TipOfTheDay),
    TextKey("ThemeCurrent", &ThemeCurrent),
    BoolKey("VerboseRightClickMenu", &VerboseRightClickMenu, 113),
    IntegerKey("VersionNumber", &VersionNumber, 0, WriteOnly),
    IntegerKey("VoiceEditPage", &VoiceEditPage),
    BoolKey("WarnDatabaseChanged", &WarnDatabaseChanged, 115),
    BoolKey("WarnShowManual", &WarnShowManual, 108),
    BoolKey("ShowWelcomeWizard", &ShowWelcomeWizard),
};
static_assert(std::size(Keys) == 62);

bool IsControl(char character) {
    return static_cast<unsigned char>(character) < 0x20;
}

// The text in front of its first control character.
std::string_view CutAtControl(std::string_view text) {
    return text.substr(0, std::ranges::find_if(text, IsControl) - text.begin());
}

struct KeyAndValue {
    std::string_view key, value;
};

// "Key = value", with any number of blanks and equal signs between the two.
KeyAndValue SplitLine(std::string_view line) {
    line = CutAtControl(line);
    const std::size_t keyEnd = std::min(line.find_first_of(" ="), line.size());
    std::string_view rest = line.substr(keyEnd);
    for (const char passed : {' ', '=', ' '}) {
        rest.remove_prefix(std::min(rest.find_first_not_of(passed), rest.size()));
    }
    return {line.substr(0, keyEnd), rest};
}

void SetKey(const ConfigKey &row, std::string_view text) {
    if (std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value)) {
        **number = ReadInteger(text);
    } else {
        *std::get<std::string *>(row.value) = CutText(text, SettingTextLimit);
    }
}

constexpr bool IsRead(const ConfigKey &row) {
    return (row.flags & SettingWriteOnly) == 0;
}

// For each character the first row of those that are read whose name begins with it; the number of
// rows where there is none.
constexpr auto FirstRows = [] {
    std::array<std::size_t, 256> rows{};
    rows.fill(std::size(Keys));
    for (std::size_t row = std::size(Keys); row-- > 0;) {
        if (IsRead(Keys[row])) {
            rows[static_cast<unsigned char>(Keys[row].name[0])] = row;
        }
    }
    return rows;
}();

// The first row of those that are read whose name begins with the key; null for none.
const ConfigKey *RowOfKey(std::string_view key) {
    if (key.empty()) {
        return std::ranges::find_if(Keys, IsRead);
    }
    for (std::size_t row = FirstRows[static_cast<unsigned char>(key[0])]; row < std::size(Keys);
         ++row) {
        if (IsRead(Keys[row]) && std::string_view(Keys[row].name).starts_with(key)) {
            return &Keys[row];
        }
    }
    return nullptr;
}

void ReadConfigLine(std::string_view line) {
    if (line.starts_with(';')) {
        return;
    }
    const auto [key, value] = SplitLine(line);
    if (const ConfigKey *row = RowOfKey(key)) {
        SetKey(*row, value);
    }
}

fs::path PathOf(const std::string &utf8) {
    return fs::path(reinterpret_cast<const char8_t *>(utf8.c_str()));
}

std::string LineOfKey(const ConfigKey &row) {
    if (std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value)) {
        return FormatText("%s = %u\n", row.name, static_cast<unsigned>(**number));
    }
    // A line feed inside a value would make a line of its own.
    const std::string value(
        CutText(CutAtControl(*std::get<std::string *>(row.value)), SettingTextLimit));
    return FormatText("%s = %s\n", row.name, value.c_str());
}

std::string SettingsFileText() {
    const std::time_t now = std::time(nullptr);
    const char *time = std::ctime(&now);
    const char *program = LoadProgramString(109);
    std::string text = ";Tonewright configuration file\n;Edit this at your own risk\n";
    text += FormatText(";%s %d.%d%c revision %d\n", program, 17, 0, 'a', 1);
    text += FormatText(";Last updated %24.24s\n;\n[%s]\n", time ? time : "", Section);
    for (const ConfigKey &row : Keys) {
        text += LineOfKey(row);
    }
    return text;
}

// `copy` becomes a copy of `path`, if there is such a file. (Paths that were cut at their limit can
// be the same.)
void KeepAs(const std::string &path, const std::string &copy) {
    if (FileExists(path.c_str()) && copy != path) {
        CopyFileTo(path.c_str(), copy.c_str());
    }
}

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

// Where a key stands in the text of a settings file, or where it would be added.
struct SettingPlace {
    bool hasSection = false;
    bool hasKey = false;
    std::size_t start = 0; // of the key's line; without one, behind the section's last line
    std::size_t size = 0;  // of the key's line, its line end included
};

SettingPlace FindSetting(std::string_view text, std::string_view section, std::string_view key) {
    SettingPlace place{.start = text.size()};
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
        if (const auto name = SectionOfLine(line)) {
            if (inside) {
                break;
            }
            inside = EqualNoCase(*name, section);
        } else if (inside && EqualNoCase(SplitLine(TrimBlanks(line)).key, key)) {
            return {.hasSection = true, .hasKey = true, .start = at, .size = line.size()};
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

// The value of a key; nothing when the file, the section or the key is missing.
std::optional<std::string> FindSingleText(const char *path, const char *section, const char *key) {
    const auto text = ReadWholeText(path);
    if (!text) {
        return std::nullopt;
    }
    const SettingPlace place = FindSetting(*text, section, key);
    if (!place.hasKey) {
        return std::nullopt;
    }
    const std::string_view line = std::string_view(*text).substr(place.start, place.size);
    return std::string(CutText(TrimBlanks(SplitLine(TrimBlanks(line)).value), SettingTextLimit));
}

// Puts a whole new text in the place of a file, or leaves the file as it is. Who may read and write
// the file stays the same.
bool ReplaceText(const char *path, const std::string &text) {
    if (FileExists(path) && !OpenFile(path, "r+b")) {
        return false; // read-only, or no regular file
    }
    std::error_code error;
    const fs::path target = fs::weakly_canonical(PathOf(path), error);
    const std::u8string utf8 = target.u8string();
    const std::string fresh = std::string(utf8.begin(), utf8.end()) + ".new";
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(text.data());
    if (error || WriteFileBytes(fresh.c_str(), {bytes, text.size()}) != WriteOutcome::Done) {
        return false;
    }
    std::error_code ignored;
    if (const fs::file_status former = fs::status(target, ignored); fs::exists(former)) {
        fs::permissions(PathOf(fresh), former.permissions(), ignored);
    }
    fs::rename(PathOf(fresh), target, error);
    if (error) {
        fs::remove(PathOf(fresh), ignored);
        return false;
    }
    return true;
}

// The version before this one.
constexpr Migration LastVersion = {
    .programName = "Tonewright",
    .newFile = FileName,
    .section = Section,
    .oldFile = "Tonewright 16.ini",
    .newFolder = "Tonewright 17",
    .oldFolder = "Tonewright 16",
    .patterns = "*.txt",
    .uninstallShortcut = "Programs\\Quillbrook\\Tonewright 16 x64\\Uninstall Tonewright 16 x64.lnk",
};

// "*" stands for any run of characters and "?" for one.
bool MatchesPattern(std::string_view name, std::string_view pattern) {
    std::size_t at = 0;
    std::size_t in = 0;
    std::size_t starAt = 0;
    std::size_t star = std::string_view::npos;
    while (at < name.size()) {
        if (in < pattern.size() && pattern[in] == '*') {
            star = in++;
            starAt = at;
        } else if (in < pattern.size() &&
                   (pattern[in] == '?' || EqualNoCase(pattern.substr(in, 1), name.substr(at, 1)))) {
            ++in;
            ++at;
        } else if (star != std::string_view::npos) {
            in = star + 1;
            at = ++starAt;
        } else {
            return false;
        }
    }
    return pattern.substr(in).find_first_not_of('*') == std::string_view::npos;
}

// Copies a file unless there is one of the new name. True when it has been copied.
bool CopyAsNew(const fs::path &from, const fs::path &to) {
    std::error_code error;
    return fs::copy_file(from, to, fs::copy_options::skip_existing, error);
}

void CopyMatchingFiles(const std::string &pattern, const fs::path &from, const fs::path &to) {
    std::error_code error;
    fs::directory_iterator entry(from, error);
    while (!error && entry != fs::directory_iterator()) {
        const std::u8string utf8 = entry->path().filename().u8string();
        const std::string name(utf8.begin(), utf8.end());
        std::error_code ignored;
        if (!name.starts_with('.') && MatchesPattern(name, pattern) &&
            entry->is_regular_file(ignored)) {
            CopyAsNew(entry->path(), to / entry->path().filename());
        }
        entry.increment(error);
    }
}

void CopyConfiguration(const Migration &migration, const std::string &newPath,
                       const std::string &oldPath) {
    if (CopyAsNew(PathOf(oldPath), PathOf(newPath))) {
        WriteSingleText(newPath.c_str(), migration.section, "ApplicationPath", "");
    }
    const fs::path from = PathOf(UserFile(migration.oldFolder));
    const fs::path to = PathOf(UserFile(migration.newFolder));
    for (const std::string &pattern : SplitList(migration.patterns)) {
        CopyMatchingFiles(pattern, from, to);
    }
}

void OfferUninstall(const Migration &migration) {
    const PreviousInstallation &previous = ThePreviousInstallation;
    const std::string shortcut = migration.uninstallShortcut;
    if (!previous.Exists || !previous.Exists(shortcut)) {
        return;
    }
    const std::string question = FormatText(
        "You can optionally uninstall the previous installation of %s from your system at this "
        "time.\n\nClick on Yes to uninstall, or click on No to leave your previous version in "
        "place.",
        migration.programName);
    if (AskYesNo(nullptr, question) != ResultYes) {
        return;
    }
    if (!previous.Uninstall || !previous.Uninstall(shortcut)) {
        ShowMessage(nullptr, FormatText("The uninstall option could not be accessed.\n\nPlease "
                                        "uninstall the previous installation of %s manually "
                                        "through the Windows Control Panel.",
                                        migration.programName));
    }
}

} // namespace

const std::span<const ConfigKey> SettingRows(Keys);

std::string SettingsFilePath() {
    return UserFile(FileName);
}

void ConfigRead() {
    ReadSettingsFile(SettingsFilePath().c_str());
}

int ReadSettingsFile(const char *path) {
    auto reader = OpenLines(path);
    if (!reader) {
        return 0;
    }
    std::string_view line;
    while (NextLine(*reader, line)) {
        ReadConfigLine(line);
    }
    return 1;
}

void ConfigWrite() {
    const std::string path = SettingsFilePath();
    const std::string backup = UserFile(("Backup of " + std::string(FileName)).c_str());
    const std::string older = UserFile(("Backup of Backup of " + std::string(FileName)).c_str());
    KeepAs(backup, older);
    KeepAs(path, backup);
    // Made first, so that the file is short of its text as briefly as can be.
    const std::string text = SettingsFileText();
    if (const FilePointer file = OpenFile(path.c_str(), "w")) {
        std::fwrite(text.data(), 1, text.size(), file.get());
    }
}

std::string ReadSingleText(const char *path, const char *section, const char *key,
                           const std::string &fallback) {
    return FindSingleText(path, section, key).value_or(fallback);
}

std::string ReadSingleText(const char *section, const char *key, const std::string &fallback) {
    return ReadSingleText(SettingsFilePath().c_str(), section, key, fallback);
}

std::uint32_t ReadSingleInteger(const char *path, const char *section, const char *key,
                                std::uint32_t fallback) {
    const auto text = FindSingleText(path, section, key);
    return text ? ReadInteger(*text) : fallback;
}

std::uint32_t ReadSingleInteger(const char *section, const char *key, std::uint32_t fallback) {
    return ReadSingleInteger(SettingsFilePath().c_str(), section, key, fallback);
}

bool WriteSingleText(const char *path, const char *section, const char *key,
                     const std::string &value) {
    std::string text;
    if (FileExists(path)) {
        auto present = ReadWholeText(path);
        if (!present) {
            return false;
        }
        text = std::move(*present);
    }
    SettingPlace place = FindSetting(text, section, key);
    const std::string_view model =
        place.hasKey ? std::string_view(text).substr(place.start, place.size) : text;
    const std::string lineEnd = model.find("\r\n") == std::string_view::npos ? "\n" : "\r\n";
    // A file that ends in the middle of a line gets its line end first.
    if (!place.hasKey && place.start > 0 && text[place.start - 1] != '\n') {
        text.insert(place.start, lineEnd);
        place.start += lineEnd.size();
    }
    std::string line;
    if (!place.hasSection) {
        line = "[" + std::string(section) + "]" + lineEnd;
    }
    line += std::string(key) + " = " + std::string(CutAtControl(value)) + lineEnd;
    text.replace(place.start, place.size, line);
    return ReplaceText(path, text);
}

bool WriteSingleText(const char *section, const char *key, const std::string &value) {
    return WriteSingleText(SettingsFilePath().c_str(), section, key, value);
}

PreviousInstallation ThePreviousInstallation;

void ConfigMigrate(const Migration &migration) {
    const std::string newPath = UserFile(migration.newFile);
    const std::string oldPath = UserFile(migration.oldFile);
    if (FileExists(newPath.c_str()) || !FileExists(oldPath.c_str())) {
        return;
    }
    const std::string question =
        FormatText("A previous version of %s is installed on your system.\n\nWould you like to "
                   "copy its configuration items to this installation?",
                   migration.programName);
    if (AskYesNo(nullptr, question) == ResultYes) {
        CopyConfiguration(migration, newPath, oldPath);
    }
    OfferUninstall(migration);
}

void ConfigMigrate() {
    ConfigMigrate(LastVersion);
}

} // namespace tonewright
