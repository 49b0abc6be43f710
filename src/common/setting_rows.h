// The table of the settings: what the files of settings, the controls of a page and the command
// line walk.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <variant>

class QWidget;

namespace tonewright {

constexpr std::uint32_t SettingBool = 0x1;         // 0 or 1; a check box
constexpr std::uint32_t SettingText = 0x2;         // at most SettingTextLimit bytes
constexpr std::uint32_t SettingInteger = 0x4;      // written unsigned
constexpr std::uint32_t SettingColour = 0x8;       // a swatch
constexpr std::uint32_t SettingDropDown = 0x10;    // a drop-down list, the value its index
constexpr std::uint32_t SettingSpin = 0x40;        // a spin control whose range text is at +10000
constexpr std::uint32_t SettingWriteOnly = 0x100;  // written to the file, never read back
constexpr std::uint32_t SettingBrowse = 0x200;     // a browse button at +15000
constexpr std::uint32_t SettingByValue = 0x800;    // of a drop-down list: the chosen row's value
constexpr std::uint32_t SettingRestart = 0x8000;   // takes effect at the next start
constexpr std::uint32_t SettingFontList = 0x10000; // of a drop-down list: the system's fonts

// One row of a list control's choices; the last row has a null text.
struct SettingChoice {
    const char *text;
    std::uint32_t value;
};

// Asks for a file or folder, beginning in `folder`. Nothing when the user cancels.
using SettingBrowseFunction = std::optional<std::string> (*)(QWidget *owner,
                                                             const std::string &folder);

// The choices of a list, or what the browse button does; null for neither, as with a list whose
// page fills it.
using SettingItems = std::variant<const SettingChoice *, SettingBrowseFunction>;

using SettingVariable = std::variant<std::uint32_t *, std::string *>;

struct ConfigKey {
    const char *name; // as it stands in the file
    SettingVariable value;
    std::uint32_t flags;
    std::uint32_t control; // of the pages of the sheet; 0 for none
    SettingItems items = {};
    std::variant<std::uint32_t, const char *> preset = {}; // the default, of the kind of `value`
};

// What a row may hold beside its kind and its default.
struct SettingParts {
    std::uint32_t flags = 0;
    std::uint32_t control = 0;
    SettingItems items = {};
};

// A row; `kind` is SettingBool, SettingInteger or SettingText.
constexpr ConfigKey SettingRow(const char *name, std::uint32_t *value, std::uint32_t preset,
                               std::uint32_t kind, const SettingParts &parts) {
    return {name, value, kind | parts.flags, parts.control, parts.items, preset};
}
constexpr ConfigKey SettingRow(const char *name, std::string *value, const char *preset,
                               std::uint32_t kind, const SettingParts &parts) {
    return {name, value, kind | parts.flags, parts.control, parts.items, preset};
}

// When the file of a list is written.
enum class SettingsWritten {
    // With every other one, when the program ends: all rows.
    AtEnd,
    // When the user chooses a value: the rows that the user has chosen, so that a program that is
    // left alone adds no file. The others follow the files of the system (SystemFiles), one for all
    // users of the machine, which count where the user has no value. These are written by hand: a
    // line counts by its row's whole name alone.
    WhenChosen,
};

// A list of settings and the file that keeps it.
struct SettingsList {
    const char *(*folder)(const char *name); // UserFile or ProductUserFile
    const char *file;                        // its name there
    const char *section;
    const char *prefix; // of its names on the command line
    SettingsWritten written;
    std::span<const ConfigKey> rows; // in the order of the file
};

// Each list by its name: ProgramSettings, ExtrasSettings.
#define SETTINGS_LIST(list, ...) extern const SettingsList list;
#include "common/settings_lists.inc"

// All lists.
extern const std::span<const SettingsList *const> SettingsLists;

// Puts the settings of one list back to their defaults.
void ResetSettings(const SettingsList &list);

} // namespace tonewright
