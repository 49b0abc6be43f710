// The real program from start to end, in a process of its own with a home of its own.
#include "support/run_program.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace tonewright {
namespace {

class ProgramStart : public testing::Test {
protected:
    void SetUp() override {
        setenv("HOME", home.path.c_str(), 1);
        setenv("XDG_CONFIG_HOME", home.File(".config").c_str(), 1);
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        setenv("TONEWRIGHT_EXIT_AFTER_FIRST_PAINT", "1", 1);
    }

    std::string Settings() { return ReadTestText(home.File(".config/Quillbrook/Tonewright 17.ini")); }

    TempFolder home;
};

TEST_F(ProgramStart, OnAnEmptyHomeItMakesItsFoldersAndKeepsItsSettings) {
    EXPECT_EQ(RunProgram({TONEWRIGHT_PROGRAM}).exitStatus, 0);
    EXPECT_TRUE(home.Holds(".config/Quillbrook/Tonewright 17"));
    EXPECT_TRUE(home.Holds("Documents/My Tonewright 17 Documents"));
    EXPECT_NE(Settings().find("\n[Tonewright]\n"), std::string::npos);
    EXPECT_NE(Settings().find("\nMaxUndoLevel = 3\n"), std::string::npos);
    EXPECT_NE(Settings().find("\nShowWelcomeWizard = 1\n"), std::string::npos);
}

TEST_F(ProgramStart, ASettingOfTheFileLivesThroughARun) {
    RunProgram({TONEWRIGHT_PROGRAM});
    std::string settings = Settings();
    settings.replace(settings.find("MaxUndoLevel = 3"), 16, "MaxUndoLevel = 9");
    WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), settings);
    RunProgram({TONEWRIGHT_PROGRAM});
    EXPECT_NE(Settings().find("\nMaxUndoLevel = 9\n"), std::string::npos);
    EXPECT_TRUE(home.Holds(".config/Quillbrook/Backup of Tonewright 17.ini"));
}

TEST_F(ProgramStart, AQuotedPathOnTheCommandLineIsOpenedAndNotTheRecentDocument) {
    const std::string bank = home.Write("a bank.syx", ReadTestFile(EXAMPLES_DIR "/tonewright.syx"));
    RunProgram({TONEWRIGHT_PROGRAM});
    std::string settings = Settings();
    settings.replace(settings.find("OpenRecentDocument = 0"), 22, "OpenRecentDocument = 1");
    settings.replace(settings.find("RecentDocumentPath = \n"), 22, "RecentDocumentPath = /r.syx\n");
    WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), settings);
    RunProgram({TONEWRIGHT_PROGRAM, "\"" + bank + "\""});
    EXPECT_NE(Settings().find("\nRecentDocumentPath = " + bank + "\n"), std::string::npos);
    EXPECT_NE(Settings().find("\nOpenPath = " + home.Folder() + "\n"), std::string::npos);
}

} // namespace
} // namespace tonewright
