// Open, Save, Save as and the ways out: what is asked, and what has changed afterwards.
#include "shell_fixture.h"

#include "support/family_names.h"

#include <chrono>
#include <filesystem>
#include <iterator>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

std::string DamagedQuestion(const std::string &name) {
    return "The data in the document " + name +
           " may be damaged.\n\nDo you wish to open it anyway?";
}

std::string TitleOf(const std::string &name) {
    return "Tonewright [ " + name + " ]";
}

class OpenTest : public ShellTest {
protected:
    void ExpectOpenDialog(std::optional<std::string> answer) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Open,
                                          .answer = std::move(answer),
                                          .start = OpenPath,
                                          .driverId = CurrentDriverId});
    }
    // A document that was changed, with one undo level.
    void OpenAndChange() {
        OpenBank();
        UndoPush(nullptr, MainList);
        SetNameAt(0, "CHANGED   ");
        MainListChanged(0);
        Forget();
    }
};

TEST_F(OpenTest, AFileOfTheDialogBecomesTheDocument) {
    CreateBackups = 1;
    OpenPath = "/start/";
    MainListState.dirty = false;
    const std::string path = home.Write("new.syx", TestBank());
    ExpectOpenDialog(path);
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(CurrentDocumentPath, path);
    EXPECT_EQ(RecentDocumentPath, path);
    EXPECT_EQ(OpenPath, home.Folder());
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(Names(0, 2), (Strings{"VOICE 01", "VOICE 02", "VOICE 03"}));
    EXPECT_EQ(NameAt(31), "VOICE 32");
    EXPECT_EQ(MainList.selection, 0);
    EXPECT_EQ(MainList.itemHeight, 48);
    EXPECT_EQ(MainItemFonts.title.family, "TIMES NEW ROMAN");
    EXPECT_EQ(titles, Strings{TitleOf("new.syx")});
    EXPECT_EQ(desktop.statusTexts, Strings{Dx7Name});
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_GE(repaints, 1);
    EXPECT_FALSE(MainListState.dirty);
    for (const int id : {CommandSave, CommandSaveAs, CommandPrint, CommandUpload}) {
        EXPECT_TRUE(CommandAllowed(id)) << id;
    }
    EXPECT_TRUE(CommandAllowed(CommandCopy)); // the first voice is selected
    EXPECT_FALSE(CommandAllowed(CommandDownload));
    EXPECT_FALSE(home.Holds("Backup of new.syx"));
    EXPECT_EQ(OpenExportPath, home.Folder());
    EXPECT_EQ(OpenImportPath, "/imports/");
}

// As seconds since 1970, of the file that was opened last; nothing else changes it.
TEST_F(OpenTest, TheTimeOfTheFileStaysThatOfTheDocument) {
    const auto writeAt = [this](const char *name, const std::vector<std::uint8_t> &bytes,
                                int seconds) {
        const std::string path = home.Write(name, bytes);
        const std::chrono::sys_seconds time{std::chrono::seconds(seconds)};
        std::filesystem::last_write_time(path, std::chrono::file_clock::from_sys(time));
        return path;
    };
    EXPECT_EQ(CurrentDocumentTime, 0);
    PendingOpenPath = writeAt("a.syx", TestBank(), 1'000'000'000);
    EXPECT_EQ(RunOpen(), 1);
    EXPECT_EQ(CurrentDocumentTime, 1'000'000'000);
    PendingOpenPath = writeAt("bad.syx", std::vector<std::uint8_t>(100), 1'100'000'000);
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunOpen(), 0);
    EXPECT_EQ(CurrentDocumentTime, 1'000'000'000);
    PendingOpenPath = writeAt("b.syx", TestBank(), 1'200'000'000);
    EXPECT_EQ(RunOpen(), 1);
    EXPECT_EQ(RunSave(), 1);
    EXPECT_EQ(CurrentDocumentTime, 1'200'000'000);
}

TEST_F(OpenTest, TheDialogStartsInTheOpenFolderCutTo260Bytes) {
    OpenPath = "/" + std::string(300, 'a');
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Open,
                                      .answer = std::nullopt,
                                      .start = "/" + std::string(259, 'a'),
                                      .driverId = CurrentDriverId});
    EXPECT_EQ(RunCommand(CommandOpen), 0);
}

TEST_F(OpenTest, ACancelledDialogKeepsTheDocumentAndLosesTheUndoLevels) {
    OpenAndChange();
    MainListState.dirty = false;
    const std::string document = CurrentDocumentPath;
    UndoPush(nullptr, MainList);
    ListSelect(MainList, NoRow);
    ExpectOpenDialog(std::nullopt);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(NameAt(0), "CHANGED");
    EXPECT_EQ(CurrentDocumentPath, document);
    EXPECT_EQ(RecentDocumentPath, document);
    EXPECT_FALSE(UndoAvailable());
    EXPECT_FALSE(CommandAllowed(CommandUndo));
    EXPECT_FALSE(CommandAllowed(CommandCopy)); // brought up to date
    EXPECT_TRUE(titles.empty());
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(OpenTest, CancelOnADirtyDocumentKeepsItButLeavesUndoDisabled) {
    OpenAndChange();
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(NameAt(0), "CHANGED");
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_FALSE(UndoAvailable());
    EXPECT_FALSE(CommandAllowed(CommandUndo));
}

TEST_F(OpenTest, CancelOnADirtyDocumentKeepsThePathForTheNextOpen) {
    OpenAndChange();
    PendingOpenPath = home.Write("other.syx", TestBank());
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(PendingOpenPath, home.File("other.syx"));
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(PendingOpenPath, "");
}

TEST_F(OpenTest, NoOnADirtyDocumentAbandonsIt) {
    OpenAndChange();
    const auto bytes = ReadTestFile(home.File("bank.syx"));
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    ExpectOpenDialog(home.Write("other.syx", TestBank()));
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), bytes);
}

TEST_F(OpenTest, YesOnADirtyDocumentSavesItFirst) {
    OpenAndChange();
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    ExpectOpenDialog(home.Write("other.syx", TestBank()));
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_EQ(ReadRawText(home.File("bank.syx")).substr(124, 10), "CHANGED   ");
    EXPECT_EQ(desktop.sounds.size(), 2u); // of the save and of the open
}

TEST_F(OpenTest, YesGoesOnAlsoWhenTheSaveFails) {
    OpenAndChange();
    CurrentDocumentPath = home.File("gone/bank.syx");
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    desktop.ExpectMessage(WriteError);
    ExpectOpenDialog(home.Write("other.syx", TestBank()));
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(OpenTest, AnUnknownExtensionIsReportedAndTheTitleShowsTheUnknownFile) {
    OpenBank();
    const auto before = MainList.items;
    const std::string path = home.WriteText("song.mid", "no bank");
    ExpectOpenDialog(path);
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(titles, Strings{TitleOf("song.mid")});
    EXPECT_EQ(CurrentDocumentPath, path);
    EXPECT_EQ(RecentDocumentPath, path);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(OpenTest, AFailedOpenKeepsDirtyAsItWas) {
    OpenAndChange();
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    ExpectOpenDialog(home.File("missing.syx"));
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(NameAt(0), "CHANGED");
    EXPECT_EQ(titles, Strings{TitleOf("missing.syx")});
    EXPECT_EQ(RecentDocumentPath, home.File("missing.syx"));
    EXPECT_TRUE(CommandAllowed(CommandSave));
}

TEST_F(OpenTest, TheTitleShowsTheNewNameWhileTheFileIsRead) {
    auto bank = TestBank();
    bank[4102] ^= 1;
    PendingOpenPath = home.Write("bad sum.syx", bank);
    desktop.Expect(ExpectedMessage{.text = DamagedQuestion("bad sum.syx"),
                                   .buttons = {"Yes", "No"},
                                   .answer = ResultYes,
                                   .during = [this](MessageRequest &) {
                                       EXPECT_EQ(titles, Strings{TitleOf("bad sum.syx")});
                                       EXPECT_EQ(CurrentDriverId, Dx7DriverId);
                                   }});
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(ListCount(MainList), 32);
}

TEST_F(OpenTest, ADamagedFileThatIsNotWantedIsReportedAsUnread) {
    OpenBank();
    auto bank = TestBank();
    bank[4102] ^= 1;
    bank[124] = 'X';
    PendingOpenPath = home.Write("bad.syx", bank);
    desktop.ExpectYesNo(DamagedQuestion("bad.syx"), ResultNo);
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_EQ(titles, Strings{TitleOf("bad.syx")});
}

TEST_F(OpenTest, AFileWithACapitalExtensionOpensWhileTheRefaceDxIsCurrent) {
    CurrentDriverId = RefaceDriverId;
    RefreshCommands();
    EXPECT_TRUE(CommandAllowed(CommandDownload));
    PendingOpenPath = home.Write("BRASS.SYX", TestBank());
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_FALSE(CommandAllowed(CommandDownload));
    EXPECT_TRUE(CommandAllowed(CommandUpload));
    EXPECT_EQ(desktop.statusTexts, Strings{Dx7Name});
}

TEST_F(OpenTest, TheDriverFollowsAFileThatCannotBeRead) {
    CurrentDriverId = RefaceDriverId;
    PendingOpenPath = home.WriteText("short.syx", "\xF0\x43");
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_TRUE(desktop.statusTexts.empty());
    EXPECT_FALSE(CommandAllowed(CommandDownload));
}

TEST_F(OpenTest, SingleVoicesAndExtraFilesAreNoDocuments) {
    OpenBank();
    const auto before = MainList.items;
    for (const char *name : {"voice.sy1", "extra.TwcDx7", "voice.sr1", "setup.crg"}) {
        PendingOpenPath = home.Write(name, TestVoiceFile());
        desktop.ExpectMessage(ReadError);
        EXPECT_EQ(RunCommand(CommandOpen), 0) << name;
    }
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
}

TEST_F(OpenTest, APendingPathIsTakenOnceWithoutItsQuotes) {
    const std::string path = home.Write("my bank.syx", TestBank());
    PendingOpenPath = "\"" + path + "\"";
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(CurrentDocumentPath, path);
    EXPECT_EQ(PendingOpenPath, "");
    ExpectOpenDialog(std::nullopt);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
}

TEST_F(OpenTest, APathOfTheDialogThatIsLongerThan260BytesIsRefused) {
    OpenBank();
    const std::string document = CurrentDocumentPath, folder = OpenPath;
    const std::string longest = home.FileOfSize(260, "bank.syx");
    WriteTestFile(longest, TestBank());
    WriteTestFile(longest + ".syx", TestBank());
    ExpectOpenDialog(longest + ".syx");
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(CurrentDocumentPath, document);
    EXPECT_EQ(RecentDocumentPath, document);
    EXPECT_EQ(OpenPath, folder);
    EXPECT_TRUE(titles.empty());
    EXPECT_TRUE(desktop.sounds.empty());
    ExpectOpenDialog(longest);
    EXPECT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(CurrentDocumentPath, longest);
}

TEST_F(OpenTest, APendingPathIsCutAt260Bytes) {
    const std::string path = "/" + std::string(258, 'a') + "/bank.syx";
    PendingOpenPath = path;
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(CurrentDocumentPath, path.substr(0, 260));
}

TEST_F(OpenTest, ADirectoryIsNoDocument) {
    std::filesystem::create_directory(home.path / "folder.syx");
    PendingOpenPath = home.File("folder.syx");
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_EQ(ListCount(MainList), 0);
}

class SaveTest : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        formerFolder = std::filesystem::current_path();
        std::filesystem::current_path(home.path);
        OpenBank();
        UndoPush(nullptr, MainList);
        SetNameAt(0, "CHANGED   ");
        MainListChanged(0);
        Forget();
    }
    void TearDown() override {
        std::filesystem::current_path(formerFolder);
        ShellTest::TearDown();
    }
    void ExpectSaveDialog(std::optional<std::string> answer, const std::string &proposal) {
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Save,
                                          .answer = std::move(answer),
                                          .start = proposal,
                                          .driverId = CurrentDriverId});
    }
    std::string NameIn(const std::string &file, int voice = 0) const {
        const std::string bytes = ReadRawText(home.File(file));
        EXPECT_EQ(bytes.size(), 4104u);
        return bytes.substr(6 + 128 * static_cast<std::size_t>(voice) + 118, 10);
    }

    std::filesystem::path formerFolder;
};

TEST_F(SaveTest, WritesTheDocumentWithoutAQuestion) {
    const std::string opened = RecentDocumentPath;
    EXPECT_EQ(RunUserCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
    EXPECT_EQ(NameIn("bank.syx", 31), "VOICE 32  ");
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(UndoCount(), 1); // Save leaves the store alone
    EXPECT_EQ(RecentDocumentPath, opened);
    EXPECT_TRUE(titles.empty());
    EXPECT_FALSE(home.Holds("Backup of bank.syx"));
}

TEST_F(SaveTest, CopiesTheFormerFileToABackupWhenTheyAreOn) {
    CreateBackups = 1;
    home.WriteText("Backup of bank.syx", "an earlier backup");
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
    EXPECT_EQ(ReadTestFile(home.File("Backup of bank.syx")), TestBank());
}

TEST_F(SaveTest, AFailedBackupIsAskedAboutAndYesGoesOn) {
    CreateBackups = 1;
    std::filesystem::create_directory("Backup of bank.syx");
    desktop.ExpectYesNo(BackupQuestion, ResultYes);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(SaveTest, AFailedBackupIsAskedAboutAndNoFailsTheSaveWithTheCommonMessage) {
    CreateBackups = 1;
    std::filesystem::create_directory("Backup of bank.syx");
    desktop.ExpectYesNo(BackupQuestion, ResultNo);
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(SaveTest, ADocumentThatWasNeverNamedGoesToTheCurrentFolderWithoutADialog) {
    CurrentDocumentPath = "Untitled.Twl";
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("Untitled.Twl"), "CHANGED   ");
    EXPECT_EQ(CurrentDocumentPath, "Untitled.Twl");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(SaveTest, TheDriversDefaultNameInAnyCaseAsksForAnother) {
    for (const char *name : {"Untitled.syx", "UNTITLED.SYX", "untitled.Syx"}) {
        CurrentDocumentPath = name;
        ExpectSaveDialog(std::nullopt, std::string(name).substr(0, 8) + ".syx");
        EXPECT_EQ(RunCommand(CommandSave), 0) << name;
        EXPECT_FALSE(home.Holds(name));
        EXPECT_TRUE(MainListState.dirty);
        EXPECT_EQ(CurrentDocumentPath, name);
    }
    CurrentDocumentPath = "Untitled.syx";
    ExpectSaveDialog(home.File("named.syx"), "Untitled.syx");
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("named.syx"), "CHANGED   ");
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_F(SaveTest, TheDefaultNameInAFolderOrOfTheOtherDriverIsANameLikeAnyOther) {
    CurrentDocumentPath = home.File("Untitled.syx");
    EXPECT_EQ(RunCommand(CommandSave), 1);
    CurrentDocumentPath = "Untitled.srx";
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(NameIn("Untitled.syx"), "CHANGED   ");
    EXPECT_EQ(NameIn("Untitled.srx"), "CHANGED   ");
}

TEST_F(SaveTest, WithoutADriverItFailsWithTheCommonMessage) {
    CurrentDriverId = NoDriverId;
    CurrentDocumentPath = "Untitled.Twl";
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_FALSE(home.Holds("Untitled.Twl"));
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(SaveTest, AFailedWriteKeepsDirty) {
    CurrentDocumentPath = home.File("no such folder/bank.syx");
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSave), 0);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(CommandAllowed(CommandSave));
}

TEST_F(SaveTest, RowsThatHoldNoVoiceOfTheDriverLeave128ZeroBytes) {
    ListTakeVoice(MainList, 3);
    MainList.items[4].bytes[0] ^= 1;
    ListSetVoice(MainList, 5, RefaceDxVoice(7));
    EXPECT_EQ(RunCommand(CommandSave), 1);
    const auto bytes = ReadTestFile(home.File("bank.syx"));
    for (const int row : {3, 4, 5}) {
        const auto start = bytes.begin() + 6 + 128 * row;
        EXPECT_EQ(std::vector(start, start + 128), std::vector<std::uint8_t>(128)) << row;
    }
    EXPECT_EQ(NameIn("bank.syx", 6), "VOICE 07  ");
}

TEST_F(SaveTest, SaveAsProposesTheNameWithTheDriversExtension) {
    const std::pair<std::string, std::string> names[] = {
        {"Untitled.Twl", "Untitled.syx"},
        {home.File("bank.syx"), home.File("bank.syx")},
        {home.File("bank.SRX"), home.File("bank.syx")},
        {home.File("my.bank.txt"), home.File("my.bank.syx")},
        {home.File("a.folder/bank"), home.File("a.folder/bank.syx")},
    };
    for (const auto &[path, proposal] : names) {
        CurrentDocumentPath = path;
        ExpectSaveDialog(std::nullopt, proposal);
        EXPECT_EQ(RunCommand(CommandSaveAs), 0);
        EXPECT_EQ(CurrentDocumentPath, path);
    }
    CurrentDocumentPath = home.File("bank.syx");
    CurrentDriverId = RefaceDriverId;
    ExpectSaveDialog(std::nullopt, home.File("bank.srx"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    CurrentDriverId = NoDriverId;
    ExpectSaveDialog(std::nullopt, home.File("bank.Twl"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(titles.empty());
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(SaveTest, SaveAsTakesTheNewNameAndFolder) {
    std::filesystem::create_directory("banks");
    const std::string path = (home.path / "banks" / "new.syx").string();
    const std::string opened = RecentDocumentPath;
    ExpectSaveDialog(path, home.File("bank.syx"));
    EXPECT_EQ(RunUserCommand(CommandSaveAs), 1);
    EXPECT_EQ(CurrentDocumentPath, path);
    EXPECT_EQ(OpenPath, (home.path / "banks" / "").string());
    EXPECT_EQ(RecentDocumentPath, opened); // Open alone writes it
    EXPECT_EQ(titles, Strings{TitleOf("new.syx")});
    EXPECT_EQ(NameIn("banks/new.syx"), "CHANGED   ");
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(UndoCount(), 1);
}

TEST_F(SaveTest, SaveAsKeepsTheNewNameAfterAFailedWrite) {
    const std::string path = (home.path / "gone" / "new.syx").string();
    ExpectSaveDialog(path, home.File("bank.syx"));
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    EXPECT_EQ(CurrentDocumentPath, path);
    EXPECT_EQ(OpenPath, (home.path / "gone" / "").string());
    EXPECT_EQ(titles, Strings{TitleOf("new.syx")});
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(SaveTest, SaveAsRefusesAPathThatIsLongerThan260Bytes) {
    CreateBackups = 1;
    const std::string document = CurrentDocumentPath, folder = OpenPath;
    const std::string longest = home.FileOfSize(260, "bank.syx");
    WriteTestText(longest, "what a cut path would lead to");
    ExpectSaveDialog(longest + ".old", home.File("bank.syx"));
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(RunCommand(CommandSaveAs), 0);
    EXPECT_EQ(ReadTestText(longest), "what a cut path would lead to");
    const std::filesystem::directory_iterator files(std::filesystem::path(longest).parent_path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1);
    EXPECT_EQ(CurrentDocumentPath, document);
    EXPECT_EQ(OpenPath, folder);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(titles.empty());
    EXPECT_TRUE(desktop.sounds.empty());
    CreateBackups = 0;
    ExpectSaveDialog(longest, home.File("bank.syx"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 1);
    EXPECT_EQ(ReadTestFile(longest).size(), 4104u);
    EXPECT_EQ(CurrentDocumentPath, longest);
}

TEST_F(SaveTest, SaveAsOverAFileKeepsABackupOfThatFile) {
    CreateBackups = 1;
    home.WriteText("other.syx", "former");
    ExpectSaveDialog(home.File("other.syx"), home.File("bank.syx"));
    EXPECT_EQ(RunCommand(CommandSaveAs), 1);
    EXPECT_EQ(ReadTestText(home.File("Backup of other.syx")), "former");
    EXPECT_FALSE(home.Holds("Backup of bank.syx"));
}

using WayOut = SaveTest;

TEST_F(WayOut, ClearEmptiesTheListAndLeavesNameAndDirty) {
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandClear), 1);
    EXPECT_EQ(ListCount(MainList), 0);
    EXPECT_EQ(MainList.selection, NoRow);
    EXPECT_EQ(MainItemFonts, ItemFonts{});
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(UndoCount(), 1); // the store is left alone
    EXPECT_FALSE(CommandAllowed(CommandSave));
}

TEST_F(WayOut, CancelKeepsTheDocumentFromBeingCleared) {
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunCommand(CommandClear), 0);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(NameAt(0), "CHANGED");
}

TEST_F(WayOut, ACleanDocumentIsClearedWithoutAQuestion) {
    MainListState.dirty = false;
    EXPECT_EQ(RunCommand(CommandClear), 1);
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(WayOut, YesSavesBeforeTheListIsCleared) {
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    EXPECT_EQ(RunCommand(CommandClear), 1);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
    EXPECT_EQ(ListCount(MainList), 0);
}

TEST_F(WayOut, ExitAsksForADirtyDocument) {
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunCommand(CommandExit), 0);
    EXPECT_EQ(closes, 0);
    desktop.ExpectYesNoCancel(SaveQuestion, ResultNo);
    EXPECT_EQ(RunCommand(CommandExit), 1);
    EXPECT_EQ(closes, 1);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    desktop.ExpectYesNoCancel(SaveQuestion, ResultYes);
    EXPECT_EQ(RunCommand(CommandExit), 1);
    EXPECT_EQ(closes, 2);
    EXPECT_EQ(NameIn("bank.syx"), "CHANGED   ");
}

TEST_F(WayOut, ExitOfACleanDocumentAsksNothing) {
    MainListState.dirty = false;
    EXPECT_EQ(RunUserCommand(CommandExit), 1);
    EXPECT_EQ(closes, 1);
}

TEST_F(WayOut, CloseAtOnceAsksNothing) {
    EXPECT_EQ(RunCommand(CommandCloseAtOnce), 1);
    EXPECT_EQ(closes, 1);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

} // namespace
} // namespace tonewright
