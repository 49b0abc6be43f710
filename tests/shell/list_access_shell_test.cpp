// Voices that the extras have found go into the main list: put into rows, or as a new bank.
#include "shell/list_access_shell.h"

#include "extras/list_access.h"
#include "extras/voice_parcel.h"
#include "midi/midi_api.h"
#include "shell/archive_flow.h"
#include "shell/command_queue.h"
#include "shell/list_origin.h"
#include "shell_fixture.h"
#include "support/reface_bytes.h"

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

class ListAccessTest : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        UseMainList();
        OpenBank();
    }

    // Packed voices "FOUND A", "FOUND B"...
    static std::vector<KeptVoice> Found(int count) {
        std::vector<KeptVoice> voices;
        for (int number = 0; number < count; ++number) {
            std::vector<std::uint8_t> bytes = TestPackedVoice(number);
            const std::string name = std::string("FOUND ") + static_cast<char>('A' + number);
            std::ranges::copy(name + "   ", bytes.begin() + 118);
            voices.push_back({VoiceForm::Dx7Packed, bytes});
        }
        return voices;
    }
    static KeptVoice FoundReface(int number) {
        std::vector<std::uint8_t> bytes = TestRefaceCommon(number);
        for (int index = 0; index < 4; ++index) {
            const auto block = TestRefaceOperator(index);
            bytes.insert(bytes.end(), block.begin(), block.end());
        }
        return {VoiceForm::Reface, bytes};
    }
    static int Put(int row, const std::vector<KeptVoice> &voices, const std::string &source = "") {
        return TheListAccess.PutVoices(nullptr, row, voices, source);
    }
    static bool NewBank(const std::vector<KeptVoice> &voices, const std::string &source = "") {
        return TheListAccess.NewBank(nullptr, voices, source);
    }
    static std::vector<std::uint8_t> PayloadAt(int row) {
        const auto parts = PayloadOf(*ListVoice(MainList, row));
        return {parts->payload.begin(), parts->payload.end()};
    }
};

const std::string SelectARow =
    "Please select the row of the main list where the voices are to begin.";

TEST_F(ListAccessTest, TellsTheSelectedRow) {
    ListSelect(MainList, 7);
    EXPECT_EQ(TheListAccess.SelectedRow(), 7);
    ListReset(MainList);
    EXPECT_EQ(TheListAccess.SelectedRow(), -1);
}

TEST_F(ListAccessTest, PostedWorkWaitsUntilNothingRuns) {
    int works = 0;
    {
        const RunningMark running;
        TheListAccess.Post([&works] { works += SomethingIsRunning() ? 1 : 100; });
        EXPECT_FALSE(RunNextPosted());
    }
    EXPECT_TRUE(RunNextPosted());
    EXPECT_EQ(works, 1);
}

TEST_F(ListAccessTest, PutsVoicesFromTheRowOnAndGoesOnBehindThem) {
    const auto before = MainList.items;
    EXPECT_EQ(Put(4, Found(3)), 3);
    EXPECT_EQ(Names(3, 7), (Strings{"VOICE 04", "FOUND A", "FOUND B", "FOUND C", "VOICE 08"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(MainList.selection, 7);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(repaints, 1);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(MainList.items, before);
}

TEST_F(ListAccessTest, LeavesOutWhatFallsBehindTheLastRow) {
    EXPECT_EQ(Put(30, Found(5)), 2);
    EXPECT_EQ(Names(29, 31), (Strings{"VOICE 30", "FOUND A", "FOUND B"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(MainList.selection, 31);
}

TEST_F(ListAccessTest, AVoiceOfTheLastRowStaysSelected) {
    EXPECT_EQ(Put(31, Found(1)), 1);
    EXPECT_EQ(MainList.selection, 31);
    EXPECT_EQ(NameAt(31), "FOUND A");
}

TEST_F(ListAccessTest, ARowThatIsNoneIsAskedFor) {
    const auto before = MainList.items;
    for (const int row : {-1, 32}) {
        desktop.ExpectMessage(SelectARow);
        EXPECT_EQ(Put(row, Found(1)), -1);
    }
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(ListAccessTest, NoVoicesChangeNothing) {
    EXPECT_EQ(Put(4, {}), 0);
    EXPECT_FALSE(NewBank({}));
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(NameAt(0), "VOICE 01");
}

TEST_F(ListAccessTest, DetunesKeepAllFourBitsWhateverTheSettingSays) {
    WholeDetune = 0;
    auto voices = Found(1);
    voices[0].bytes[12] = 0x3B | 0x40; // rate scaling 3, detune 15
    EXPECT_EQ(Put(0, voices), 1);
    EXPECT_EQ(PayloadAt(0)[20], 15);
    MainListState.dirty = false;
    ASSERT_TRUE(NewBank(voices));
    EXPECT_EQ(PayloadAt(0)[20], 15);
}

// ---- dropped on a row

TEST_F(ListAccessTest, BytesThatNoInstrumentTakesAreAskedAboutWhereTheyAreDropped) {
    auto voices = Found(3);
    voices[1].bytes[0] |= 0x80;
    voices[2].bytes[5] |= 0x80;
    const std::string question =
        "2 of these voices have bytes above 7F, which no instrument sends or takes. The file is "
        "probably damaged there.\n\nDo you wish to take them all the same?";
    const auto before = MainList.items;
    desktop.ExpectYesNo(question, ResultNo);
    DropArchiveVoices(4, PackVoices(voices));
    EXPECT_EQ(MainList.items, before);
    desktop.ExpectYesNo(question, ResultYes);
    DropArchiveVoices(4, PackVoices(voices));
    EXPECT_EQ(NameAt(6), "FOUND C");
    voices.resize(1); // which has none
    DropArchiveVoices(9, PackVoices(voices));
    EXPECT_EQ(NameAt(9), "FOUND A");
    MainListState.dirty = false;
    ListReset(MainList);
    desktop.ExpectYesNo("The list is empty.\n\nDo you wish to make a new bank of them?", ResultYes);
    DropArchiveVoices(0, PackVoices(voices));
    EXPECT_EQ(desktop.statusTexts.back().substr(0, 12), "From Archive");
}

// ---- the other family, and an empty list

const std::string OtherFamily =
    "The list holds voices for the Yamaha DX7, TX7, Korg Volca FM, and these are for the Yamaha "
    "reface DX.\n\nDo you wish to make a new bank of them?";

TEST_F(ListAccessTest, VoicesOfTheOtherFamilyAreANewBankOnlyAfterAQuestion) {
    const auto before = MainList.items;
    MidiInPort = 3;
    MidiOutPort = 4;
    SynthFirmware = 0x0102;
    desktop.ExpectYesNo(OtherFamily, ResultNo);
    EXPECT_EQ(Put(4, {FoundReface(0), FoundReface(1)}), -1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiOutPort, 4);
    EXPECT_EQ(UndoCount(), 0);

    desktop.ExpectYesNo(OtherFamily, ResultYes);
    EXPECT_EQ(Put(4, {FoundReface(0), FoundReface(1)}), 2);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(MidiInPort, NoMidiDevice); // those of another instrument
    EXPECT_EQ(MidiOutPort, NoMidiDevice);
    EXPECT_EQ(SynthFirmware, 0u);
    ASSERT_EQ(ListCount(MainList), 32);
    const auto names = [] {
        return Strings{VoiceObjectName(MainList.items[0]), VoiceObjectName(MainList.items[1]),
                       VoiceObjectName(MainList.items[2]), VoiceObjectName(MainList.items[31])};
    };
    EXPECT_EQ(names(), (Strings{"REFACE 01", "REFACE 02", "Init Voice", "Init Voice"}));
    EXPECT_EQ(MainList.items[1].bytes, TestRefaceBlock(1));
    EXPECT_EQ(CurrentDocumentPath, DefaultDocumentName());
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiInPort, 3);
    EXPECT_EQ(MidiOutPort, 4);
    EXPECT_EQ(SynthFirmware, 0x0102u);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
    SetNameAt(0, "CHANGED   ");
    for (const bool careful : {false, true}) {
        CarefulMode = careful;
        EXPECT_EQ(RunCommand(CommandSave), 1);
    }
    const auto saved = ReadTestFile(home.File("bank.syx"));
    EXPECT_EQ(saved.size(), 4104u);
    EXPECT_EQ(std::string(saved.begin() + 124, saved.begin() + 134), "CHANGED   ");
}

TEST_F(ListAccessTest, UndoBringsTheFamilyOfTheVoicesBackOverAClearedList) {
    ASSERT_EQ(Put(0, Found(1)), 1);
    MainListState.dirty = false;
    const auto before = MainList.items;
    ASSERT_EQ(Put(1, Found(1)), 1);
    MainListState.dirty = false;
    ASSERT_EQ(RunCommand(CommandClear), 1); // of which no level is made
    ASSERT_TRUE(NewBank({FoundReface(0)}, "/dumps/one.syx"));
    MainListState.dirty = false;
    ASSERT_TRUE(NewBank(Found(3), "/dumps/two.syx"));
    EXPECT_EQ(desktop.statusTexts.back().substr(0, 19), "From /dumps/two.syx");
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(CurrentDocumentPath, "Untitled.srx");
    EXPECT_EQ(desktop.statusTexts.back().substr(0, 19), "From /dumps/one.syx");
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
    CurrentDocumentPath = home.File("other.syx");
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(CurrentDocumentPath, home.File("other.syx")); // it was brought back before
}

TEST_F(ListAccessTest, UndoAmongTheVoicesOfANewBankKeepsItsName) {
    ASSERT_TRUE(NewBank(Found(3), "/dumps/old.mid"));
    CurrentDocumentPath = home.File("new.syx");
    ASSERT_EQ(Put(1, Found(1)), 1);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(CurrentDocumentPath, home.File("new.syx"));
    EXPECT_EQ(desktop.statusTexts.back().substr(0, 19), "From /dumps/old.mid");
}

TEST_F(ListAccessTest, TheSourceStaysInTheStatusBarAsLongAsTheListIsFromThere) {
    const std::string title = SynthTitle(Dx7DriverId, 0);
    ASSERT_TRUE(NewBank(Found(3), "/dumps/old.mid"));
    Forget();
    RefreshStatus(); // as behind each hint of a menu
    EXPECT_EQ(desktop.statusTexts, Strings{"From /dumps/old.mid - " + title});
    SetStatusText(nullptr, title); // as a transfer ends
    EXPECT_EQ(RunCommand(CommandCopy), 1);
    EXPECT_EQ(desktop.statusTexts.back(), "From /dumps/old.mid - " + title);
    MainListState.dirty = false;
    EXPECT_EQ(RunCommand(CommandClear), 1);
    EXPECT_EQ(desktop.statusTexts.back(), title);
    Forget();
    EXPECT_EQ(RunCommand(CommandCopy), 0);
    EXPECT_EQ(desktop.statusTexts, Strings{}); // as ever
}

// ---- what Undo cannot keep

const std::string WithoutUndo =
    "Undo will not be able to bring the list back as it is now.\n\nDo you wish to go on all the "
    "same?";

TEST_F(ListAccessTest, AListThatUndoCannotKeepIsReplacedOnlyAfterAQuestion) {
    MaxUndoLevel = 1;
    UndoInit(nullptr);
    ASSERT_EQ(Put(0, Found(1)), 1);
    MainListState.dirty = false;
    ListDelete(MainList, 31);
    const auto before = MainList.items;
    for (int way = 0; way < 2; ++way) {
        desktop.ExpectMessage(LevelError);
        desktop.ExpectYesNo(WithoutUndo, ResultNo);
        if (way == 0) {
            EXPECT_FALSE(NewBank(Found(2), "/dumps/old.mid"));
        } else {
            EXPECT_EQ(Put(4, Found(2)), -1);
        }
        EXPECT_EQ(MainList.items, before);
        EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
        EXPECT_FALSE(MainListState.dirty);
        EXPECT_EQ(UndoCount(), 1); // the level before is there
    }
    desktop.ExpectMessage(LevelError);
    desktop.ExpectYesNo(WithoutUndo, ResultYes);
    EXPECT_EQ(Put(30, Found(2)), 1);
    EXPECT_EQ(NameAt(30), "FOUND A");
    MainListState.dirty = false;
    desktop.ExpectMessage(LevelError);
    desktop.ExpectYesNo(WithoutUndo, ResultYes);
    EXPECT_TRUE(NewBank(Found(2)));
    EXPECT_EQ(NameAt(1), "FOUND B");
}

TEST_F(ListAccessTest, AnEmptyListTakesThemAsANewBankAfterAQuestion) {
    ListReset(MainList);
    const std::string question = "The list is empty.\n\nDo you wish to make a new bank of them?";
    desktop.ExpectYesNo(question, ResultNo);
    EXPECT_EQ(Put(-1, Found(2)), -1);
    EXPECT_EQ(ListCount(MainList), 0);
    desktop.ExpectYesNo(question, ResultYes);
    EXPECT_EQ(Put(-1, Found(2), "/dumps/two.syx"), 2);
    EXPECT_EQ(desktop.statusTexts.back().substr(0, 19), "From /dumps/two.syx");
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(Names(0, 2), (Strings{"FOUND A", "FOUND B", "INIT VOICE"}));
}

// ---- a new bank

TEST_F(ListAccessTest, ANewBankIsFilledUpAndHasNoNameYet) {
    const auto before = MainList.items;
    ListSelect(MainList, 9);
    const int origin = MainListOrigin;
    EXPECT_TRUE(NewBank(Found(2), "/dumps/old.mid"));
    EXPECT_EQ(Names(0, 2), (Strings{"FOUND A", "FOUND B", "INIT VOICE"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NameAt(31), "INIT VOICE");
    EXPECT_EQ(MainList.selection, 0);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(CurrentDocumentPath, DefaultDocumentName());
    EXPECT_EQ(titles, Strings{std::string("Tonewright [ ") + DefaultDocumentName() + " ]"});
    ASSERT_FALSE(desktop.statusTexts.empty());
    EXPECT_EQ(desktop.statusTexts.back(),
              std::string("From /dumps/old.mid - ") + SynthTitle(Dx7DriverId, SynthFirmware));
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_NE(MainListOrigin, origin);
    EXPECT_TRUE(TheDocumentFile.path.empty());
    EXPECT_TRUE(CommandAllowed(CommandSave));
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(MainListOrigin, origin);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
    EXPECT_EQ(titles.back(), "Tonewright [ bank.syx ]");
    EXPECT_EQ(desktop.statusTexts.back(), SynthTitle(Dx7DriverId, SynthFirmware));
}

TEST_F(ListAccessTest, TheInitialVoiceIsThePublishedOne) {
    EXPECT_TRUE(NewBank(Found(1)));
    std::vector<std::uint8_t> expected;
    for (int block = 0; block < 6; ++block) {
        const std::vector<std::uint8_t> bytes = {
            99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 7,
        };
        expected.insert(expected.end(), bytes.begin(), bytes.end());
    }
    expected[5 * 21 + 16] = 99; // the last block alone is heard
    const std::vector<std::uint8_t> common = {
        99, 99, 99, 99, 50,  50,  50,  50,  0,   0,   1,   35,  0,   0,   0,
        1,  0,  3,  24, 'I', 'N', 'I', 'T', ' ', 'V', 'O', 'I', 'C', 'E', 1,
    };
    expected.insert(expected.end(), common.begin(), common.end());
    EXPECT_EQ(PayloadAt(31), expected);
}

TEST_F(ListAccessTest, MoreThanABankIsCut) {
    EXPECT_TRUE(NewBank(Found(40)));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NameAt(25), "FOUND Z");
}

TEST_F(ListAccessTest, UnsavedChangesAreAskedAbout) {
    MainListState.dirty = true;
    const auto before = MainList.items;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_FALSE(NewBank(Found(1)));
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));

    SetNameAt(0, "CHANGED   ");
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    EXPECT_TRUE(NewBank(Found(1)));
    EXPECT_EQ(NameAt(0), "FOUND A");
    const auto saved = ReadTestFile(home.File("bank.syx")); // before the list was replaced
    EXPECT_EQ(std::string(saved.begin() + 124, saved.begin() + 134), "CHANGED   ");
}

TEST_F(ListAccessTest, ItsQuestionsStandOverTheWindowThatAsks) {
    const auto main = reinterpret_cast<QWidget *>(0x10), box = reinterpret_cast<QWidget *>(0x20);
    TheShellWindow.window = main;
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_FALSE(TheListAccess.NewBank(box, Found(1), ""));
    EXPECT_EQ(desktop.messages.back().owner, box);
    EXPECT_EQ(TheShellWindow.window, main);
}

TEST_F(ListAccessTest, ASaveOfANewBankAsksForItsName) {
    for (const bool careful : {false, true}) {
        SCOPED_TRACE(careful ? "careful" : "plain");
        CarefulMode = careful;
        MainListState.dirty = false;
        const std::string path = home.File(careful ? "two.syx" : "one.syx");
        ASSERT_TRUE(NewBank(Found(1), home.File("bank.syx")));
        desktop.Expect(ExpectedFileDialog{
            .kind = FileDialogKind::Save, .answer = path, .start = DefaultDocumentName()});
        EXPECT_EQ(RunCommand(CommandSave), 1);
        EXPECT_EQ(CurrentDocumentPath, path);
        EXPECT_FALSE(MainListState.dirty);
    }
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

// ---- auditions

struct Played {
    QWidget *owner;
    VoiceObject voice;
    DriverId family;
    MidiPorts ports;
};

class ListAccessAudition : public ListAccessTest {
protected:
    void SetUp() override {
        ListAccessTest::SetUp();
        TheShellWindow.AuditionVoice = [this](QWidget *owner, const VoiceObject &voice,
                                              DriverId family, MidiPorts ports) {
            EXPECT_TRUE(SomethingIsRunning());
            played.push_back({owner, voice, family, ports});
            return 1;
        };
        MidiInPort = 3;
        MidiOutPort = 4;
    }
    std::vector<Played> played;
};

TEST_F(ListAccessAudition, GoesToTheInstrumentOfTheFamily) {
    const auto owner = reinterpret_cast<QWidget *>(0x20);
    EXPECT_TRUE(TheListAccess.Audition(owner, Found(1)[0]));
    ASSERT_EQ(played.size(), 1u);
    EXPECT_EQ(played[0].owner, owner);
    EXPECT_EQ(played[0].family, Dx7DriverId);
    EXPECT_EQ(played[0].ports.in, 3);
    EXPECT_EQ(played[0].ports.out, 4);
    EXPECT_STREQ(VoiceObjectName(played[0].voice), "FOUND A");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(ListAccessAudition, NeverGoesToTheInstrumentOfTheOtherFamily) {
    desktop.ExpectMessage("This is a voice for the Yamaha reface DX, which is not the selected "
                          "synthesizer. To hear it, select that one, or switch the built-in "
                          "instruments on in the menu Extras.");
    EXPECT_FALSE(TheListAccess.Audition(nullptr, FoundReface(0)));
    EXPECT_TRUE(played.empty());
}

TEST_F(ListAccessAudition, ABoxThatDoesNotOpenHasPlayedNothing) {
    TheShellWindow.AuditionVoice = nullptr;
    EXPECT_FALSE(TheListAccess.Audition(nullptr, Found(1)[0]));
}

} // namespace
} // namespace tonewright
