// Reads the settings as the start of the window program does.
#include "cli/user_settings.h"

#include "common/platform.h"
#include "common/setting_rows.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/settings_file.h"
#include "shell/start_up.h"
#include "shell/view/platform_folders.h"

#include <algorithm>
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

} // namespace

void ReadExtras() {
    UsePlatformFolders();
    ConfigRead(SettingsWritten::WhenChosen);
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
    PrepareSettings();
    ReadSettingsFile(ProgramSettings, SettingsFilePath(ProgramSettings).c_str(), IsForInstruments);
}

} // namespace tonewright
