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
    void PressCtrlS() {
        window->activateWindow(); // a box that was closed leaves no window active
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
        RunPosted();
    }
};

TEST_F(CarefulWindow, CtrlSAsksBeforeItReplacesAFileThatCouldNotBeRead) {
    FailToOpen("broken.syx");
    EXPECT_TRUE(WithBox([this] { PressCtrlS(); },
                        [](QDialog &box) {
                            EXPECT_EQ(ButtonsOf(box), (Strings{"Save as", "Replace", "Cancel"}));
                            EXPECT_TRUE(TextOf(box).starts_with("The file broken.syx could not"));
                            QTest::keyClick(&box, Qt::Key_Escape);
                        }));
    EXPECT_EQ(ReadTestText(home.File("broken.syx")), "no bank");
    EXPECT_TRUE(WithBox([this] { PressCtrlS(); }, [](QDialog &box) { Press(box, 7); }));
    EXPECT_EQ(ReadTestFile(home.File("broken.syx")), TestBank());
    desktop.Expect(ExpectedFileDialog{.kind = FileDialogKind::Save,
                                      .answer = home.File("mine.syx"),
                                      .start = home.File("other.syx")});
    FailToOpen("other.syx");
    EXPECT_TRUE(WithBox([this] { PressCtrlS(); },
                        [](QDialog &box) { QTest::keyClick(&box, Qt::Key_Return); }));
    EXPECT_EQ(ReadTestText(home.File("other.syx")), "no bank");
    EXPECT_EQ(window->windowTitle(), "Tonewright [ mine.syx ]");
}

TEST_F(CarefulWindow, VoicesOfAnotherFamilyAreSavedWhenTheirInstrumentIsSelectedAgain) {
    FailToOpen("other.srx");
    EXPECT_TRUE(WithBox([this] { PressCtrlS(); },
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

TEST_F(CarefulWindow, APasteGoesToTheSelectionBehindAClosedMenu) {
    ClickRow(2);
    RunCommand(CommandCopy);
    for (const std::uint32_t careful : {0u, 1u}) {
        CarefulMode = careful;
        ClickRow(4);
        EXPECT_TRUE(WithContextMenu(RowPoint(6), [](QMenu &) {}));
        EXPECT_EQ(MainListState.clickedIndex, careful ? -1 : 6);
        RunCommand(CommandPaste);
        EXPECT_EQ(NameAt(careful ? 4 : 6), "VOICE 03");
    }
}

TEST_F(CarefulWindow, ALeftClickForgetsTheRowOfAnEarlierMenu) {
    for (const std::uint32_t careful : {0u, 1u}) {
        CarefulMode = careful;
        MainListState.clickedIndex = 6;
        ClickRow(3);
        EXPECT_EQ(MainListState.clickedIndex, careful ? -1 : 6);
    }
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
