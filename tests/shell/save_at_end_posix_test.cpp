// What the program says on standard error when its settings or its history cannot be kept.
#include "shell/save_at_end.h"

#include "shell/history.h"
#include "shell_fixture.h"
#include "support/environment.h"
#include "support/paths.h"
#include "support/posix_limits.h"
#include "support/run_program.h"

#include <functional>

namespace tonewright {
namespace {

class SaveAtEnd : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        MakeProgramFolders();
        RememberFileHistoryCount = 10;
        HistoryInit();
        HistoryAdd(nullptr, home.Write("a.syx", {}), 100);
    }
    std::string Settings() const { return home.File("Quillbrook/Tonewright 17.ini"); }
    std::string Backup() const { return home.File("Quillbrook/Backup of Tonewright 17.ini"); }
    // What goes to standard error while `save` runs.
    static std::string ErrorsOf(const std::function<void()> &save) {
        testing::internal::CaptureStderr();
        save();
        return testing::internal::GetCapturedStderr();
    }
};

TEST_F(SaveAtEnd, WhatIsKeptIsNotTalkedAbout) {
    EXPECT_EQ(ErrorsOf(SaveSettings), "");
    EXPECT_EQ(ErrorsOf(SaveHistory), "");
    EXPECT_EQ(ReadTestText(HistoryFilePath()), home.File("a.syx") + ",100\n");
    EXPECT_TRUE(std::filesystem::is_regular_file(Settings()));
    HistoryInit(); // a history that was never used is not written
    std::filesystem::remove(HistoryFilePath());
    std::filesystem::create_directory(HistoryFilePath());
    EXPECT_EQ(ErrorsOf(SaveHistory), "");
}

TEST_F(SaveAtEnd, SettingsThatCannotBeWrittenAreToldWithPathAndReason) {
    std::filesystem::create_directory(Settings());
    EXPECT_EQ(ErrorsOf(SaveSettings), "tonewright: " + Settings() +
                                          ": the settings could not be written: Is a directory\n");
}

TEST_F(SaveAtEnd, ABackupOfTheSettingsThatCannotBeKeptIsToldAndTheSettingsAreWritten) {
    WriteTestText(Settings(), "former");
    MakePipe(Backup());
    EXPECT_EQ(ErrorsOf(SaveSettings),
              "tonewright: " + Settings() +
                  ": a version of the settings could not be kept as a backup: "
                  "Operation not supported\n");
    EXPECT_NE(ReadTestText(Settings()), "former");
    EXPECT_TRUE(std::filesystem::is_fifo(Backup()));
}

TEST_F(SaveAtEnd, AHistoryThatCannotBeWrittenIsToldWithPathAndReason) {
    std::filesystem::create_directory(HistoryFilePath());
    EXPECT_EQ(ErrorsOf(SaveHistory), "tonewright: " + HistoryFilePath() +
                                         ": the history could not be written: Is a directory\n");
}

TEST_F(SaveAtEnd, TheProgramSaysSoWhenItEnds) {
    const TempFolder user;
    const EnvironmentOfOnePaint environment(user.path.string());
    const std::string settings = user.File(".config/Quillbrook/Tonewright 17.ini");
    const std::string history = user.File(".config/Quillbrook/Tonewright 17/FileMenuHistory.txt");
    std::filesystem::create_directories(settings);
    std::filesystem::create_directories(history);
    const std::string bank = user.Write("a.syx", TestBank());
    const ProgramResult result = RunProgram({WindowProgram(), bank});
    EXPECT_EQ(result.exitStatus, 0);
    for (const std::string &line :
         {settings + ": the settings could not be written: Is a directory\n",
          history + ": the history could not be written: Is a directory\n"}) {
        EXPECT_NE(result.errors.find("tonewright: " + line), std::string::npos) << result.errors;
    }
}

} // namespace
} // namespace tonewright
