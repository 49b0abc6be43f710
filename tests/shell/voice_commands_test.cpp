// The commands that act on voices: which row they take, their undo levels, messages and sounds.
#include "shell/voice_commands.h"

#include "shell_fixture.h"

#include <filesystem>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

// What the operations that a test put into a row were called with, and what they answer.
Strings Calls;
int Answer = 1;

const std::string MissingText = "String table error - this application may be damaged";

class VoiceCommand : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        Calls.clear();
        Answer = 1;
        MidiInPort = 3;
        MidiOutPort = 4;
        OpenBank();
    }
    // Title, levels, dirty and sounds of a command that changes the document's state in no way.
    void ExpectUntouched() {
        EXPECT_EQ(UndoCount(), 0);
        EXPECT_FALSE(MainListState.dirty);
        EXPECT_TRUE(desktop.sounds.empty());
        EXPECT_TRUE(titles.empty());
    }
};

class MoveVoices : public VoiceCommand {};

TEST_F(MoveVoices, UpGoesAboveTheRowBefore) {
    MainListState.clickedIndex = 4;
    EXPECT_EQ(RunCommand(CommandMoveUp), 1);
    EXPECT_EQ(Names(2, 5), (Strings{"VOICE 03", "VOICE 05", "VOICE 04", "VOICE 06"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(titles.empty());
}

TEST_F(MoveVoices, DownGoesBelowTheRowBehind) {
    MainListState.clickedIndex = 4;
    EXPECT_EQ(RunCommand(CommandMoveDown), 1);
    EXPECT_EQ(Names(3, 6), (Strings{"VOICE 04", "VOICE 06", "VOICE 05", "VOICE 07"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(MoveVoices, TheSelectionStaysOnItsVoice) {
    const auto selectedNameAfter = [&](int selected, int command, int clicked) {
        ListSelect(MainList, selected);
        MainListState.clickedIndex = clicked;
        RunCommand(command);
        return NameAt(MainList.selection);
    };
    EXPECT_EQ(selectedNameAfter(4, CommandMoveUp, 4), "VOICE 05"); // the moved one
    EXPECT_EQ(MainList.selection, 3);
    EXPECT_EQ(selectedNameAfter(3, CommandMoveDown, 3), "VOICE 05");
    EXPECT_EQ(MainList.selection, 4);
    EXPECT_EQ(selectedNameAfter(3, CommandMoveUp, 4), "VOICE 04"); // its neighbour
    EXPECT_EQ(selectedNameAfter(4, CommandMoveDown, 3), "VOICE 04");
    EXPECT_EQ(selectedNameAfter(10, CommandMoveUp, 4), "VOICE 11");
}

TEST_F(MoveVoices, AMoveThatDoesNotHappenStillCostsALevel) {
    const auto before = MainList.items;
    MainListState.clickedIndex = 0;
    EXPECT_EQ(RunCommand(CommandMoveUp), 0);
    EXPECT_EQ(UndoCount(), 1);
    MainListState.clickedIndex = 32;
    EXPECT_EQ(RunCommand(CommandMoveDown), 0);
    EXPECT_EQ(UndoCount(), 2);
    EXPECT_EQ(MainList.items, before);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
}

TEST_F(MoveVoices, TheSelectionIsNotTakenWithoutAClickedRow) {
    const auto before = MainList.items;
    ListSelect(MainList, 5);
    EXPECT_EQ(RunCommand(CommandMoveUp), 0);
    EXPECT_EQ(RunCommand(CommandMoveDown), 0);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 2);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(MoveVoices, DownFromTheLastRowHasNoPlaceToGoAndLosesTheVoice) {
    MainListState.clickedIndex = 31;
    desktop.ExpectMessage(MissingText);
    EXPECT_EQ(RunCommand(CommandMoveDown), 0);
    EXPECT_EQ(ListCount(MainList), 31);
    EXPECT_EQ(NameAt(30), "VOICE 31");
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NameAt(31), "VOICE 32");
}

TEST_F(MoveVoices, AnEmptyListCostsNothing) {
    ListReset(MainList);
    MainListState.clickedIndex = 2;
    EXPECT_EQ(RunCommand(CommandMoveUp), 0);
    EXPECT_EQ(RunCommand(CommandMoveDown), 0);
    ExpectUntouched();
}

class ExportTest : public VoiceCommand {
protected:
    void ExpectDialog(std::optional<std::string> answer, const std::string &proposedName) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export,
                                          .answer = std::move(answer),
                                          .start = OpenExportPath + proposedName,
                                          .driverId = Dx7DriverId});
    }
};

TEST_F(ExportTest, WritesTheClickedVoiceAndPlaysTheSound) {
    MainListState.clickedIndex = 6;
    ExpectDialog(home.File("seven.sy1"), "VOICE 07.sy1");
    EXPECT_EQ(RunCommand(CommandExport), 1);
    const std::string bytes = ReadRawText(home.File("seven.sy1"));
    EXPECT_EQ(bytes.size(), 164u);
    EXPECT_EQ(bytes.substr(0, 6), std::string("\xF0\x43\x00\x00\x01\x1B", 6));
    EXPECT_EQ(bytes.substr(6 + 145, 10), "VOICE 07  ");
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(MainListState.clickedIndex, -1);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
}

TEST_F(ExportTest, APathThatIsLongerThan260BytesIsRefused) {
    CreateBackups = 1;
    const std::string longest = home.FileOfSize(260, "seven.sy1");
    WriteTestText(longest + "1", "former");
    ExpectDialog(longest + "1", "VOICE 01.sy1");
    desktop.ExpectMessage("There has been an error exporting VOICE 01");
    EXPECT_EQ(RunCommand(CommandExport), 0);
    EXPECT_EQ(ReadTestText(longest + "1"), "former");
    EXPECT_FALSE(std::filesystem::exists(longest));
    EXPECT_EQ(OpenExportPath, home.Folder());
    CreateBackups = 0;
    ExpectDialog(longest, "VOICE 01.sy1");
    EXPECT_EQ(RunCommand(CommandExport), 1);
    EXPECT_EQ(ReadTestFile(longest).size(), 164u);
}

TEST_F(ExportTest, TakesTheSelectionWithoutAClickedRow) {
    ListSelect(MainList, 2);
    ExpectDialog(home.File("three.sy1"), "VOICE 03.sy1");
    EXPECT_EQ(RunCommand(CommandExport), 1);
    EXPECT_EQ(ReadRawText(home.File("three.sy1")).substr(6 + 145, 10), "VOICE 03  ");
}

TEST_F(ExportTest, DoesNothingWithoutARow) {
    ListSelect(MainList, NoRow);
    EXPECT_EQ(RunCommand(CommandExport), 0);
    ExpectUntouched();
}

TEST_F(ExportTest, PlaysTheSoundAlsoWhenTheDialogIsCancelled) {
    ExpectDialog(std::nullopt, "VOICE 01.sy1");
    EXPECT_EQ(RunCommand(CommandExport), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(ExportTest, AFailureNamesTheVoiceAndPlaysTheSoundAllTheSame) {
    SetNameAt(0, "\xC9T\xC9       ");
    ExpectDialog(home.File("no such folder/a.sy1"), "\xC3\x89T\xC3\x89.sy1");
    desktop.ExpectMessage("There has been an error exporting \xC3\x89T\xC3\x89");
    EXPECT_EQ(RunCommand(CommandExport), 0);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(ExportTest, OddNamesAreMadeFitForAFile) {
    SetNameAt(0, "A/B:C     ");
    ExpectDialog(std::nullopt, "A_B_C.sy1");
    RunCommand(CommandExport);
    SetNameAt(0, "\xFC|\xFF<>?*\"\\X");
    ExpectDialog(std::nullopt, "\xC3\xBC_\xC3\xBF______X.sy1");
    RunCommand(CommandExport);
    SetNameAt(0, "          "); // the first of ten blanks stays
    ExpectDialog(std::nullopt, " .sy1");
    RunCommand(CommandExport);
}

TEST_F(ExportTest, AnExistingFileIsBackedUpAndAFailedBackupAskedAbout) {
    CreateBackups = 1;
    const std::string chosen = home.WriteText("one.sy1", "former");
    ExpectDialog(chosen, "VOICE 01.sy1");
    EXPECT_EQ(RunCommand(CommandExport), 1);
    EXPECT_EQ(ReadTestText(home.File("Backup of one.sy1")), "former");

    std::filesystem::remove(home.path / "Backup of one.sy1");
    std::filesystem::create_directory(home.path / "Backup of one.sy1");
    home.WriteText("one.sy1", "former");
    ExpectDialog(chosen, "VOICE 01.sy1");
    desktop.ExpectYesNo(BackupQuestion, ResultNo);
    desktop.ExpectMessage("There has been an error exporting VOICE 01");
    EXPECT_EQ(RunCommand(CommandExport), 0);
    EXPECT_EQ(ReadTestText(chosen), "former");

    ExpectDialog(chosen, "VOICE 01.sy1");
    desktop.ExpectYesNo(BackupQuestion, ResultYes);
    EXPECT_EQ(RunCommand(CommandExport), 1);
    EXPECT_EQ(ReadTestFile(chosen).size(), 164u);
    EXPECT_EQ(desktop.sounds.size(), 3u);
}

TEST_F(ExportTest, ARowWithoutAVoiceFailsUnderTheLastGoodName) {
    VoiceObjectName(*ListVoice(MainList, 8));
    ListTakeVoice(MainList, 0);
    ExpectDialog(home.File("a.sy1"), "VOICE 09.sy1");
    desktop.ExpectMessage("There has been an error exporting VOICE 09");
    EXPECT_EQ(RunCommand(CommandExport), 0);
    EXPECT_FALSE(home.Holds("a.sy1"));
}

TEST_F(ExportTest, TheChosenFolderIsKeptForTheNextExportAndImport) {
    std::filesystem::create_directory(home.path / "voices");
    const std::string voices = (home.path / "voices" / "").string();
    ExpectDialog(voices + "one.sy1", "VOICE 01.sy1");
    RunCommand(CommandExport);
    EXPECT_EQ(OpenExportPath, voices);
    ExpectDialog(std::nullopt, "VOICE 01.sy1");
    RunCommand(CommandExport);
    desktop.Expect(ExpectedFileDialog{
        .kind = FileDialogKind::Import, .answer = std::nullopt, .start = voices});
    RunCommand(CommandImport);
    EXPECT_EQ(OpenPath, home.Folder());
    EXPECT_EQ(OpenImportPath, "/imports/");
}

class ImportTest : public VoiceCommand {
protected:
    void ExpectDialog(std::optional<std::string> answer) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Import,
                                          .answer = std::move(answer),
                                          .start = OpenExportPath,
                                          .driverId = Dx7DriverId});
    }
};

TEST_F(ImportTest, ReplacesTheClickedVoice) {
    MainListState.clickedIndex = 6;
    ExpectDialog(home.Write("piano.sy1", TestVoiceFile()));
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_EQ(Names(5, 7), (Strings{"VOICE 06", "E.PIANO 1x", "VOICE 08"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_GE(repaints, 1);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
    EXPECT_TRUE(titles.empty());
    EXPECT_EQ(OpenImportPath, "/imports/");
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(NameAt(6), "VOICE 07");
}

TEST_F(ImportTest, TakesTheSelectionWithoutAClickedRow) {
    ListSelect(MainList, 2);
    ExpectDialog(home.Write("piano.sy1", TestVoiceFile()));
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_EQ(NameAt(2), "E.PIANO 1x");
}

TEST_F(ImportTest, WithoutARowItOnlyCostsALevel) {
    ListSelect(MainList, NoRow);
    EXPECT_EQ(RunCommand(CommandImport), 0);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(ImportTest, APathThatIsLongerThan260BytesIsRefused) {
    const std::string longest = home.FileOfSize(260, "seven.sy1");
    for (const std::string &path : {longest, longest + ".sy1"}) {
        WriteTestFile(path, TestVoiceFile());
    }
    ExpectDialog(longest + ".sy1");
    desktop.ExpectMessage("There has been an error importing VOICE 01");
    EXPECT_EQ(RunCommand(CommandImport), 0);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_EQ(OpenExportPath, home.Folder());
    EXPECT_FALSE(MainListState.dirty);
    ExpectDialog(longest);
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_EQ(NameAt(0), "E.PIANO 1x");
}

TEST_F(ImportTest, ACancelledDialogCountsAsASuccess) {
    const auto before = MainList.items;
    ExpectDialog(std::nullopt);
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(ImportTest, AFailureNamesTheVoiceThatStays) {
    MainListState.clickedIndex = 6;
    ExpectDialog(home.WriteText("not a voice.sy1", "text"));
    desktop.ExpectMessage("There has been an error importing VOICE 07");
    EXPECT_EQ(RunCommand(CommandImport), 0);
    EXPECT_EQ(NameAt(6), "VOICE 07");
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(ImportTest, ARowWithoutAVoiceCannotBeFilled) {
    VoiceObjectName(*ListVoice(MainList, 8));
    ListTakeVoice(MainList, 0);
    desktop.ExpectMessage(LevelError); // nor can such a list be kept
    ExpectDialog(home.Write("piano.sy1", TestVoiceFile()));
    desktop.ExpectMessage("There has been an error importing VOICE 09");
    EXPECT_EQ(RunCommand(CommandImport), 0);
    EXPECT_EQ(ListVoice(MainList, 0), nullptr);
}

TEST_F(ImportTest, ADamagedVoiceIsAskedAbout) {
    auto file = TestVoiceFile();
    file[162] ^= 1;
    const std::string path = home.Write("sum.sy1", file);
    const std::string question = "The data in the document sum.sy1 may be damaged.\n\nDo you wish "
                                 "to open it anyway?";
    ExpectDialog(path);
    desktop.ExpectYesNo(question, ResultNo);
    desktop.ExpectMessage("There has been an error importing VOICE 01");
    EXPECT_EQ(RunCommand(CommandImport), 0);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    ExpectDialog(path);
    desktop.ExpectYesNo(question, ResultYes);
    EXPECT_EQ(RunCommand(CommandImport), 1);
    EXPECT_EQ(NameAt(0), "E.PIANO 1x");
}

class Drop : public VoiceCommand {
protected:
    std::string Voice(const std::string &name, char mark = 'E') {
        auto file = TestVoiceFile();
        file[6 + 145] = static_cast<std::uint8_t>(mark);
        FixTestChecksum(file);
        return home.Write(name, file);
    }
};

TEST_F(Drop, FillsTheRowsDownwardFromTheSelection) {
    ListSelect(MainList, 3);
    DropFiles({Voice("a.sy1", 'A'), Voice("b.SY1", 'B')});
    EXPECT_EQ(Names(2, 5), (Strings{"VOICE 03", "A.PIANO 1x", "B.PIANO 1x", "VOICE 06"}));
    EXPECT_EQ(MainList.selection, 3);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(raises, 1);
    EXPECT_EQ(repaints, 1);
    EXPECT_EQ(OpenExportPath, home.Folder());
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(Names(3, 4), (Strings{"VOICE 04", "VOICE 05"}));
}

TEST_F(Drop, APathThatIsLongerThan260BytesEndsTheDropLikeAnyFailure) {
    const std::string longest = home.FileOfSize(260, "seven.sy1");
    for (const std::string &path : {longest, longest + ".sy1"}) {
        WriteTestFile(path, TestVoiceFile());
    }
    desktop.ExpectMessage("Import error");
    DropFiles({longest, longest + ".sy1", Voice("c.sy1", 'C')});
    EXPECT_EQ(Names(0, 1), (Strings{"E.PIANO 1x", "VOICE 02"}));
}

TEST_F(Drop, FilesOfOtherKindsAreSkipped) {
    DropFiles({home.WriteText("note.txt", "text"), Voice("a.sy1", 'A'), Voice("b.sr1", 'B'),
               Voice("c", 'C'), Voice("d.sy1", 'D')});
    EXPECT_EQ(Names(0, 2), (Strings{"A.PIANO 1x", "D.PIANO 1x", "VOICE 03"}));
}

TEST_F(Drop, ABankFileChangesNothingButCostsALevel) {
    auto other = TestBank();
    other[124] = 'X';
    FixTestChecksum(other);
    const auto before = MainList.items;
    DropFiles({home.Write("other.syx", other)});
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
    EXPECT_EQ(repaints, 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(Drop, NoFileOnlyRaisesTheWindow) {
    DropFiles({});
    EXPECT_EQ(raises, 1);
    EXPECT_EQ(repaints, 0);
    ExpectUntouched();
}

TEST_F(Drop, WithoutASelectedRowNothingIsImportedButALevelIsSpent) {
    const auto before = MainList.items;
    ListSelect(MainList, NoRow);
    DropFiles({Voice("a.sy1")});
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(repaints, 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(Drop, OnAnEmptyListNothingIsImportedAndNoLevelSpent) {
    ListReset(MainList);
    DropFiles({Voice("a.sy1")});
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(Drop, ThreeVoicesOnTheLastRowRunPastTheEndWithoutARefresh) {
    ListSelect(MainList, 31);
    DropFiles({Voice("a.sy1", 'A'), Voice("b.sy1", 'B'), Voice("c.sy1", 'C')});
    EXPECT_EQ(Names(30, 31), (Strings{"VOICE 31", "A.PIANO 1x"}));
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(repaints, 0);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(Drop, OneVoiceOnTheLastRowPassesTheEndToo) {
    ListSelect(MainList, 31);
    DropFiles({Voice("a.sy1", 'A')});
    EXPECT_EQ(NameAt(31), "A.PIANO 1x");
    EXPECT_EQ(repaints, 0);
    EXPECT_TRUE(desktop.sounds.empty());
    ListSelect(MainList, 30);
    DropFiles({Voice("b.sy1", 'B')});
    EXPECT_EQ(repaints, 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(Drop, AFileThatCannotBeReadPastTheEndIsAnErrorLikeAnyOther) {
    ListSelect(MainList, 31);
    desktop.ExpectMessage("Import error");
    DropFiles({Voice("a.sy1", 'A'), home.WriteText("b.sy1", "no voice"), Voice("c.sy1", 'C')});
    EXPECT_EQ(NameAt(31), "A.PIANO 1x");
    EXPECT_EQ(repaints, 0);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(Drop, AFailingImportEndsTheDropAndKeepsWhatWasRead) {
    desktop.ExpectMessage("Import error");
    DropFiles({Voice("a.sy1", 'A'), home.WriteText("b.sy1", "no voice"), Voice("c.sy1", 'C')});
    EXPECT_EQ(Names(0, 2), (Strings{"A.PIANO 1x", "VOICE 02", "VOICE 03"}));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(repaints, 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(Drop, AFailingFirstImportLeavesTheDocumentClean) {
    desktop.ExpectMessage("Import error");
    DropFiles({home.File("missing.sy1"), Voice("c.sy1", 'C')});
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
}

TEST_F(Drop, ADamagedVoiceIsAskedAboutAndNoEndsTheDrop) {
    auto file = TestVoiceFile();
    file[162] ^= 1;
    desktop.ExpectYesNo(
        "The data in the document sum.sy1 may be damaged.\n\nDo you wish to open it anyway?",
        ResultNo);
    desktop.ExpectMessage("Import error");
    DropFiles({home.Write("sum.sy1", file), Voice("c.sy1", 'C')});
    EXPECT_EQ(Names(0, 1), (Strings{"VOICE 01", "VOICE 02"}));
}

TEST_F(Drop, TheVoicesOfTheCurrentDriverAreTakenByTheirExtension) {
    CurrentDriverId = RefaceDriverId;
    RefaceRow.ImportVoice = [](QWidget *, VoiceList &, int index, const char *path,
                               VoiceObject *out) {
        Calls.push_back(std::to_string(index) + " " +
                        std::filesystem::path(path).filename().string() + (out ? " out" : ""));
        return 1;
    };
    DropFiles({Voice("a.sy1", 'A'), Voice("b.sr1", 'B'), Voice("c.Sr1", 'C')});
    EXPECT_EQ(Calls, (Strings{"0 b.sr1", "1 c.Sr1"}));
    EXPECT_EQ(NameAt(0), "VOICE 01");
}

class UploadOne : public VoiceCommand {
protected:
    void SetUp() override {
        VoiceCommand::SetUp();
        Dx7Row.UploadVoice = [](QWidget *, VoiceList &, const VoiceObject *voice, MidiPorts ports,
                                int index, std::uint8_t flags) {
            Calls.push_back((voice ? VoiceObjectName(*voice) : "(no voice)") +
                            (" " + std::to_string(ports.in)) + " " + std::to_string(ports.out) +
                            " " + std::to_string(index) + " " + std::to_string(flags));
            return voice ? Answer : 0;
        };
    }
};

TEST_F(UploadOne, SendsTheClickedVoiceWithTheDriversPrompts) {
    MainListState.clickedIndex = 6;
    EXPECT_EQ(RunUploadVoice(), 1);
    EXPECT_EQ(Calls, Strings{"VOICE 07 3 4 6 1"});
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(RunUploadVoice(), 1);
    EXPECT_EQ(Calls.back(), "VOICE 01 3 4 0 1"); // the selection
}

TEST_F(UploadOne, AFailureNamesTheVoice) {
    Answer = 0;
    MainListState.clickedIndex = 6;
    desktop.ExpectMessage("There has been an error uploading VOICE 07");
    EXPECT_EQ(RunUploadVoice(), 0);
    ExpectUntouched();
}

TEST_F(UploadOne, ARowWithoutAVoiceFailsUnderTheLastGoodName) {
    VoiceObjectName(*ListVoice(MainList, 8));
    ListTakeVoice(MainList, 6);
    MainListState.clickedIndex = 6;
    desktop.ExpectMessage("There has been an error uploading VOICE 09");
    EXPECT_EQ(RunUploadVoice(), 0);
    EXPECT_EQ(Calls, Strings{"(no voice) 3 4 6 1"});
}

TEST_F(UploadOne, WithoutARowNothingHappens) {
    ListSelect(MainList, NoRow);
    EXPECT_EQ(RunUploadVoice(), 0);
    EXPECT_EQ(Calls, Strings{});
    ExpectUntouched();
}

TEST_F(VoiceCommand, UploadingTheListPlaysTheSoundOnSuccess) {
    Dx7Row.UploadBank = [](QWidget *, VoiceList &list, MidiPorts ports) {
        Calls.push_back(std::to_string(ListCount(list)) + " " + std::to_string(ports.in) + " " +
                        std::to_string(ports.out));
        return Answer;
    };
    EXPECT_EQ(RunUpload(), 1);
    EXPECT_EQ(Calls, Strings{"32 3 4"});
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    desktop.sounds.clear();
    Answer = 0;
    EXPECT_EQ(RunUpload(), 0); // in silence
    ExpectUntouched();
}

class DownloadTest : public VoiceCommand {
protected:
    void SetUp() override {
        VoiceCommand::SetUp();
        Dx7Row.DownloadBank = [](QWidget *, VoiceList &list, MidiPorts) {
            Calls.push_back(std::to_string(UndoCount()));
            if (Answer) {
                ListSetVoice(list, 0, VoiceObject(*ListVoice(list, 9)));
            }
            return Answer;
        };
    }
};

TEST_F(DownloadTest, FillsTheListBehindALevel) {
    EXPECT_EQ(RunDownload(), 1);
    EXPECT_EQ(Calls, Strings{"1"});
    EXPECT_EQ(NameAt(0), "VOICE 10");
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(NameAt(0), "VOICE 01");
}

TEST_F(DownloadTest, TheVoiceThatIsSelectedAfterwardsCanBeCopied) {
    Dx7Row.DownloadBank = [](QWidget *, VoiceList &list, MidiPorts) {
        ListSelect(list, 0);
        return 1;
    };
    ListSelect(MainList, -1);
    RefreshCopy();
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    EXPECT_EQ(RunDownload(), 1);
    EXPECT_TRUE(CommandAllowed(CommandCopy));
}

TEST_F(DownloadTest, AFailureCostsALevelInSilence) {
    Answer = 0;
    EXPECT_EQ(RunDownload(), 0);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(DownloadTest, ADirtyDocumentIsAskedAboutFirst) {
    MainListState.dirty = true;
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunDownload(), 0);
    EXPECT_EQ(Calls, Strings{});
    EXPECT_EQ(UndoCount(), 0);
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunDownload(), 1);
    SetNameAt(0, "CHANGED   ");
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    EXPECT_EQ(RunDownload(), 1);
    EXPECT_EQ(ReadRawText(home.File("bank.syx")).substr(124, 10), "CHANGED   ");
    EXPECT_TRUE(MainListState.dirty); // by the download
}

class EditTest : public VoiceCommand {
protected:
    void SetUp() override {
        VoiceCommand::SetUp();
        Dx7Row.EditVoice = [](QWidget *, VoiceObject &voice, MidiPorts ports, int index) {
            Calls.push_back(std::to_string(ports.in) + " " + std::to_string(ports.out) + " " +
                            std::to_string(index));
            MutablePayloadOf(voice)[145] = 'X';
            return Answer;
        };
    }
};

TEST_F(EditTest, TheAcceptedVoiceGoesIntoItsRow) {
    MainListState.clickedIndex = 6;
    EXPECT_EQ(RunEdit(), 1);
    EXPECT_EQ(Calls, Strings{"3 4 6"});
    EXPECT_EQ(Names(5, 7), (Strings{"VOICE 06", "XOICE 07", "VOICE 08"}));
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_GE(repaints, 1);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(NameAt(6), "VOICE 07");
}

TEST_F(EditTest, ACancelledEditorKeepsTheVoiceAndCostsALevel) {
    Answer = 0;
    EXPECT_EQ(RunEdit(), 0);
    EXPECT_EQ(Calls, Strings{"3 4 0"});
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(EditTest, WithoutAVoiceNoEditorOpens) {
    ListSelect(MainList, NoRow);
    EXPECT_EQ(RunEdit(), 0);
    EXPECT_EQ(UndoCount(), 1);
    ListTakeVoice(MainList, 6);
    MainListState.clickedIndex = 6;
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(RunEdit(), 0);
    EXPECT_EQ(Calls, Strings{});
}

class FindTest : public VoiceCommand {
protected:
    void SetUp() override {
        VoiceCommand::SetUp();
        CurrentDriverId = RefaceDriverId;
        SelectKeyboardMidiIn = "reface in";
        SelectKeyboardMidiOut = "reface out";
        SelectKeyboardAutodetect = 1;
        RefaceRow.FindSynth = [](QWidget *, FoundSynth &found, const PortNames &names,
                                 bool autodetect) {
            Calls.push_back(std::string("find ") + names.in + ", " + names.out + ", " +
                            std::to_string(autodetect));
            if (Answer) {
                found = {RefaceDriverId, {7, 8}, 0x01000100};
            }
            return Answer;
        };
        RefaceRow.AutoConfigure = [](QWidget *, int midiOut) {
            Calls.push_back("configure " + std::to_string(midiOut));
            return 1;
        };
    }
};

TEST_F(FindTest, AFoundInstrumentIsConfiguredAndShown) {
    EXPECT_EQ(RunFind(), 1);
    EXPECT_EQ(Calls, (Strings{"find reface in, reface out, 1", "configure 8"}));
    EXPECT_EQ(MidiInPort, 7);
    EXPECT_EQ(desktop.statusTexts, Strings{"Yamaha reface DX version 10.10"});
    ExpectUntouched();
}

TEST_F(FindTest, SelectSynthesizerSearchesButDoesNotConfigure) {
    TheShellWindow.ShowSelectSynthBox = [] { return 1; };
    EXPECT_EQ(RunSelectSynth(), 1);
    EXPECT_EQ(Calls, (Strings{"find reface in, reface out, 1"}));
    EXPECT_EQ(MidiOutPort, 8);
}

TEST_F(FindTest, AFailedSearchLeavesNoDriverAndItsCommandsGrey) {
    Answer = 0;
    RefreshCommands();
    EXPECT_TRUE(CommandAllowed(CommandDownload));
    EXPECT_EQ(RunFind(), 0);
    RefreshCommands();
    EXPECT_EQ(Calls, Strings{"find reface in, reface out, 1"});
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(MidiInPort, -1);
    EXPECT_EQ(MidiOutPort, -1);
    EXPECT_EQ(desktop.statusTexts, Strings{"Unknown or unrecognized synthesizer"});
    for (const int id : {CommandDownload, CommandUpload, CommandFind, CommandConfigure}) {
        EXPECT_FALSE(CommandAllowed(id)) << id;
    }
    EXPECT_TRUE(CommandAllowed(CommandSave));
}

TEST_F(FindTest, AfterTheChoiceOfASynthesizerItIsFoundButNotConfigured) {
    MainListState.dirty = false;
    ListSelect(MainList, 2);
    RefreshCopy();
    TheShellWindow.ShowSelectSynthBox = [] {
        Calls.push_back("box");
        return 1;
    };
    EXPECT_EQ(RunSelectSynth(), 1);
    EXPECT_EQ(Calls, (Strings{"box", "find reface in, reface out, 1"}));
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_FALSE(CommandAllowed(CommandCopy));
    EXPECT_EQ(desktop.statusTexts, Strings{"Yamaha reface DX version 10.10"});
    ExpectUntouched();
}

TEST_F(FindTest, WithoutAChoiceNothingIsLookedFor) {
    TheShellWindow.ShowSelectSynthBox = [] { return 0; };
    EXPECT_EQ(RunSelectSynth(), 0);
    EXPECT_EQ(Calls, Strings{});
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_TRUE(desktop.statusTexts.empty());
    ExpectUntouched();
}

TEST_F(FindTest, TheQuestionAboutChangesComesAheadOfTheBox) {
    MainListState.dirty = true;
    TheShellWindow.ShowSelectSynthBox = [] {
        Calls.push_back("box");
        return 1;
    };
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunSelectSynth(), 0);
    EXPECT_EQ(Calls, Strings{});
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunSelectSynth(), 1);
    EXPECT_EQ(Calls, (Strings{"box", "find reface in, reface out, 1"}));
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(VoiceCommand, ConfigureCallsTheDriverWithItsPorts) {
    Dx7Row.ConfigureSynth = [](QWidget *, MidiPorts ports) {
        Calls.push_back(std::to_string(ports.in) + " " + std::to_string(ports.out));
        return 1;
    };
    EXPECT_EQ(RunConfigure(), 1);
    EXPECT_EQ(Calls, Strings{"3 4"});
    ExpectUntouched();
}

} // namespace
} // namespace tonewright
