// The ordered set of voices of the open document, with the state of the list box that shows it.
// A view follows the list through one observer; without a view everything works the same.
//
// What holds between any two calls (VoiceListFault names the one that does not, and a debug build
// stops there after each change):
//   - the selection is a row of the list, or NoRow;
//   - the top row leaves no gap below the last row: the rows from it on fill the view, or it is 0;
//   - visibleRows is not negative, itemHeight at least 1;
//   - rows come, go and change their voice through the functions below alone, each of which tells
//     the observer once the change is made.
#pragma once

#include "core/voice_object.h"

#include <functional>
#include <vector>

namespace tonewright {

enum class VoiceListChange {
    Items,     // rows were added or removed
    Voice,     // a voice was put in, written to or taken; a view repaints when told to, not by this
    Selection, // the selected row changed
    TopRow,    // the list was scrolled
    State,     // enabled, redraw or itemHeight changed
};

constexpr int NoRow = -1;

struct VoiceList {
    std::vector<VoiceObject> items; // one per row; a block without bytes is a row without a voice
    int selection = NoRow;
    int topRow = 0;
    int visibleRows = 0; // whole rows that the view shows; 0 while there is no view
    bool enabled = true;
    bool redraw = true;  // off while a bank is filled in
    int itemHeight = 48; // pixels
    std::function<void(VoiceListChange)> observer;
};

// What does not hold of the above, as a text; nullptr when all of it holds.
const char *VoiceListFault(const VoiceList &list);

int ListCount(const VoiceList &list);

// Adds a row without a voice at the end and returns its index.
int ListAdd(VoiceList &list);

// Inserts a row without a voice before `row`; `row` may equal the count. Returns `row`, or -1 when
// it lies outside 0 to count. A selection at or behind `row` moves along.
int ListInsert(VoiceList &list, int row);

// Removes a row and its voice. False when there is no such row. A selection behind it moves up; the
// selection is gone when its row is.
bool ListDelete(VoiceList &list, int row);

// Removes all rows, the selection and the scroll position.
void ListReset(VoiceList &list);

// The voice of a row, or nullptr for a row that does not exist or holds none.
const VoiceObject *ListVoice(const VoiceList &list, int row);

// Puts a voice into a row, dropping the one that was there. False, and the list unchanged, when
// there is no such row.
bool ListSetVoice(VoiceList &list, int row, VoiceObject voice);

// Lets `write` change the voice of a row in place. False, and nothing called, when the row does not
// exist or holds no voice.
bool ListWriteVoice(VoiceList &list, int row, const std::function<void(VoiceObject &)> &write);

// Takes the voice out of a row, leaving the row without one.
VoiceObject ListTakeVoice(VoiceList &list, int row);

// Selects a row and scrolls it into view; a row outside the list clears the selection.
void ListSelect(VoiceList &list, int row);

// Scrolls so that `row` stands at the top, as far as the rows below it fill the view.
void ListSetTopRow(VoiceList &list, int row);

// Told by the view when its height changes.
void ListSetVisibleRows(VoiceList &list, int rows);

void ListEnable(VoiceList &list, bool enabled);
void ListSetRedraw(VoiceList &list, bool redraw);
void ListSetItemHeight(VoiceList &list, int pixels);

// Drops the voice of every row; the rows stay.
void FreeListBlocks(VoiceList &list);

} // namespace tonewright
