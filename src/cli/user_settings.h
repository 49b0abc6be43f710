// The settings of the user who calls the command-line program.
#pragma once

#include "cli/command_line.h"

namespace tonewright {

// Finds the folders of the platform and reads the settings of the extras, which every command goes
// by as the window does, but for those that an option of the call turns on or off. First of all.
void ReadExtras(const CliCall &call);

// Fills in what the program's start has filled in by the time it reads the file of settings.
void PrepareSettings();

// The same, and reads the user's file, if there is one.
void ReadUserSettings();
// Of the user's file only what the commands for instruments go by: ports, channel, waiting and
// velocity. In all else they do as the other commands, whatever the user's window program does.
void ReadInstrumentSettings();
// The same for the commands that paint windows: the look of these.
void ReadThemeSettings();
// The same for the commands of catalogues: those of catalogues, and the instrument.
void ReadDatabaseSettings();
// The same for the one that adds to them: also whether a backup is made.
void ReadSettingsOfAdding();

} // namespace tonewright
