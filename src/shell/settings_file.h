// The configuration: the table that ties every setting to its key, and the file that keeps them.
//
//   ;Tonewright configuration file
//   ;Edit this at your own risk
//   ;Tonewright 17.0a revision 1
//   ;Last updated Sun Feb 22 14:05:09 2026
//   ;
//   [Tonewright]
//   ApplicationPath = /usr/bin/
//   AuditionCurrentOctave = 5
//   ... one line for each row of the table, in its order
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <variant>

class QWidget;

namespace tonewright {

constexpr std::uint32_t SettingBool = 0x1;        // 0 or 1; a check box
constexpr std::uint32_t SettingText = 0x2;        // at most 260 bytes
constexpr std::uint32_t SettingInteger = 0x4;     // written unsigned
constexpr std::uint32_t SettingColour = 0x8;      // a swatch
constexpr std::uint32_t SettingDropDown = 0x10;   // a drop-down list, the value its index
constexpr std::uint32_t SettingSpin = 0x40;       // a spin control whose range text is at +10000
constexpr std::uint32_t SettingWriteOnly = 0x100; // written to the file, never read back
constexpr std::uint32_t SettingBrowse = 0x200;    // a browse button at +15000
constexpr std::uint32_t SettingByValue = 0x800;   // with SettingDropDown: the chosen row's value
constexpr std::uint32_t SettingRestart = 0x8000;  // takes effect at the next start
constexpr std::uint32_t SettingFontList =
    0x10000; // with SettingDropDown: the system's font families

// One row of a list control's choices; the last row has a null text.
struct SettingChoice {
    const char *text;
    std::uint32_t value;
};

// Asks for a file or folder, beginning in `folder`. Nothing when the user cancels.
using SettingBrowseFunction = std::optional<std::string> (*)(QWidget *owner,
                                                             const std::string &folder);

struct ConfigKey {
    const char *name; // as it stands in the file
    std::variant<std::uint32_t *, std::string *> value;
    std::uint32_t flags;
    std::uint32_t control; // of the Setup pages; 0 for none
    // The choices of a list, or what the browse button does; null for neither, as with a list whose
    // page fills it.
    std::variant<const SettingChoice *, SettingBrowseFunction> items = {};
};

// All settings, in the order of the written file.
extern const std::span<const ConfigKey> SettingRows;

// "Tonewright 17.ini" in the maker's application-data folder; empty when there is no such folder.
std::string SettingsFilePath();

// Fills the settings from the file. A file that cannot be opened leaves every setting as it is.
void ConfigRead();
// The same from any regular file; 0 when it cannot be opened, else 1.
//
// A line is a key, a run of blanks and equal signs, and a value that ends at the first control
// character. A key may be shortened: the first row that begins with it is meant, so that an empty
// line (an empty key) sets AuditionCurrentOctave to 0. A line of more than 259 bytes goes on as
// the next line. Integers are taken modulo 2^32, without a range.
int ReadSettingsFile(const char *path);

// Writes the file, keeping the two versions before it as "Backup of ..." and
// "Backup of Backup of ...". A failure is not reported.
void ConfigWrite();

// Single keys, found by their whole name in a named section, without regard to case. The short
// forms speak of SettingsFilePath().
std::string ReadSingleText(const char *path, const char *section, const char *key,
                           const std::string &fallback);
std::string ReadSingleText(const char *section, const char *key, const std::string &fallback);
std::uint32_t ReadSingleInteger(const char *path, const char *section, const char *key,
                                std::uint32_t fallback);
std::uint32_t ReadSingleInteger(const char *section, const char *key, std::uint32_t fallback);
// Replaces the line of the key, or adds one at the end of the section, or the section at the end of
// the file, or makes the file. Every other line stays as it is, byte for byte. `value` ends at its
// first control character. False when the file could not be written.
bool WriteSingleText(const char *path, const char *section, const char *key,
                     const std::string &value);
bool WriteSingleText(const char *section, const char *key, const std::string &value);

// What the take-over of an earlier version's configuration needs to know. File and folder names
// are names in the maker's application-data folder.
struct Migration {
    const char *programName;
    const char *newFile;
    const char *section;
    const char *oldFile;
    const char *newFolder;
    const char *oldFolder;
    const char *patterns; // "*.txt;*.dat": files copied from folder to folder
    const char *uninstallShortcut;
};

// How an earlier version is found and removed. Empty members: there is none.
struct PreviousInstallation {
    std::function<bool(const std::string &shortcut)> Exists;
    // Runs the shortcut's command and waits for its end. False when it cannot be started.
    std::function<bool(const std::string &shortcut)> Uninstall;
};
extern PreviousInstallation ThePreviousInstallation;

// At the very start: offers to copy the earlier version's configuration and files, nothing of this
// version being overwritten, and then to remove that version. Does nothing once this version has a
// configuration file, or when the earlier one has none. The folders must have been made.
void ConfigMigrate(const Migration &migration);
// The same for the version before this one.
void ConfigMigrate();

} // namespace tonewright
