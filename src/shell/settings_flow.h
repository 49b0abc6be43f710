// The Settings command, what follows when the sheet of settings has been closed, and the settings
// that are entries of a menu.
#pragma once

#include "common/setting_rows.h"
#include "common/settings.h"

namespace tonewright {

// Some setting that was changed asks for a new start of the program. Nothing sets it at present:
// the settings marked with an asterisk wait for the next start.
extern bool RestartNeeded;

// Shows the settings, then brings background, title, window and tool bar up to date; ends the
// program, with message 142, when RestartNeeded. 1.
int RunSettings();

// Writes the value that the user has given to a setting into its file; false when that failed,
// which a message has said.
bool KeepChosen(SettingVariable setting);

// Turns a setting on or off, at once and for the coming starts; a message when the latter failed.
// 1.
int ToggleSetting(BoolSettingValue &setting);

} // namespace tonewright
