// Where theme libraries stand and what they are called. A theme has one name in the settings,
// "THEME_Slate Medium.dll" on every platform, and one on the disk, "THEME_Slate Medium_x64.so" or
// with whatever extension libraries have there.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

constexpr const char *ThemeMedium = "THEME_Slate Medium.dll";
constexpr const char *ThemeCompact = "THEME_Slate Compact.dll";

// The name on the disk of a theme of the settings: "_x64" in front of the extension, unless it
// stands there already, and the platform's extension in place of "dll".
std::string ThemeDiskName(std::string_view settingName);
// The way back.
std::string ThemeSettingName(std::string_view diskName);

// What the user reads: "Slate Medium" for either name.
std::string ThemeDisplayName(std::string_view name);

// The path of a theme of the settings in the folder "theme" below `programFolder`, which ends in a
// separator. Empty where there is no such folder or no file can have that name there: it is empty,
// holds a separator, a colon or a control character, the path has more than 1,024 bytes before its
// name is made that on the disk, or more than 260 afterwards.
std::string ThemeFilePath(std::string_view programFolder, std::string_view settingName);

// True when a file, and no folder, stands at a path.
bool ThemeFileExists(const std::string &path);

// Where a theme of the settings stands, first below ApplicationPath, then below
// MakerProgramFolder(); empty when it stands at neither place.
std::string FindThemeFile(std::string_view settingName);

// The full paths of the themes in the folders "theme" below ApplicationPath and below
// MakerProgramFolder(), each folder in the order of the names. Not those whose names begin with a
// dot, lack "_x64" or would not be found again by their name of the settings, nor folders.
std::vector<std::string> ThemeFiles();

// Where ThemeCurrent is empty, chooses a theme for a screen of so many pixels across: the medium
// one from 1024 on, the compact one below. True when it has chosen.
bool ThemeChooseDefault(int screenWidth);

} // namespace tonewright
