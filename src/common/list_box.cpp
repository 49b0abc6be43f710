// The rules of a list box, those of the platform's.
#include "common/list_box.h"

#include <algorithm>
#include <cassert>

namespace tonewright {
namespace {

// The end of each change.
void Tell(const ListBox &box, ListChange change) {
    assert(!ListBoxFault(box));
    if (box.observer) {
        box.observer(change);
    }
}

int LimitTopRow(const ListBox &box, int row) {
    const int last = std::max(0, box.count - std::max(1, box.visibleRows));
    return std::clamp(row, 0, last);
}

// The first row from `from` on, and then from the top, whose name begins with `text`; NoRow if
// none.
int FindBeginning(const ListBox &box, int from, const std::string &text,
                  const ListBeginsWith &beginsWith) {
    for (int step = 0; step < box.count; ++step) {
        const int row = (from + step) % box.count;
        if (beginsWith(row, text)) {
            return row;
        }
    }
    return NoRow;
}

// True for no letters too.
bool IsNothingBut(std::string_view text, std::string_view letter) {
    while (text.starts_with(letter)) {
        text.remove_prefix(letter.size());
    }
    return text.empty();
}

} // namespace

const char *ListBoxFault(const ListBox &box) {
    if (box.selection != NoRow && !ListHasRow(box, box.selection)) {
        return "the selected row does not exist";
    }
    if (box.visibleRows < 0 || box.itemHeight < 1) {
        return "the measures of the view are none";
    }
    if (box.topRow != LimitTopRow(box, box.topRow)) {
        return "the top row leaves a gap";
    }
    return nullptr;
}

int ListCount(const ListBox &box) {
    return box.count;
}

bool ListHasRow(const ListBox &box, int row) {
    return row >= 0 && row < box.count;
}

bool ListBoxInsert(ListBox &box, int row) {
    if (row < 0 || row > box.count) {
        return false;
    }
    ++box.count;
    if (box.selection >= row) {
        ++box.selection;
    }
    Tell(box, ListChange::Items);
    return true;
}

bool ListBoxDelete(ListBox &box, int row) {
    if (!ListHasRow(box, row)) {
        return false;
    }
    --box.count;
    if (box.selection == row) {
        box.selection = NoRow;
    } else if (box.selection > row) {
        --box.selection;
    }
    box.topRow = LimitTopRow(box, box.topRow);
    Tell(box, ListChange::Items);
    return true;
}

void ListBoxFill(ListBox &box, int count) {
    box.count = std::max(0, count);
    box.selection = NoRow;
    box.topRow = 0;
    Tell(box, ListChange::Items);
}

void ListBoxTellItem(ListBox &box, int row) {
    box.toldRow = row;
    Tell(box, ListChange::Item);
}

void ListSelect(ListBox &box, int row) {
    box.selection = ListHasRow(box, row) ? row : NoRow;
    Tell(box, ListChange::Selection);
    ListShowRow(box, row);
}

void ListSetTopRow(ListBox &box, int row) {
    row = LimitTopRow(box, row);
    if (row != box.topRow) {
        box.topRow = row;
        Tell(box, ListChange::TopRow);
    }
}

void ListShowRow(ListBox &box, int row) {
    if (!ListHasRow(box, row)) {
        return;
    }
    if (row < box.topRow) {
        ListSetTopRow(box, row);
    } else if (box.visibleRows > 0 && row >= box.topRow + box.visibleRows) {
        ListSetTopRow(box, row - box.visibleRows + 1);
    }
}

void ListScrollByWheel(ListBox &box, int delta) {
    if (delta != 0) {
        ListSetTopRow(box, box.topRow + (delta > 0 ? -1 : 1));
    }
}

void ListSetVisibleRows(ListBox &box, int rows) {
    box.visibleRows = std::max(0, rows);
    ListSetTopRow(box, box.topRow);
}

void ListEnable(ListBox &box, bool enabled) {
    box.enabled = enabled;
    Tell(box, ListChange::State);
}

void ListSetRedraw(ListBox &box, bool redraw) {
    box.redraw = redraw;
    Tell(box, ListChange::State);
}

void ListSetItemHeight(ListBox &box, int pixels) {
    box.itemHeight = std::max(1, pixels);
    Tell(box, ListChange::State);
}

Rectangle ListRowRectangle(const ListBox &box, int row, int width) {
    const int top = (row - box.topRow) * box.itemHeight;
    return {.left = 0, .top = top, .right = width, .bottom = top + box.itemHeight};
}

int ListRowAt(const ListBox &box, PicturePoint point, int width, int height) {
    if (point.x < 0 || point.x >= width || point.y < 0 || point.y >= height) {
        return NoRow;
    }
    const int row = box.topRow + point.y / box.itemHeight;
    return ListHasRow(box, row) ? row : NoRow;
}

int ListRowOfKey(const ListBox &box, ListKey key) {
    if (box.count == 0) {
        return NoRow;
    }
    const int page = std::max(1, box.visibleRows - 1);
    int row = box.selection;
    switch (key) {
    case ListKey::Up:
        --row;
        break;
    case ListKey::Down:
        ++row;
        break;
    case ListKey::PageUp:
        row -= page;
        break;
    case ListKey::PageDown:
        row += page;
        break;
    case ListKey::Home:
        row = 0;
        break;
    case ListKey::End:
        row = box.count - 1;
        break;
    }
    return std::clamp(row, 0, box.count - 1);
}

int ListRowOfLetter(const ListBox &box, std::string &typed, std::string_view letter,
                    const ListBeginsWith &beginsWith) {
    const bool continues = !IsNothingBut(typed, letter);
    typed += letter;
    if (continues) {
        const int row = FindBeginning(box, std::max(0, box.selection), typed, beginsWith);
        if (row != NoRow) {
            return row;
        }
        typed = letter;
    }
    return FindBeginning(box, box.selection + 1, std::string(letter), beginsWith);
}

void ListDragPress(const ListBox &box, ListDrag &drag, int row) {
    drag = {.row = row, .onSelected = row == box.selection};
}

void ListDragMove(const ListBox &box, ListDrag &drag, PicturePoint point, int width) {
    if (drag.row == NoRow) {
        return;
    }
    const Rectangle row = ListRowRectangle(box, drag.row, width);
    const bool inside =
        point.x >= row.left && point.x < row.right && point.y >= row.top && point.y < row.bottom;
    drag.begun = drag.begun || !inside;
    drag.cursor = point;
}

int ListDragTarget(const ListBox &box, const ListDrag &drag, int width, int height) {
    const int row = ListRowAt(box, drag.cursor, width, height);
    return drag.begun && row != drag.row ? row : NoRow;
}

bool ListDragAtEdge(const ListDrag &drag, int height) {
    return drag.row != NoRow && (drag.cursor.y < 0 || drag.cursor.y >= height);
}

void ListDragScroll(ListBox &box, const ListDrag &drag, int height) {
    if (ListDragAtEdge(drag, height)) {
        ListSetTopRow(box, box.topRow + (drag.cursor.y < 0 ? -1 : 1));
    }
}

} // namespace tonewright
