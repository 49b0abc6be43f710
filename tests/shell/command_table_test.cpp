// The command table, the menus made of it and the rules that enable them.
#include "shell_fixture.h"

#include "shell/clipboard.h"
#include "shell/command_queue.h"
#include "shell/settings_flow.h"
#include "shell/show_document.h"
#include "shell/tips.h"
#include "shell/voice_commands.h"
#include "shell/wizard.h"
#include "support/family_names.h"

#include <algorithm>

namespace tonewright {
namespace {

using CommandTest = ShellTest;
using Strings = std::vector<std::string>;

std::string TextOf(const char *text) {
    return text ? text : "(none)";
}

using Rule = CommandRule;

struct ExpectedCommand {
    int id;
    Rule allowed;
    int (*run)();
    const char *menu, *context, *named, *key;
};

constexpr ExpectedCommand ExpectedCommands[] = {
    {50, Rule::Always, RunOpen, "&Open\tCtrl+0", nullptr, nullptr, "Ctrl+O"},
    {51, Rule::ListHasRows, RunSave, "&Save\tCtrl+S", nullptr, nullptr, "Ctrl+S"},
    {54, Rule::Always, RunManual, "&Manual", nullptr, nullptr, nullptr},
    {55, Rule::Always, RunSettings, "Set&tings", nullptr, nullptr, nullptr},
    {56, Rule::Always, RunExit, "E&xit", nullptr, nullptr, nullptr},
    {57, Rule::ListHasRows, RunPrint, "&Print", nullptr, nullptr, nullptr},
    {58, Rule::DriverDownloads, RunDownload, "&Download current voices", nullptr, nullptr, nullptr},
    {59, Rule::DriverUploads, RunUpload, "&Upload current voices", nullptr, nullptr, nullptr},
    {60, Rule::UndoLevelThere, RunUndo, "&Undo\tCtrl+Z", nullptr, nullptr, "Ctrl+Z"},
    {101, Rule::Never, nullptr, "&New\tCtrl+N", nullptr, nullptr, "Ctrl+N"},
    {104, Rule::ListHasRows, RunSaveAs, "Save &as...", nullptr, nullptr, nullptr},
    {105, Rule::Always, RunClear, nullptr, nullptr, nullptr, nullptr},
    {131, Rule::Always, RunTip, "&Tip of the day", nullptr, nullptr, nullptr},
    {132, Rule::Always, RunCloseAtOnce, nullptr, nullptr, nullptr, nullptr},
    {202, Rule::Never, nullptr, "Cu&t\tCtrl+X", "Cut", "Cut %s", "Ctrl+X"},
    {203, Rule::RowSelected, RunCopy, "&Copy\tCtrl+C", "Copy", "Copy %s", "Ctrl+C"},
    {204, Rule::VoiceOnClipboard, RunPaste, "&Paste\tCtrl+V", "Paste", "Paste %s", "Ctrl+V"},
    {205, Rule::DriverFinds, RunFind, "&Find synthesizer", nullptr, nullptr, nullptr},
    {208, Rule::Always, RunEdit, nullptr, "Edit", "Edit %s", nullptr},
    {209, Rule::DriverConfigures, RunConfigure, "Con&figure &synthesizer", nullptr, nullptr,
     nullptr},
    {210, Rule::Always, RunMidiDevices, "&MIDI devices", nullptr, nullptr, nullptr},
    {211, Rule::Always, RunUploadVoice, nullptr, "Upload to synthesizer",
     "Upload %s to synthesizer", nullptr},
    {212, Rule::Always, RunMoveUp, nullptr, "Move up", "Move %s up", nullptr},
    {213, Rule::Always, RunMoveDown, nullptr, "Move down", "Move %s down", nullptr},
    {214, Rule::Always, RunExport, nullptr, "Export", "Export %s", nullptr},
    {215, Rule::Always, RunImport, nullptr, "Import", "Import to replace %s", nullptr},
    {216, Rule::Always, RunSelectSynth, "Select &synthesizer", nullptr, nullptr, nullptr},
    {217, Rule::Always, RunAudition, nullptr, "Audition", "Audition %s on synthesizer", nullptr},
    {218, Rule::Always, RunAddToDatabase, nullptr, "Add to current database",
     "Add %s to current database (Shift for all)", nullptr},
    {219, Rule::Always, RunInsertFromDatabase, nullptr, "Insert a voice from the current database",
     "Insert a voice from the current database", nullptr},
    {997, Rule::Always, RunSystemInformation, "&System information", nullptr, nullptr, nullptr},
    {998, Rule::Always, RunHelp, "&Help", nullptr, nullptr, nullptr},
    {999, Rule::Always, RunAbout, "&About", nullptr, nullptr, nullptr},
    {2907, Rule::Always, RunWelcomeWizard, "Welcome wi&zard", nullptr, nullptr, nullptr},
};

// What goes beyond these, each with the setting that it toggles, if it does.
struct ExpectedExtra {
    int id;
    const char *label;
    BoolSettingValue *setting;
};

constexpr ExpectedExtra ExpectedExtras[] = {
    {40101, "&Careful mode", &CarefulMode},
    {40102, "&Keep all detune steps", &WholeDetune},
    {40103, "&Audition plays the voice that was sent", &AuditionKeepsVoice},
    {40106, "Count as the &reface DX counts", &RefaceZero64},
    {40104, "&Space bar plays the selected voice", &SpaceAuditions},
    {40107, "&Open any dump...", nullptr},
    {40108, "Arc&hive...", nullptr},
    {40105, "&Built-in instruments...", nullptr},
};

TEST_F(CommandTest, EveryCommandHasItsNumberRuleFlowLabelsAndKey) {
    for (const ExpectedCommand &expected : ExpectedCommands) {
        const CommandRow *row = CommandOf(expected.id);
        ASSERT_NE(row, nullptr) << expected.id;
        EXPECT_EQ(row->id, expected.id);
        EXPECT_EQ(row->allowed, expected.allowed) << expected.id;
        EXPECT_EQ(row->run, expected.run) << expected.id;
        EXPECT_EQ(row->label ? MenuText(*row) : "(none)", TextOf(expected.menu)) << expected.id;
        EXPECT_EQ(TextOf(row->contextLabel), TextOf(expected.context)) << expected.id;
        EXPECT_EQ(TextOf(row->contextNamedLabel), TextOf(expected.named)) << expected.id;
        EXPECT_EQ(TextOf(row->key), TextOf(expected.key)) << expected.id;
    }
    // The one further row is the click on the selected voice.
    EXPECT_EQ(Commands().size(), std::size(ExpectedCommands) + std::size(ExpectedExtras) + 1);
    EXPECT_EQ(CommandOf(10)->allowed, Rule::Always);
    EXPECT_EQ(CommandOf(10)->run, nullptr);
    for (const int unknown : {0, -1, 49, 170, 181, 3000}) {
        EXPECT_EQ(CommandOf(unknown), nullptr) << unknown;
    }
}

TEST_F(CommandTest, NoCommandThatCanBeChosenLacksItsFlow) {
    for (const CommandRow &row : Commands()) {
        const bool isOffered = row.label || row.contextLabel;
        EXPECT_TRUE(row.run || row.toggles || row.allowed == Rule::Never || !isOffered) << row.id;
        EXPECT_FALSE(row.allowed == Rule::Never && row.run) << row.id;
    }
}

TEST_F(CommandTest, TheNameOfACommandIsItsLabelWithoutTheMarksOfAMenu) {
    EXPECT_EQ(CommandName(*CommandOf(CommandSaveAs)), "Save as");
    EXPECT_EQ(CommandName(*CommandOf(CommandConfigure)), "Configure synthesizer");
    EXPECT_EQ(CommandName(*CommandOf(CommandExit)), "Exit");
}

TEST_F(CommandTest, AnExtraIsAnEntryOfItsMenuAloneWithACheckMarkAHintAndATopic) {
    for (const ExpectedExtra &expected : ExpectedExtras) {
        const CommandRow *row = CommandOf(expected.id);
        ASSERT_NE(row, nullptr) << expected.id;
        EXPECT_EQ(MenuText(*row), expected.label);
        EXPECT_EQ(row->menu, Menu::Extras) << expected.id;
        EXPECT_EQ(row->toggles, expected.setting) << expected.id;
        EXPECT_EQ(row->contextLabel, nullptr) << expected.id;
        EXPECT_TRUE(CommandAllowed(expected.id)) << expected.id;
    }
    for (const CommandRow &row : Commands()) {
        const bool extra = row.menu == Menu::Extras;
        EXPECT_EQ(row.hint != nullptr, extra) << row.id;
        // A box without a button for help has its topic at its entry too.
        EXPECT_EQ(row.topic.name != nullptr,
                  extra || row.id == CommandSystemInformation || row.id == CommandWizard)
            << row.id;
        EXPECT_EQ(row.id > 40000, extra) << row.id;
    }
}

TEST_F(CommandTest, NoTwoEntriesOfTheExtrasMenuHaveOneLetter) {
    const auto bar = MenuBar();
    std::string letters;
    for (const int id : bar[2].items) {
        if (id == 0) {
            continue;
        }
        const std::string label = CommandOf(id)->label;
        const std::size_t mark = label.find('&');
        ASSERT_LT(mark, label.size());
        EXPECT_EQ(letters.find(label[mark + 1]), std::string::npos) << label;
        letters += label[mark + 1];
    }
    EXPECT_EQ(letters, "CKArSOhB");
}

TEST_F(CommandTest, AnEntryWithACheckMarkTogglesItsSettingAtOnceAndForTheNextStart) {
    MakeProgramFolders();
    int heard = 0;
    TheShellWindow.CommandStatesChanged = [&] { ++heard; };
    const std::string file = home.File("Quillbrook/Tonewright 17/Extras.ini");
    for (const ExpectedExtra &extra : ExpectedExtras) {
        if (!extra.setting) {
            continue;
        }
        heard = 0;
        EXPECT_EQ(RunUserCommand(extra.id), 1);
        EXPECT_EQ(*extra.setting, 1u) << extra.id;
        EXPECT_EQ(heard, 1);
    }
    const auto expected = [](int detune) {
        return "[Extras]\nCarefulMode = 1\nWholeDetune = " + std::to_string(detune) +
               "\nAuditionKeepsVoice = 1\nSpaceAuditions = 1\nRefaceZero64 = 1\n";
    };
    EXPECT_TRUE(ReadTestText(file).ends_with(expected(1)));
    EXPECT_EQ(RunUserCommand(40102), 1);
    EXPECT_EQ(WholeDetune, 0u);
    EXPECT_TRUE(ReadTestText(file).ends_with(expected(0)));
    CarefulMode = 7; // any number but 0 is on
    EXPECT_EQ(RunUserCommand(40101), 1);
    EXPECT_EQ(CarefulMode, 0u);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(CommandTest, AnExtraThatCannotBeKeptCountsAllTheSameAndAMessageSaysSo) {
    const std::string file = home.File("Quillbrook/Tonewright 17/Extras.ini");
    desktop.ExpectMessage("This choice counts until Tonewright ends. It could not be kept for the "
                          "next start:\n\n" +
                          file + ": No such file or directory");
    EXPECT_EQ(RunUserCommand(40101), 1); // there are no folders
    EXPECT_EQ(CarefulMode, 1u);

    MakeProgramFolders();
    WriteTestText(file, "CarefulMode = 1\n");
    std::filesystem::create_directory(home.File("Quillbrook/Tonewright 17/Backup of Extras.ini"));
    desktop.ExpectMessage("This choice is kept. The version of its file before it could not be "
                          "kept as a backup:\n\n" +
                          file + ": File exists");
    EXPECT_EQ(RunUserCommand(40101), 1);
    EXPECT_EQ(CarefulMode, 0u);
    EXPECT_TRUE(ReadTestText(file).ends_with("[Extras]\nCarefulMode = 0\n"));
}

TEST_F(CommandTest, TheMenuBarHasFourMenusAndHelpStandsAtTheRight) {
    const auto bar = MenuBar();
    ASSERT_EQ(bar.size(), 4u);
    const auto items = [&](int menu) {
        const auto &row = bar[static_cast<std::size_t>(menu)];
        return std::vector<int>(row.items.begin(), row.items.end());
    };
    EXPECT_STREQ(bar[0].label, "&File");
    EXPECT_STREQ(bar[1].label, "&Edit");
    EXPECT_STREQ(bar[2].label, "E&xtras");
    EXPECT_STREQ(bar[3].label, "&Help");
    EXPECT_FALSE(bar[0].atTheRight);
    EXPECT_FALSE(bar[1].atTheRight);
    EXPECT_FALSE(bar[2].atTheRight);
    EXPECT_TRUE(bar[3].atTheRight);
    EXPECT_EQ(items(0), (std::vector{101, 50, 51, 104, 57, 0, 55, 56}));
    EXPECT_EQ(items(1), (std::vector{60, 0, 202, 203, 204, 0, 205, 209, 58, 59, 210, 0, 216}));
    EXPECT_EQ(items(2), (std::vector{40101, 40102, 40103, 40106, 40104, 0, 40107, 40108, 0, 40105}));
    EXPECT_EQ(items(3), (std::vector{998, 54, 997, 131, 0, 999, 0, 2907}));
}

TEST_F(CommandTest, TheToolBarHasEightButtonsAndAGapBehindUndo) {
    struct ExpectedTool {
        int id;
        bool gap;
        const char *tip;
    };
    const ExpectedTool expected[] = {
        {50, false, "Loads a document from disk"},
        {51, false, "Saves the document to disk"},
        {59, false, "Uploads the current voice list to your synthesizer"},
        {58, false, "Download your synthesizer's current voice list"},
        {60, true, "Undoes changes to your current voice list"},
        {54, false, "Displays the manual document"},
        {55, false, "Allows Tonewright's options to be configured"},
        {56, false, "Exits Tonewright"},
    };
    const auto tools = ReadToolBar(ToolBarList);
    ASSERT_EQ(tools.size(), std::size(expected));
    for (std::size_t i = 0; i < tools.size(); ++i) {
        EXPECT_EQ(tools[i].id, expected[i].id);
        EXPECT_EQ(tools[i].gapBehind, expected[i].gap) << expected[i].id;
        EXPECT_EQ(tools[i].tip, expected[i].tip);
    }
}

TEST_F(CommandTest, AZeroOrANumberOutside50To60EndsTheToolBar) {
    const auto count = [](std::vector<unsigned char> list) {
        return ReadToolBar(list.data()).size();
    };
    EXPECT_EQ(count({0}), 0u);
    EXPECT_EQ(count({50, 60 | 0x80, 0, 51, 0}), 2u);
    EXPECT_EQ(count({50, 49, 51, 0}), 1u);
    EXPECT_EQ(count({50, 61, 51, 0}), 1u);
    EXPECT_EQ(count({50, 0x80, 51, 0}), 1u);
    EXPECT_EQ(count({50, 51 | 0x80, 61 | 0x80, 0}), 2u);
}

TEST_F(CommandTest, NewAndCutAreGreyAlwaysAndUndoFromTheStart) {
    for (const int id : {CommandNew, CommandCut, CommandUndo}) {
        EXPECT_FALSE(CommandAllowed(id)) << id;
        EXPECT_FALSE(CommandAllowed(id)) << id;
    }
    OpenBank();
    ListSelect(MainList, 3);
    RefreshCommands();
    RefreshCopy();
    EXPECT_FALSE(CommandAllowed(CommandNew));
    EXPECT_FALSE(CommandAllowed(CommandCut));
}

TEST_F(CommandTest, CtrlNAndCtrlXDoNothing) {
    OpenBank();
    const auto before = MainList.items;
    for (const int id : {CommandNew, CommandCut}) {
        EXPECT_EQ(RunUserCommand(id), 0);
        EXPECT_EQ(RunCommand(id), 0);
    }
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(CommandTest, AnEmptyListDisablesSaveSaveAsPrintAndUpload) {
    CurrentDriverId = Dx7DriverId;
    RefreshCommands();
    for (const int id : {CommandSave, CommandSaveAs, CommandPrint, CommandUpload}) {
        EXPECT_FALSE(CommandAllowed(id)) << id;
    }
    ListAdd(MainList); // one row is enough, even without a voice
    RefreshCommands();
    for (const int id : {CommandSave, CommandSaveAs, CommandPrint, CommandUpload}) {
        EXPECT_TRUE(CommandAllowed(id)) << id;
    }
}

TEST_F(CommandTest, TheDx7OffersUploadOnlyAsSoonAsTheListHoldsAnItem) {
    CurrentDriverId = Dx7DriverId;
    ListAdd(MainList);
    RefreshCommands();
    EXPECT_FALSE(CommandAllowed(CommandDownload));
    EXPECT_FALSE(CommandAllowed(CommandFind));
    EXPECT_FALSE(CommandAllowed(CommandConfigure));
    EXPECT_TRUE(CommandAllowed(CommandUpload));
}

TEST_F(CommandTest, TheRefaceDxOffersAllButUploadThoughItsRowCanUpload) {
    RefaceRow.UploadBank = [](QWidget *, VoiceList &, MidiPorts) { return 1; };
    CurrentDriverId = RefaceDriverId;
    for (int rows = 0; rows < 2; ++rows) {
        RefreshCommands();
        EXPECT_TRUE(CommandAllowed(CommandDownload));
        EXPECT_TRUE(CommandAllowed(CommandFind));
        EXPECT_TRUE(CommandAllowed(CommandConfigure));
        EXPECT_FALSE(CommandAllowed(CommandUpload));
        ListAdd(MainList);
    }
}

TEST_F(CommandTest, WithoutADriverItsCommandsStayDisabled) {
    ListAdd(MainList);
    RefreshCommands();
    for (const int id : {CommandDownload, CommandUpload, CommandFind, CommandConfigure}) {
        EXPECT_FALSE(CommandAllowed(id)) << id;
    }
    EXPECT_TRUE(CommandAllowed(CommandSave));
    EXPECT_TRUE(CommandAllowed(CommandSelectSynth));
}

TEST_F(CommandTest, WhatHasNoRuleIsAlwaysAllowed) {
    for (const int id : {CommandOpen,
                         CommandManual,
                         CommandSettings,
                         CommandExit,
                         CommandClear,
                         CommandTip,
                         CommandCloseAtOnce,
                         CommandEdit,
                         CommandMidiDevices,
                         CommandUploadVoice,
                         CommandMoveUp,
                         CommandMoveDown,
                         CommandExport,
                         CommandImport,
                         CommandAudition,
                         CommandAddToDatabase,
                         CommandInsertFromDatabase,
                         CommandSystemInformation,
                         CommandHelp,
                         CommandAbout,
                         CommandWizard}) {
        EXPECT_TRUE(CommandAllowed(id)) << id;
    }
    EXPECT_FALSE(CommandAllowed(12345));
}

TEST_F(CommandTest, ACommandIsEnabledWhenItsRuleAllowsIt) {
    OpenBank(); // of a DX7, with its first voice selected
    for (const int id : {10,  50,  51,  54,  55,  56,  57,  59,  104, 105, 131, 132, 203, 208,
                         210, 211, 212, 213, 214, 215, 216, 217, 218, 219, 997, 998, 999, 2907}) {
        EXPECT_TRUE(CommandAllowed(id)) << id;
    }
    for (const int notAllowed : {58, 60, 101, 202, 205, 209, 12345}) {
        EXPECT_FALSE(CommandAllowed(notAllowed)) << notAllowed;
    }
}

TEST_F(CommandTest, TheWindowHearsWhenARuleSaysOtherwiseThanBefore) {
    std::vector<bool> heard; // whether Save was enabled then
    TheShellWindow.CommandStatesChanged = [&] { heard.push_back(CommandAllowed(CommandSave)); };
    RefreshCommands();
    EXPECT_TRUE(heard.empty());
    ListAdd(MainList);
    RefreshCommands();
    RefreshCommands();
    EXPECT_EQ(heard, std::vector{true});
    ListDelete(MainList, 0);
    RefreshCommands();
    EXPECT_EQ(heard, (std::vector{true, false}));
}

TEST_F(CommandTest, AtStartThereIsNothingToUndoAndAllElseIsAllowed) {
    ResetCommandState();
    for (const CommandRow &row : Commands()) {
        EXPECT_EQ(CommandAllowed(row.id), row.id != 60 && row.id != 101 && row.id != 202) << row.id;
    }
}

TEST_F(CommandTest, CopyNeedsASelectedRow) {
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    ListAdd(MainList);
    RefreshCopy();
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    ListSelect(MainList, 0);
    RefreshCopy();
    EXPECT_TRUE(CommandAllowed(CommandCopy));
    ListSelect(MainList, NoRow);
    RefreshCommands(); // Copy is set apart from the other rules
    EXPECT_TRUE(CommandAllowed(CommandCopy));
    RefreshCopy();
    EXPECT_FALSE(CommandAllowed(CommandCopy));
}

TEST_F(CommandTest, AClickOnTheSelectedVoiceOnlyRefreshes) {
    ListAdd(MainList);
    EXPECT_FALSE(CommandAllowed(CommandSave));
    EXPECT_EQ(RunCommand(CommandNothing), 0);
    EXPECT_TRUE(CommandAllowed(CommandSave));
}

TEST_F(CommandTest, ANumberThatIsNoCommandOnlyRefreshes) {
    ListAdd(MainList);
    EXPECT_EQ(RunCommand(170), 0);
    EXPECT_TRUE(CommandAllowed(CommandSave));
    EXPECT_EQ(RunUserCommand(170), 0);
}

TEST_F(CommandTest, ADisabledCommandIsNotRunForTheUser) {
    EXPECT_EQ(RunUserCommand(CommandUndo), 0); // no message "No undo level is available."
    EXPECT_EQ(RunUserCommand(CommandSave), 0);
}

TEST_F(CommandTest, ConfigureIsTheOneCommandWithoutARefresh) {
    for (const CommandRow &row : Commands()) {
        EXPECT_EQ(row.refreshes, row.id != CommandConfigure) << row.id;
    }
    ListAdd(MainList);
    RunCommand(CommandConfigure);
    EXPECT_FALSE(CommandAllowed(CommandSave));
}

TEST_F(CommandTest, PrintAsksTheWindowForAListWithRows) {
    int printed = 0;
    TheShellWindow.PrintList = [&printed] { return ++printed; };
    EXPECT_EQ(RunUserCommand(CommandPrint), 0); // no rows
    OpenBank();
    EXPECT_EQ(RunUserCommand(CommandPrint), 1);
    EXPECT_EQ(printed, 1);
    TheShellWindow.PrintList = nullptr;
    EXPECT_EQ(RunUserCommand(CommandPrint), 0);
}

TEST_F(CommandTest, PostedWorkAndTheUserWaitWhileACommandRuns) {
    TheShellWindow.ShowAboutBox = [] {
        EXPECT_TRUE(SomethingIsRunning());
        PostCommand(CommandNothing);
        EXPECT_FALSE(RunNextPosted());
        EXPECT_EQ(RunUserCommand(CommandClear), 0);
    };
    EXPECT_EQ(RunCommand(CommandAbout), 1);
    EXPECT_FALSE(SomethingIsRunning());
    EXPECT_EQ(RunUserCommand(CommandClear), 1);
    EXPECT_TRUE(RunNextPosted());
    EXPECT_FALSE(RunNextPosted());
}

TEST_F(CommandTest, TheClickedRowGoesBeforeTheSelectionAndIsUsedOnce) {
    OpenBank();
    ListSelect(MainList, 4);
    MainListState.clickedIndex = 9;
    EXPECT_EQ(ListIndexForCommand(), 9);
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_EQ(ListIndexForCommand(), 4);
    ListSelect(MainList, NoRow);
    EXPECT_EQ(ListIndexForCommand(), -1);
}

TEST_F(CommandTest, TheTitleNamesTheProgramAndTheFile) {
    RefreshTitle();
    CurrentDocumentPath = home.File("my bank.syx");
    RefreshTitle();
    EXPECT_EQ(titles, (Strings{"Tonewright [ Untitled.Twl ]", "Tonewright [ my bank.syx ]"}));
}

TEST_F(CommandTest, TheStatusBarShowsTheInstrument) {
    RefreshStatus();
    CurrentDriverId = RefaceDriverId;
    RefreshStatus();
    SynthFirmware = 0x01000203;
    RefreshStatus();
    EXPECT_EQ(desktop.statusTexts, (Strings{"Unknown or unrecognized synthesizer", RefaceName,
                                            "Yamaha reface DX version 10.23"}));
}

TEST_F(CommandTest, AChangeByAGestureMarksTheDocument) {
    OpenBank();
    MainListChanged(0);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
}

TEST_F(CommandTest, TheDriverOfTheSettingsBecomesCurrentInAnyCaseOfLetters) {
    SelectKeyboardName = "YAMAHA REFACE dx";
    MainListChanged(1);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(desktop.statusTexts, Strings{RefaceName});
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(CommandTest, AnEmptyOrUnknownNameInTheSettingsKeepsTheDriver) {
    CurrentDriverId = Dx7DriverId;
    MainListChanged(1);
    SelectKeyboardName = "Yamaha";
    MainListChanged(1);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(desktop.statusTexts, (Strings{Dx7Name, Dx7Name}));
}

// The texts of the context menu, "-" for a separator.
Strings ContextTexts(int row) {
    Strings texts;
    for (const ContextEntry &entry : BuildContextMenu(row)) {
        texts.push_back(entry.id == 0 ? "-" : entry.text);
    }
    return texts;
}

std::vector<int> ContextIds(int row) {
    std::vector<int> ids;
    for (const ContextEntry &entry : BuildContextMenu(row)) {
        ids.push_back(entry.id);
    }
    return ids;
}

ContextEntry EntryOf(int row, int id) {
    for (const ContextEntry &entry : BuildContextMenu(row)) {
        if (entry.id == id) {
            return entry;
        }
    }
    ADD_FAILURE() << "no entry " << id;
    return {};
}

const Strings PlainTexts = {"Edit",
                            "Upload to synthesizer",
                            "Audition",
                            "-",
                            "Cut",
                            "Copy",
                            "-",
                            "Add to current database",
                            "Insert a voice from the current database",
                            "-",
                            "Paste",
                            "-",
                            "Export",
                            "Import",
                            "-"};

Strings With(Strings texts, const Strings &more) {
    texts.insert(texts.end(), more.begin(), more.end());
    return texts;
}

TEST_F(CommandTest, TheContextMenuOfAMiddleRowCarriesTheVoicesName) {
    OpenBank();
    EXPECT_EQ(
        ContextTexts(2),
        (Strings{"Edit VOICE 03", "Upload VOICE 03 to synthesizer",
                 "Audition VOICE 03 on synthesizer", "-", "Cut VOICE 03", "Copy VOICE 03", "-",
                 "Add VOICE 03 to current database (Shift for all)",
                 "Insert a voice from the current database", "-", "Paste", "-", "Export VOICE 03",
                 "Import to replace VOICE 03", "-", "Move VOICE 03 up", "Move VOICE 03 down"}));
    EXPECT_EQ(ContextIds(2), (std::vector{208, 211, 217, 0, 202, 203, 0, 218, 219, 0, 204, 0, 214,
                                          215, 0, 212, 213}));
}

TEST_F(CommandTest, ThePlainContextMenuNamesNoVoice) {
    OpenBank();
    VerboseRightClickMenu = 0;
    EXPECT_EQ(ContextTexts(2), With(PlainTexts, {"Move up", "Move down"}));
}

TEST_F(CommandTest, MoveUpIsNotOfferedOnTheFirstRow) {
    OpenBank();
    VerboseRightClickMenu = 0;
    EXPECT_EQ(ContextTexts(0), With(PlainTexts, {"Move down"}));
}

TEST_F(CommandTest, MoveDownIsNotOfferedOnTheLastRow) {
    OpenBank();
    VerboseRightClickMenu = 0;
    EXPECT_EQ(ContextTexts(31), With(PlainTexts, {"Move up"}));
}

TEST_F(CommandTest, TheOnlyRowOffersNoMove) {
    OpenBank();
    while (ListCount(MainList) > 1) {
        ListDelete(MainList, 1);
    }
    VerboseRightClickMenu = 0;
    EXPECT_EQ(ContextTexts(0), PlainTexts);
}

TEST_F(CommandTest, BesideTheRowsTheContextMenuIsPlain) {
    OpenBank();
    // No row lies before the last one, as far as that rule goes.
    EXPECT_EQ(ContextTexts(NoRow), With(PlainTexts, {"Move down"}));
}

TEST_F(CommandTest, ARowWithoutAVoiceHasThePlainContextMenu) {
    OpenBank();
    ListTakeVoice(MainList, 2);
    EXPECT_EQ(ContextTexts(2), With(PlainTexts, {"Move up", "Move down"}));
}

TEST_F(CommandTest, ABlockThatIsNoVoiceShowsTheNameOfTheLastGoodOne) {
    OpenBank();
    VoiceObjectName(*ListVoice(MainList, 7));
    MainList.items[2].bytes[0] ^= 1;
    EXPECT_EQ(EntryOf(2, CommandExport).text, "Export VOICE 08");
}

TEST_F(CommandTest, ANameInTheContextMenuIsUtf8AndTakenAsItIs) {
    OpenBank();
    SetNameAt(2, "\xC9T\xC9 %s %d ");
    EXPECT_EQ(EntryOf(2, CommandMoveUp).text, "Move \xC3\x89T\xC3\x89 %s %d up");
    EXPECT_EQ(EntryOf(2, CommandAudition).text, "Audition \xC3\x89T\xC3\x89 %s %d on synthesizer");
}

TEST_F(CommandTest, InTheContextMenuCutIsGreyAndTheRestIsNot) {
    OpenBank();
    for (const std::uint32_t verbose : {0u, 1u}) {
        VerboseRightClickMenu = verbose;
        EXPECT_FALSE(EntryOf(2, CommandCut).enabled);
        for (const int id : {CommandEdit, CommandUploadVoice, CommandAudition, CommandCopy,
                             CommandAddToDatabase, CommandInsertFromDatabase, CommandExport,
                             CommandImport, CommandMoveUp, CommandMoveDown}) {
            EXPECT_TRUE(EntryOf(2, id).enabled) << id;
        }
    }
}

TEST_F(CommandTest, InTheContextMenuCopyDoesNotWaitForASelectedRow) {
    OpenBank();
    ListSelect(MainList, NoRow);
    RefreshCopy();
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    EXPECT_TRUE(EntryOf(2, CommandCopy).enabled);
}

class AskingToSave : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        OpenBank();
        SetNameAt(0, "CHANGED   ");
        MainListState.dirty = true;
    }
    std::string NameInFile() const { return ReadRawText(home.File("bank.syx")).substr(124, 10); }
};

TEST_F(AskingToSave, ACleanDocumentIsNotAskedAbout) {
    MainListState.dirty = false;
    EXPECT_TRUE(AskToSave());
    EXPECT_EQ(NameInFile(), "VOICE 01  ");
}

TEST_F(AskingToSave, YesSavesAndGoesOn) {
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    EXPECT_TRUE(AskToSave());
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(NameInFile(), "CHANGED   ");
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(AskingToSave, YesGoesOnAlsoWhenTheSaveFails) {
    CurrentDocumentPath = home.File("no such folder/bank.syx");
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    desktop.ExpectMessage(WriteError);
    EXPECT_TRUE(AskToSave());
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(AskingToSave, NoGoesOnWithoutSaving) {
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_TRUE(AskToSave());
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(NameInFile(), "VOICE 01  ");
}

TEST_F(AskingToSave, CancelStays) {
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_FALSE(AskToSave());
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(NameInFile(), "VOICE 01  ");
}

TEST_F(AskingToSave, AQuestionThatCannotBeShownStays) {
    TheDesktop.RunMessage = nullptr;
    EXPECT_FALSE(AskToSave());
    EXPECT_EQ(NameInFile(), "VOICE 01  ");
}

} // namespace
} // namespace tonewright
