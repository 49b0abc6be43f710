// The Settings command: what follows when the sheet of settings has been closed.
#pragma once

namespace tonewright {

// Some setting that was changed asks for a new start of the program. Nothing sets it at present:
// the settings marked with an asterisk wait for the next start.
extern bool RestartNeeded;

// Shows the settings, then brings background, title, window and tool bar up to date; ends the
// program, with message 142, when RestartNeeded. 1.
int RunSettings();

} // namespace tonewright
