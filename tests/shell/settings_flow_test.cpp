// The Settings command behind the sheet of settings.
#include "shell_fixture.h"

#include "shell/command_queue.h"
#include "shell/settings_flow.h"

namespace tonewright {
namespace {

class SettingsFlowTest : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        RestartNeeded = false;
        TheShellWindow.ShowSettings = [this] {
            EXPECT_TRUE(SomethingIsRunning());
            calls.push_back("sheet");
        };
        TheShellWindow.DropBackground = [this] { calls.push_back("drop the background"); };
        TheShellWindow.SetTitle = [this](const std::string &title) { calls.push_back(title); };
        TheShellWindow.RepaintWindow = [this] { calls.push_back("repaint the window"); };
        TheShellWindow.RepaintTools = [this] { calls.push_back("repaint the buttons"); };
    }
    void TearDown() override {
        RestartNeeded = false;
        while (RunNextPosted()) {
        }
        ShellTest::TearDown();
    }

    const std::vector<std::string> inOrder = {"sheet", "drop the background",
                                              "Tonewright [ Untitled.Twl ]", "repaint the window",
                                              "repaint the buttons"};
    std::vector<std::string> calls; // oldest first
};

TEST_F(SettingsFlowTest, TheCommandIsBuiltAndAlwaysEnabled) {
    EXPECT_TRUE(CommandAllowed(CommandSettings));
}

TEST_F(SettingsFlowTest, TheSheetIsShownThenTheWindowIsBroughtUpToDateInOrder) {
    EXPECT_EQ(RunUserCommand(CommandSettings), 1);
    EXPECT_EQ(calls, inOrder);
}

TEST_F(SettingsFlowTest, WithoutTheFlagNothingIsToldAndNothingCloses) {
    RunCommand(CommandSettings);
    EXPECT_FALSE(RunNextPosted());
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(closes, 0);
}

TEST_F(SettingsFlowTest, AChangeOfASettingWithAnAsteriskDoesNotSetTheFlag) {
    TheShellWindow.ShowSettings = [] { MaxUndoLevel = 12; };
    RunCommand(CommandSettings);
    MaxUndoLevel = 3;
    EXPECT_FALSE(RestartNeeded);
    EXPECT_EQ(closes, 0);
}

TEST_F(SettingsFlowTest, WithTheFlagMessage142IsShownAndExitIsPosted) {
    desktop.Expect(ExpectedMessage{
        .text = "You have made changes to Tonewright that require it to be restarted. Click on OK "
                "to close this application, and run the software again.",
        .buttons = {"Dismiss"},
        .answer = ResultYes,
        .during = [this](MessageRequest &) { EXPECT_EQ(calls, inOrder); }});
    TheShellWindow.ShowSettings = [this] {
        calls.push_back("sheet");
        RestartNeeded = true;
    };
    EXPECT_EQ(RunCommand(CommandSettings), 1);
    desktop.ExpectNothingLeft();
    EXPECT_EQ(closes, 0);
    EXPECT_TRUE(RunNextPosted());
    EXPECT_EQ(closes, 1);
}

TEST_F(SettingsFlowTest, TheExitThatIsPostedStillAsksAboutAChangedDocument) {
    MainListState.dirty = true;
    RestartNeeded = true;
    desktop.ExpectMessage("You have made changes to Tonewright that require it to be restarted. "
                          "Click on OK to close this application, and run the software again.");
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    RunCommand(CommandSettings);
    RunNextPosted();
    EXPECT_EQ(closes, 0);
}

TEST_F(SettingsFlowTest, WithoutAWindowTheCommandDoesNothing) {
    TheShellWindow = {};
    EXPECT_EQ(RunCommand(CommandSettings), 1);
    EXPECT_TRUE(calls.empty());
}

} // namespace
} // namespace tonewright
