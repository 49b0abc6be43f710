// The command table, the menus made of it and the enabling rules.
#include "shell/commands.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/clipboard.h"
#include "shell/command_queue.h"
#include "shell/documents.h"
#include "shell/history.h"
#include "shell/settings_flow.h"
#include "shell/shell_window.h"
#include "shell/show_document.h"
#include "shell/undo.h"
#include "shell/voice_commands.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <utility>

namespace tonewright {
namespace {

int RunAbout() {
    if (TheShellWindow.ShowAboutBox) {
        TheShellWindow.ShowAboutBox();
    }
    return 1;
}

constexpr bool Built = true;
constexpr bool NotBuilt = false;
constexpr bool NoRefresh = false;

// clang-format off
// The digit in "Ctrl+0" is the label as it stands; the key is the letter O.
constexpr CommandRow CommandTable[] = {
    {CommandNothing, nullptr, nullptr, nullptr, nullptr, Built, nullptr},
    {CommandOpen, "&Open\tCtrl+0", nullptr, nullptr, "Ctrl+O", Built, RunOpen},
    {CommandSave, "&Save\tCtrl+S", nullptr, nullptr, "Ctrl+S", Built, RunSave},
    {CommandManual, "&Manual", nullptr, nullptr, nullptr, Built, RunManual},
    {CommandSettings, "Set&tings", nullptr, nullptr, nullptr, Built, RunSettings},
    {CommandExit, "E&xit", nullptr, nullptr, nullptr, Built, RunExit},
    {CommandPrint, "&Print", nullptr, nullptr, nullptr, NotBuilt, nullptr},
    {CommandDownload, "&Download current voices", nullptr, nullptr, nullptr, Built, RunDownload},
    {CommandUpload, "&Upload current voices", nullptr, nullptr, nullptr, Built, RunUpload},
    {CommandUndo, "&Undo\tCtrl+Z", nullptr, nullptr, "Ctrl+Z", Built, RunUndo},
    {CommandNew, "&New\tCtrl+N", nullptr, nullptr, "Ctrl+N", Built, nullptr},
    {CommandSaveAs, "Save &as...", nullptr, nullptr, nullptr, Built, RunSaveAs},
    {CommandClear, nullptr, nullptr, nullptr, nullptr, Built, RunClear},
    {CommandTip, "&Tip of the day", nullptr, nullptr, nullptr, NotBuilt, nullptr},
    {CommandCloseAtOnce, nullptr, nullptr, nullptr, nullptr, Built, RunCloseAtOnce},
    {CommandCut, "Cu&t\tCtrl+X", "Cut", "Cut %s", "Ctrl+X", Built, nullptr},
    {CommandCopy, "&Copy\tCtrl+C", "Copy", "Copy %s", "Ctrl+C", Built, RunCopy},
    {CommandPaste, "&Paste\tCtrl+V", "Paste", "Paste %s", "Ctrl+V", Built, RunPaste},
    {CommandFind, "&Find synthesizer", nullptr, nullptr, nullptr, Built, RunFind},
    {CommandEdit, nullptr, "Edit", "Edit %s", nullptr, NotBuilt, RunEdit},
    {CommandConfigure, "Con&figure &synthesizer", nullptr, nullptr, nullptr, NotBuilt, RunConfigure, NoRefresh},
    {CommandMidiDevices, "&MIDI devices", nullptr, nullptr, nullptr, Built, RunMidiDevices},
    {CommandUploadVoice, nullptr, "Upload to synthesizer", "Upload %s to synthesizer", nullptr, Built, RunUploadVoice},
    {CommandMoveUp, nullptr, "Move up", "Move %s up", nullptr, Built, RunMoveUp},
    {CommandMoveDown, nullptr, "Move down", "Move %s down", nullptr, Built, RunMoveDown},
    {CommandExport, nullptr, "Export", "Export %s", nullptr, Built, RunExport},
    {CommandImport, nullptr, "Import", "Import to replace %s", nullptr, Built, RunImport},
    {CommandSelectSynth, "Select &synthesizer", nullptr, nullptr, nullptr, Built, RunSelectSynth},
    {CommandAudition, nullptr, "Audition", "Audition %s on synthesizer", nullptr, Built, RunAudition},
    {CommandAddToDatabase, nullptr, "Add to current database", "Add %s to current database (Shift for all)", nullptr, NotBuilt, nullptr},
    {CommandInsertFromDatabase, nullptr, "Insert a voice from the current database", "Insert a voice from the current database", nullptr, NotBuilt, nullptr},
    {CommandSystemInformation, "&System information", nullptr, nullptr, nullptr, NotBuilt, nullptr},
    {CommandHelp, "&Help", nullptr, nullptr, nullptr, Built, RunHelp},
    {CommandAbout, "&About", nullptr, nullptr, nullptr, Built, RunAbout},
    {CommandWizard, "Welcome wi&zard", nullptr, nullptr, nullptr, NotBuilt, nullptr},
};
// clang-format on
static_assert(std::ranges::is_sorted(CommandTable, {}, &CommandRow::id));
constexpr std::size_t CommandCount = std::size(CommandTable);

constexpr int FileMenu[] = {CommandNew,   CommandOpen, CommandSave,     CommandSaveAs,
                            CommandPrint, 0,           CommandSettings, CommandExit};
constexpr int EditMenu[] = {CommandUndo,        0,
                            CommandCut,         CommandCopy,
                            CommandPaste,       0,
                            CommandFind,        CommandConfigure,
                            CommandDownload,    CommandUpload,
                            CommandMidiDevices, 0,
                            CommandSelectSynth};
constexpr int HelpMenu[] = {
    CommandHelp, CommandManual, CommandSystemInformation, CommandTip, 0, CommandAbout,
    0,           CommandWizard};

const MenuRow MenuTable[] = {
    {"&File", FileMenu, false},
    {"&Edit", EditMenu, false},
    {"&Help", HelpMenu, true},
};

// The fixed part of the context menu; Move up and Move down follow where they apply.
constexpr int ContextMenu[] = {CommandEdit,
                               CommandUploadVoice,
                               CommandAudition,
                               0,
                               CommandCut,
                               CommandCopy,
                               0,
                               CommandAddToDatabase,
                               CommandInsertFromDatabase,
                               0,
                               CommandPaste,
                               0,
                               CommandExport,
                               CommandImport,
                               0};

constexpr unsigned ToolTipBase = 1651; // plus the command's number

std::size_t IndexOf(int id) {
    const auto row = std::ranges::lower_bound(CommandTable, id, {}, &CommandRow::id);
    return row != std::end(CommandTable) && row->id == id
               ? static_cast<std::size_t>(row - std::begin(CommandTable))
               : CommandCount;
}

// What the enabling rules say; everything without a rule is enabled. New, Undo and Cut are grey
// from the start.
std::bitset<CommandCount> InitialStates() {
    std::bitset<CommandCount> states;
    states.set();
    for (const int id : {CommandNew, CommandUndo, CommandCut}) {
        states.reset(IndexOf(id));
    }
    return states;
}
std::bitset<CommandCount> CommandStates = InitialStates();

ContextEntry MakeContextEntry(int id, const std::string &name) {
    if (id == 0) {
        return {};
    }
    const CommandRow &row = *CommandOf(id);
    std::string text = row.contextLabel;
    if (!name.empty()) {
        text = row.contextNamedLabel;
        if (const auto place = text.find("%s"); place != std::string::npos) {
            text.replace(place, 2, name);
        }
    }
    // The menu bar's rules do not count here: the clicked row is there to act on.
    const bool allowed = id == CommandPaste ? ClipboardHoldsVoice() : id != CommandCut;
    return {id, text, allowed && row.built};
}

} // namespace

ListState MainListState;

const unsigned char ToolBarList[] = {CommandOpen,
                                     CommandSave,
                                     CommandUpload,
                                     CommandDownload,
                                     CommandUndo | ToolBarGap,
                                     CommandManual,
                                     CommandSettings,
                                     CommandExit,
                                     0};

std::span<const CommandRow> Commands() {
    return CommandTable;
}

const CommandRow *CommandOf(int id) {
    const std::size_t index = IndexOf(id);
    return index < CommandCount ? &CommandTable[index] : nullptr;
}

std::span<const MenuRow> MenuBar() {
    return MenuTable;
}

std::vector<ToolRow> ReadToolBar(const unsigned char *list) {
    std::vector<ToolRow> tools;
    for (; *list != 0; ++list) {
        const int id = *list & ~ToolBarGap;
        if (id < 50 || id > 60) {
            break;
        }
        tools.push_back({.id = id,
                         .gapBehind = (*list & ToolBarGap) != 0,
                         .tip = LoadProgramString(ToolTipBase + static_cast<unsigned>(id))});
    }
    return tools;
}

std::vector<ContextEntry> BuildContextMenu(int row) {
    std::string name;
    const VoiceObject *voice = ListVoice(MainList, row);
    if (VerboseRightClickMenu != 0 && voice) {
        name = Latin1ToUtf8(VoiceObjectName(*voice));
    }
    // Paste names the voice on the clipboard instead.
    const std::string clipboardName =
        VerboseRightClickMenu != 0 ? ClipboardVoiceName(TheShellWindow.window) : std::string();
    std::vector<ContextEntry> entries;
    for (const int id : ContextMenu) {
        entries.push_back(MakeContextEntry(id, id == CommandPaste ? clipboardName : name));
    }
    if (row > 0) {
        entries.push_back(MakeContextEntry(CommandMoveUp, name));
    }
    if (row < ListCount(MainList) - 1) {
        entries.push_back(MakeContextEntry(CommandMoveDown, name));
    }
    return entries;
}

bool CommandAllowed(int id) {
    const std::size_t index = IndexOf(id);
    return index < CommandCount && CommandStates[index];
}

bool CommandEnabled(int id) {
    return CommandAllowed(id) && CommandOf(id)->built;
}

void SetCommandEnabled(int id, bool enabled) {
    const std::size_t index = IndexOf(id);
    if (index == CommandCount) {
        return;
    }
    CommandStates[index] = enabled;
    if (TheShellWindow.CommandStateChanged) {
        TheShellWindow.CommandStateChanged(id, CommandEnabled(id));
    }
}

void RefreshCommands() {
    const bool hasRows = ListCount(MainList) > 0;
    const int driver = DriverIndexOfId(CurrentDriverId);
    for (const int id : {CommandSave, CommandSaveAs, CommandPrint}) {
        SetCommandEnabled(id, hasRows);
    }
    SetCommandEnabled(CommandUndo, UndoAvailable());
    SetCommandEnabled(CommandCut, false);
    SetCommandEnabled(CommandDownload, DriverCanDownload(driver));
    SetCommandEnabled(CommandUpload, DriverCanUpload(driver) && hasRows);
    SetCommandEnabled(CommandConfigure, DriverCanConfigure(driver));
    SetCommandEnabled(CommandFind, DriverCanFind(driver));
}

void RefreshCopy() {
    SetCommandEnabled(CommandCopy, ListCount(MainList) > 0 && MainList.selection != NoRow);
}

void RefreshStatus() {
    SetStatusText(TheShellWindow.window, SynthTitle(CurrentDriverId, SynthFirmware));
}

void RefreshTitle() {
    if (TheShellWindow.SetTitle) {
        const std::string program = LoadProgramString(109);
        TheShellWindow.SetTitle(
            FormatText("%s [ %s ]", program.c_str(), FileNameOfPath(CurrentDocumentPath.c_str())));
    }
}

void RepaintList() {
    if (TheShellWindow.RepaintList) {
        TheShellWindow.RepaintList();
    }
}

int ListIndexForCommand() {
    const int clicked = std::exchange(MainListState.clickedIndex, -1);
    return clicked != -1 ? clicked : MainList.selection;
}

int RunCommand(int id) {
    const RunningMark running;
    const CommandRow *row = CommandOf(id);
    int result = 0;
    if (id >= HistoryFirstItem && id < HistoryFirstItem + static_cast<int>(HistoryLimit)) {
        result = RunHistoryItem(id);
    } else if (row && row->built && row->run) {
        result = row->run();
    }
    if (!row || row->refreshes) {
        RefreshCommands();
    }
    return result;
}

int RunUserCommand(int id) {
    return CommandEnabled(id) && !SomethingIsRunning() ? RunCommand(id) : 0;
}

void MainListChanged(int value) {
    if (value == 0) {
        MainListState.dirty = true;
        RefreshCommands();
        return;
    }
    const int driver = DriverIndexOfName(SelectKeyboardName.c_str());
    if (!SelectKeyboardName.empty() && driver >= 0) {
        CurrentDriverId = DriverIdAt(driver);
    }
    RefreshStatus();
    RefreshCommands();
}

bool AskToSave() {
    if (!MainListState.dirty) {
        return true;
    }
    const int answer = AskYesNoCancel(TheShellWindow.window, LoadProgramString(111));
    if (answer == ResultYes) {
        RunCommand(CommandSave);
    }
    return answer == ResultYes || answer == ResultNo;
}

} // namespace tonewright
