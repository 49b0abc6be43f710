// The commands that talk to an instrument, in the real window, with the built-in instruments on a
// clock that costs no time.
#include "window_fixture.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/instruments/builtin_instruments.h"
#include "shell/command_queue.h"
#include "shell/view/tool_bar.h"
#include "support/builtin_midi.h"
#include "support/family_names.h"
#include "support/reface_bytes.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Strings = std::vector<std::string>;

const std::string RefaceTitle = "Yamaha reface DX version 01.20";
const std::string Unrecognized = "Unknown or unrecognized synthesizer";
const std::string SaveQuestion =
    "Your current document has not been saved. Do you wish to save it?\n\nClick on Yes to save it, "
    "or click on No to abandon it.\n\nClick on Cancel to return to the main window of Tonewright.";
const std::string StoreOnReface =
    " has been uploaded to your reface DX.\n\nPress Store, select the bank and program you want to "
    "store your uploaded voice to and then use the red Data Entry controls to confirm the upload.";

constexpr std::size_t RefaceVoiceSize = 38 + 4 * 28;

// The driver's commands, and those that need no driver.
constexpr int DriverCommands[] = {CommandDownload, CommandUpload, CommandFind, CommandConfigure};
constexpr int FreeCommands[] = {CommandMidiDevices, CommandSelectSynth, CommandUploadVoice,
                                CommandAudition};

class InstrumentCommands : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        SelectKeyboardName = RefaceName;
        SelectKeyboardAutodetect = 1;
        SysexWait = 1500;
        CurrentMidiChannel = 1;
        DownloadOnOpen = 0;
    }
    void TearDown() override { EXPECT_EQ(desktop.busyBoxesOpen, 0); }

    BuiltinMidi midi;

    // The reface DX found, and nothing recorded of it.
    void FindReface() {
        CurrentDriverId = RefaceDriverId;
        RunCommand(CommandFind);
        ASSERT_EQ(CurrentDriverId, RefaceDriverId);
        ForgetRecords();
    }
    void FindDx7() {
        SelectKeyboardMidiIn = SelectKeyboardMidiOut = "DX7";
        CurrentDriverId = Dx7DriverId;
        RunCommand(CommandFind);
        ASSERT_EQ(CurrentDriverId, Dx7DriverId);
        ForgetRecords();
    }
    void OpenRefaceBank() {
        PendingOpenPath = home.Write("bank.srx", TestRefaceBank());
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        ForgetRecords();
    }
    void ForgetRecords() {
        desktop.sounds.clear();
        desktop.statusTexts.clear();
        desktop.progress.clear();
        desktop.busyTexts.clear();
    }

    // The voices of the list as the instrument holds them.
    static Bytes ListedVoices() {
        Bytes voices;
        for (int row = 0; row < ListCount(MainList); ++row) {
            const VoiceObject *voice = ListVoice(MainList, row);
            EXPECT_EQ(voice->bytes.size(), 52 + RefaceVoiceSize) << row;
            voices.insert(voices.end(), voice->bytes.begin() + 52, voice->bytes.end());
        }
        return voices;
    }
    void ClickTool(int command) {
        auto *tool =
            window->Tools()->findChild<QAbstractButton *>(QString("control_%1").arg(command));
        ASSERT_NE(tool, nullptr);
        QTest::mouseClick(tool, Qt::LeftButton);
        RunPosted();
    }
    // Of the driver's commands: those that their rules allow.
    static std::vector<int> Allowed() {
        std::vector<int> allowed;
        for (const int id : DriverCommands) {
            if (CommandAllowed(id)) {
                allowed.push_back(id);
            }
        }
        return allowed;
    }
    // Menu and tool bar say what the rules say.
    void ExpectShownAsAllowed() const {
        for (const int id : DriverCommands) {
            EXPECT_EQ(window->MenuAction(id)->isEnabled(), CommandAllowed(id)) << id;
            if (const auto *tool =
                    window->Tools()->findChild<QAbstractButton *>(QString("control_%1").arg(id))) {
                EXPECT_EQ(tool->isEnabled(), CommandAllowed(id)) << id;
            }
        }
        for (const int id : FreeCommands) {
            EXPECT_TRUE(CommandAllowed(id)) << id;
            EXPECT_TRUE(CommandAllowed(id)) << id;
        }
    }
};

TEST_F(InstrumentCommands, EachDriverAllowsItsCommandsWithVoicesAndWithout) {
    using Ids = std::vector<int>;
    const struct {
        DriverId driver;
        Ids withoutVoices, withVoices;
    } rows[] = {
        {NoDriverId, {}, {}},
        {Dx7DriverId, {}, {CommandUpload}},
        {RefaceDriverId,
         {CommandDownload, CommandFind, CommandConfigure},
         {CommandDownload, CommandFind, CommandConfigure}},
    };
    for (const auto &row : rows) {
        ListReset(MainList);
        CurrentDriverId = row.driver;
        RefreshCommands();
        EXPECT_EQ(Allowed(), row.withoutVoices) << row.driver;
        ExpectShownAsAllowed();
        ListAdd(MainList);
        RefreshCommands();
        EXPECT_EQ(Allowed(), row.withVoices) << row.driver;
        ExpectShownAsAllowed();
    }
}

TEST_F(InstrumentCommands, DownloadFillsAnEmptyListWithTheVoicesOfTheInstrument) {
    FindReface();
    EXPECT_FALSE(window->MenuAction(CommandSave)->isEnabled());
    Trigger(CommandDownload);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(ListedVoices(), MemoryOf(BuiltinInstrument::Reface));
    EXPECT_EQ(Names(0, 2), (Strings{"Rose Tine", "Glass Key", "Soft Reed"}));
    EXPECT_EQ(MainList.selection, 0);
    EXPECT_EQ(MainList.itemHeight, 48);
    EXPECT_TRUE(list->isEnabled());
    EXPECT_TRUE(MainList.redraw);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 0); // there was nothing to put aside
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_EQ(desktop.busyTexts, Strings{"Downloading voices"});
    ASSERT_EQ(desktop.statusTexts.size(), 34u);
    EXPECT_EQ(desktop.statusTexts[0], "Downloading voice 1 of 32 (Rose Tine)");
    EXPECT_EQ(desktop.statusTexts[1], "Downloading voice 2 of 32 (Glass Key)");
    EXPECT_EQ(desktop.statusTexts[31].substr(0, 28), "Downloading voice 32 of 32 (");
    EXPECT_EQ(desktop.statusTexts[32], "");
    EXPECT_EQ(desktop.statusTexts[33], RefaceTitle);
    using Progress = std::vector<std::pair<int, int>>;
    Progress progress = {{0, 1}};
    for (int voice = 0; voice < 32; ++voice) {
        progress.emplace_back(voice, 32);
    }
    progress.emplace_back(0, 1);
    EXPECT_EQ(desktop.progress, progress);
    EXPECT_EQ(window->windowTitle(), "");
    EXPECT_TRUE(window->MenuAction(CommandSave)->isEnabled());
    EXPECT_FALSE(window->MenuAction(CommandUpload)->isEnabled());
    EXPECT_FALSE(window->MenuAction(CommandUndo)->isEnabled());
}

TEST_F(InstrumentCommands, DownloadByTheToolBarReplacesTheBankAndUndoBringsItBack) {
    OpenRefaceBank();
    FindReface();
    ListSelect(MainList, 7);
    ClickTool(CommandDownload);
    EXPECT_EQ(ListedVoices(), MemoryOf(BuiltinInstrument::Reface));
    EXPECT_EQ(MainList.selection, 0);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.srx"));
    ASSERT_TRUE(window->MenuAction(CommandUndo)->isEnabled());
    Trigger(CommandUndo);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(Names(0, 1), (Strings{"REFACE 01", "REFACE 02"}));
    EXPECT_EQ(MainList.selection, 7);
}

TEST_F(InstrumentCommands, ADownloadIsPaintedRowByRowWithTheVoices) {
    FindReface();
    const QImage empty = Viewport()->grab().toImage();
    EXPECT_EQ(empty.pixelColor(empty.rect().center()), QColor(Qt::white));
    Trigger(CommandDownload);
    const QImage full = Viewport()->grab().toImage();
    const int rows = full.height() / 48;
    EXPECT_GE(rows, 10);
    for (int row = 0; row < rows; ++row) {
        const QRect place = list->RowRectangle(row);
        EXPECT_NE(full.copy(place), empty.copy(place)) << row;
        if (row > 1) {
            EXPECT_NE(full.copy(place), full.copy(list->RowRectangle(row - 1))) << row;
        }
    }
}

TEST_F(InstrumentCommands, UnsavedChangesAreAskedAboutBeforeADownload) {
    OpenRefaceBank();
    FindReface();
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    Trigger(CommandDownload);
    EXPECT_EQ(NameAt(0), "REFACE 01");
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_TRUE(desktop.busyTexts.empty());
    EXPECT_TRUE(MainListState.dirty);

    // Yes writes the bank as it stood before.
    ListSetVoice(MainList, 0, VoiceObject(*ListVoice(MainList, 5)));
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    Trigger(CommandDownload);
    EXPECT_EQ(NameAt(0), "Rose Tine");
    EXPECT_TRUE(MainListState.dirty);
    const Bytes saved = ReadTestFile(home.File("bank.srx"));
    EXPECT_EQ(std::string(saved.begin() + 160 + 52, saved.begin() + 160 + 61), "REFACE 06");

    // No lets it go.
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    Trigger(CommandDownload);
    EXPECT_EQ(ReadTestFile(home.File("bank.srx")), saved);
    EXPECT_EQ(NameAt(0), "Rose Tine");
    desktop.ExpectNothingLeft();
}

TEST_F(InstrumentCommands, ADownloadFromASilentInstrumentKeepsTheListAndCostsALevel) {
    OpenRefaceBank();
    FindReface();
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    desktop.ExpectMessage("Invalid system common.");
    Trigger(CommandDownload);
    desktop.ExpectNothingLeft();
    EXPECT_EQ(NameAt(0), "REFACE 01");
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(list->isEnabled());
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(desktop.busyTexts.empty());
    EXPECT_TRUE(desktop.statusTexts.empty());
}

TEST_F(InstrumentCommands, ADownloadThroughAPortThatDoesNotOpenFailsInSilence) {
    for (const bool input : {true, false}) {
        OpenRefaceBank();
        FindReface();
        (input ? FaultsOf(BuiltinInstrument::Reface).inputDoesNotOpen
               : FaultsOf(BuiltinInstrument::Reface).outputDoesNotOpen) = true;
        Trigger(CommandDownload);
        EXPECT_EQ(NameAt(0), "REFACE 01");
        EXPECT_FALSE(MainListState.dirty);
        EXPECT_TRUE(desktop.sounds.empty());
        EXPECT_TRUE(desktop.messages.empty());
        EXPECT_TRUE(desktop.busyTexts.empty());
        FaultsOf(BuiltinInstrument::Reface) = {};
    }
}

TEST_F(InstrumentCommands, UploadSendsTheBankAndTellsOfEachVoice) {
    OpenBank();
    FindDx7();
    ListSelect(MainList, 4);
    ClickTool(CommandUpload);
    const Bytes bank = TestBank();
    EXPECT_EQ(MemoryOf(BuiltinInstrument::Dx7), Bytes(bank.begin() + 6, bank.begin() + 6 + 4096));
    EXPECT_EQ(desktop.busyTexts, Strings{"Uploading voices"});
    ASSERT_EQ(desktop.statusTexts.size(), 34u);
    EXPECT_EQ(desktop.statusTexts[0], "Encoding voice 1 of 32 (VOICE 01)");
    EXPECT_EQ(desktop.statusTexts[31], "Encoding voice 32 of 32 (VOICE 32)");
    EXPECT_EQ(desktop.statusTexts[32], "");
    EXPECT_EQ(desktop.statusTexts[33], Dx7Name);
    EXPECT_EQ(desktop.progress.front(), std::pair(0, 1));
    EXPECT_EQ(desktop.progress[1], std::pair(0, 32));
    EXPECT_EQ(desktop.progress[32], std::pair(31, 32));
    EXPECT_EQ(desktop.progress.back(), std::pair(0, 1));
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_TRUE(list->isEnabled());
    EXPECT_TRUE(MainList.redraw);
    EXPECT_EQ(MainList.selection, 4);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(InstrumentCommands, AnUploadThroughAPortThatDoesNotOpenFailsInSilence) {
    OpenBank();
    FindDx7();
    const Bytes before = MemoryOf(BuiltinInstrument::Dx7);
    FaultsOf(BuiltinInstrument::Dx7).outputDoesNotOpen = true;
    Trigger(CommandUpload);
    EXPECT_EQ(MemoryOf(BuiltinInstrument::Dx7), before);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_TRUE(desktop.busyTexts.empty());
    EXPECT_TRUE(desktop.statusTexts.empty());
    EXPECT_TRUE(list->isEnabled());
}

TEST_F(InstrumentCommands, AnUploadAsksNothingAboutUnsavedChanges) {
    OpenBank();
    FindDx7();
    MainListState.dirty = true;
    Trigger(CommandUpload);
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(InstrumentCommands, TheContextMenuUploadsTheClickedVoiceToTheRefaceDx) {
    OpenRefaceBank();
    FindReface();
    ListSelect(MainList, 0);
    desktop.ExpectMessage("REFACE 04" + StoreOnReface);
    EXPECT_TRUE(WithContextMenu(RowPoint(3), [](QMenu &menu) {
        QAction *upload = ActionOf(menu, CommandUploadVoice);
        EXPECT_EQ(upload->text(), "Upload REFACE 04 to synthesizer");
        menu.setActiveAction(upload);
        QTest::keyClick(&menu, Qt::Key_Return);
    }));
    desktop.ExpectNothingLeft();
    const Bytes block = TestRefaceBlock(3);
    EXPECT_EQ(EditBufferOf(BuiltinInstrument::Reface), Bytes(block.begin() + 52, block.end()));
    EXPECT_EQ(desktop.busyTexts, Strings{"Uploading REFACE 04"});
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_EQ(MainList.selection, 0);
}

TEST_F(InstrumentCommands, AFailedUploadToTheRefaceDxIsToldByTheDriverAndByTheCommand) {
    OpenRefaceBank();
    FindReface();
    ListSelect(MainList, 3);
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    desktop.ExpectMessage("Invalid system common.");
    desktop.ExpectMessage("There has been an error uploading REFACE 04");
    EXPECT_EQ(RunUserCommand(CommandUploadVoice), 0);
    FaultsOf(BuiltinInstrument::Reface) = {.inputDoesNotOpen = true};
    desktop.ExpectMessage("There has been an error uploading REFACE 04");
    EXPECT_EQ(RunUserCommand(CommandUploadVoice), 0);
    desktop.ExpectNothingLeft();
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(desktop.busyTexts.empty());
}

TEST_F(InstrumentCommands, UploadOfAVoiceToTheDx7AsksForTheBankFirstAndForTheSaveButtonBehind) {
    OpenBank();
    FindDx7();
    ListSelect(MainList, 3);
    desktop.Expect(ExpectedMessage{
        .text = "VOICE 04 is about to be uploaded to your synthesizer.\n\nPlease select the voice "
                "bank in which you'd like it to be stored. (Turn the black Program knob on the "
                "Korg Volca FM.)",
        .buttons = {"Dismiss"},
        .during = [&](MessageRequest &) { EXPECT_FALSE(list->isEnabled()); }});
    desktop.Expect(ExpectedMessage{
        .text = "VOICE 04 has been uploaded to your synthesizer.\n\nPress the Save button twice to "
                "store it.",
        .buttons = {"Dismiss"},
        .during = [&](MessageRequest &) {
            const Bytes buffer = EditBufferOf(BuiltinInstrument::Dx7);
            EXPECT_EQ(std::string(buffer.begin() + 145, buffer.end()), "VOICE 04  ");
        }});
    EXPECT_EQ(RunUserCommand(CommandUploadVoice), 1);
    desktop.ExpectNothingLeft();
    EXPECT_TRUE(list->isEnabled());
    EXPECT_EQ(desktop.statusTexts, Strings{Dx7Name});
    EXPECT_TRUE(desktop.busyTexts.empty());
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_F(InstrumentCommands, ASilentRefaceDxIsNotRecognized) {
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    CurrentDriverId = RefaceDriverId;
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(desktop.statusTexts.back(), Unrecognized);
    EXPECT_FALSE(window->MenuAction(CommandFind)->isEnabled());
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(InstrumentCommands, SelectSynthesizerGoesFromTheDx7ToTheRefaceDx) {
    OpenBank();
    FindDx7();
    ListSelect(MainList, 2);
    RefreshCopy();
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); },
                        [](QDialog &box) {
                            auto *synth = box.findChild<QComboBox *>("control_101");
                            EXPECT_EQ(synth->currentText().toStdString(), RefaceName);
                            EXPECT_TRUE(box.findChild<QCheckBox *>("control_102")->isChecked());
                        }));
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(MidiInPort, 4);
    EXPECT_EQ(MidiOutPort, 5);
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_EQ(desktop.statusTexts, Strings{RefaceTitle});
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    EXPECT_EQ(Allowed(), (std::vector<int>{CommandDownload, CommandFind, CommandConfigure}));
    ExpectShownAsAllowed();
    Trigger(CommandDownload);
    EXPECT_EQ(NameAt(0), "Rose Tine");
}

TEST_F(InstrumentCommands, SelectSynthesizerLeavesTheInstrumentsSettingsAlone) {
    FindReface();
    const Bytes settings = SystemSettingsOf(BuiltinInstrument::Reface);
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); }, [](QDialog &) {}));
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(SystemSettingsOf(BuiltinInstrument::Reface), settings);
}

// ---- the instrument's own settings

TEST_F(InstrumentCommands, ConfigureChangesTheSettingsOfTheInstrument) {
    FindReface();
    RefreshCommands();
    ASSERT_TRUE(window->MenuAction(CommandConfigure)->isEnabled());
    Bytes settings = SystemSettingsOf(BuiltinInstrument::Reface);
    EXPECT_TRUE(WithBox([&] { Trigger(CommandConfigure); },
                        [&](QDialog &box) {
                            EXPECT_EQ(box.windowTitle(), "Configure DX Reface");
                            EXPECT_EQ(OpenBuiltinStreams(), 2);
                            box.findChild<QLineEdit *>("control_106")->setText("133");
                            box.findChild<QComboBox *>("control_101")->setCurrentIndex(16);
                            EXPECT_EQ(SystemSettingsOf(BuiltinInstrument::Reface), settings);
                        }));
    settings[0] = 127;
    settings[8] = 1;
    settings[9] = 5;
    EXPECT_EQ(SystemSettingsOf(BuiltinInstrument::Reface), settings);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(InstrumentCommands, ConfigureOfASilentInstrumentOpensNoBox) {
    FindReface();
    RefreshCommands();
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    for (const bool careful : {false, true}) {
        CarefulMode = careful;
        desktop.ExpectMessage("Invalid system common.");
        EXPECT_FALSE(WithBox([&] { Trigger(CommandConfigure); }, [](QDialog &) {}));
    }
}

TEST_F(InstrumentCommands, ConfigureOfAnInstrumentThatIsNotFoundSaysWhyInCarefulModeAlone) {
    CurrentDriverId = RefaceDriverId;
    MidiInPort = MidiOutPort = NoMidiDevice;
    RefreshCommands();
    EXPECT_FALSE(WithBox([&] { Trigger(CommandConfigure); }, [](QDialog &) {}));
    CarefulMode = 1;
    desktop.ExpectMessage(
        "There has been an error reading the settings of your synthesizer.\n\nThe MIDI output to "
        "your synthesizer has not been found. Please check that it is connected and switched on, "
        "and click on Find synthesizer in the Edit menu.");
    EXPECT_FALSE(WithBox([&] { Trigger(CommandConfigure); }, [](QDialog &) {}));
}

TEST_F(InstrumentCommands, ARequestToEndClosesTheBoxOfTheSettingsAndItsLinkAndSendsNothing) {
    MakeProgramFolders();
    FindReface();
    RefreshCommands();
    const Bytes settings = SystemSettingsOf(BuiltinInstrument::Reface);
    EndInBox([&] { Trigger(CommandConfigure); },
             [](QDialog &box) {
                 box.findChild<QLineEdit *>("control_106")->setText("133");
                 EXPECT_EQ(OpenBuiltinStreams(), 2);
             });
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    EXPECT_EQ(SystemSettingsOf(BuiltinInstrument::Reface), settings);
}

class AutoConfigured : public InstrumentCommands {
protected:
    void SetUp() override {
        InstrumentCommands::SetUp();
        MakeProgramFolders();
        WriteTestText(DefaultDocumentsFolder() + "AutoConfig.crg",
                      ";Quillbrook Tonewright - reface DX "
                      "configuration\nTranspose:64\nTempo1:99\nSpeaker:1\n");
        former = SystemSettingsOf(BuiltinInstrument::Reface);
        ASSERT_NE(former[9], 99);
    }
    Bytes Settings() const { return SystemSettingsOf(BuiltinInstrument::Reface); }
    // Transpose, tempo and speaker of the file, the rest of the bytes that are sent 0.
    Bytes Sent() const {
        Bytes sent = former;
        std::fill_n(sent.begin(), 15, std::uint8_t{0});
        sent[7] = 64;
        sent[9] = 99;
        sent[13] = 1;
        return sent;
    }
    Bytes former;
};

TEST_F(AutoConfigured, FindSendsTheSettingsOfTheFile) {
    FindReface();
    EXPECT_EQ(Settings(), Sent());
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(AutoConfigured, TheSearchOfAStartSendsThem) {
    PostFirstCommands();
    EXPECT_EQ(Settings(), former);
    RunPosted();
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(Settings(), Sent());
}

TEST_F(AutoConfigured, SelectSynthesizerDoesNot) {
    CurrentDriverId = RefaceDriverId;
    EXPECT_TRUE(WithBox([&] { Trigger(CommandSelectSynth); }, [](QDialog &) {}));
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(MidiOutPort, 5);
    EXPECT_EQ(Settings(), former);
}

TEST_F(AutoConfigured, AnInstrumentThatIsNotFoundGetsNothing) {
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    CurrentDriverId = RefaceDriverId;
    RunCommand(CommandFind);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(Settings(), former);
}

// ---- at start

class FirstCommands : public InstrumentCommands {
protected:
    void Start() {
        CurrentDriverId = NoDriverId;
        SynthFirmware = 0;
        ForgetRecords();
        PostFirstCommands();
        EXPECT_TRUE(desktop.statusTexts.empty()); // nothing runs before the loop
        RunPosted();
    }
};

TEST_F(FirstCommands, StartDetectsTheRefaceDxAndShowsItsVersion) {
    Start();
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(MidiInPort, 4);
    EXPECT_EQ(MidiOutPort, 5);
    EXPECT_EQ(desktop.statusTexts, (Strings{RefaceName, RefaceTitle}));
    EXPECT_TRUE(window->MenuAction(CommandFind)->isEnabled());
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(FirstCommands, TheDownloadOfAStartComesBehindTheSearch) {
    DownloadOnOpen = 1;
    Start();
    ASSERT_EQ(desktop.statusTexts.size(), 36u);
    EXPECT_EQ(desktop.statusTexts[0], RefaceName);
    EXPECT_EQ(desktop.statusTexts[1], RefaceTitle);
    EXPECT_EQ(desktop.statusTexts[2], "Downloading voice 1 of 32 (Rose Tine)");
    EXPECT_EQ(desktop.statusTexts[35], RefaceTitle);
    EXPECT_EQ(ListedVoices(), MemoryOf(BuiltinInstrument::Reface));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(window->MenuAction(CommandSave)->isEnabled());
}

TEST_F(FirstCommands, TheDocumentOfAStartComesBehindTheDownloadAndAsksAboutIt) {
    DownloadOnOpen = 1;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    PostFirstCommands();
    PostFirstDocument(home.Write("bank.syx", TestBank()));
    RunPosted();
    desktop.ExpectNothingLeft();
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(FirstCommands, TheDownloadOfAStartDoesNothingForAnInstrumentThatCannotBeAsked) {
    DownloadOnOpen = 1;
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "DX7";
    for (const std::string &name : Strings{Dx7Name, "Unknown", ""}) {
        SelectKeyboardName = name;
        Start();
        EXPECT_EQ(ListCount(MainList), 0) << name;
        EXPECT_FALSE(MainListState.dirty) << name;
        EXPECT_TRUE(desktop.sounds.empty()) << name;
        EXPECT_EQ(desktop.statusTexts, name == Dx7Name ? (Strings{Dx7Name, Dx7Name})
                                                       : (Strings{Unrecognized, Unrecognized}));
    }
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(FirstCommands, TheDownloadOfAStartDoesNothingWhenTheInstrumentIsNotThere) {
    DownloadOnOpen = 1;
    FaultsOf(BuiltinInstrument::Reface).silent = true;
    Start();
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(desktop.statusTexts, (Strings{RefaceName, Unrecognized}));
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_TRUE(desktop.messages.empty());
}

} // namespace
} // namespace tonewright
