// Careful mode as a user of the window meets it: its questions in real boxes, and the row that a
// closed menu leaves behind.
#include "window_fixture.h"

#include "common/view/message_dialog.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/builtin_midi.h"
#include "support/reface_bytes.h"

#include <QLabel>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

class CarefulWindow : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        CarefulMode = 1;
        CreateBackups = 0;
        OpenBank();
    }
    // From now on messages are boxes.
    static void ShowBoxes() { TheDesktop.RunMessage = RunMessageDialog; }

    // The window on a file that could not be read, with the voices of the former one.
    void FailToOpen(const std::string &name) {
        TheDesktop.RunMessage = nullptr;
        PendingOpenPath = home.WriteText(name, "no bank");
        RunCommand(CommandOpen);
        ShowBoxes();
    }
    static Strings ButtonsOf(const QDialog &box) {
        Strings texts;
        for (const int control : {1, 7, 2}) {
            const auto *button = box.findChild<QPushButton *>(QString("control_%1").arg(control));
            if (button && button->isVisible()) {
                texts.push_back(button->text().toStdString());
            }
        }
        return texts;
    }
    static std::string TextOf(const QDialog &box) {
        return box.findChild<QLabel *>("control_65")->text().toStdString();
    }
    static void Press(QDialog &box, int control) {
        auto *button = box.findChild<QPushButton *>(QString("control_%1").arg(control));
        ASSERT_NE(button, nullptr);
        QTest::mouseClick(button, Qt::LeftButton);
    }
    void PressCtrl(Qt::Key key) {
        window->activateWindow(); // a box that was closed leaves no window active
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window.get(), key, Qt::ControlModifier);
        RunPosted();
    }
};

TEST_F(CarefulWindow, CtrlSAsksBeforeItReplacesAFileThatCouldNotBeRead) {
    FailToOpen("broken.syx");
    EXPECT_TRUE(WithBox([this] { PressCtrl(Qt::Key_S); },
                        [](QDialog &box) {
                            EXPECT_EQ(ButtonsOf(box), (Strings{"Save as", "Replace", "Cancel"}));
                            EXPECT_TRUE(TextOf(box).starts_with("The file broken.syx could not"));
                            QTest::keyClick(&box, Qt::Key_Escape);
                        }));
    EXPECT_EQ(ReadTestText(home.File("broken.syx")), "no bank");
    EXPECT_TRUE(WithBox([this] { PressCtrl(Qt::Key_S); }, [](QDialog &box) { Press(box, 7); }));
    EXPECT_EQ(ReadTestFile(home.File("broken.syx")), TestBank());
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Save,
                                      .answer = home.File("mine.syx"),
                                      .start = home.File("other.syx")});
    FailToOpen("other.syx");
    EXPECT_TRUE(WithBox([this] { PressCtrl(Qt::Key_S); },
                        [](QDialog &box) { QTest::keyClick(&box, Qt::Key_Return); }));
    EXPECT_EQ(ReadTestText(home.File("other.syx")), "no bank");
    EXPECT_EQ(window->windowTitle(), "Tonewright [ mine.syx ]");
}

TEST_F(CarefulWindow, VoicesOfAnotherFamilyAreSavedWhenTheirInstrumentIsSelectedAgain) {
    FailToOpen("other.srx");
    EXPECT_TRUE(WithBox([this] { PressCtrl(Qt::Key_S); },
                        [](QDialog &box) {
                            EXPECT_EQ(ButtonsOf(box), (Strings{"Yes", "No"}));
                            Press(box, 7);
                        }));
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(ReadTestText(home.File("other.srx")), "no bank");
}

TEST_F(CarefulWindow, AnUploadOfABankIsAskedAbout) {
    BuiltinMidi midi;
    SelectKeyboardMidiIn = SelectKeyboardMidiOut = "DX7";
    RunCommand(CommandFind);
    const auto memory = MemoryOf(BuiltinInstrument::Dx7);
    ShowBoxes();
    EXPECT_TRUE(WithBox([this] { Trigger(CommandUpload); }, [](QDialog &box) { Press(box, 7); }));
    EXPECT_EQ(MemoryOf(BuiltinInstrument::Dx7), memory);
    EXPECT_TRUE(WithBox([this] { Trigger(CommandUpload); }, [](QDialog &box) { Press(box, 1); }));
    EXPECT_NE(MemoryOf(BuiltinInstrument::Dx7), memory);
}

TEST_F(CarefulWindow, TheWindowStaysWhenTheSaveBeforeItsEndFails) {
    DragRow(4, 1);
    ASSERT_TRUE(MainListState.dirty);
    std::filesystem::remove(home.path / "bank.syx");
    std::filesystem::create_directory(home.path / "bank.syx");
    desktop.ExpectYesNoCancel("Your current document has not been saved. Do you wish to save "
                              "it?\n\nClick on Yes to save it, or click on No to abandon it.\n\n"
                              "Click on Cancel to return to the main window of Tonewright.",
                              ResultYes);
    desktop.ExpectMessage("There has been an error writing this file. Please check the available "
                          "space on the destination drive.\n\n" +
                          home.File("bank.syx") + ": Is a directory.");
    window->close();
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(NameAt(1), "VOICE 05");
}

// The row of a menu that was closed is out of sight when the keys paste.
class ClickedRow : public CarefulWindow {
protected:
    void SetUp() override {
        CarefulWindow::SetUp();
        ClickRow(2);
        PressCtrl(Qt::Key_C);
    }
    void OpenAndEscape(int row) {
        EXPECT_TRUE(WithContextMenu(RowPoint(row),
                                    [](QMenu &menu) { QTest::keyClick(&menu, Qt::Key_Escape); }));
    }
    void ScrollAwayAndPaste() {
        QScrollBar &bar = *list->verticalScrollBar();
        bar.setValue(bar.maximum());
        EXPECT_FALSE(Viewport()->rect().intersects(list->RowRectangle(6)));
        PressCtrl(Qt::Key_V);
        bar.setValue(0);
    }
};

TEST_F(ClickedRow, OfAClosedMenuReceivesThePasteWithTheModeOff) {
    CarefulMode = 0;
    ClickRow(4);
    OpenAndEscape(6);
    ScrollAwayAndPaste();
    EXPECT_EQ(Names(4, 6), (Strings{"VOICE 05", "VOICE 06", "VOICE 03"}));
}

TEST_F(ClickedRow, OfAClosedMenuIsForgottenInCarefulMode) {
    ClickRow(4);
    OpenAndEscape(6);
    ScrollAwayAndPaste();
    EXPECT_EQ(Names(4, 6), (Strings{"VOICE 03", "VOICE 06", "VOICE 07"}));
}

TEST_F(ClickedRow, ReceivesThePasteAfterALeftClickElsewhereWithTheModeOff) {
    CarefulMode = 0;
    OpenAndEscape(6);
    ClickRow(4);
    ScrollAwayAndPaste();
    EXPECT_EQ(Names(4, 6), (Strings{"VOICE 05", "VOICE 06", "VOICE 03"}));
}

TEST_F(ClickedRow, IsForgottenAtALeftClickInCarefulMode) {
    CarefulMode = 0; // a menu that was closed before the mode was switched on
    OpenAndEscape(6);
    CarefulMode = 1;
    ClickRow(4);
    ScrollAwayAndPaste();
    EXPECT_EQ(Names(4, 6), (Strings{"VOICE 03", "VOICE 06", "VOICE 07"}));
}

TEST_F(CarefulWindow, ACommandOfTheMenuStillActsOnItsRow) {
    ClickRow(4);
    EXPECT_TRUE(WithContextMenu(RowPoint(6), [](QMenu &menu) {
        menu.setActiveAction(ActionOf(menu, CommandMoveUp));
        QTest::keyClick(&menu, Qt::Key_Return);
    }));
    EXPECT_EQ(NameAt(5), "VOICE 07");
}

} // namespace
} // namespace tonewright
