// Puts the program back to where it is at start, so that the tests of a program can share a
// process.
//
// Every variable that lives as long as the program, who writes it beside the file that has it, and
// what it holds at start. Those in parentheses have no name outside their file. Tests may write all
// of them. Whoever adds a variable adds it here and to ResetProgram().
//
// clang-format off
//   variable                       declared in               written by                  at start
//   -----------------------------  ------------------------  --------------------------  --------------
//   the settings                   common/settings.h         their file, the boxes,      their defaults
//                                                            who keeps a last choice
//   PlatformFolders                common/folders.h          both main()s                empty
//   TheDesktop                     common/desktop.h          both main()s                empty
//   TheSoundDevice                 common/sound.h            nobody                      the machine's
//   (the thread that plays)        common/sound.h            PlaySoundFile, StopSounds   none
//   TheAudioOutput                 common/audio_output.h     nobody                      the machine's
//   (the thread of the card)       midi/instrument_sound.h   outputs of the built-in     none
//                                                            instruments
//   (the theme that draws)         common/view/theme.h       ThemeLoad, ThemeUnload      the linked one
//   CurrentDriverId, MidiInPort,   core/current.h            search and choice of an     none
//     MidiOutPort, SynthFirmware                             instrument
//   CurrentDocumentPath            core/current.h            shell/documents             Untitled.Twl
//   CurrentDocumentTime            core/current.h            whoever opens a document    0
//   DatabasePathOfThisRun          database/database_file.h  the command line             empty
//   MainList, MainItemFonts        core/current.h            commands, the list's view   empty
//   (name of the last good voice)  core/dispatch.h           VoiceObjectName             none
//   TheMidi                        midi/midi_api.h           midi/midi_start             no devices
//   (PortMidi and its streams)     midi/portmidi_api.h       the calls of its table      not begun
//   (the built-in instruments)     midi/instruments/         what is sent to them        the factory's
//   (outcomes of rules)            shell/command_state.h     undo, clipboard, Refresh... see there
//   MainListState                  shell/list_state.h        commands, gestures          clean
//   MainListOrigin,                shell/list_origin.h       commands that fill the      0, no download,
//     OriginOfDownload,                                      list, open, save, undo,     no file
//     TheDocumentFile                                        download
//   PendingOpenPath                shell/documents.h         whoever posts an Open       empty
//   (posted commands)              shell/command_queue.h     Post and its like           none
//   (levels of undo)               shell/undo.h              its calls                   no store
//   (levels of undo of records)    database/database_undo.h  its calls                   no store
//   TheDatabaseViews               database/database_window.h the main window            empty
//   (history)                      shell/history.h           its calls                   no entries
//   HistoryMenuChanged             shell/history.h           the main window             empty
//   RestartNeeded                  shell/settings_flow.h     nobody                      false
//   TheShellWindow                 shell/shell_window.h      the main window             empty
//   ThePreviousInstallation        shell/settings_migration.h nobody                      empty
//   (busy boxes, status bar)       common/view/              their calls; they go with   none
//                                                            their windows
//   (the font of tool tips)        common/view/tool_tip.h    the application             none
//   (looks of history entries)     shell/view/history_menu.h each rebuild of the menu    without picture
//   StandardOutput, StandardError  cli/text_output.h         tonewright-cli              open
//   (where answers come from, the  cli/terminal_desktop.h    UseTerminalDesktop and      no, none
//     first no, the status line)                             its table
//   (how ports are chosen)         cli/midi_session.h        ReadMidiSettings            by no name
//   (a request to end)             cli/interruption.h        the system's signals        none
// clang-format on
//
// PortMidi stays begun, and tests of its beginning are processes of their own. The variables of
// cli/ are not put back: no test program is linked with them, each test runs the program itself.
// Beside these there are buffers of text that a function returns and overwrites with its next call,
// tables that are constant once they are made, the last number given to a list, and sizes of fonts and pictures of algorithms, which
// are kept once they are known.
#pragma once

namespace tonewright {

// Also drops what Qt keeps between tests: windows that wait to be deleted, the clipboard.
void ResetProgram();

// Defined once in every test program: puts the driver table back where a test may change its rows.
void RestoreDriverRows();

} // namespace tonewright
