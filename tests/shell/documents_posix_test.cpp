// Saving into files that cannot hold or take the document.
#include "shell_fixture.h"
#include "support/posix_limits.h"
#include "support/reface_bytes.h"

namespace tonewright {
namespace {

class ObstructedFile : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        OpenBank();
        MainListChanged(0);
    }
    int SaveWithLimit() {
        const FileSizeLimit limit(1000);
        return RunCommand(CommandSave);
    }
};

TEST_F(ObstructedFile, AShortWriteIsReportedAndTheListStaysDisabledUntilASaveWorks) {
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(SaveWithLimit(), 0);
    EXPECT_FALSE(home.Holds("bank.syx"));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_FALSE(MainList.enabled);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_TRUE(CommandAllowed(CommandSave));
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    EXPECT_TRUE(MainList.enabled);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(ObstructedFile, AShortWriteOfASaveUnderANewNameKeepsThatName) {
    desktop.Expect(
        ExpectedFileDialog{.kind = FileDialogKind::Save, .answer = home.File("new.syx")});
    desktop.ExpectMessage(WriteError);
    {
        const FileSizeLimit limit(1000);
        RunCommand(CommandSaveAs);
    }
    EXPECT_EQ(CurrentDocumentPath, home.File("new.syx"));
    EXPECT_EQ(titles, std::vector<std::string>{"Tonewright [ new.syx ]"});
    EXPECT_FALSE(home.Holds("new.syx"));
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(ObstructedFile, TheBackupOutlivesAShortWrite) {
    CreateBackups = 1;
    home.WriteText("bank.syx", "short");
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(SaveWithLimit(), 0);
    EXPECT_FALSE(home.Holds("bank.syx"));
    EXPECT_EQ(ReadTestText(home.File("Backup of bank.syx")), "short");
}

TEST_F(ObstructedFile, ABackupThatDoesNotFitIsAskedAbout) {
    CreateBackups = 1;
    desktop.ExpectYesNo(BackupQuestion, ResultNo);
    desktop.ExpectMessage(WriteError);
    EXPECT_EQ(SaveWithLimit(), 0);
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    EXPECT_FALSE(home.Holds("Backup of bank.syx"));
}

TEST_F(ObstructedFile, AReadOnlyFileIsReportedAndKept) {
    RunUnprivileged({{home.File("bank.syx"), 0400}}, [this] {
        desktop.ExpectMessage(WriteError);
        EXPECT_EQ(RunCommand(CommandSave), 0);
        EXPECT_TRUE(MainListState.dirty);
        EXPECT_TRUE(MainList.enabled);
        desktop.ExpectNothingLeft();
    });
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(ObstructedFile, AFileThatMayNotBeReadIsReported) {
    home.Write("secret.syx", TestBank());
    MainListState.dirty = false;
    RunUnprivileged({{home.File("secret.syx"), 0}}, [this] {
        PendingOpenPath = home.File("secret.syx");
        desktop.ExpectMessage(ReadError);
        EXPECT_EQ(RunCommand(CommandOpen), 0);
        EXPECT_EQ(CurrentDocumentPath, home.File("secret.syx"));
        EXPECT_EQ(ListCount(MainList), 32);
        desktop.ExpectNothingLeft();
    });
}

// ---- nothing of a former file is lost in careful mode; with the mode off it is cut first

class FullDisk : public ObstructedFile {
protected:
    void OpenReface() {
        MainListState.dirty = false;
        PendingOpenPath = home.Write("bank.srx", TestRefaceBank());
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        MainListChanged(0);
    }
    std::string WriteErrorOf(const std::string &file) const {
        return CarefulMode != 0 ? WriteError + "\n\n" + home.File(file) + ": File too large."
                                : WriteError;
    }
    // Save that fails, of a list that can still be saved.
    void FailToSave(const std::string &file) {
        desktop.ExpectMessage(WriteErrorOf(file));
        EXPECT_EQ(SaveWithLimit(), 0);
        EXPECT_TRUE(MainListState.dirty);
    }
};

TEST_F(FullDisk, KeepsTheFormerBankInCarefulMode) {
    CarefulMode = 1;
    SetNameAt(0, "CHANGED   ");
    FailToSave("bank.syx");
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    EXPECT_TRUE(MainList.enabled);
    EXPECT_EQ(RunCommand(CommandSave), 1); // without a question
    EXPECT_EQ(ReadTestText(home.File("bank.syx")).substr(124, 10), "CHANGED   ");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(FullDisk, TakesTheFormerRefaceBankWithTheModeOff) {
    OpenReface();
    FailToSave("bank.srx");
    EXPECT_FALSE(home.Holds("bank.srx"));
}

TEST_F(FullDisk, KeepsTheFormerRefaceBankInCarefulMode) {
    CarefulMode = 1;
    OpenReface();
    FailToSave("bank.srx");
    EXPECT_EQ(ReadTestFile(home.File("bank.srx")), TestRefaceBank());
    EXPECT_TRUE(MainList.enabled);
    EXPECT_EQ(RunCommand(CommandSave), 1);
}

TEST_F(FullDisk, KeepsABankWithTwoNamesInCarefulMode) {
    CarefulMode = 1;
    std::filesystem::create_hard_link(home.path / "bank.syx", home.path / "also.syx");
    SetNameAt(0, "CHANGED   ");
    FailToSave("bank.syx");
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
    EXPECT_EQ(ReadTestFile(home.File("also.syx")), TestBank());
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(ReadTestText(home.File("also.syx")).substr(124, 10), "CHANGED   ");
}

TEST_F(FullDisk, KeepsTheFormerVoiceInCarefulModeAlone) {
    const std::string path = home.WriteText("voice.sy1", "former");
    for (const unsigned careful : {1u, 0u}) {
        CarefulMode = careful;
        MainListState.clickedIndex = 0;
        desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Export, .answer = path});
        const std::string reason = careful ? "\n\n" + path + ": File too large." : "";
        desktop.ExpectMessage("There has been an error exporting VOICE 01" + reason);
        const FileSizeLimit limit(100);
        EXPECT_EQ(RunCommand(CommandExport), 0);
        EXPECT_EQ(home.Holds("voice.sy1"), careful != 0);
    }
}

TEST_F(FullDisk, KeepsTheFormerBackupInCarefulModeAlone) {
    CreateBackups = 1;
    home.WriteText("Backup of bank.syx", "former");
    for (const unsigned careful : {1u, 0u}) {
        CarefulMode = careful;
        desktop.ExpectYesNo(BackupQuestion, ResultNo);
        desktop.ExpectMessage(careful ? WriteError + "\n\n" + home.File("bank.syx") +
                                            ": the answer was not to go on without a backup."
                                      : WriteError);
        EXPECT_EQ(SaveWithLimit(), 0);
        EXPECT_EQ(home.Holds("Backup of bank.syx"), careful != 0);
    }
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(FullDisk, KeepsBothWhenTheyStandOnADiskOfTheirOwn) {
    CarefulMode = 1;
    CreateBackups = 1;
    const std::string disk = home.File("disk");
    std::filesystem::create_directory(disk);
    RunOnSmallDisk(disk, [&] {
        MainListState.dirty = false;
        const std::string path = home.Write("disk/bank.syx", TestBank());
        home.WriteText("disk/Backup of bank.syx", "former");
        PendingOpenPath = path;
        ASSERT_EQ(RunCommand(CommandOpen), 1);
        FillDisk(disk + "/rest");
        desktop.ExpectYesNo(BackupQuestion, ResultYes);
        desktop.ExpectMessage(WriteError + "\n\n" + path + ": No space left on device.");
        EXPECT_EQ(RunCommand(CommandSave), 0);
        EXPECT_EQ(ReadTestFile(path), TestBank());
        EXPECT_EQ(ReadTestText(disk + "/Backup of bank.syx"), "former");
        EXPECT_TRUE(MainList.enabled);
        std::filesystem::remove(disk + "/rest");
        EXPECT_EQ(RunCommand(CommandSave), 1);
        EXPECT_EQ(ReadTestFile(disk + "/Backup of bank.syx"), TestBank());
        desktop.ExpectNothingLeft();
    });
}

TEST_F(FullDisk, ABankThatIsALinkToItsOwnBackupHasNone) {
    std::filesystem::rename(home.path / "bank.syx", home.path / "Backup of bank.syx");
    std::filesystem::create_symlink("Backup of bank.syx", home.path / "bank.syx");
    CreateBackups = 1;
    for (const unsigned careful : {0u, 1u}) {
        CarefulMode = careful;
        desktop.ExpectYesNo(BackupQuestion, ResultNo);
        desktop.ExpectMessage(careful ? WriteError + "\n\n" + home.File("bank.syx") +
                                            ": the answer was not to go on without a backup."
                                      : WriteError);
        EXPECT_EQ(RunCommand(CommandSave), 0);
    }
}

} // namespace
} // namespace tonewright
