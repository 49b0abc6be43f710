// Reads the settings as the start of the window program does.
#include "cli/user_settings.h"

#include "cli/text_output.h"
#include "common/platform.h"
#include "common/setting_rows.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/settings_file.h"
#include "shell/start_up.h"
#include "shell/view/platform_folders.h"

#include <algorithm>
#include <string_view>
#include <variant>

namespace tonewright {
namespace {

bool IsForInstruments(const ConfigKey &row) {
    static const decltype(ConfigKey::value) Values[] = {
        &AuditionCurrentVelocity,
        &CurrentMidiChannel,
        &SelectKeyboardAutodetect,
        &SelectKeyboardMidiIn,
        &SelectKeyboardMidiOut,
        &SelectKeyboardName,
        &SysexWait,
    };
    return std::ranges::find(Values, row.value) != std::end(Values);
}

bool IsForDatabases(const ConfigKey &row) {
    return row.value == decltype(row.value)(&SelectKeyboardName) ||
           std::string_view(row.name).starts_with("Database");
}

bool IsForAdding(const ConfigKey &row) {
    return row.value == decltype(row.value)(&CreateBackups) || IsForDatabases(row);
}

bool IsForThemes(const ConfigKey &row) {
    return row.value == decltype(row.value)(&ThemeCurrent);
}

void ReadSomeSettings(bool (*takes)(const ConfigKey &row)) {
    PrepareSettings();
    ReadSettingsFile(ProgramSettings, SettingsFilePath(ProgramSettings).c_str(), takes);
}

// The options that go before what the files say of a setting.
struct ExtraOptions {
    BoolSettingValue *setting;
    CliOption on, off;
};
constexpr ExtraOptions OptionsOfExtras[] = {
    {&CarefulMode, CliOption::Careful, CliOption::NoCareful},
    {&WholeDetune, CliOption::WholeDetune, CliOption::NoWholeDetune},
};

} // namespace

void ReadExtras(const CliCall &call) {
    if (!UsePlatformFolders()) {
        TellError("", NoHomeFolder);
    }
    ConfigRead(SettingsWritten::WhenChosen);
    for (const ExtraOptions &extra : OptionsOfExtras) {
        if (call[extra.on] || call[extra.off]) {
            *extra.setting = call[extra.on] ? 1 : 0;
        }
    }
}

void PrepareSettings() {
    ApplicationPath = FolderOfPath(PlatformExecutablePath());
    FillDefaultFolders();
}

void ReadUserSettings() {
    PrepareSettings();
    ConfigRead(SettingsWritten::AtEnd);
}

void ReadInstrumentSettings() {
    ReadSomeSettings(IsForInstruments);
}

void ReadThemeSettings() {
    ReadSomeSettings(IsForThemes);
}

void ReadDatabaseSettings() {
    ReadSomeSettings(IsForDatabases);
}

void ReadSettingsOfAdding() {
    ReadSomeSettings(IsForAdding);
}

} // namespace tonewright
