// Saving into files that cannot hold or take the document.
#include "shell_fixture.h"
#include "support/posix_limits.h"

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
    std::filesystem::permissions(home.path, std::filesystem::perms::all);
    std::filesystem::permissions(home.path / "bank.syx", std::filesystem::perms::owner_read |
                                                             std::filesystem::perms::others_read);
    RunUnprivileged([this] {
        desktop.ExpectMessage(WriteError);
        EXPECT_EQ(RunCommand(CommandSave), 0);
        EXPECT_TRUE(MainListState.dirty);
        EXPECT_TRUE(MainList.enabled);
        desktop.ExpectNothingLeft();
    });
    EXPECT_EQ(ReadTestFile(home.File("bank.syx")), TestBank());
}

TEST_F(ObstructedFile, AFileThatMayNotBeReadIsReported) {
    std::filesystem::permissions(home.path, std::filesystem::perms::all);
    home.Write("secret.syx", TestBank());
    std::filesystem::permissions(home.path / "secret.syx", std::filesystem::perms::none);
    MainListState.dirty = false;
    RunUnprivileged([this] {
        PendingOpenPath = home.File("secret.syx");
        desktop.ExpectMessage(ReadError);
        EXPECT_EQ(RunCommand(CommandOpen), 0);
        EXPECT_EQ(CurrentDocumentPath, home.File("secret.syx"));
        EXPECT_EQ(ListCount(MainList), 32);
        desktop.ExpectNothingLeft();
    });
}

} // namespace
} // namespace tonewright
