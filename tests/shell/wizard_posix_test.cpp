// The first run of the wizard where the file of settings may not be written, and where there is no
// room for it.
#include "shell/wizard.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "shell/shell_window.h"
#include "shell_fixture.h"
#include "support/posix_limits.h"

namespace tonewright {
namespace {

class WizardObstacles : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        MakeProgramFolders();
        TheShellWindow.AskForWizard = [this] {
            ++questions;
            return ResultYes;
        };
        TheShellWindow.ShowWizard = [](const WizardRequest &) { return WizardDismissed; };
    }

    // Runs it twice: it comes once, behind a message that names the file and the reason.
    void ExpectOneRunBehindAMessage(const std::string &reason) {
        desktop.ExpectMessage("It could not be noted that the welcome wizard has come. The next "
                              "start may bring it again:\n\n" +
                              settingsPath + ": " + reason);
        EXPECT_EQ(RunFirstWizard(), WizardDismissed);
        EXPECT_EQ(questions, 1);
        EXPECT_EQ(ShowWelcomeWizard, 0u);
        EXPECT_EQ(RunFirstWizard(), 0);
        EXPECT_EQ(questions, 1);
        desktop.ExpectNothingLeft();
    }

    std::string maker = home.File("Quillbrook/");
    std::string settingsPath = maker + "Tonewright 17.ini";
    int questions = 0;
};

TEST_F(WizardObstacles, InAReadOnlyFolderTheWizardComesAllTheSame) {
    RunUnprivileged({{maker, 0500}}, [this] { ExpectOneRunBehindAMessage("Permission denied"); });
}

TEST_F(WizardObstacles, WithAReadOnlyFileTheWizardComesAllTheSame) {
    WriteTestText(settingsPath, "[Tonewright]\nShowWelcomeWizard = 1\n");
    RunUnprivileged({{settingsPath, 0400}},
                    [this] { ExpectOneRunBehindAMessage("Permission denied"); });
    EXPECT_EQ(ReadTestText(settingsPath), "[Tonewright]\nShowWelcomeWizard = 1\n");
}

TEST_F(WizardObstacles, OnAFullDiskTheWizardComesAllTheSame) {
    RunOnSmallDisk(maker, [this] {
        FillDisk(maker + "filler");
        ExpectOneRunBehindAMessage("No space left on device");
        EXPECT_FALSE(home.Holds("Quillbrook/Tonewright 17.ini"));
    });
}

} // namespace
} // namespace tonewright
