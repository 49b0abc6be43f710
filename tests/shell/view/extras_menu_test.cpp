// The menu of the extras: its check marks, the status bar and the help key.
#include "window_fixture.h"

#include <QMenuBar>

namespace tonewright {
namespace {

class ExtrasMenu : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        MakeProgramFolders();
    }

    QMenu &Menu() const { return *window->findChild<QMenu *>("E&xtras"); }
    bool IsChecked(int id) const { return window->MenuAction(id)->isChecked(); }
    // Opens the menu as its title does.
    void OpenMenu() {
        auto *bar = window->findChild<QMenuBar *>();
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                          bar->actionGeometry(Menu().menuAction()).center());
        ASSERT_TRUE(Menu().isVisible());
    }
};

TEST_F(ExtrasMenu, ACheckMarkFollowsTheValue) {
    for (const int id : {CommandCarefulMode, CommandWholeDetune, CommandAuditionKeepsVoice,
                         CommandRefaceZero64, CommandSpaceAuditions}) {
        EXPECT_TRUE(window->MenuAction(id)->isCheckable()) << id;
        EXPECT_FALSE(IsChecked(id)) << id;
    }
    EXPECT_FALSE(window->MenuAction(CommandSave)->isCheckable());
    EXPECT_FALSE(window->MenuAction(CommandInstruments)->isCheckable());
    OpenMenu();
    QTest::keyClick(&Menu(), Qt::Key_K);
    EXPECT_FALSE(Menu().isVisible());
    EXPECT_EQ(WholeDetune, 1u);
    EXPECT_TRUE(IsChecked(CommandWholeDetune));
    EXPECT_FALSE(IsChecked(CommandCarefulMode));
    Trigger(CommandWholeDetune);
    EXPECT_EQ(WholeDetune, 0u);
    EXPECT_FALSE(IsChecked(CommandWholeDetune));
    RunCommand(CommandCarefulMode); // from elsewhere
    EXPECT_TRUE(IsChecked(CommandCarefulMode));
}

TEST_F(ExtrasMenu, AToggleCountsForTheNextBankThatIsOpened) {
    std::vector<std::uint8_t> bank = TestBank();
    bank[6 + 12] = 14 << 3;
    FixTestChecksum(bank);
    const std::string path = home.Write("detuned.syx", bank);
    const auto detune = [&] {
        PendingOpenPath = path;
        EXPECT_EQ(RunCommand(CommandOpen), 1);
        return PayloadOf(*ListVoice(MainList, 0))->payload[20];
    };
    EXPECT_EQ(detune(), 6);
    Trigger(CommandWholeDetune);
    EXPECT_EQ(detune(), 14);
    Trigger(CommandWholeDetune);
    EXPECT_EQ(detune(), 6);
}

TEST_F(ExtrasMenu, WhatTheFilesSayIsCheckedFromTheStart) {
    WriteTestText(home.File("Quillbrook/Tonewright 17/Extras.ini"), "AuditionKeepsVoice = 1\n");
    MakeWindow();
    EXPECT_TRUE(IsChecked(CommandAuditionKeepsVoice));
    EXPECT_FALSE(IsChecked(CommandCarefulMode));
}

TEST_F(ExtrasMenu, ARefusedToggleLeavesTheCheckMarkAsItWas) {
    const RunningMark running;
    Trigger(CommandCarefulMode);
    EXPECT_EQ(CarefulMode, 0u);
    EXPECT_FALSE(IsChecked(CommandCarefulMode));
}

TEST_F(ExtrasMenu, TheStatusBarTellsOfTheHighlightedEntryUntilTheMenuCloses) {
    OpenMenu();
    desktop.statusTexts.clear();
    QTest::keyClick(&Menu(), Qt::Key_Down);
    QTest::keyClick(&Menu(), Qt::Key_Down);
    ASSERT_FALSE(desktop.statusTexts.empty());
    EXPECT_EQ(desktop.statusTexts.back(), "Reads all 15 steps of a packed voice's detune");
    QTest::keyClick(&Menu(), Qt::Key_Escape);
    EXPECT_FALSE(Menu().isVisible());
    EXPECT_EQ(desktop.statusTexts.back(), "Unknown or unrecognized synthesizer");
}

TEST_F(ExtrasMenu, TheOtherMenusLeaveTheStatusBarAlone) {
    desktop.statusTexts.clear();
    auto *bar = window->findChild<QMenuBar *>();
    QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier,
                      bar->actionGeometry(bar->actions().constFirst()).center());
    QMenu *file = bar->actions().constFirst()->menu();
    ASSERT_TRUE(file->isVisible());
    QTest::keyClick(file, Qt::Key_Down);
    QTest::keyClick(file, Qt::Key_F1);
    QTest::keyClick(file, Qt::Key_Escape);
    EXPECT_TRUE(desktop.statusTexts.empty());
    EXPECT_TRUE(desktop.opened.empty());
}

TEST_F(ExtrasMenu, F1OpensTheTopicOfTheHighlightedEntry) {
    ApplicationPath = "/program/";
    DocumentBrowserFlags = 0;
    OpenMenu();
    Menu().setActiveAction(window->MenuAction(CommandAuditionKeepsVoice));
    QTest::keyClick(&Menu(), Qt::Key_F1);
    EXPECT_FALSE(Menu().isVisible());
    ASSERT_EQ(desktop.opened.size(), 1u);
    EXPECT_EQ(desktop.opened[0].address,
              "file:////program/html/referenc.html#EXTRAS_AUDITIONKEEPSVOICE");
    EXPECT_EQ(AuditionKeepsVoice, 0u);
}

} // namespace
} // namespace tonewright
