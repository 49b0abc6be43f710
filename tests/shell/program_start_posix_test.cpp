// The real program from start to end, in a process of its own with a home of its own.
#include "support/environment.h"
#include "support/paths.h"
#include "support/posix_limits.h"
#include "support/run_program.h"
#include "support/temp_folder.h"
#include "support/test_themes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <random>

namespace tonewright {
namespace {

class ProgramStart : public testing::Test {
protected:
    std::string Settings() {
        return ReadTestText(home.File(".config/Quillbrook/Tonewright 17.ini"));
    }

    TempFolder home;
    const EnvironmentOfOnePaint environment{home.path.string()};
};

TEST(Environment, AVariableIsPutBackWhetherItWasSetOrNot) {
    constexpr const char *Name = "TONEWRIGHT_TEST_OF_THE_ENVIRONMENT";
    ASSERT_EQ(std::getenv(Name), nullptr);
    {
        const EnvironmentVariable one(Name, "1");
        {
            const EnvironmentVariable other(Name, std::nullopt);
            EXPECT_EQ(std::getenv(Name), nullptr);
        }
        EXPECT_STREQ(std::getenv(Name), "1");
    }
    EXPECT_EQ(std::getenv(Name), nullptr);
}

TEST_F(ProgramStart, OnAnEmptyHomeItMakesItsFoldersAndKeepsItsSettings) {
    EXPECT_EQ(RunProgram({WindowProgram()}).exitStatus, 0);
    EXPECT_TRUE(home.Holds(".config/Quillbrook/Tonewright 17"));
    EXPECT_TRUE(home.Holds("Documents/My Tonewright 17 Documents"));
    EXPECT_NE(Settings().find("\n[Tonewright]\n"), std::string::npos);
    EXPECT_NE(Settings().find("\nMaxUndoLevel = 3\n"), std::string::npos);
    EXPECT_NE(Settings().find("\nShowWelcomeWizard = 1\n"), std::string::npos);
}

TEST_F(ProgramStart, TheColoursOfTheProgramBecomeTheUsersOnce) {
    const std::string users = ".config/Quillbrook/Tonewright 17/TNWRGT.CCL";
    RunProgram({WindowProgram()});
    ASSERT_TRUE(home.Holds(users));
    EXPECT_EQ(ReadTestText(home.File(users)), ReadTestText(SourceFile("resources/TNWRGT.CCL")));
    EXPECT_NE(Settings().find("\nColourTableFile = TNWRGT.CCL\n"), std::string::npos);
    WriteTestText(home.File(users), "mine=1,2,3\n");
    RunProgram({WindowProgram()});
    EXPECT_EQ(ReadTestText(home.File(users)), "mine=1,2,3\n");
}

TEST_F(ProgramStart, HelpAndVersionArePrintedWithoutADisplay) {
    const EnvironmentVariable platform("QT_QPA_PLATFORM", "xcb");
    const EnvironmentVariable display("DISPLAY", std::nullopt);
    auto result = RunProgram({WindowProgram(), "--version"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output, "tonewright 17.0a revision 1\n");
    EXPECT_EQ(result.errors, "");
    result = RunProgram({WindowProgram(), "--help"});
    EXPECT_EQ(result.exitStatus, 0);
    EXPECT_EQ(result.output.substr(0, 25), "usage: tonewright [FILE]\n");
    EXPECT_EQ(result.errors, "");
    EXPECT_TRUE(std::filesystem::is_empty(home.path));
}

TEST_F(ProgramStart, WithoutAHomeFolderItSaysSoAndRuns) {
    const EnvironmentVariable noHome("HOME", std::nullopt);
    const EnvironmentVariable noConfiguration("XDG_CONFIG_HOME", std::nullopt);
    RunWithoutAccount([] {
        const ProgramResult result = RunProgram({WindowProgram()});
        EXPECT_EQ(result.exitStatus, 0);
        EXPECT_TRUE(
            result.errors.starts_with("tonewright: HOME is not set and this user has no home "
                                      "folder: documents and settings have no place\n"))
            << result.errors;
    });
}

TEST_F(ProgramStart, ASettingOfTheFileLivesThroughARun) {
    RunProgram({WindowProgram()});
    std::string settings = Settings();
    settings.replace(settings.find("MaxUndoLevel = 3"), 16, "MaxUndoLevel = 9");
    WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), settings);
    RunProgram({WindowProgram()});
    EXPECT_NE(Settings().find("\nMaxUndoLevel = 9\n"), std::string::npos);
    EXPECT_TRUE(home.Holds(".config/Quillbrook/Backup of Tonewright 17.ini"));
}

TEST_F(ProgramStart, TheThemeOfTheScreenIsChosenOnceAndASenselessOneEndsNothing) {
    const std::string path = ".config/Quillbrook/Tonewright 17.ini";
    EXPECT_EQ(RunProgram({WindowProgram()}).exitStatus, 0); // on a screen of 800 pixels
    EXPECT_NE(Settings().find("\nThemeCurrent = THEME_Slate Compact.dll\n"), std::string::npos);
    WriteTestText(home.File(path), "[Tonewright]\nThemeCurrent = \n");
    EXPECT_EQ(RunProgram({WindowProgram()}).exitStatus, 0);
    EXPECT_NE(Settings().find("\nThemeCurrent = THEME_Slate Compact.dll\n"), std::string::npos);
    for (const std::string &name : {std::string("../x"), std::string(1100, 'x')}) {
        WriteTestText(home.File(path), "[Tonewright]\nThemeCurrent = " + name + "\n");
        EXPECT_EQ(RunProgram({WindowProgram()}).exitStatus, 0) << name;
    }
}

TEST_F(ProgramStart, TheThemeIsAskedOnceDrawsAndIsEndedWithTheProgram) {
    const ThemeHouse house;
    house.Put("whole", "THEME_A.dll");
    std::filesystem::create_directories(home.path / ".config/Quillbrook");
    WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"),
                  "[Tonewright]\nThemeCurrent = THEME_A.dll\nShowStartupWindow = 0\n");
    EXPECT_EQ(RunProgram({PutProgram(house.program)}).exitStatus, 0);
    const std::vector<std::string> calls = house.Calls();
    ASSERT_GT(calls.size(), 4u);
    EXPECT_EQ(calls[0], "THEMEGetSupport 18");
    EXPECT_EQ(calls[1], "THEMEInit 18 17 0 1");
    EXPECT_EQ(std::ranges::count(calls, "THEMEInit 18 17 0 1"), 1);
    EXPECT_GE(std::ranges::count(calls, "THEMEDrawToolbarBackground window painter 0 0"), 1);
    EXPECT_EQ(std::ranges::count(calls, "THEMEDeInit"), 1);
    EXPECT_EQ(calls.back(), "THEMEDeInit");
}

TEST_F(ProgramStart, AQuotedPathOnTheCommandLineIsOpenedAndNotTheRecentDocument) {
    const std::string bank = home.Write("a bank.syx", ReadTestFile(ExampleFile("tonewright.syx")));
    RunProgram({WindowProgram()});
    std::string settings = Settings();
    settings.replace(settings.find("OpenRecentDocument = 0"), 22, "OpenRecentDocument = 1");
    settings.replace(settings.find("RecentDocumentPath = \n"), 22, "RecentDocumentPath = /r.syx\n");
    WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"), settings);
    RunProgram({WindowProgram(), "\"" + bank + "\""});
    EXPECT_NE(Settings().find("\nRecentDocumentPath = " + bank + "\n"), std::string::npos);
    EXPECT_NE(Settings().find("\nOpenPath = " + home.Folder() + "\n"), std::string::npos);
}

// As a file manager names a file: its path is one argument, whatever is in it.
TEST_F(ProgramStart, AFileIsOpenedWhateverIsInItsName) {
    std::filesystem::create_directories(home.path / ".config/Quillbrook/Tonewright 17");
    const auto bytes = ReadTestFile(ExampleFile("tonewright.syx"));
    for (const char *name :
         {"two  blanks.syx", "it's.syx", "12\" single.syx", "12 single.syx", "\"all\".syx",
          "100%s.syx", "$HOME `a`.syx", "back\\slash.syx", "Zwölf \u97f3\u8272 \u0437\u0432.syx",
          "-dash.syx", "#1 & 2; (3) [4] {5} <6> | 7?*.syx"}) {
        RunProgram({WindowProgram(), home.Write(name, bytes)});
        EXPECT_NE(Settings().find("\nRecentDocumentPath = " + home.File(name) + "\n"),
                  std::string::npos)
            << name;
        // It has what was opened, and nothing else.
        const std::string history =
            ReadTestText(home.File(".config/Quillbrook/Tonewright 17/FileMenuHistory.txt"));
        EXPECT_NE(history.find(home.File(name) + ","), std::string::npos) << name;
    }
}

TEST_F(ProgramStart, TheDayOfTheTipIsUsedUpUnlessTipsAreOff) {
    const auto startWith = [this](const std::string &settings) {
        std::filesystem::create_directories(home.path / ".config/Quillbrook");
        WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"),
                      "[Tonewright]\nShowStartupWindow = 0\n" + settings);
        EXPECT_EQ(RunProgram({WindowProgram()}).exitStatus, 0);
        return Settings().find("\nLastTipDate = 0\n") == std::string::npos;
    };
    EXPECT_TRUE(startWith("ShowWelcomeWizard = 1\n"));
    EXPECT_TRUE(startWith("ShowWelcomeWizard = 0\n"));
    EXPECT_FALSE(startWith("ShowTipOfTheDay = 0\n"));
}

// Bytes of all values but letters, which could happen to be the beginning of a key.
std::string RandomBytes(std::size_t size) {
    std::mt19937 random(99);
    std::string bytes;
    while (bytes.size() < size) {
        const auto byte = static_cast<unsigned char>(random() & 0xFF);
        if (!std::isalpha(byte)) {
            bytes += static_cast<char>(byte);
        }
    }
    return bytes;
}

TEST_F(ProgramStart, GarbageInSettingsAndHistoryDoesNotKeepItFromStarting) {
    const std::string bank = home.WriteText("bank.syx", "");
    std::filesystem::create_directories(home.path / ".config/Quillbrook/Tonewright 17");
    const std::string history = home.File(".config/Quillbrook/Tonewright 17/FileMenuHistory.txt");
    for (const std::string &garbage :
         {RandomBytes(1'000'000), std::string(10'000'000, 'x'), std::string(10'000'000, '\0'),
          std::string("\r\n\r\n[\r\n=\r\n,\r\n")}) {
        // The last lines have no line end.
        WriteTestText(home.File(".config/Quillbrook/Tonewright 17.ini"),
                      garbage + "\r\nSysexWait = 77");
        WriteTestText(history, garbage + "\r\n" + bank + ",1234");
        EXPECT_EQ(RunProgram({WindowProgram()}).exitStatus, 0);
        EXPECT_NE(Settings().find("\nSysexWait = 77\n"), std::string::npos);
        EXPECT_EQ(ReadTestText(history), bank + ",1234\n");
    }
}

} // namespace
} // namespace tonewright
