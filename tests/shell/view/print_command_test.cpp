// Print in the File menu, with the real dialog.
#include "window_fixture.h"

#include "support/modal_box.h"

#include <QComboBox>
#include <QPrintDialog>

namespace tonewright {
namespace {

class PrintCommand : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        OpenBank();
        OpenExportPath = home.Folder();
    }
    void Print(const std::function<void(QDialog &)> &use) {
        WithModalBox([this] { window->MenuAction(CommandPrint)->trigger(); }, use);
    }
};

TEST_F(PrintCommand, PrintsTheListUnderTheNameOfItsDocument) {
    Print([](QDialog &dialog) {
        auto *printers = dialog.findChild<QComboBox *>("printers");
        ASSERT_NE(printers, nullptr);
        printers->setCurrentIndex(printers->count() - 1); // a file
        QTest::keyClick(&dialog, Qt::Key_Return);
    });
    EXPECT_EQ(desktop.busyTexts, std::vector<std::string>{"Printing bank.syx"});
    EXPECT_TRUE(ReadTestText(home.File("bank.pdf")).starts_with("%PDF-"));
    EXPECT_EQ(desktop.sounds.size(), 0u);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(PrintCommand, CancelledItLeavesNothing) {
    Print([](QDialog &dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); });
    EXPECT_FALSE(home.Holds("bank.pdf"));
    EXPECT_TRUE(desktop.busyTexts.empty());
}

TEST_F(PrintCommand, WhatIsPostedWaitsUntilItIsDone) {
    Print([](QDialog &dialog) {
        PostCommand(CommandClear);
        RunPosted();
        EXPECT_EQ(ListCount(MainList), 32);
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    RunPosted();
    EXPECT_EQ(ListCount(MainList), 0);
}

} // namespace
} // namespace tonewright
