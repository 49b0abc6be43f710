// Copying the files of an earlier version, and the questions about it.
#include "shell/settings_migration.h"

#include "common/desktop.h"
#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/setting_rows.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/whole_file.h"
#include "shell/single_setting.h"

#include <filesystem>
#include <string_view>
#include <system_error>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

// The version before this one.
const Migration LastVersion = {
    .programName = "Tonewright",
    .newFile = ProgramSettings.file,
    .section = ProgramSettings.section,
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

enum class Copying { Done, WasThere, Failed };

// Copies a file unless there is one of the new name; behind a link that leads to none, too.
Copying CopyAsNew(const fs::path &from, const fs::path &to) {
    std::error_code ignored;
    if (fs::exists(to, ignored)) {
        return Copying::WasThere;
    }
    const auto target = BehindLinks(to);
    const bool copied =
        target && CopyFileWhole(Utf8OfPath(from).c_str(), Utf8OfPath(*target).c_str());
    return copied ? Copying::Done : Copying::Failed;
}

bool CopyMatchingFiles(const std::string &pattern, const fs::path &from, const fs::path &to) {
    bool copied = true;
    std::error_code error;
    fs::directory_iterator entry(from, error);
    while (!error && entry != fs::directory_iterator()) {
        const std::string name = Utf8OfPath(entry->path().filename());
        std::error_code ignored;
        if (!name.starts_with('.') && MatchesPattern(name, pattern) &&
            entry->is_regular_file(ignored)) {
            const Copying outcome = CopyAsNew(entry->path(), to / entry->path().filename());
            copied = copied && outcome != Copying::Failed;
        }
        entry.increment(error);
    }
    return copied;
}

void CopySettings(const Migration &migration, const std::string &newPath,
                  const std::string &oldPath) {
    const Copying settings = CopyAsNew(PathOfUtf8(oldPath), PathOfUtf8(newPath));
    bool copied = settings != Copying::Failed;
    if (settings == Copying::Done) {
        copied = WriteSingleText(newPath.c_str(), migration.section, "ApplicationPath", "");
    }
    const fs::path from = PathOfUtf8(UserFile(migration.oldFolder));
    const fs::path to = PathOfUtf8(UserFile(migration.newFolder));
    for (const std::string &pattern : SplitList(migration.patterns)) {
        copied = CopyMatchingFiles(pattern, from, to) && copied;
    }
    if (!copied) {
        ShowMessage(nullptr, FormatText("Not all configuration items of the previous version of %s "
                                        "could be copied.",
                                        migration.programName));
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
        CopySettings(migration, newPath, oldPath);
    }
    OfferUninstall(migration);
}

void ConfigMigrate() {
    ConfigMigrate(LastVersion);
}

} // namespace tonewright
