// A list of 120,000 plain rows, driven by keyboard and mouse and asked by a screen reader.
#include "common/view/list_box_view.h"
#include "support/mouse_buttons.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QTest>

#include <memory>
#include <vector>

namespace tonewright {
namespace {

constexpr int ManyRows = 120000;
constexpr int RowHeight = 20;
constexpr int ShownRows = 10;

// "AAAA" to "GVNJ" and so on: the row's number in letters, so that the names are sorted.
QString NameOf(int row) {
    QString name;
    for (int place = 26 * 26 * 26; place > 0; place /= 26) {
        name += QChar('A' + row / place % 26);
    }
    return name;
}

QString WordsOf(int row) {
    return QString("Row %1").arg(row + 1);
}

class ListBoxViewTest : public testing::Test {
protected:
    void SetUp() override {
        ListSetItemHeight(box, RowHeight);
        view = std::make_unique<ListBoxView>(
            box,
            ListBoxOwner{
                .name = NameOf,
                .words = WordsOf,
                .paint =
                    [this](const ListRowPainting &painting) {
                        painted.push_back(painting.row);
                        painting.painter.drawText(painting.area, NameOf(painting.row));
                    },
                .touched = [this] { ++touched; },
                .hold = [this](bool now) { held = now; },
                .clickedAgain = [this] { ++clickedAgain; },
                .drop = [this](int from, int to) { drops.emplace_back(from, to); },
                .doubleClick = [this](int row) { doubleClicked = row; },
                .middlePress =
                    [this](int row) {
                        ++middlePresses;
                        middlePressed = row;
                    },
                .menu =
                    [this](int row, QRect beside) {
                        menus.push_back(row);
                        menuPlace = beside;
                    },
                .scrolled = [this] { ++scrolls; },
            },
            &window);
        window.resize(400, 300);
        view->setGeometry(0, 0, 300, view->HeightForWholeRows(ShownRows * RowHeight + 15));
        ListBoxFill(box, ManyRows);
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
        view->setFocus();
        scrolls = 0;
        ReleaseMouseButtons(Viewport());
    }

    QWidget *Viewport() const { return view->viewport(); }
    QPoint PointOf(int row) const { return view->RowRectangle(row).center(); }
    void Press(int row, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(Viewport(), button, Qt::NoModifier, PointOf(row));
    }
    void Release(QPoint point) {
        QTest::mouseRelease(Viewport(), Qt::LeftButton, Qt::NoModifier, point);
    }
    // A move with the left button held.
    void Move(QPoint point) {
        QMouseEvent move(QEvent::MouseMove, point, Viewport()->mapToGlobal(point), Qt::NoButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(Viewport(), &move);
    }
    void Key(Qt::Key key) { QTest::keyClick(view.get(), key); }

    QWidget window;
    ListBox box;
    std::unique_ptr<ListBoxView> view;
    std::vector<int> painted, menus;
    std::vector<std::pair<int, int>> drops;
    int touched = 0, clickedAgain = 0, doubleClicked = NoRow, middlePressed = NoRow;
    int middlePresses = 0, scrolls = 0;
    bool held = false;
    QRect menuPlace;
};

TEST_F(ListBoxViewTest, ShowsWholeRowsAndPaintsNoOthers) {
    EXPECT_EQ(box.visibleRows, ShownRows);
    painted.clear();
    ListSetTopRow(box, 70000);
    Viewport()->repaint();
    std::vector<int> expected;
    for (int row = 70000; row < 70000 + ShownRows; ++row) {
        expected.push_back(row);
    }
    EXPECT_EQ(painted, expected);
}

TEST_F(ListBoxViewTest, WhileRedrawIsOffItIsWhite) {
    ListSetRedraw(box, false);
    painted.clear();
    Viewport()->repaint();
    EXPECT_TRUE(painted.empty());
    ListSetRedraw(box, true);
    Viewport()->repaint();
    EXPECT_EQ(painted.size(), static_cast<std::size_t>(ShownRows));
}

TEST_F(ListBoxViewTest, KeysReachTheLastRowAndTheFirst) {
    Key(Qt::Key_End);
    EXPECT_EQ(box.selection, ManyRows - 1);
    EXPECT_EQ(box.topRow, ManyRows - ShownRows);
    EXPECT_EQ(view->verticalScrollBar()->value(), ManyRows - ShownRows);
    EXPECT_EQ(view->verticalScrollBar()->maximum(), ManyRows - ShownRows);
    Key(Qt::Key_PageUp);
    EXPECT_EQ(box.selection, ManyRows - ShownRows);
    Key(Qt::Key_Up);
    EXPECT_EQ(box.selection, ManyRows - ShownRows - 1);
    Key(Qt::Key_Home);
    EXPECT_EQ(box.selection, 0);
    Key(Qt::Key_PageDown);
    EXPECT_EQ(box.selection, ShownRows - 1);
    Key(Qt::Key_Down);
    EXPECT_EQ(box.selection, ShownRows);
    EXPECT_EQ(box.topRow, 1);
    EXPECT_EQ(touched, 6);
}

TEST_F(ListBoxViewTest, LettersTypedQuicklyAreTheBeginningOfAName) {
    QTest::keyClicks(view.get(), "EQUI"); // a name in the middle
    const int row = ((4 * 26 + 16) * 26 + 20) * 26 + 8;
    ASSERT_EQ(NameOf(row), "EQUI");
    EXPECT_EQ(box.selection, row);
    QTest::qWait(QApplication::keyboardInputInterval() + 50);
    QTest::keyClicks(view.get(), "b"); // of either case
    EXPECT_EQ(NameOf(box.selection), "BAAA");
}

TEST_F(ListBoxViewTest, KeysWithCtrlAreLeftToOthers) {
    QTest::keyClick(view.get(), Qt::Key_B, Qt::ControlModifier);
    EXPECT_EQ(box.selection, NoRow);
    ListBoxFill(box, 0);
    Key(Qt::Key_Down);
    EXPECT_EQ(box.selection, NoRow);
}

TEST_F(ListBoxViewTest, TheKeyboardSelectsNothingByComing) {
    QLineEdit other(&window);
    other.show();
    other.setFocus();
    view->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(view->hasFocus());
    EXPECT_EQ(box.selection, NoRow);
    EXPECT_FALSE(view->currentIndex().isValid());
}

TEST_F(ListBoxViewTest, AClickSelectsAndASecondOneIsTold) {
    Press(4);
    EXPECT_TRUE(held);
    EXPECT_EQ(box.selection, 4);
    EXPECT_EQ(touched, 2);
    Release(PointOf(4));
    EXPECT_FALSE(held);
    EXPECT_EQ(touched, 3);
    EXPECT_EQ(clickedAgain, 0);
    Press(4);
    Release(PointOf(4));
    EXPECT_EQ(clickedAgain, 1);
    EXPECT_EQ(drops, (std::vector<std::pair<int, int>>{{4, 4}, {4, 4}}));
}

TEST_F(ListBoxViewTest, OtherButtonsSelectNothing) {
    Press(3, Qt::RightButton);
    EXPECT_EQ(menus, std::vector{3});
    EXPECT_EQ(menuPlace.topLeft(), Viewport()->mapToGlobal(PointOf(3)));
    EXPECT_TRUE(menuPlace.isEmpty());
    Press(5, Qt::MiddleButton);
    EXPECT_EQ(middlePressed, 5);
    EXPECT_EQ(box.selection, NoRow);
    QTest::mouseDClick(Viewport(), Qt::LeftButton, Qt::NoModifier, PointOf(6));
    EXPECT_EQ(doubleClicked, 6);
}

TEST_F(ListBoxViewTest, AMiddlePressBesideTheRowsIsNotTold) {
    ListBoxFill(box, 3);
    QTest::mousePress(Viewport(), Qt::MiddleButton, Qt::NoModifier, QPoint(10, 3 * RowHeight + 5));
    EXPECT_EQ(middlePresses, 0);
    Press(2, Qt::MiddleButton);
    EXPECT_EQ(middlePresses, 1);
    EXPECT_EQ(middlePressed, 2);
}

TEST_F(ListBoxViewTest, TheMenuKeyOpensTheMenuOnTheSelectedRow) {
    const auto send = [this](QContextMenuEvent::Reason reason) {
        QContextMenuEvent event(reason, QPoint(1, 1), view->mapToGlobal(QPoint(1, 1)));
        QApplication::sendEvent(view.get(), &event);
    };
    send(QContextMenuEvent::Keyboard);
    EXPECT_TRUE(menus.empty()); // no row is selected
    ListSetTopRow(box, 500);
    ListSelect(box, 503);
    send(QContextMenuEvent::Mouse); // its press has opened the menu
    EXPECT_TRUE(menus.empty());
    send(QContextMenuEvent::Keyboard);
    EXPECT_EQ(menus, std::vector{503});
    const QSize size(Viewport()->width(), RowHeight);
    EXPECT_EQ(menuPlace, QRect(Viewport()->mapToGlobal(QPoint(0, 3 * RowHeight)), size));
    ListSetTopRow(box, 90000); // the row is out of sight
    send(QContextMenuEvent::Keyboard);
    EXPECT_EQ(box.topRow, 503);
    EXPECT_EQ(menuPlace, QRect(Viewport()->mapToGlobal(QPoint(0, 0)), size));
}

TEST_F(ListBoxViewTest, ShiftF10OpensTheMenuOfTheSelectedRow) {
    QTest::keyClick(view.get(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_TRUE(menus.empty()); // no row is selected
    ListSelect(box, 5);
    QTest::keyClick(view.get(), Qt::Key_F10);
    EXPECT_TRUE(menus.empty());
    QTest::keyClick(view.get(), Qt::Key_F10, Qt::ShiftModifier);
    EXPECT_EQ(menus, std::vector{5});
    EXPECT_EQ(menuPlace, QRect(Viewport()->mapToGlobal(QPoint(0, 5 * RowHeight)),
                               QSize(Viewport()->width(), RowHeight)));
}

TEST_F(ListBoxViewTest, ADragThatRestsBelowTheRowsScrollsOn) {
    const auto inWindow = [this](QPoint point) { return Viewport()->mapTo(&window, point); };
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, inWindow(PointOf(3)));
    ASSERT_TRUE(held);
    const QPoint below(10, Viewport()->height() + 5);
    QCursor::setPos(Viewport()->mapToGlobal(below));
    Move(below);
    EXPECT_EQ(box.topRow, 0);
    // Nothing moves but time.
    EXPECT_TRUE(QTest::qWaitFor([this] { return box.topRow >= 4; }));
    EXPECT_TRUE(held);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, Qt::NoModifier, inWindow(below));
    EXPECT_FALSE(held);
    const int top = box.topRow;
    QTest::qWait(200);
    EXPECT_EQ(box.topRow, top);
}

TEST_F(ListBoxViewTest, ADragScrollsARowEach80MillisecondsHoweverOftenTheMouseMoves) {
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      Viewport()->mapTo(&window, PointOf(3)));
    QElapsedTimer timer;
    timer.start();
    std::vector<qint64> times; // of each row, in milliseconds
    for (int move = 0; box.topRow < 6 && timer.elapsed() < 3000; ++move) {
        Move(QPoint(10 + move % 50, Viewport()->height() + move % 7));
        QCoreApplication::processEvents();
        ASSERT_LE(box.topRow, static_cast<int>(times.size()) + 1);
        if (box.topRow > static_cast<int>(times.size())) {
            times.push_back(timer.elapsed());
        }
    }
    ASSERT_EQ(times.size(), 6u) << "it is too slow";
    for (std::size_t row = 0; row < times.size(); ++row) {
        EXPECT_GE(times[row], 80 * (static_cast<qint64>(row) + 1) - 1) << row;
    }
    // Back among the rows it stands still.
    Move(PointOf(box.topRow + 2));
    const int top = box.topRow;
    QTest::qWait(200);
    EXPECT_EQ(box.topRow, top);
    QTest::mouseRelease(window.windowHandle(), Qt::LeftButton);
}

TEST_F(ListBoxViewTest, ADragWhoseReleaseWentElsewhereEnds) {
    // Sent to the list alone: the toolkit knows of no button that is down.
    const QPoint point = PointOf(3);
    QMouseEvent press(QEvent::MouseButtonPress, point, Viewport()->mapToGlobal(point),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(Viewport(), &press);
    Move(QPoint(10, Viewport()->height() + 5));
    EXPECT_TRUE(held);
    EXPECT_TRUE(QTest::qWaitFor([this] { return !held; }));
    EXPECT_EQ(box.topRow, 0);
    EXPECT_TRUE(drops.empty());
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ArrowCursor);
    Move(PointOf(5)); // no drag any more
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ListBoxViewTest, ARowIsDraggedFarBelowTheView) {
    ListSetTopRow(box, 60000);
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      Viewport()->mapTo(&window, PointOf(60003)));
    Move(PointOf(60004));
    Move(QPoint(10, Viewport()->height() + 5));
    EXPECT_TRUE(QTest::qWaitFor([this] { return box.topRow >= 60002; }));
    Move(PointOf(60011));
    Release(PointOf(60011));
    EXPECT_EQ(drops, (std::vector<std::pair<int, int>>{{60003, 60011}}));
    EXPECT_FALSE(held);
}

TEST_F(ListBoxViewTest, WhereNothingIsDroppedTheSelectionFollowsTheHeldButton) {
    view.reset();
    view = std::make_unique<ListBoxView>(
        box, ListBoxOwner{.name = NameOf, .touched = [this] { ++touched; }}, &window);
    view->setGeometry(0, 0, 300, view->HeightForWholeRows(ShownRows * RowHeight + 15));
    view->show();
    QTest::mousePress(window.windowHandle(), Qt::LeftButton, Qt::NoModifier,
                      Viewport()->mapTo(&window, PointOf(3)));
    EXPECT_EQ(box.selection, 3);
    touched = 0;
    Move(PointOf(3) + QPoint(5, 0));
    EXPECT_EQ(touched, 0);
    Move(PointOf(5));
    EXPECT_EQ(box.selection, 5);
    EXPECT_EQ(touched, 1);
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ArrowCursor);
    Move(PointOf(3)); // back where it began
    EXPECT_EQ(box.selection, 3);
    // Below the view the last whole row, and those that scroll into it.
    Move(QPoint(10, Viewport()->height() + 5));
    EXPECT_EQ(box.selection, ShownRows - 1);
    EXPECT_TRUE(QTest::qWaitFor([this] { return box.topRow >= 2; }));
    EXPECT_EQ(box.selection, box.topRow + ShownRows - 1);
    Move(QPoint(10, -5));
    EXPECT_EQ(box.selection, box.topRow);
    Release(PointOf(box.topRow + 2));
    const int selected = box.selection;
    Move(PointOf(box.topRow + 4));
    EXPECT_EQ(box.selection, selected);
}

TEST_F(ListBoxViewTest, ItsOwnerHearsWhenOtherRowsMayBeInSight) {
    ListSetTopRow(box, 5);
    EXPECT_EQ(scrolls, 1);
    ListSelect(box, 6);
    EXPECT_EQ(scrolls, 1);
    ListBoxDelete(box, 70000);
    EXPECT_EQ(scrolls, 2);
    view->verticalScrollBar()->setValue(9);
    EXPECT_EQ(scrolls, 3);
}

TEST_F(ListBoxViewTest, ALineShowsAboveWhichRowADraggedOneWillLand) {
    const int width = Viewport()->width();
    // The rows of the view that have a line across their upper edge.
    const auto lines = [&] {
        const QImage image = Viewport()->grab().toImage();
        std::vector<int> rows;
        for (int row = 0; row < ShownRows; ++row) {
            const int y = row * RowHeight;
            int black = 0;
            for (int x = 0; x < width; ++x) {
                black += image.pixelColor(x, y) == QColor(Qt::black);
            }
            if (black > width * 3 / 4) {
                rows.push_back(box.topRow + row);
            }
        }
        return rows;
    };
    ListSetTopRow(box, 100);
    Press(105);
    EXPECT_TRUE(lines().empty());
    Move(PointOf(105) + QPoint(20, 0));
    EXPECT_TRUE(lines().empty()) << "no drag yet";
    Move(PointOf(107));
    EXPECT_EQ(lines(), std::vector{107});
    Move(PointOf(109) + QPoint(0, RowHeight / 2 - 1));
    EXPECT_EQ(lines(), std::vector{109});
    Move(PointOf(100));
    EXPECT_EQ(lines(), std::vector{100});
    Move(PointOf(105));
    EXPECT_TRUE(lines().empty()) << "nothing would move";
    Move({-20, 10});
    EXPECT_TRUE(lines().empty()) << "nothing would move";
    Move(PointOf(103));
    EXPECT_EQ(lines(), std::vector{103});
    ListScrollByWheel(box, -120); // other rows under the cursor
    EXPECT_EQ(lines(), std::vector{104});
    Release(PointOf(104));
    EXPECT_TRUE(lines().empty());
    EXPECT_EQ(drops, (std::vector<std::pair<int, int>>{{105, 104}}));
}

TEST_F(ListBoxViewTest, EscEndsADragWithNothingMoved) {
    Press(3);
    Move(PointOf(6));
    const QImage dragged = Viewport()->grab().toImage();
    Key(Qt::Key_Escape);
    EXPECT_FALSE(held);
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ArrowCursor);
    EXPECT_NE(Viewport()->grab().toImage(), dragged) << "the line is gone";
    Move(PointOf(7));
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ArrowCursor);
    Release(PointOf(7));
    EXPECT_TRUE(drops.empty());
    EXPECT_EQ(clickedAgain, 0);
    EXPECT_EQ(box.selection, 3);
}

TEST_F(ListBoxViewTest, EscWithoutADragIsLeftToOthers) {
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier, "\x1b");
    QApplication::sendEvent(view.get(), &escape);
    EXPECT_FALSE(escape.isAccepted());
}

TEST_F(ListBoxViewTest, ADragThatLeavesTheListDropsBesideTheRows) {
    Press(2);
    Move({-20, 10});
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ForbiddenCursor);
    Release({-20, 10});
    EXPECT_EQ(drops, (std::vector<std::pair<int, int>>{{2, NoRow}}));
    EXPECT_EQ(Viewport()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(ListBoxViewTest, TheWheelMovesOneRowAMessage) {
    const auto wheel = [this](int delta) {
        const QPointF point(10, 10);
        QWheelEvent event(point, Viewport()->mapToGlobal(point), {}, QPoint(0, delta), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(Viewport(), &event);
    };
    wheel(-360);
    EXPECT_EQ(box.topRow, 1);
    wheel(-1);
    EXPECT_EQ(box.topRow, 2);
    wheel(120);
    EXPECT_EQ(box.topRow, 1);
    view->verticalScrollBar()->setValue(5000);
    EXPECT_EQ(box.topRow, 5000);
}

TEST_F(ListBoxViewTest, WhatARowHoldsIsRepaintedOnlyWhenToldTo) {
    Viewport()->repaint();
    painted.clear();
    ListBoxTellItem(box, 2);
    QTest::qWait(20);
    EXPECT_TRUE(painted.empty());
    ListSelect(box, 1);
    QTest::qWait(20);
    EXPECT_FALSE(painted.empty());
}

TEST_F(ListBoxViewTest, ADisabledListGivesTheKeyboardAwayAndTakesItBack) {
    QLineEdit other(&window);
    other.show();
    ListEnable(box, false);
    EXPECT_FALSE(view->isEnabled());
    EXPECT_FALSE(view->hasFocus());
    ListEnable(box, true);
    EXPECT_TRUE(view->hasFocus());
}

TEST_F(ListBoxViewTest, AScreenReaderFindsEachRowWithItsNameAndState) {
    ListSelect(box, 70001);
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(view.get());
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->role(), QAccessible::List);
    ASSERT_EQ(list->childCount(), ManyRows);
    QAccessibleInterface *row = list->child(70001);
    ASSERT_NE(row, nullptr);
    EXPECT_EQ(row->role(), QAccessible::ListItem);
    EXPECT_EQ(row->text(QAccessible::Name), WordsOf(70001));
    EXPECT_TRUE(row->state().selected);
    EXPECT_FALSE(row->state().invisible);
    EXPECT_FALSE(list->child(70002)->state().selected);
    EXPECT_TRUE(list->child(2)->state().invisible);
    const QRect area = view->RowRectangle(70001);
    EXPECT_EQ(row->rect(), QRect(Viewport()->mapToGlobal(area.topLeft()), area.size()));

    ListBoxDelete(box, 0);
    EXPECT_EQ(list->childCount(), ManyRows - 1);
    EXPECT_TRUE(list->child(70000)->state().selected);
    ListSelect(box, NoRow);
    EXPECT_FALSE(list->child(70000)->state().selected);
}

TEST_F(ListBoxViewTest, AScreenReaderSelectsARowAsTheUserDoes) {
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(view.get());
    ASSERT_NE(list, nullptr);
    ASSERT_NE(list->tableInterface(), nullptr);
    EXPECT_TRUE(list->tableInterface()->selectRow(500));
    EXPECT_EQ(box.selection, 500);
    EXPECT_EQ(box.topRow, 500 - ShownRows + 1);
    EXPECT_EQ(touched, 1);
    EXPECT_TRUE(list->child(500)->state().selected);
}

TEST_F(ListBoxViewTest, AScreenReaderFindsADisabledListWithItsSelection) {
    ListSelect(box, 3);
    ListEnable(box, false);
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(view.get());
    EXPECT_TRUE(list->state().disabled);
    EXPECT_TRUE(list->child(3)->state().selected);
    ListEnable(box, true);
    EXPECT_FALSE(list->state().disabled);
}

TEST_F(ListBoxViewTest, NobodyDeselectsTheSelectedRow) {
    QAccessibleInterface *list = QAccessible::queryAccessibleInterface(view.get());
    ASSERT_NE(list, nullptr);
    ListSelect(box, 500);
    view->selectionModel()->clearSelection();
    EXPECT_EQ(box.selection, 500);
    EXPECT_TRUE(list->child(500)->state().selected);
    view->selectionModel()->select(view->model()->index(500, 0), QItemSelectionModel::Deselect);
    EXPECT_EQ(box.selection, 500);
    EXPECT_TRUE(list->child(500)->state().selected);
    EXPECT_EQ(view->selectionModel()->selectedIndexes().size(), 1);
    EXPECT_EQ(touched, 0);
}

TEST_F(ListBoxViewTest, NoInputMethodStandsBetweenTheLettersAndTheRows) {
    const auto asks = [this] {
        return view->testAttribute(Qt::WA_InputMethodEnabled) ||
               Viewport()->testAttribute(Qt::WA_InputMethodEnabled) ||
               view->inputMethodQuery(Qt::ImEnabled).toBool();
    };
    EXPECT_FALSE(asks());
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    Press(4);
    Release(PointOf(4));
    EXPECT_EQ(box.selection, 4);
    EXPECT_FALSE(asks());
    ListBoxFill(box, 20);
    ListEnable(box, false);
    ListEnable(box, true);
    EXPECT_TRUE(view->hasFocus());
    EXPECT_FALSE(asks());
}

} // namespace
} // namespace tonewright
