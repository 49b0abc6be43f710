// Runs the sheet of settings and brings the window up to date behind it; toggles settings.
#include "shell/settings_flow.h"

#include "common/desktop.h"
#include "common/setting_rows.h"
#include "common/strings.h"
#include "common/text.h"
#include "shell/command_queue.h"
#include "shell/documents.h"
#include "shell/settings_file.h"
#include "shell/shell_window.h"

#include <cerrno>
#include <cstring>

namespace tonewright {
namespace {

void CallIfThere(const std::function<void()> &member) {
    if (member) {
        member();
    }
}

// Keeps the value that the user has just given to a row, for the coming starts. False when that
// failed, which a message has said.
bool KeepRow(const SettingsList &list, const ConfigKey &row) {
    const SettingsWrite outcome = WriteChosenSetting(list, row);
    const int reason = errno;
    if (outcome != SettingsWrite::Done) {
        const char *what = outcome == SettingsWrite::Failed
                               ? "This choice counts until Tonewright ends. It could not be kept "
                                 "for the next start:"
                               : "This choice is kept. The version of its file before it could not "
                                 "be kept as a backup:";
        ShowMessage(TheShellWindow.window,
                    FormatText("%s\n\n%s: %s", what, SettingsFilePath(list).c_str(),
                               std::strerror(reason)));
    }
    return outcome != SettingsWrite::Failed;
}

} // namespace

bool RestartNeeded = false;

int RunSettings() {
    CallIfThere(TheShellWindow.ShowSettings);
    CallIfThere(TheShellWindow.DropBackground);
    RefreshTitle();
    CallIfThere(TheShellWindow.RepaintWindow);
    CallIfThere(TheShellWindow.RepaintTools);
    if (RestartNeeded) {
        ShowMessage(TheShellWindow.window, LoadProgramString(142));
        Post([] { RunExit(); });
    }
    return 1;
}

int ToggleSetting(BoolSettingValue &setting) {
    setting = setting == 0 ? 1 : 0;
    CallIfThere(TheShellWindow.CommandStatesChanged);
    KeepChosen(&setting);
    return 1;
}

bool KeepChosen(SettingVariable setting) {
    for (const SettingsList *list : SettingsLists) {
        for (const ConfigKey &row : list->rows) {
            if (row.value == setting) {
                return KeepRow(*list, row);
            }
        }
    }
    return true;
}

} // namespace tonewright
