// The command table and the menus made of it.
#include "shell/command_table.h"

#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/archive_flow.h"
#include "shell/clipboard.h"
#include "shell/command_queue.h"
#include "shell/documents.h"
#include "shell/dump_flow.h"
#include "shell/history.h"
#include "shell/instruments_flow.h"
#include "shell/list_source.h"
#include "shell/settings_flow.h"
#include "shell/shell_window.h"
#include "shell/show_document.h"
#include "shell/tips.h"
#include "shell/voice_commands.h"
#include "shell/wizard.h"

#include <algorithm>
#include <iterator>

namespace tonewright {
namespace {

constexpr CommandRow CommandTable[] = {
    // Without a menu.
    {.id = CommandNothing},
    {.id = CommandClear, .run = RunClear},
    {.id = CommandCloseAtOnce, .run = RunCloseAtOnce},

    // File.
    {.id = CommandNew,
     .menu = Menu::File,
     .label = "&New",
     .key = "Ctrl+N",
     .allowed = CommandRule::Never},
    {.id = CommandOpen,
     .menu = Menu::File,
     .label = "&Open",
     .key = "Ctrl+O",
     .shownKey = "Ctrl+0", // with the digit
     .run = RunOpen},
    {.id = CommandSave,
     .menu = Menu::File,
     .label = "&Save",
     .key = "Ctrl+S",
     .allowed = CommandRule::ListHasRows,
     .run = RunSave},
    {.id = CommandSaveAs,
     .menu = Menu::File,
     .label = "Save &as...",
     .allowed = CommandRule::ListHasRows,
     .run = RunSaveAs},
    {.id = CommandPrint,
     .menu = Menu::File,
     .label = "&Print",
     .allowed = CommandRule::ListHasRows,
     .run = RunPrint},
    {.id = CommandSettings,
     .menu = Menu::File,
     .label = "Set&tings",
     .menuGap = true,
     .run = RunSettings},
    {.id = CommandExit, .menu = Menu::File, .label = "E&xit", .run = RunExit},

    // Edit, and the context menu of a voice.
    {.id = CommandUndo,
     .menu = Menu::Edit,
     .label = "&Undo",
     .key = "Ctrl+Z",
     .allowed = CommandRule::UndoLevelThere,
     .run = RunUndo},
    {.id = CommandEdit, .contextLabel = "Edit", .contextNamedLabel = "Edit %s", .run = RunEdit},
    {.id = CommandUploadVoice,
     .contextLabel = "Upload to synthesizer",
     .contextNamedLabel = "Upload %s to synthesizer",
     .run = RunUploadVoice},
    {.id = CommandAudition,
     .contextLabel = "Audition",
     .contextNamedLabel = "Audition %s on synthesizer",
     .run = RunAudition},
    {.id = CommandCut,
     .menu = Menu::Edit,
     .label = "Cu&t",
     .menuGap = true,
     .key = "Ctrl+X",
     .contextLabel = "Cut",
     .contextNamedLabel = "Cut %s",
     .contextGap = true,
     .allowed = CommandRule::Never},
    {.id = CommandCopy,
     .menu = Menu::Edit,
     .label = "&Copy",
     .key = "Ctrl+C",
     .contextLabel = "Copy",
     .contextNamedLabel = "Copy %s",
     .allowed = CommandRule::RowSelected,
     .run = RunCopy},
    {.id = CommandAddToDatabase,
     .contextLabel = "Add to current database",
     .contextNamedLabel = "Add %s to current database (Shift for all)",
     .contextGap = true,
     .run = RunAddToDatabase},
    {.id = CommandInsertFromDatabase,
     .contextLabel = "Insert a voice from the current database",
     .contextNamedLabel = "Insert a voice from the current database",
     .run = RunInsertFromDatabase},
    {.id = CommandPaste,
     .menu = Menu::Edit,
     .label = "&Paste",
     .key = "Ctrl+V",
     .contextLabel = "Paste",
     .contextNamedLabel = "Paste %s", // the voice on the clipboard
     .contextGap = true,
     .allowed = CommandRule::VoiceOnClipboard,
     .run = RunPaste},
    {.id = CommandExport,
     .contextLabel = "Export",
     .contextNamedLabel = "Export %s",
     .contextGap = true,
     .run = RunExport},
    {.id = CommandImport,
     .contextLabel = "Import",
     .contextNamedLabel = "Import to replace %s",
     .run = RunImport},
    {.id = CommandMoveUp,
     .contextLabel = "Move up",
     .contextNamedLabel = "Move %s up",
     .contextGap = true,
     .run = RunMoveUp},
    {.id = CommandMoveDown,
     .contextLabel = "Move down",
     .contextNamedLabel = "Move %s down",
     .run = RunMoveDown},
    {.id = CommandFind,
     .menu = Menu::Edit,
     .label = "&Find synthesizer",
     .menuGap = true,
     .allowed = CommandRule::DriverFinds,
     .run = RunFind},
    {.id = CommandConfigure,
     .menu = Menu::Edit,
     .label = "Con&figure &synthesizer",
     .allowed = CommandRule::DriverConfigures,
     .run = RunConfigure,
     .refreshes = false},
    {.id = CommandDownload,
     .menu = Menu::Edit,
     .label = "&Download current voices",
     .allowed = CommandRule::DriverDownloads,
     .run = RunDownload},
    {.id = CommandUpload,
     .menu = Menu::Edit,
     .label = "&Upload current voices",
     .allowed = CommandRule::DriverUploads,
     .run = RunUpload},
    {.id = CommandMidiDevices, .menu = Menu::Edit, .label = "&MIDI devices", .run = RunMidiDevices},
    {.id = CommandSelectSynth,
     .menu = Menu::Edit,
     .label = "Select &synthesizer",
     .menuGap = true,
     .run = RunSelectSynth},

    // Extras: what goes beyond the program's plain ways, each switched on by the user.
    {.id = CommandCarefulMode,
     .menu = Menu::Extras,
     .label = "&Careful mode",
     .hint = "Loses no bank without a question",
     .topic = "EXTRAS_CAREFULMODE",
     .toggles = &CarefulMode},
    {.id = CommandWholeDetune,
     .menu = Menu::Extras,
     .label = "&Keep all detune steps",
     .hint = "Reads all 15 steps of a packed voice's detune",
     .topic = "EXTRAS_WHOLEDETUNE",
     .toggles = &WholeDetune},
    {.id = CommandAuditionKeepsVoice,
     .menu = Menu::Extras,
     .label = "&Audition plays the voice that was sent",
     .hint = "Sends no Program Change with an audition",
     .topic = "EXTRAS_AUDITIONKEEPSVOICE",
     .toggles = &AuditionKeepsVoice},
    {.id = CommandRefaceZero64,
     .menu = Menu::Extras,
     .label = "Count as the &reface DX counts",
     .hint = "Shows transpose and pitch bend of a reface DX about 64",
     .topic = "EXTRAS_REFACEZERO64",
     .toggles = &RefaceZero64},
    {.id = CommandSpaceAuditions,
     .menu = Menu::Extras,
     .label = "&Space bar plays the selected voice",
     .hint = "Plays a row of the list while the space bar is held",
     .topic = "EXTRAS_SPACEAUDITIONS",
     .toggles = &SpaceAuditions},
    {.id = CommandOpenAnyDump,
     .menu = Menu::Extras,
     .label = "&Open any dump...",
     .menuGap = true,
     .hint = "Finds the voices in a file of any kind",
     .topic = "EXTRAS_OPENANYDUMP",
     .run = RunOpenAnyDump},
    {.id = CommandArchive,
     .menu = Menu::Extras,
     .label = "Arc&hive...",
     .hint = "Finds any voice of your files while you type its name",
     .topic = "EXTRAS_ARCHIVE",
     .run = RunArchive},
    {.id = CommandInstruments,
     .menu = Menu::Extras,
     .label = "&Built-in instruments...",
     .menuGap = true,
     .hint = "Instruments that are heard without any hardware",
     .topic = "EXTRAS_BUILTININSTRUMENTS",
     .run = RunInstruments},

    // Help.
    {.id = CommandHelp, .menu = Menu::Help, .label = "&Help", .run = RunHelp},
    {.id = CommandManual, .menu = Menu::Help, .label = "&Manual", .run = RunManual},
    {.id = CommandSystemInformation,
     .menu = Menu::Help,
     .label = "&System information",
     .topic = "SYSTEMINFORMATION",
     .run = RunSystemInformation},
    {.id = CommandTip, .menu = Menu::Help, .label = "&Tip of the day", .run = RunTip},
    {.id = CommandAbout, .menu = Menu::Help, .label = "&About", .menuGap = true, .run = RunAbout},
    {.id = CommandWizard,
     .menu = Menu::Help,
     .label = "Welcome wi&zard",
     .menuGap = true,
     .topic = "WELCOME",
     .run = RunWelcomeWizard},
};

constexpr int FirstTool = CommandOpen;
constexpr int LastTool = CommandUndo;
constexpr unsigned ToolTipBase = 1651; // plus the command's number

constexpr const CommandRow *RowOf(int id) {
    const auto row = std::ranges::find(CommandTable, id, &CommandRow::id);
    return row == std::end(CommandTable) ? nullptr : row;
}

// ---- what must hold of the rows

constexpr bool IsFirstOfItsNumber(const CommandRow &row) {
    return row.id != 0 && RowOf(row.id) == &row;
}
static_assert(std::ranges::all_of(CommandTable, IsFirstOfItsNumber));

constexpr bool EntriesHaveLabels(const CommandRow &row) {
    return (row.menu != Menu::None) == (row.label != nullptr) &&
           (row.contextLabel != nullptr) == (row.contextNamedLabel != nullptr);
}
static_assert(std::ranges::all_of(CommandTable, EntriesHaveLabels));

// A separator needs its entry, a text for the key its key, and what an entry shows the menu that
// shows it. A command that toggles a setting does nothing else.
constexpr bool PartsHaveTheirEntry(const CommandRow &row) {
    return (row.label ||
            (!row.menuGap && !row.key && !row.hint && !row.topic.name && !row.toggles)) &&
           (row.key || !row.shownKey) && (row.contextLabel || !row.contextGap) &&
           (!row.toggles || !row.run);
}
static_assert(std::ranges::all_of(CommandTable, PartsHaveTheirEntry));

} // namespace

constexpr unsigned char ToolBarList[] = {CommandOpen,
                                         CommandSave,
                                         CommandUpload,
                                         CommandDownload,
                                         CommandUndo | ToolBarGap,
                                         CommandManual,
                                         CommandSettings,
                                         CommandExit,
                                         0};

namespace {

constexpr bool EndsListOrHasLabel(unsigned char tool) {
    const int id = tool & ~ToolBarGap;
    const CommandRow *row = RowOf(id);
    return tool == 0 || (id >= FirstTool && id <= LastTool && row && row->label);
}
static_assert(std::ranges::all_of(ToolBarList, EndsListOrHasLabel));

// ---- menus

std::vector<int> ItemsOf(Menu menu) {
    std::vector<int> items;
    for (const CommandRow &row : CommandTable) {
        if (row.menu == menu) {
            if (row.menuGap) {
                items.push_back(0);
            }
            items.push_back(row.id);
        }
    }
    return items;
}

// Moves are offered where there is a row to move to; below the rows there is none to move up.
bool IsOffered(int id, int row) {
    switch (id) {
    case CommandMoveUp:
        return row > 0;
    case CommandMoveDown:
        return row < ListCount(MainList) - 1;
    default:
        return true;
    }
}

// The menu bar's rules do not count here: the clicked row is there to act on.
bool IsEnabledInContext(const CommandRow &row) {
    return row.allowed == CommandRule::VoiceOnClipboard ? ClipboardHoldsVoice()
                                                        : row.allowed != CommandRule::Never;
}

std::string ContextText(const CommandRow &row, const std::string &name) {
    if (name.empty()) {
        return row.contextLabel;
    }
    std::string text = row.contextNamedLabel;
    if (const auto at = text.find("%s"); at != std::string::npos) {
        text.replace(at, 2, name);
    }
    return text;
}

} // namespace

std::span<const CommandRow> Commands() {
    return CommandTable;
}

const CommandRow *CommandOf(int id) {
    return RowOf(id);
}

std::string MenuText(const CommandRow &row) {
    std::string text = row.label;
    if (row.key) {
        text += '\t';
        text += row.shownKey ? row.shownKey : row.key;
    }
    return text;
}

std::string CommandName(const CommandRow &row) {
    std::string name = row.label;
    std::erase(name, '&');
    const std::string_view dots = "...";
    return name.ends_with(dots) ? name.substr(0, name.size() - dots.size()) : name;
}

std::vector<MenuRow> MenuBar() {
    return {{.label = "&File", .atTheRight = false, .items = ItemsOf(Menu::File)},
            {.label = "&Edit", .atTheRight = false, .items = ItemsOf(Menu::Edit)},
            {.label = "E&xtras", .atTheRight = false, .items = ItemsOf(Menu::Extras)},
            {.label = "&Help", .atTheRight = true, .items = ItemsOf(Menu::Help)}};
}

std::vector<ToolRow> ReadToolBar(const unsigned char *list) {
    std::vector<ToolRow> tools;
    for (; *list != 0; ++list) {
        const int id = *list & ~ToolBarGap;
        if (id < FirstTool || id > LastTool) {
            break;
        }
        tools.push_back({.id = id,
                         .gapBehind = (*list & ToolBarGap) != 0,
                         .tip = LoadProgramString(ToolTipBase + static_cast<unsigned>(id))});
    }
    return tools;
}

std::vector<ContextEntry> BuildContextMenu(int row) {
    std::string name, clipboardName;
    if (VerboseRightClickMenu != 0) {
        const VoiceObject *voice = ListVoice(MainList, row);
        name = voice ? Latin1ToUtf8(VoiceObjectName(*voice)) : "";
        clipboardName = ClipboardVoiceName(TheShellWindow.window);
    }
    std::vector<ContextEntry> entries;
    for (const CommandRow &command : CommandTable) {
        if (!command.contextLabel) {
            continue;
        }
        if (command.contextGap) {
            entries.push_back({});
        }
        if (IsOffered(command.id, row)) {
            const std::string &named = command.id == CommandPaste ? clipboardName : name;
            entries.push_back({.id = command.id,
                               .text = ContextText(command, named),
                               .enabled = IsEnabledInContext(command)});
        }
    }
    return entries;
}

bool CommandAllowed(int id) {
    const CommandRow *row = RowOf(id);
    return row && RuleAllows(row->allowed);
}

int RunCommand(int id) {
    const RunningMark running;
    const CommandRow *row = RowOf(id);
    const std::string source = SourceOfList();
    int result = 0;
    if (id >= HistoryFirstItem && id < HistoryFirstItem + static_cast<int>(HistoryLimit)) {
        result = RunHistoryItem(id);
    } else if (row && row->run) {
        result = row->run();
    } else if (row && row->toggles) {
        result = ToggleSetting(*row->toggles);
    }
    if (!row || row->refreshes) {
        RefreshCommands();
    }
    if (!source.empty() || !SourceOfList().empty()) {
        RefreshStatus(); // a transfer has written over it, or the list is another one
    }
    return result;
}

int RunUserCommand(int id) {
    return CommandAllowed(id) && !SomethingIsRunning() ? RunCommand(id) : 0;
}

void PostCommand(int id) {
    Post([id] { RunCommand(id); });
}

} // namespace tonewright
