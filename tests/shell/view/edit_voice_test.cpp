// The editor of a voice, opened from the list of the main window.
#include "window_fixture.h"

#include "common/view/dialog_controls.h"

#include <QLabel>
#include <QLineEdit>

namespace tonewright {
namespace {

class EditVoiceTest : public WindowTest {
protected:
    void DoubleClick(QPoint point) {
        QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, point);
    }
    static QString NameIn(const QDialog &box) { return ControlOf<QLineEdit>(&box, 101)->text(); }
    static void TypeName(const QDialog &box, const char *name) {
        auto *edit = ControlOf<QLineEdit>(&box, 101);
        edit->selectAll();
        QTest::keyClicks(edit, name);
    }
    static void Press(const QDialog &box, std::uint32_t button) {
        QTest::mouseClick(ControlOf<QPushButton>(&box, button), Qt::LeftButton);
    }
};

TEST_F(EditVoiceTest, ADoubleClickOnAVoiceOpensItsSheet) {
    OpenBank();
    EXPECT_TRUE(WithBox([&] { DoubleClick(RowPoint(2)); },
                        [](QDialog &box) {
                            EXPECT_EQ(box.windowTitle(), "Edit Voice");
                            EXPECT_EQ(NameIn(box), "VOICE 03");
                            EXPECT_EQ(ControlOf<QLabel>(&box, 126)->text(), "Voice 3");
                            TypeName(box, "BELL");
                        }));
    EXPECT_EQ(Names(1, 3), (std::vector<std::string>{"VOICE 02", "BELL", "VOICE 04"}));
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(NameAt(2), "VOICE 03");
}

TEST_F(EditVoiceTest, ACancelledSheetChangesNothing) {
    OpenBank();
    EXPECT_TRUE(WithBox([&] { DoubleClick(RowPoint(2)); },
                        [](QDialog &box) {
                            TypeName(box, "BELL");
                            Press(box, 2);
                        }));
    EXPECT_EQ(NameAt(2), "VOICE 03");
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(EditVoiceTest, ARequestToEndCancelsTheSheetAlsoInCarefulModeWithoutAQuestion) {
    for (const int careful : {0, 1}) {
        CarefulMode = careful;
        MakeWindow();
        MakeProgramFolders(); // for the settings, which the end saves
        OpenBank();
        const VoiceObject voice = *ListVoice(MainList, 2);
        EndInBox([&] { DoubleClick(RowPoint(2)); },
                 [](QDialog &box) {
                     EXPECT_EQ(NameIn(box), "VOICE 03");
                     TypeName(box, "BELL");
                     EXPECT_EQ(NameIn(box), "BELL");
                 });
        EXPECT_EQ(ListVoice(MainList, 2)->bytes, voice.bytes);
        EXPECT_FALSE(MainListState.dirty);
    }
}

TEST_F(EditVoiceTest, ADoubleClickEditsItsRowAlsoAfterAMenuWasDismissedOverAnother) {
    OpenBank();
    EXPECT_TRUE(WithContextMenu(RowPoint(4), [](QMenu &) {}));
    ASSERT_EQ(MainListState.clickedIndex, 4);
    EXPECT_TRUE(WithBox([&] { DoubleClick(RowPoint(2)); },
                        [](QDialog &box) {
                            EXPECT_EQ(NameIn(box), "VOICE 03");
                            Press(box, 2);
                        }));
    EXPECT_EQ(MainListState.clickedIndex, -1);
}

TEST_F(EditVoiceTest, TheContextMenuEditsTheRowThatItStandsOver) {
    OpenBank();
    MainListState.clickedIndex = 5;
    EXPECT_TRUE(WithBox([] { RunCommand(CommandEdit); },
                        [](QDialog &box) {
                            EXPECT_EQ(NameIn(box), "VOICE 06");
                            Press(box, 2);
                        }));
}

TEST_F(EditVoiceTest, BesideTheRowsADoubleClickOpensNothing) {
    OpenBank();
    ListSelect(MainList, 31); // scrolls to the end
    const QRect last = list->RowRectangle(31);
    const QPoint below(last.center().x(), last.bottom() + 4);
    if (below.y() < Viewport()->height()) {
        DoubleClick(below);
    }
    ListReset(MainList);
    DoubleClick(QPoint(20, 20));
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
    EXPECT_EQ(UndoCount(), 0);
}

} // namespace
} // namespace tonewright
