// The numbers of the main window's commands, and the rules by which they are enabled, as what they
// said when they were last applied. The commands themselves are the rows of shell/command_table.h.
#pragma once

namespace tonewright {

enum CommandId : int {
    CommandNothing = 10, // a click on the selected voice; only refreshes
    CommandOpen = 50,
    CommandSave = 51,
    CommandManual = 54,
    CommandSettings = 55,
    CommandExit = 56,
    CommandPrint = 57,
    CommandDownload = 58,
    CommandUpload = 59,
    CommandUndo = 60,
    CommandNew = 101,
    CommandSaveAs = 104,
    CommandClear = 105,
    CommandTip = 131,
    CommandCloseAtOnce = 132,
    CommandCut = 202,
    CommandCopy = 203,
    CommandPaste = 204,
    CommandFind = 205,
    CommandEdit = 208,
    CommandConfigure = 209,
    CommandMidiDevices = 210,
    CommandUploadVoice = 211,
    CommandMoveUp = 212,
    CommandMoveDown = 213,
    CommandExport = 214,
    CommandImport = 215,
    CommandSelectSynth = 216,
    CommandAudition = 217,
    CommandAddToDatabase = 218,
    CommandInsertFromDatabase = 219,
    CommandSystemInformation = 997,
    CommandHelp = 998,
    CommandAbout = 999,
    CommandWizard = 2907,
    // What goes beyond the program's plain ways has numbers of its own.
    CommandCarefulMode = 40101,
    CommandWholeDetune = 40102,
    CommandAuditionKeepsVoice = 40103,
    CommandSpaceAuditions = 40104,
    CommandInstruments = 40105,
    CommandRefaceZero64 = 40106,
    CommandOpenAnyDump = 40107,
    CommandArchive = 40108,
};

// When a command is enabled. Always and Never stand; the others are applied from time to time, and
// what they said holds until the next time.
enum class CommandRule {
    Always,
    Never,
    // By RefreshCommands.
    ListHasRows,
    DriverDownloads,
    DriverUploads, // and the list has rows
    DriverConfigures,
    DriverFinds,
    // By RefreshCopy.
    RowSelected,
    // By the store of undo, as it changes.
    UndoLevelThere,
    // By shell/clipboard, as the clipboard changes.
    VoiceOnClipboard,
};

// What the rule said when it was last applied; at start there is nothing to undo, and all the
// others allow.
bool RuleAllows(CommandRule rule);
// Keeps the outcome of a rule other than Always and Never, and tells the window when it differs
// from the last one.
void SetRule(CommandRule rule, bool allows);

void RefreshCommands();
void RefreshCopy();

// Back to what holds at start; the window is not told.
void ResetCommandState();

} // namespace tonewright
