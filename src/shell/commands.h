// The commands of the main window as one table, the menus, the tool bar and the context menu made
// of it, and the rules that enable them. What a command does is told in shell/voice_commands.h,
// shell/documents.h and here.
#pragma once

#include <span>
#include <string>
#include <vector>

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
};

struct CommandRow {
    int id;
    const char *menuLabel;         // with "&" and "\tCtrl+..."; null: not in the menu bar
    const char *contextLabel;      // plain form; null: not in the context menu
    const char *contextNamedLabel; // with "%s" for the voice's name
    const char *key;               // "Ctrl+O"; null: none
    bool built;                    // false: grey and without effect until its feature stands
    int (*run)();                  // null: the command only refreshes
    bool refreshes = true;         // RefreshCommands follows
};

// Every command, by ascending number.
std::span<const CommandRow> Commands();
const CommandRow *CommandOf(int id);

// The menu bar: pop-ups of command numbers, 0 for a separator.
struct MenuRow {
    const char *label;
    std::span<const int> items;
    bool atTheRight;
};
std::span<const MenuRow> MenuBar();

// The tool bar's buttons, one byte each: the command's number, with the top bit asking for a gap
// behind the button. A zero, or a number outside 50 to 60, ends the list.
extern const unsigned char ToolBarList[];
constexpr unsigned char ToolBarGap = 0x80;
struct ToolRow {
    int id;
    bool gapBehind;
    std::string tip;
};
std::vector<ToolRow> ReadToolBar(const unsigned char *list);

// An entry of the context menu; id 0 is a separator.
struct ContextEntry {
    int id = 0;
    std::string text;
    bool enabled = false;
};
// The context menu for a row (NoRow: beside the rows), in order. A chosen entry goes to RunCommand:
// the menu bar's state of a command does not count here.
std::vector<ContextEntry> BuildContextMenu(int row);

// State of the window's commands and of the voice that they act on.
struct ListState {
    int clickedIndex = -1; // row under the last right or middle click
    bool dirty = false;    // the document differs from its file
};
extern ListState MainListState;

// What the enabling rule of a command says, whether it is built or not.
bool CommandAllowed(int id);
// True when the enabling rule and the "built" column both say so.
bool CommandEnabled(int id);
// The outcome of an enabling rule.
void SetCommandEnabled(int id, bool enabled);

// The enabling rules, applied to every command that has one.
void RefreshCommands();
// Copy is set apart from those rules: enabled while a row is selected.
void RefreshCopy();
// Title of the current instrument into the status bar.
void RefreshStatus();
// "Tonewright [ file ]" into the title bar.
void RefreshTitle();
void RepaintList();

// The row that a command acts on: clickedIndex, which is set back to -1, or else the selection.
// -1: none.
int ListIndexForCommand();

// Runs a command and refreshes, if its row says so. A command that is not built does nothing.
// Returns what the command returns, 0 without one.
int RunCommand(int id);
// The same from a menu or a key, where a disabled command does nothing, nor does any while
// something runs.
int RunUserCommand(int id);

// The window's message after a change by a gesture (0: dirty, refresh) and at start (1: make the
// driver named by SelectKeyboardName current, show it).
void MainListChanged(int value);

// If the document is dirty, asks whether to save it; "yes" saves and goes on whether or not that
// worked. False: the user wants to stay.
bool AskToSave();

} // namespace tonewright
