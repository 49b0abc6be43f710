// The commands of the catalogue in the real window's context menu.
#include "window_fixture.h"

#include "common/view/dialog_controls.h"
#include "common/view/list_box_view.h"
#include "common/view/message_dialog.h"
#include "core/voice_object.h"
#include "database/database_window.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/view/desktop_qt.h"

#include <QLabel>

#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

class DatabaseCommands : public WindowTest {
protected:
    void SetUp() override {
        WindowTest::SetUp();
        // The keys of the real keyboard and mouse events.
        const Desktop scripted = TheDesktop;
        UseQtDesktop();
        const auto shiftKeyDown = TheDesktop.ShiftKeyDown;
        TheDesktop = scripted;
        TheDesktop.ShiftKeyDown = shiftKeyDown;
        MakeProgramFolders();
        OpenBank();
    }
    std::string Path() const { return home.File("My Tonewright 17 Documents/Voices.syx_db"); }
    // By the header; -1 without a file.
    int Count() const {
        return fs::exists(Path()) ? static_cast<int>(ReadTestFile(Path()).at(20)) : -1;
    }
    // Of the last record.
    std::string LastName() const {
        const auto file = ReadTestFile(Path());
        return reinterpret_cast<const char *>(&file[file.size() - 446 + 28]);
    }
    // With the right button on a row, and a click on the entry.
    void Choose(int row, int command, Qt::KeyboardModifiers keys = Qt::NoModifier) {
        EXPECT_TRUE(WithContextMenu(RowPoint(row), [&](QMenu &menu) {
            const QPoint entry = menu.actionGeometry(ActionOf(menu, command)).center();
            ComeTo(menu, entry);
            QTest::mouseClick(&menu, Qt::LeftButton, keys, entry);
        }));
        RunPosted();
    }
};

TEST_F(DatabaseCommands, AddTakesTheClickedVoice) {
    ClickRow(9);
    Choose(4, CommandAddToDatabase);
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(LastName(), "Voice 05");
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_EQ(MainList.selection, 9);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_FALSE(CommandAllowed(CommandUndo));
}

TEST_F(DatabaseCommands, AShiftClickInTheMenuAddsAllVoices) {
    Choose(4, CommandAddToDatabase, Qt::ShiftModifier);
    EXPECT_EQ(Count(), 32);
    EXPECT_EQ(LastName(), "Voice 32");
    EXPECT_EQ(desktop.sounds.size(), 1u);
}

TEST_F(DatabaseCommands, ReturnInTheMenuAddsTheVoiceToo) {
    EXPECT_TRUE(WithContextMenu(RowPoint(6), [](QMenu &menu) {
        menu.setActiveAction(ActionOf(menu, CommandAddToDatabase));
        QTest::keyClick(&menu, Qt::Key_Return);
    }));
    EXPECT_EQ(Count(), 1);
    EXPECT_EQ(LastName(), "Voice 07");
}

TEST_F(DatabaseCommands, AVoiceThatIsNoneIsToldOfInABox) {
    CarefulMode = 1;
    ListSetVoice(MainList, 4, MakeVoiceObject(RefaceDriverId, {}, {}));
    TheDesktop.RunMessage = RunMessageDialog;
    std::string text;
    EXPECT_TRUE(WithBox(
        [this] { Choose(4, CommandAddToDatabase, Qt::ShiftModifier); },
        [&](QDialog &box) { text = box.findChild<QLabel *>("control_65")->text().toStdString(); }));
    EXPECT_NE(text.find("Not added: 1 of the 32 voices in the list"), std::string::npos) << text;
    EXPECT_EQ(Count(), 31);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(DatabaseCommands, InsertOpensTheWindowForTheClickedRow) {
    TheDatabaseViews.ShowBox = [this](QWidget *owner, DatabaseWindow &state) {
        EXPECT_EQ(owner, window.get());
        EXPECT_EQ(DriverIdAt(state.driverIndex), CurrentDriverId);
        state.chosen = *ListVoice(MainList, 20);
        return 1;
    };
    ClickRow(9);
    Choose(4, CommandInsertFromDatabase);
    EXPECT_EQ(Names(4, 5), (std::vector<std::string>{"VOICE 21", "VOICE 06"}));
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
}

// From the list to the catalogue and back into another row, by mouse and keys alone.
TEST_F(DatabaseCommands, AVoiceThatWasAddedIsInsertedFromTheRealWindow) {
    Choose(9, CommandAddToDatabase);
    Choose(7, CommandAddToDatabase);
    desktop.sounds.clear();
    EXPECT_TRUE(WithBox([this] { Choose(4, CommandInsertFromDatabase); },
                        [](QDialog &box) {
                            EXPECT_EQ(box.windowTitle(), "Database");
                            // "Voice 08" and "Voice 10", in the order of their names.
                            auto *records = ControlOf<ListBoxView>(&box, 102);
                            EXPECT_EQ(box.focusWidget(), records);
                            QTest::keyClick(records, Qt::Key_Down);
                            QTest::mouseClick(box.findChild<QPushButton *>("control_1"),
                                              Qt::LeftButton);
                        }));
    EXPECT_EQ(Names(4, 5), (std::vector<std::string>{"VOICE 10", "VOICE 06"}));
    EXPECT_EQ(desktop.sounds.size(), 1u);
    EXPECT_TRUE(MainListState.dirty);
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_Z, Qt::ControlModifier);
    RunPosted();
    EXPECT_EQ(NameAt(4), "VOICE 05");
}

TEST_F(DatabaseCommands, TheRealWindowThatIsCancelledInsertsNothing) {
    Choose(9, CommandAddToDatabase);
    EXPECT_TRUE(WithBox([this] { Choose(4, CommandInsertFromDatabase); },
                        [](QDialog &box) { QTest::keyClick(&box, Qt::Key_Escape); }));
    EXPECT_EQ(NameAt(4), "VOICE 05");
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(CommandAllowed(CommandUndo)); // the level was made before
}

} // namespace
} // namespace tonewright
