// Names and paths of theme libraries.
#include "common/theme_files.h"

#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/text.h"
#include "common/utf8_path.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace tonewright {
namespace {

constexpr std::string_view Prefix = "THEME_";
constexpr std::string_view DiskMark = "_x64"; // in front of the extension
constexpr std::string_view SettingExtension = "dll";
constexpr const char *FolderName = "theme";
constexpr std::size_t SettingPathLimit = 1024; // bytes, before the name is that on the disk
constexpr int LeastMediumWidth = 1024;         // pixels

// A name in its two parts; the extension is without its dot, and without one it has no dot.
struct NameParts {
    std::string_view stem, extension;
    bool hasDot = false;
};

NameParts PartsOf(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == name.npos) {
        return {.stem = name, .extension = {}};
    }
    return {.stem = name.substr(0, dot), .extension = name.substr(dot + 1), .hasDot = true};
}

std::string Joined(const NameParts &parts, std::string_view mark) {
    std::string name(parts.stem);
    name += mark;
    if (parts.hasDot) {
        name += '.';
        name += parts.extension;
    }
    return name;
}

// No path, no stream of a file, nothing that is cut or shown as another name.
bool IsPossibleName(std::string_view name) {
    return !name.empty() && std::none_of(name.begin(), name.end(), [](unsigned char character) {
        return character < 0x20 || character == 0x7F || character == '/' || character == '\\' ||
               character == ':';
    });
}

std::string ThemeFolder(std::string_view programFolder) {
    return std::string(programFolder) + FolderName + PathSeparator;
}

// Below both, the one that counts most first.
std::vector<std::string> ProgramFolders() {
    std::vector<std::string> folders;
    for (const std::string &folder : {ApplicationPath, std::string(MakerProgramFolder())}) {
        if (!folder.empty()) {
            folders.push_back(folder);
        }
    }
    return folders;
}

bool IsThemeName(std::string_view name) {
    return name.size() > Prefix.size() && EqualNoCase(name.substr(0, Prefix.size()), Prefix) &&
           name.find(DiskMark) != name.npos &&
           EqualNoCase(PartsOf(name).extension, PlatformLibraryExtension);
}

bool IsSameFile(const std::string &first, const std::string &second) {
    std::error_code error;
    return std::filesystem::equivalent(PathOfUtf8(first), PathOfUtf8(second), error);
}

} // namespace

std::string ThemeDiskName(std::string_view settingName) {
    NameParts parts = PartsOf(settingName);
    if (EqualNoCase(parts.extension, SettingExtension)) {
        parts.extension = PlatformLibraryExtension;
    }
    return Joined(parts, parts.stem.ends_with(DiskMark) ? "" : DiskMark);
}

std::string ThemeSettingName(std::string_view diskName) {
    NameParts parts = PartsOf(diskName);
    if (parts.stem.ends_with(DiskMark)) {
        parts.stem.remove_suffix(DiskMark.size());
    }
    if (EqualNoCase(parts.extension, PlatformLibraryExtension)) {
        parts.extension = SettingExtension;
    }
    return Joined(parts, "");
}

std::string ThemeDisplayName(std::string_view name) {
    const std::size_t underscore = name.find('_');
    if (underscore != name.npos) {
        name.remove_prefix(std::min(name.find_first_not_of('_', underscore), name.size()));
    }
    std::string shown(name.substr(0, name.find('.')));
    const std::size_t mark = shown.find(DiskMark);
    if (mark != shown.npos) {
        shown.erase(mark, DiskMark.size());
    }
    return shown;
}

std::string ThemeFilePath(std::string_view programFolder, std::string_view settingName) {
    const std::string folder = ThemeFolder(programFolder);
    if (programFolder.empty() || !IsPossibleName(settingName) ||
        folder.size() + settingName.size() > SettingPathLimit) {
        return {};
    }
    std::string path = folder + ThemeDiskName(settingName);
    return IsPath(path) ? path : std::string();
}

bool ThemeFileExists(const std::string &path) {
    std::error_code error;
    return std::filesystem::is_regular_file(PathOfUtf8(path), error);
}

std::string FindThemeFile(std::string_view settingName) {
    for (const std::string &folder : ProgramFolders()) {
        std::string path = ThemeFilePath(folder, settingName);
        if (ThemeFileExists(path)) {
            return path;
        }
    }
    return {};
}

std::vector<std::string> ThemeFiles() {
    std::vector<std::string> files;
    for (const std::string &programFolder : ProgramFolders()) {
        const std::string folder = ThemeFolder(programFolder);
        std::vector<std::string> found;
        std::error_code error;
        std::filesystem::directory_iterator entries(PathOfUtf8(folder), error), end;
        for (; !error && entries != end; entries.increment(error)) {
            const std::string name = Utf8OfPath(entries->path().filename());
            std::string path = folder + name;
            if (IsThemeName(name) && IsPath(path) && ThemeFileExists(path) &&
                IsSameFile(ThemeFilePath(programFolder, ThemeSettingName(name)), path)) {
                found.push_back(std::move(path));
            }
        }
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}

bool ThemeChooseDefault(int screenWidth) {
    if (!ThemeCurrent.empty()) {
        return false;
    }
    ThemeCurrent = screenWidth >= LeastMediumWidth ? ThemeMedium : ThemeCompact;
    return true;
}

} // namespace tonewright
