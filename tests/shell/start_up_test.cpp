// The decisions of start-up: sizes, display, default folders, first commands.
#include "shell/start_up.h"

#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/utf8_path.h"
#include "core/current.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/command_queue.h"
#include "shell/command_table.h"
#include "shell/documents.h"
#include "shell/shell_window.h"
#include "shell/wizard.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <filesystem>
#include <gtest/gtest.h>

namespace tonewright {
namespace {

TEST(StartUp, TheWindowIsNinetyFivePercentOfTheScreensHeight) {
    EXPECT_EQ(MainWindowSize(1080).height, 1026);
    EXPECT_EQ(MainWindowSize(1080).width, 829);
    EXPECT_EQ(MainWindowSize(480).height, 456);
    EXPECT_EQ(MainWindowSize(480).width, 368);
}

TEST(StartUp, ADisplayThatIs800WideAnd480HighPassesTheCheck) {
    EXPECT_TRUE(DisplayIsSuitable(24, 800));
}

TEST(StartUp, ADisplayNarrowerThan800IsRefused) {
    EXPECT_FALSE(DisplayIsSuitable(24, 799));
}

TEST(StartUp, ADisplayWith8BitsPerPixelIsRefused) {
    EXPECT_FALSE(DisplayIsSuitable(8, 1920));
    EXPECT_TRUE(DisplayIsSuitable(9, 1920));
}

TEST(StartUp, ADisplayOf9BitsOrMoreCountsAs24) {
    EXPECT_EQ(ColourDepthOf(8), 8);
    EXPECT_EQ(ColourDepthOf(9), 24);
    EXPECT_EQ(ColourDepthOf(32), 24);
    EXPECT_EQ(ColourDepthOf(1), 1);
}

TEST(StartUp, EmptyFoldersGetTheDefaultAndOthersStay) {
    PlatformFolders.documents = "/home/someone/Documents";
    OpenExportPath = "/elsewhere/";
    FillDefaultFolders();
    EXPECT_EQ(OpenPath, std::string("/home/someone/Documents") + PathSeparator +
                            "My Tonewright 17 Documents" + PathSeparator);
    EXPECT_EQ(OpenImportPath, OpenPath);
    EXPECT_EQ(OpenExportPath, "/elsewhere/");
}

std::optional<std::string> TextFor(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "tonewright");
    std::vector<char *> pointers;
    for (std::string &argument : arguments) {
        pointers.push_back(argument.data());
    }
    return TextInsteadOfStart(static_cast<int>(pointers.size()), pointers.data());
}

TEST(StartUp, HelpAndVersionCountAsTheOnlyArgument) {
    EXPECT_EQ(TextFor({"--version"}), "tonewright 17.0a revision 1\n");
    EXPECT_TRUE(TextFor({"--help"}).value_or("").starts_with("usage: tonewright [FILE]\n"));
    for (const std::vector<std::string> &paths : std::vector<std::vector<std::string>>{
             {}, {""}, {"--Help"}, {"-h"}, {"--help "}, {"--help", "--version"}, {"a", "--help"}}) {
        EXPECT_EQ(TextFor(paths), std::nullopt);
    }
}

TEST(StartUp, TheClipboardIsLookedAtOnceAndBehindTheFirstDocument) {
    ScriptedDesktop desktop;
    int looks = 0;
    TheDesktop.ClipboardHasVoice = [&] {
        ++looks;
        return true;
    };
    PostFirstDocument("/banks/missing.syx");
    PostFirstLookAtClipboard();
    desktop.ExpectMessage("There has been an error reading this file. It might be corrupted.");
    EXPECT_TRUE(RunNextPosted());
    EXPECT_EQ(CurrentDocumentPath, AbsolutePath("/banks/missing.syx"));
    EXPECT_EQ(looks, 0);
    EXPECT_TRUE(RunNextPosted());
    EXPECT_EQ(looks, 1);
    EXPECT_FALSE(RunNextPosted());
}

TEST(StartUp, TheCommandLineHoldsOnePathWithItsBlanks) {
    EXPECT_EQ(UnquotedPath(""), "");
    EXPECT_EQ(UnquotedPath("my  bank.syx"), "my  bank.syx");
    EXPECT_EQ(UnquotedPath("\"quoted bank.syx\""), "quoted bank.syx");
}

class FirstWork : public testing::Test {
protected:
    void RunAll() {
        while (RunNextPosted()) {
        }
    }
};

TEST_F(FirstWork, TheCommandLineWinsOverTheRecentDocument) {
    OpenRecentDocument = 1;
    RecentDocumentPath = "/recent.syx";
    PostFirstDocument("/line.syx");
    EXPECT_EQ(PendingOpenPath, AbsolutePath("/line.syx"));
}

TEST_F(FirstWork, APathOfTheCommandLineIsMadeAbsolute) {
    PostFirstDocument("line.syx");
    EXPECT_EQ(PendingOpenPath, (std::filesystem::current_path() / "line.syx").string());
}

TEST_F(FirstWork, TheRecentDocumentIsOpenedOnlyWhenWanted) {
    RecentDocumentPath = "/recent.syx";
    PostFirstDocument("");
    EXPECT_EQ(PendingOpenPath, "");
    OpenRecentDocument = 1;
    PostFirstDocument("");
    EXPECT_EQ(PendingOpenPath, "/recent.syx");
}

TEST_F(FirstWork, TheDriverOfTheSettingsBecomesCurrent) {
    SelectKeyboardName = "yamaha REFACE dx";
    PostFirstCommands();
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_TRUE(RunNextPosted());
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    // Then its instrument is looked for, and is not there.
    EXPECT_TRUE(RunNextPosted());
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_FALSE(RunNextPosted());
}

TEST_F(FirstWork, AnUnknownNameInTheSettingsChoosesNoDriver) {
    SelectKeyboardName = "Some other instrument";
    PostFirstCommands();
    RunAll();
    EXPECT_EQ(CurrentDriverId, NoDriverId);
}

TEST_F(FirstWork, PostedWorkWaitsUntilWhatRunsHasReturned) {
    std::vector<int> order;
    Post([&] {
        order.push_back(1);
        Post([&] { order.push_back(3); });
        EXPECT_FALSE(RunNextPosted()); // as from the loop of a message box
        order.push_back(2);
    });
    RunAll();
    EXPECT_EQ(order, (std::vector{1, 2, 3}));
}

TEST_F(FirstWork, TheWindowIsWokenForWorkPostedInsideACommand) {
    int wakes = 0;
    TheShellWindow.Wake = [&] { ++wakes; };
    {
        const RunningMark running;
        Post([] {});
        EXPECT_EQ(wakes, 0);
    }
    EXPECT_EQ(wakes, 1);
}

TEST(StartUp, TheStartupWindowIsShownUnlessTheWizardIs) {
    EXPECT_FALSE(StartupWindowWanted()) << "a first start";
    ShowWelcomeWizard = 0;
    EXPECT_TRUE(StartupWindowWanted());
    ShowStartupWindow = 0;
    EXPECT_FALSE(StartupWindowWanted());
    ShowWelcomeWizard = 1;
    EXPECT_FALSE(StartupWindowWanted());
}

TEST_F(FirstWork, AFirstStartShowsTheWizardAndNoTip) {
    const TempFolder home;
    PlatformFolders.applicationData = home.path.string();
    MakeProgramFolders();
    int wizards = 0, tips = 0;
    TheShellWindow.AskForWizard = [] { return ResultYes; };
    TheShellWindow.ShowWizard = [&](const WizardRequest &) { return ++wizards; };
    TheShellWindow.ShowTipBox = [&] { ++tips; };
    for (int start = 0; start < 3; ++start) {
        PostMainStartupDone();
        RunAll();
        EXPECT_EQ(wizards, 1);
        EXPECT_EQ(tips, 0) << "the day is used up";
    }
    LastTipDate = 0;
    PostMainStartupDone();
    RunAll();
    EXPECT_EQ(wizards, 1);
    EXPECT_EQ(tips, 1);
}

} // namespace
} // namespace tonewright
