// What keys, letters and the mouse do to a list box.
#include "common/list_box.h"

#include <gtest/gtest.h>

#include <vector>

namespace tonewright {
namespace {

ListBox BoxOf(int rows, int visible = 0, int selection = NoRow) {
    ListBox box;
    ListBoxFill(box, rows);
    ListSetVisibleRows(box, visible);
    ListSelect(box, selection);
    return box;
}

TEST(ListBox, FillingItAnewForgetsSelectionAndScrollPosition) {
    ListBox box = BoxOf(10, 4, 9);
    EXPECT_EQ(box.topRow, 6);
    std::vector<ListChange> heard;
    box.observer = [&](ListChange change) { heard.push_back(change); };
    ListBoxFill(box, 12);
    EXPECT_EQ(ListCount(box), 12);
    EXPECT_EQ(box.selection, NoRow);
    EXPECT_EQ(box.topRow, 0);
    EXPECT_EQ(heard, std::vector{ListChange::Items});
}

TEST(ListBox, NoRowIsInsertedBeyondTheEndNorDeletedThatIsNotThere) {
    ListBox box = BoxOf(3);
    box.observer = [](ListChange) { ADD_FAILURE() << "nothing has changed"; };
    EXPECT_FALSE(ListBoxInsert(box, -1));
    EXPECT_FALSE(ListBoxInsert(box, 4));
    EXPECT_FALSE(ListBoxDelete(box, -1));
    EXPECT_FALSE(ListBoxDelete(box, 3));
    EXPECT_EQ(ListCount(box), 3);
    box.observer = nullptr;
    EXPECT_TRUE(ListBoxInsert(box, 3));
    EXPECT_TRUE(ListBoxDelete(box, 3));
    EXPECT_EQ(ListCount(box), 3);
}

TEST(ListBox, TheSelectionStaysOnItsRowWhereRowsComeAndGo) {
    ListBox box = BoxOf(10, 4, 5);
    int heard = 0;
    box.observer = [&](ListChange change) { heard += change == ListChange::Items ? 1 : 100; };
    EXPECT_TRUE(ListBoxInsert(box, 6));
    EXPECT_EQ(box.selection, 5);
    EXPECT_TRUE(ListBoxInsert(box, 5));
    EXPECT_EQ(box.selection, 6);
    EXPECT_TRUE(ListBoxInsert(box, 0));
    EXPECT_EQ(box.selection, 7);
    EXPECT_TRUE(ListBoxDelete(box, 8));
    EXPECT_EQ(box.selection, 7);
    EXPECT_TRUE(ListBoxDelete(box, 0));
    EXPECT_EQ(box.selection, 6);
    EXPECT_TRUE(ListBoxDelete(box, 6));
    EXPECT_EQ(box.selection, NoRow);
    EXPECT_EQ(heard, 6);
    EXPECT_EQ(ListCount(box), 10);
}

TEST(ListBox, WhereTheLastRowsGoTheListLeavesNoGapBelow) {
    ListBox box = BoxOf(10, 4, 9);
    EXPECT_EQ(box.topRow, 6);
    EXPECT_TRUE(ListBoxDelete(box, 9));
    EXPECT_EQ(box.topRow, 5);
    ListSetVisibleRows(box, 6);
    EXPECT_EQ(box.topRow, 3);
}

TEST(ListBox, ANegativeCountOfRowsIsNone) {
    ListBox box = BoxOf(3);
    ListBoxFill(box, -1);
    EXPECT_EQ(ListCount(box), 0);
}

TEST(ListBox, ARowIsShownWithNoMoreScrollingThanNeeded) {
    ListBox box = BoxOf(10, 4);
    ListShowRow(box, 3);
    EXPECT_EQ(box.topRow, 0);
    ListShowRow(box, 4);
    EXPECT_EQ(box.topRow, 1);
    ListShowRow(box, 0);
    EXPECT_EQ(box.topRow, 0);
    ListShowRow(box, 10);
    EXPECT_EQ(box.topRow, 0);
    ListSetTopRow(box, 2);
    ListShowRow(box, 3);
    EXPECT_EQ(box.topRow, 2) << "it is seen already";
    EXPECT_EQ(box.selection, NoRow);
    ListSetVisibleRows(box, 1);
    ListShowRow(box, 5);
    EXPECT_EQ(box.topRow, 5);
}

TEST(ListBox, TheWheelScrollsByOneRowAMessage) {
    ListBox box = BoxOf(10, 4);
    ListSetTopRow(box, 3);
    ListScrollByWheel(box, 0);
    EXPECT_EQ(box.topRow, 3);
    ListScrollByWheel(box, -1);
    EXPECT_EQ(box.topRow, 4);
    ListScrollByWheel(box, 1);
    EXPECT_EQ(box.topRow, 3);
    ListScrollByWheel(box, 360);
    EXPECT_EQ(box.topRow, 2);
}

TEST(ListBox, WithoutAViewEveryRowCanStandAtTheTop) {
    ListBox box = BoxOf(10);
    ListSetTopRow(box, 20);
    EXPECT_EQ(box.topRow, 9);
    ListSelect(box, 2);
    EXPECT_EQ(box.topRow, 2);
    ListSelect(box, 8);
    EXPECT_EQ(box.topRow, 2) << "what is shown below the top row is not known";
}

TEST(ListBox, TheHeightOfARowIsAtLeastOnePixel) {
    ListBox box = BoxOf(3);
    ListSetItemHeight(box, 0);
    EXPECT_EQ(box.itemHeight, 1);
    EXPECT_EQ(box.visibleRows, 0);
    EXPECT_EQ(ListBoxFault(box), nullptr);
}

TEST(ListBox, RowsStandBelowEachOtherFromTheTopRowOn) {
    ListBox box = BoxOf(10, 4);
    ListSetItemHeight(box, 20);
    ListSetTopRow(box, 2);
    EXPECT_EQ(ListRowRectangle(box, 2, 300), (Rectangle{0, 0, 300, 20}));
    EXPECT_EQ(ListRowRectangle(box, 5, 300), (Rectangle{0, 60, 300, 80}));
    EXPECT_EQ(ListRowRectangle(box, 1, 300), (Rectangle{0, -20, 300, 0}));
}

TEST(ListBox, APointBesideTheRowsIsInNone) {
    ListBox box = BoxOf(3, 5);
    ListSetItemHeight(box, 20);
    EXPECT_EQ(ListRowAt(box, {0, 0}, 300, 100), 0);
    EXPECT_EQ(ListRowAt(box, {299, 19}, 300, 100), 0);
    EXPECT_EQ(ListRowAt(box, {299, 20}, 300, 100), 1);
    EXPECT_EQ(ListRowAt(box, {0, 59}, 300, 100), 2);
    EXPECT_EQ(ListRowAt(box, {0, 60}, 300, 100), NoRow) << "below the last row";
    EXPECT_EQ(ListRowAt(box, {-1, 0}, 300, 100), NoRow);
    EXPECT_EQ(ListRowAt(box, {300, 0}, 300, 100), NoRow);
    EXPECT_EQ(ListRowAt(box, {0, -1}, 300, 100), NoRow);
    EXPECT_EQ(ListRowAt(box, {0, 40}, 300, 40), NoRow) << "below the view";
}

TEST(ListBox, KeysSelectWithinTheList) {
    struct Row {
        ListKey key;
        int from, to;
    };
    // 20 rows, of which 5 are shown: a page is 4.
    for (const Row &row :
         {Row{ListKey::Up, 7, 6}, Row{ListKey::Up, 0, 0}, Row{ListKey::Up, NoRow, 0},
          Row{ListKey::Down, 7, 8}, Row{ListKey::Down, 19, 19}, Row{ListKey::Down, NoRow, 0},
          Row{ListKey::PageUp, 7, 3}, Row{ListKey::PageUp, 3, 0}, Row{ListKey::PageDown, 7, 11},
          Row{ListKey::PageDown, 16, 19}, Row{ListKey::Home, 7, 0}, Row{ListKey::End, 7, 19}}) {
        EXPECT_EQ(ListRowOfKey(BoxOf(20, 5, row.from), row.key), row.to)
            << static_cast<int>(row.key) << " from " << row.from;
    }
}

TEST(ListBox, APageIsAtLeastOneRow) {
    EXPECT_EQ(ListRowOfKey(BoxOf(20, 1, 7), ListKey::PageDown), 8);
    EXPECT_EQ(ListRowOfKey(BoxOf(20, 0, 7), ListKey::PageUp), 6);
}

TEST(ListBox, InAnEmptyListAKeySelectsNothing) {
    EXPECT_EQ(ListRowOfKey(BoxOf(0), ListKey::Home), NoRow);
    EXPECT_EQ(ListRowOfKey(BoxOf(1), ListKey::Home), 0);
}

// Types into a list of names; what is selected after each letter.
std::vector<int> RowsOfTyping(const std::vector<std::string> &names, int from,
                              const std::vector<std::string> &letters) {
    ListBox box = BoxOf(static_cast<int>(names.size()), 3, from);
    std::string typed;
    std::vector<int> rows;
    for (const std::string &letter : letters) {
        const int row = ListRowOfLetter(box, typed, letter, [&](int at, const std::string &text) {
            return names[static_cast<std::size_t>(at)].starts_with(text);
        });
        if (row != NoRow) {
            ListSelect(box, row);
        }
        rows.push_back(row);
    }
    return rows;
}

const std::vector<std::string> Names = {"bass", "bell", "brass", "organ", "bell 2", "oboe"};
using Rows = std::vector<int>;

TEST(ListBox, ALetterSelectsTheNextNameThatBeginsWithIt) {
    EXPECT_EQ(RowsOfTyping(Names, NoRow, {"b"}), (Rows{0}));
    EXPECT_EQ(RowsOfTyping(Names, 0, {"b"}), (Rows{1}));
    EXPECT_EQ(RowsOfTyping(Names, 2, {"o"}), (Rows{3}));
    EXPECT_EQ(RowsOfTyping(Names, 5, {"b"}), (Rows{0})) << "from the top again";
    EXPECT_EQ(RowsOfTyping(Names, 2, {"x"}), (Rows{NoRow}));
    EXPECT_EQ(RowsOfTyping({}, NoRow, {"b"}), (Rows{NoRow}));
}

TEST(ListBox, AnOnlyNameIsFoundFromItself) {
    EXPECT_EQ(RowsOfTyping({"bass", "organ"}, 0, {"b"}), (Rows{0}));
}

TEST(ListBox, LettersInQuickSuccessionAreTheBeginningOfAName) {
    EXPECT_EQ(RowsOfTyping(Names, NoRow, {"b", "e", "l", "l", " ", "2"}), (Rows{0, 1, 1, 1, 4, 4}));
    EXPECT_EQ(RowsOfTyping(Names, 2, {"b", "r"}), (Rows{4, 2})) << "from the top again";
}

TEST(ListBox, TheSameLetterAgainGoesOnToTheNextName) {
    EXPECT_EQ(RowsOfTyping(Names, NoRow, {"b", "b", "b", "b", "b"}), (Rows{0, 1, 2, 4, 0}));
}

TEST(ListBox, ALetterThatGoesOnWithNoNameBeginsAnother) {
    EXPECT_EQ(RowsOfTyping(Names, NoRow, {"b", "o", "b", "r", "r"}), (Rows{0, 3, 5, NoRow, NoRow}));
    EXPECT_EQ(RowsOfTyping(Names, NoRow, {"b", "x", "b", "r"}), (Rows{0, NoRow, 1, 2}));
}

TEST(ListBox, ADragBeginsWhenTheCursorLeavesTheRowAndNeverEndsByComingBack) {
    ListBox box = BoxOf(10, 5, 2);
    ListSetItemHeight(box, 20);
    ListDrag drag;
    ListDragPress(box, drag, 3);
    EXPECT_FALSE(drag.onSelected);
    for (const PicturePoint inside : {PicturePoint{0, 60}, PicturePoint{299, 79}}) {
        ListDragMove(box, drag, inside, 300);
        EXPECT_FALSE(drag.begun);
    }
    for (const PicturePoint outside :
         {PicturePoint{0, 59}, PicturePoint{0, 80}, PicturePoint{-1, 60}, PicturePoint{300, 60}}) {
        ListDragPress(box, drag, 3);
        ListDragMove(box, drag, outside, 300);
        EXPECT_TRUE(drag.begun) << outside.x << " " << outside.y;
        ListDragMove(box, drag, {10, 70}, 300);
        EXPECT_TRUE(drag.begun);
    }
    ListDragPress(box, drag, 2);
    EXPECT_TRUE(drag.onSelected);
    EXPECT_FALSE(drag.begun);
}

TEST(ListBox, ADraggedRowLandsAboveTheRowUnderTheCursor) {
    ListBox box = BoxOf(10, 5, 2);
    ListSetItemHeight(box, 20);
    ListSetTopRow(box, 2); // rows 2 to 6 are shown
    ListDrag drag;
    const auto target = [&](int x, int y) {
        ListDragMove(box, drag, {x, y}, 300);
        return ListDragTarget(box, drag, 300, 100);
    };
    EXPECT_EQ(target(10, 50), NoRow) << "nothing is held";
    ListDragPress(box, drag, 4);
    EXPECT_EQ(ListDragTarget(box, drag, 300, 100), NoRow) << "not moved yet";
    EXPECT_EQ(target(10, 41), NoRow) << "not begun";
    EXPECT_EQ(target(10, 39), 3);
    EXPECT_EQ(target(10, 0), 2);
    EXPECT_EQ(target(10, 45), NoRow) << "on itself";
    EXPECT_EQ(target(10, 60), 5);
    EXPECT_EQ(target(299, 99), 6);
    EXPECT_EQ(target(300, 99), NoRow) << "beside the rows";
    EXPECT_EQ(target(10, 100), NoRow) << "below the view";
    EXPECT_EQ(target(10, -1), NoRow) << "above the view";
    EXPECT_EQ(target(10, 99), 6);
    ListSetTopRow(box, 3);
    EXPECT_EQ(ListDragTarget(box, drag, 300, 100), 7) << "the list moves under the cursor";
}

TEST(ListBox, AHeldRowScrollsTheListAboveAndBelowTheView) {
    ListBox box = BoxOf(10, 5);
    ListDrag drag;
    const auto scrolls = [&](int y) {
        ListDragMove(box, drag, {10, y}, 300);
        const int top = box.topRow;
        const bool atEdge = ListDragAtEdge(drag, 100);
        EXPECT_EQ(box.topRow, top) << "a move scrolls nothing";
        ListDragScroll(box, drag, 100);
        return atEdge;
    };
    EXPECT_FALSE(scrolls(100)) << "nothing is held";
    EXPECT_EQ(box.topRow, 0);
    ListDragPress(box, drag, 1);
    EXPECT_FALSE(ListDragAtEdge(drag, 100));
    EXPECT_TRUE(scrolls(100));
    EXPECT_EQ(box.topRow, 1);
    EXPECT_FALSE(scrolls(99));
    EXPECT_FALSE(scrolls(0));
    EXPECT_EQ(box.topRow, 1);
    ListSetTopRow(box, 3);
    EXPECT_TRUE(scrolls(-1));
    EXPECT_EQ(box.topRow, 2);
    ListSetTopRow(box, 0);
    EXPECT_TRUE(scrolls(-1)) << "it may go on in vain";
    EXPECT_EQ(box.topRow, 0);
}

} // namespace
} // namespace tonewright
