// The commands of the main window as one table, each a row, and the menu bar, the context menu, the
// keys and the tool bar made of it. What a command does is told where its flow is:
// shell/documents.h, shell/voice_commands.h, shell/clipboard.h, shell/settings_flow.h,
// shell/show_document.h.
#pragma once

#include "common/reference_topic.h"
#include "common/settings.h"
#include "shell/command_state.h"

#include <span>
#include <string>
#include <vector>

namespace tonewright {

enum class Menu { None, File, Edit, Extras, Help };

// The order of the rows is the order of the entries in each menu.
struct CommandRow {
    int id = 0;
    // Menu bar.
    Menu menu = Menu::None;
    const char *label = nullptr;    // with its "&"
    bool menuGap = false;           // a separator stands above it
    const char *key = nullptr;      // "Ctrl+S"
    const char *shownKey = nullptr; // what the menu shows when that is not the key
    const char *hint = nullptr;     // in the status bar while the entry is highlighted
    ReferenceTopic topic = {};      // of the reference page: F1 on the highlighted entry opens it
    // The entry has a check mark, which is there while the setting is not 0.
    BoolSettingValue *toggles = nullptr;
    // Context menu; null: not there.
    const char *contextLabel = nullptr;
    const char *contextNamedLabel = nullptr; // with "%s" for the voice's name
    bool contextGap = false;                 // a separator stands above it
    // What it does.
    CommandRule allowed = CommandRule::Always;
    int (*run)() = nullptr; // null: the command toggles its setting, or only refreshes
    bool refreshes = true;  // RefreshCommands follows
};

std::span<const CommandRow> Commands();
const CommandRow *CommandOf(int id); // null for a number that is none

// The text in the menu bar: label and key, "&Save\tCtrl+S".
std::string MenuText(const CommandRow &row);
// The command's name, "Save as": its label without the marks of a menu.
std::string CommandName(const CommandRow &row);

// The menu bar: pop-ups of command numbers, 0 for a separator.
struct MenuRow {
    const char *label;
    bool atTheRight;
    std::vector<int> items;
};
std::vector<MenuRow> MenuBar();

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

// What the enabling rule of a command says.
bool CommandAllowed(int id);

// Runs a command and refreshes, if its row says so. Returns what the command returns, 0 without
// one.
int RunCommand(int id);
// The same from a menu or a key, where a disabled command does nothing, nor does any while
// something runs.
int RunUserCommand(int id);
// Runs it when its turn comes in the queue of posted work.
void PostCommand(int id);

} // namespace tonewright
