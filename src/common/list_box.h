// A list box: rows of one height, scrolled by whole rows, at most one of them selected. Here is its
// state and what keys, letters and the mouse do to it; what the rows hold is their owner's, and a
// view (common/view/list_box_view) follows through one observer. Without a view everything works
// the same.
//
// What holds between any two calls (ListBoxFault names the one that does not, and a debug build
// stops there after each change):
//   - the selection is a row of the list, or NoRow;
//   - the top row leaves no gap below the last row: the rows from it on fill the view, or it is 0;
//   - visibleRows is not negative, itemHeight at least 1.
#pragma once

#include "common/geometry.h"

#include <functional>
#include <string>
#include <string_view>

namespace tonewright {

enum class ListChange {
    Items,     // rows were added or removed
    Item,      // what a row holds has changed; a view repaints when it is told to, not by this
    Selection, // the selected row changed
    TopRow,    // the list was scrolled
    State,     // enabled, redraw or itemHeight changed
};

constexpr int NoRow = -1;

struct ListBox {
    int count = 0; // of rows
    int selection = NoRow;
    int topRow = 0;
    int visibleRows = 0; // whole rows that the view shows; 0 while there is no view
    bool enabled = true;
    bool redraw = true;  // off while the list is filled
    int itemHeight = 48; // pixels
    int toldRow = NoRow; // the row of the last ListChange::Item
    std::function<void(ListChange)> observer;
};

// What does not hold of the above, as a text; nullptr when all of it holds.
const char *ListBoxFault(const ListBox &box);

int ListCount(const ListBox &box);
bool ListHasRow(const ListBox &box, int row);

// For the owner of the rows, once its own row is there or gone.
//
// A row before `row`, which may equal the count. A selection at or behind `row` moves along. False
// when `row` lies outside 0 to count.
bool ListBoxInsert(ListBox &box, int row);
// A selection behind the row moves up; the selection is gone when its row is. False when there is
// no such row.
bool ListBoxDelete(ListBox &box, int row);
// All rows are others now; selection and scroll position are gone.
void ListBoxFill(ListBox &box, int count);
// What a row holds has changed.
void ListBoxTellItem(ListBox &box, int row);

// Selects a row and scrolls it into view; a row outside the list clears the selection.
void ListSelect(ListBox &box, int row);

// Scrolls so that `row` stands at the top, as far as the rows below it fill the view.
void ListSetTopRow(ListBox &box, int row);
// Scrolls no further than needed for `row` to be seen whole.
void ListShowRow(ListBox &box, int row);

// The wheel scrolls by one row a message, up for a positive delta; a delta of 0 does nothing.
void ListScrollByWheel(ListBox &box, int delta);

// Told by the view when its height changes.
void ListSetVisibleRows(ListBox &box, int rows);

void ListEnable(ListBox &box, bool enabled);
void ListSetRedraw(ListBox &box, bool redraw);
// At least 1.
void ListSetItemHeight(ListBox &box, int pixels);

// The rows in a view of `width` pixels whose first pixel is the top of the top row.
Rectangle ListRowRectangle(const ListBox &box, int row, int width);
// The row under a point of a view of that size; NoRow beside the view and below the last row.
int ListRowAt(const ListBox &box, PicturePoint point, int width, int height);

enum class ListKey { Up, Down, PageUp, PageDown, Home, End };
// The row that a key selects; a page is one row less than is shown. NoRow in an empty list.
int ListRowOfKey(const ListBox &box, ListKey key);

// Whether the name of a row begins with a text.
using ListBeginsWith = std::function<bool(int row, const std::string &text)>;
// The row that a typed letter selects, or NoRow. `typed`: the letters before it in quick
// succession, to which it is added. The letters are the beginning of a name, looked for from the
// selection on; a first letter, the same one again, and one with which no name goes on, are looked
// for behind the selection. Behind the last row the search begins anew at the first.
int ListRowOfLetter(const ListBox &box, std::string &typed, std::string_view letter,
                    const ListBeginsWith &beginsWith);

// The left button held on a row, to drag it to another place.
struct ListDrag {
    int row = NoRow;          // where the button went down; NoRow while it is not held
    bool onSelected = false;  // that row was selected already
    bool begun = false;       // the cursor has left the row; for good, also when it comes back
    PicturePoint cursor = {}; // in the view, where it was last
};
void ListDragPress(const ListBox &box, ListDrag &drag, int row);
// Follows the cursor within a view of that width, while a row is held.
void ListDragMove(const ListBox &box, ListDrag &drag, PicturePoint point, int width);
// The row above which the held row will land when it is let go now; NoRow where nothing will move.
int ListDragTarget(const ListBox &box, const ListDrag &drag, int width, int height);
// True while the cursor of a held row rests above or below a view of that height: the list scrolls
// towards it by a row each so many milliseconds, however often the mouse moves.
bool ListDragAtEdge(const ListDrag &drag, int height);
constexpr int ListEdgeScrollMilliseconds = 80;
// Scrolls by that row.
void ListDragScroll(ListBox &box, const ListDrag &drag, int height);

} // namespace tonewright
