// The editors over the cells of a list, with mouse and keys.
#include "database/view/field_editor.h"

#include "common/view/fonts.h"
#include "common/view/list_box_view.h"
#include "common/view/text_line.h"
#include "support/pixels.h"
#include "support/scripted_desktop.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>

namespace tonewright {
namespace {

constexpr int Rows = 40, RowHeight = 20;
constexpr QRect Cell(6, 40, 160, RowHeight); // in row 2

class FieldEditor : public testing::Test {
protected:
    FieldEditor()
        : view(list,
               {.hold = [this](bool held) { holds += held; },
                .doubleClick = [this](int) { ++doubleClicks; },
                .menu = [this](int, QRect) { ++menus; }},
               &dialog),
          button("OK", &dialog), other(&dialog) {
        list.count = Rows;
        list.itemHeight = RowHeight;
        view.setGeometry(10, 10, 400, 202);
        button.setGeometry(420, 10, 100, 30);
        other.setGeometry(420, 50, 100, 30);
        QObject::connect(&button, &QPushButton::clicked, &dialog, [this] { ++clicks; });
        dialog.resize(530, 230);
        dialog.show();
        dialog.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
        view.setFocus();
        ListSelect(list, 2);
    }

    // The editor of a kind that is open; nullptr for none.
    template <typename Editor> Editor *Open() const {
        return view.viewport()->findChild<Editor *>();
    }
    QLineEdit *EditText(const std::string &text = "Bells") {
        EditTextOver({view.viewport(), Cell, DialogFont(), "Source"}, text,
                     [this](std::optional<std::string> result) {
                         EXPECT_EQ(Open<QLineEdit>(), nullptr);
                         ++ends;
                         edited = result;
                     });
        return Open<QLineEdit>();
    }
    QComboBox *Choose(int selected, const QStringList &entries = {"1", "2", "3", "4"}) {
        ChooseOver({view.viewport(), Cell, DialogFont(), "Position"}, entries, selected,
                   [this](std::optional<int> result) {
                       EXPECT_EQ(Open<QComboBox>(), nullptr);
                       ++ends;
                       chosen = result;
                   });
        return Open<QComboBox>();
    }
    // A press or release as the window system delivers it: to the window.
    void Press(QPoint at, Qt::MouseButton with = Qt::LeftButton) {
        QTest::mousePress(dialog.windowHandle(), with, {}, at);
    }
    void Release(QPoint at, Qt::MouseButton with = Qt::LeftButton) {
        QTest::mouseRelease(dialog.windowHandle(), with, {}, at);
    }
    void Click(QPoint at, Qt::MouseButton with = Qt::LeftButton) {
        Press(at, with);
        Release(at, with);
    }
    QPoint InList(int x, int y) const { return view.viewport()->mapTo(&dialog, QPoint(x, y)); }
    void Wheel(QWidget &widget) {
        QWheelEvent event(QPointF(5, 5), widget.mapToGlobal(QPointF(5, 5)), {}, {0, -120},
                          Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&widget, &event);
    }

    ScriptedDesktop desktop;
    ListBox list;
    QDialog dialog;
    int holds = 0, doubleClicks = 0, menus = 0, clicks = 0, ends = 0;
    ListBoxView view;
    QPushButton button;
    QLineEdit other;
    std::optional<std::string> edited;
    std::optional<int> chosen;
};

TEST_F(FieldEditor, StandsOverItsCellOnePixelHigherOnEitherSide) {
    const QLineEdit *edit = EditText();
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(edit->geometry(), QRect(6, 39, 160, 22));
    EXPECT_TRUE(edit->isVisible());
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_FALSE(edit->hasFrame());
    EXPECT_EQ(edit->font(), DialogFont());
    EXPECT_EQ(edit->accessibleName(), "Source");
    EXPECT_EQ(edit->text(), "Bells");
    EXPECT_EQ(edit->selectedText(), "Bells");
    EXPECT_EQ(edit->palette().color(QPalette::Base),
              QApplication::palette().color(QPalette::Light));
    EXPECT_EQ(edit->palette().color(QPalette::Text),
              QApplication::palette().color(QPalette::Shadow));
    EXPECT_EQ(ends, 0);
}

TEST_F(FieldEditor, ItsTextBeginsWhereItStandsInTheList) {
    QLineEdit *edit = EditText("HHH");
    edit->deselect();
    const QImage image = edit->grab().toImage();
    QImage cell = EmptyImage(Cell.width(), Cell.height(), White);
    QPainter painter(&cell);
    painter.setFont(DialogFont());
    DrawTextLine(painter, cell.rect(), "HHH");
    painter.end();
    EXPECT_EQ(InkOf(image, image.rect(), image.pixel(image.width() - 1, 0)).left(),
              InkOf(cell, cell.rect()).left());
}

TEST_F(FieldEditor, EnterAcceptsAndReachesNoButton) {
    for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
        button.setDefault(true);
        QTest::keyClicks(EditText(), "Pads");
        QTest::keyClick(Open<QLineEdit>(), key);
        EXPECT_EQ(edited, "Pads");
        EXPECT_TRUE(view.hasFocus());
        EXPECT_EQ(clicks, 0);
        EXPECT_TRUE(dialog.isVisible());
    }
    EXPECT_EQ(ends, 2);
    QTest::keyClick(&other, Qt::Key_Return);
    EXPECT_EQ(clicks, 1);
}

TEST_F(FieldEditor, AKeyThatIsHeldOnDoesNothingElse) {
    button.setDefault(true);
    quint64 now = 1000;
    for (const auto key : {Qt::Key_Return, Qt::Key_Escape}) {
        QTest::keyPress(EditText(), key);
        for (const bool known : {true, false, true}) { // for a repetition
            for (const auto type : {QEvent::KeyRelease, QEvent::KeyPress}) {
                QKeyEvent repeated(type, key, Qt::NoModifier, QString(), known);
                repeated.setTimestamp(now);
                QApplication::sendEvent(&other, &repeated);
            }
            now += 25;
        }
        QTest::keyRelease(&other, key);
        EXPECT_EQ(clicks, 0);
        EXPECT_TRUE(dialog.isVisible());
    }
    EXPECT_EQ(ends, 2);
    QTest::keyClick(&view, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
}

TEST_F(FieldEditor, EscCancelsTheEditorOnly) {
    QTest::keyClicks(EditText(), "Pads");
    QTest::keyClick(Open<QLineEdit>(), Qt::Key_Escape);
    EXPECT_EQ(edited, std::nullopt);
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(view.hasFocus());
}

TEST_F(FieldEditor, TabAcceptsAndLeavesTheListItsFocus) {
    for (const auto key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        QTest::keyClick(EditText(), key);
        EXPECT_EQ(edited, "Bells");
        EXPECT_TRUE(view.hasFocus());
    }
    EXPECT_EQ(ends, 2);
}

TEST_F(FieldEditor, AWidgetThatTakesTheFocusAcceptsAndKeepsIt) {
    EditText();
    other.setFocus();
    QTest::qWait(1);
    EXPECT_EQ(edited, "Bells");
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(other.hasFocus());
}

TEST_F(FieldEditor, APressBesideItAcceptsAndDoesNothingElse) {
    const QPoint places[] = {
        InList(6, 100),                   // a row
        InList(5, 50),   InList(200, 50), // beside the cell
        InList(100, 38), InList(100, 61), button.geometry().center(), other.geometry().center(),
        QPoint(420, 220)}; // nothing
    for (const QPoint place : places) {
        for (const auto with : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            EditText();
            Press(place, with);
            EXPECT_EQ(edited, "Bells");
            EXPECT_EQ(Open<QLineEdit>(), nullptr);
            Release(place, with);
            EXPECT_TRUE(view.hasFocus());
            edited = std::nullopt;
        }
    }
    EXPECT_EQ(ends, 24);
    EXPECT_EQ(list.selection, 2);
    EXPECT_EQ(clicks + holds + menus, 0);
    Click(InList(6, 100));
    EXPECT_EQ(list.selection, 5);
    EXPECT_EQ(holds, 1);
    Click(button.geometry().center());
    EXPECT_EQ(clicks, 1);
}

TEST_F(FieldEditor, APressThatAWidgetGetsAtOnceAcceptsAndDoesNothingElse) {
    for (QWidget *widget : std::initializer_list<QWidget *>{&button, &other}) {
        EditText();
        QTest::mouseClick(widget, Qt::LeftButton);
        EXPECT_TRUE(view.hasFocus());
    }
    EditText();
    QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(6, 100));
    EXPECT_EQ(ends, 3);
    EXPECT_EQ(clicks + holds, 0);
    EXPECT_EQ(list.selection, 2);
}

TEST_F(FieldEditor, ADoubleClickBesideItAcceptsAndDoesNothingElse) {
    EditText();
    const QPoint place = InList(6, 100);
    ulong now = 100000; // of events that come quickly
    for (int press = 0; press < 2; ++press, now += 100) {
        QTest::qWait(1);
        QMouseEvent down(QEvent::MouseButtonPress, place, place, dialog.mapToGlobal(place),
                         Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        down.setTimestamp(now);
        QApplication::sendEvent(dialog.windowHandle(), &down);
        if (press == 1) {
            QMouseEvent twice(QEvent::MouseButtonDblClick, place, place, dialog.mapToGlobal(place),
                              Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
            twice.setTimestamp(now);
            QApplication::sendEvent(dialog.windowHandle(), &twice);
        }
        QMouseEvent up(QEvent::MouseButtonRelease, place, place, dialog.mapToGlobal(place),
                       Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
        up.setTimestamp(now + 50);
        QApplication::sendEvent(dialog.windowHandle(), &up);
    }
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(doubleClicks + holds, 0);
    EXPECT_EQ(list.selection, 2);
    Click(place);
    EXPECT_EQ(list.selection, 5);
    EXPECT_EQ(holds, 1);
}

TEST_F(FieldEditor, APressInItSetsTheCursorOnly) {
    QLineEdit *edit = EditText();
    for (const auto with : {Qt::LeftButton, Qt::MiddleButton}) {
        Click(InList(160, 50), with);
    }
    EXPECT_EQ(edit->selectedText(), "");
    EXPECT_EQ(edit->cursorPosition(), 5);
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(ends + holds, 0);
}

TEST_F(FieldEditor, TheReleaseThatEndsTheHoldLeavesItOpen) {
    const QPoint place = InList(100, 50);
    Press(place);
    EXPECT_EQ(holds, 1);
    QLineEdit *edit = EditText();
    Release(place);
    Release(InList(6, 100));
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(edit->selectedText(), "Bells");
}

TEST_F(FieldEditor, AnotherProgramLeavesItOpen) {
    QLineEdit *edit = EditText();
    QWidget elsewhere;
    elsewhere.show();
    elsewhere.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&elsewhere));
    EXPECT_FALSE(edit->hasFocus());
    QTest::mouseClick(&elsewhere, Qt::LeftButton);
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_TRUE(edit->hasFocus());
    EXPECT_EQ(ends, 0);
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(ends, 1);
}

TEST_F(FieldEditor, TheMenuOfTheTextLeavesItOpen) {
    QLineEdit *edit = EditText();
    QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 10}, edit->mapToGlobal(QPoint(20, 10)));
    QApplication::sendEvent(edit, &event);
    auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QTest::mouseClick(menu, Qt::LeftButton, {}, {2, 2});
    menu->close();
    EXPECT_EQ(ends + menus, 0);
    EXPECT_TRUE(edit->hasFocus());
}

TEST_F(FieldEditor, APressBesideTheMenuOfTheTextAcceptsAtOnce) {
    QLineEdit *edit = EditText();
    QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 10}, edit->mapToGlobal(QPoint(20, 10)));
    QApplication::sendEvent(edit, &event);
    ASSERT_NE(QApplication::activePopupWidget(), nullptr);
    Click(InList(6, 10));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(edited, "Bells");
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(holds, 0);
}

TEST_F(FieldEditor, ScrollingAccepts) {
    for (QWidget *over : std::initializer_list<QWidget *>{view.viewport(), &dialog}) {
        EditText();
        Wheel(*over);
        EXPECT_EQ(edited, "Bells");
        EXPECT_EQ(list.topRow, 0);
        edited = std::nullopt;
    }
    Wheel(*EditText());
    EXPECT_EQ(edited, "Bells");
    EditText();
    view.verticalScrollBar()->setValue(7);
    EXPECT_EQ(list.topRow, 7);
    EXPECT_EQ(ends, 4);
    Wheel(*view.viewport());
    EXPECT_GT(list.topRow, 7);
}

TEST_F(FieldEditor, ANewSizeOfTheListAccepts) {
    EditText();
    view.resize(300, 202);
    EXPECT_EQ(edited, "Bells");
    EXPECT_EQ(ends, 1);
}

TEST_F(FieldEditor, AButtonThatIsPressedWithoutTheMouseActsOnWhatIsAccepted) {
    std::vector<std::optional<std::string>> seen;
    QObject::connect(&button, &QPushButton::clicked, &dialog, [&] { seen.push_back(edited); });
    EditText();
    button.click();
    EXPECT_EQ(seen, (std::vector<std::optional<std::string>>{"Bells"}));
    EXPECT_EQ(ends, 1);
}

TEST_F(FieldEditor, TheCloseBoxAcceptsFirst) {
    std::vector<std::string> order;
    QObject::connect(&dialog, &QDialog::rejected, &dialog,
                     [&] { order.push_back(edited ? "closed behind " + *edited : "closed"); });
    EditText();
    dialog.close();
    EXPECT_EQ(order, std::vector<std::string>{"closed behind Bells"});
    EXPECT_EQ(ends, 1);
}

TEST_F(FieldEditor, ADialogThatIsHiddenCancels) {
    EditText();
    dialog.hide();
    QTest::qWait(1);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(edited, std::nullopt);
}

TEST_F(FieldEditor, ADialogThatIsDestroyedTellsNobody) {
    for (const bool isShown : {false, true}) {
        int told = 0;
        {
            QDialog shortLived;
            auto *parent = new QWidget(&shortLived);
            if (isShown) {
                shortLived.show();
                EXPECT_TRUE(QTest::qWaitForWindowExposed(&shortLived));
            }
            EditTextOver({parent, Cell, DialogFont(), "Name"}, "x",
                         [&](const std::optional<std::string> &) { ++told; });
        }
        QTest::qWait(1);
        EXPECT_EQ(told, 0) << isShown;
    }
}

TEST_F(FieldEditor, KeysOfTheTextReachNoRow) {
    QLineEdit *edit = EditText();
    for (const auto key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_F10,
                           Qt::Key_F5, Qt::Key_Delete}) {
        QTest::keyClick(edit, key, key == Qt::Key_F10 ? Qt::ShiftModifier : Qt::NoModifier);
    }
    EXPECT_EQ(list.selection, 2);
    EXPECT_EQ(menus + ends, 0);
}

TEST_F(FieldEditor, TakesSixtyFourLatin1Characters) {
    QLineEdit *edit = EditText();
    for (int character = 0; character < 70; ++character) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(u'\u00E9'));
        QApplication::sendEvent(edit, &press);
    }
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(edited, std::string(64, '\xE9'));
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(FieldEditor, OtherCharactersCannotBeTyped) {
    QLineEdit *edit = EditText("a");
    edit->deselect();
    const QStringList refused = {QString(u'\u20AC'), QString(u'\u0416'), QString(u'\u0085'),
                                 QString::fromUcs4(U"\U0001F3B9", 1)};
    for (const QString &character : refused) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, character);
        QApplication::sendEvent(edit, &press);
        QInputMethodEvent composed;
        composed.setCommitString(character);
        QApplication::sendEvent(edit, &composed);
    }
    EXPECT_EQ(desktop.beeps, 8);
    QKeyEvent third(QEvent::KeyPress, Qt::Key_E, Qt::ControlModifier | Qt::AltModifier,
                    QString(u'\u20AC')); // as AltGr comes on some systems
    QApplication::sendEvent(edit, &third);
    EXPECT_EQ(desktop.beeps, 9);
    for (const char16_t character : {u'b', u'\u00FF', u' ', u'\u00A0'}) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QApplication::sendEvent(edit, &press);
    }
    QInputMethodEvent composed;
    composed.setCommitString(QString(u'\u00EA'));
    QApplication::sendEvent(edit, &composed);
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(edited, "ab\xFF \xA0\xEA");
    EXPECT_EQ(desktop.beeps, 9);
}

TEST_F(FieldEditor, OtherCharactersArePastedAsQuestionMarks) {
    QLineEdit *edit = EditText("ab");
    QApplication::clipboard()->setText(QString::fromUtf8("x\u20AC\xF0\x9F\x8E\xB9\n\tz\u00E9"));
    edit->setCursorPosition(1);
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(edit->cursorPosition(), 8);
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_EQ(edited, "ax????z\xE9"
                      "b");
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(FieldEditor, ATextThatIsNotChangedKeepsAllItsBytes) {
    std::string bytes;
    for (int byte = 1; byte < 256; byte += 4) {
        bytes += static_cast<char>(byte);
    }
    ASSERT_EQ(bytes.size(), 64u);
    QTest::keyClick(EditText(bytes), Qt::Key_Return);
    EXPECT_EQ(edited, bytes);
    EXPECT_EQ(desktop.beeps, 0);
}

TEST_F(FieldEditor, ADropDownListStandsOverItsCell) {
    const QComboBox *combo = Choose(2);
    ASSERT_NE(combo, nullptr);
    EXPECT_TRUE(combo->geometry().contains(Cell));
    EXPECT_EQ(combo->currentText(), "3");
    EXPECT_TRUE(combo->hasFocus());
    EXPECT_FALSE(combo->isEditable());
    EXPECT_EQ(combo->accessibleName(), "Position");
}

TEST_F(FieldEditor, ADropDownListGivesTheEntryThatWasChosen) {
    button.setDefault(true);
    QComboBox *combo = Choose(2);
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Return);
    EXPECT_EQ(chosen, 3);
    EXPECT_EQ(clicks, 0);
    EXPECT_TRUE(view.hasFocus());

    combo = Choose(0);
    combo->showPopup();
    QAbstractItemView *entries = combo->view();
    QTest::qWait(1);
    QTest::mouseClick(entries->viewport(), Qt::LeftButton, {},
                      entries->visualRect(entries->model()->index(1, 0)).center());
    EXPECT_EQ(combo->currentIndex(), 1);
    EXPECT_EQ(ends, 1);
    Click(InList(300, 100));
    EXPECT_EQ(chosen, 1);
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(list.selection, 2);
}

TEST_F(FieldEditor, APressBesideTheEntriesAcceptsAtOnce) {
    const QPoint places[] = {button.geometry().center(), InList(300, 20)};
    for (const QPoint place : places) {
        QComboBox *combo = Choose(2);
        combo->showPopup();
        QTest::qWait(1);
        ASSERT_TRUE(combo->view()->isVisible());
        Click(place);
        EXPECT_EQ(chosen, 2);
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        chosen = std::nullopt;
    }
    EXPECT_EQ(ends, 2);
    EXPECT_EQ(clicks + holds, 0);
    EXPECT_EQ(list.selection, 2);
    Click(places[0]);
    EXPECT_EQ(clicks, 1);
}

TEST_F(FieldEditor, APressOnADropDownListClosesItsEntriesOnly) {
    QComboBox *combo = Choose(2);
    combo->showPopup();
    QTest::qWait(1);
    Click(combo->mapTo(&dialog, combo->rect().center()));
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(ends, 0);
}

TEST_F(FieldEditor, ADropDownListIsCancelledByEsc) {
    QComboBox *combo = Choose(2);
    QTest::keyClick(combo, Qt::Key_Down);
    QTest::keyClick(combo, Qt::Key_Escape);
    EXPECT_EQ(chosen, std::nullopt);
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(dialog.isVisible());
}

TEST_F(FieldEditor, ADropDownListMayBeAcceptedWithoutAChoice) {
    EXPECT_EQ(Choose(-1)->currentText(), "");
    Click(InList(300, 100));
    EXPECT_EQ(chosen, -1);
    QTest::keyClick(Choose(-1), Qt::Key_Enter);
    EXPECT_EQ(chosen, -1);
    EXPECT_EQ(ends, 2);
}

TEST_F(FieldEditor, TheEntriesOfADropDownListScrollInIt) {
    QStringList entries;
    for (int entry = 1; entry <= 32; ++entry) {
        entries += QString::number(entry);
    }
    QComboBox *combo = Choose(0, entries);
    combo->showPopup();
    QTest::qWait(1);
    QWidget &viewport = *combo->view()->viewport();
    Wheel(viewport);
    EXPECT_GT(combo->view()->verticalScrollBar()->value(), 0);
    EXPECT_EQ(ends, 0);
    QTest::keyClick(combo->view(), Qt::Key_Escape);
    EXPECT_EQ(combo->currentIndex(), 0);
    EXPECT_EQ(ends, 0);
    Wheel(*combo);
    EXPECT_EQ(chosen, 0);
}

TEST_F(FieldEditor, AButtonInADropDownListReachesNoRow) {
    QComboBox *combo = Choose(0);
    for (const auto with : {Qt::RightButton, Qt::MiddleButton}) {
        Click(combo->geometry().center() + view.viewport()->mapTo(&dialog, QPoint()), with);
    }
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {5, 5}, combo->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(combo, &key);
    EXPECT_EQ(menus + ends, 0);
}

} // namespace
} // namespace tonewright
