// The ordered set of voices of the open document, in the rows of the list box that shows it; see
// common/list_box for selection, scrolling and state.
//
// What holds besides between any two calls (VoiceListFault names what does not, and a debug build
// stops there after each change):
//   - the list has one row for each of its items;
//   - rows come, go and change their voice through the functions below alone, each of which tells
//     the observer once the change is made.
#pragma once

#include "common/list_box.h"
#include "core/voice_object.h"

#include <functional>
#include <vector>

namespace tonewright {

struct VoiceList : ListBox {
    std::vector<VoiceObject> items; // one per row; a block without bytes is a row without a voice
};

// What does not hold of a list and its list box, as a text; nullptr when all of it holds.
const char *VoiceListFault(const VoiceList &list);

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

// The same, and a row for each of these voices instead.
void ListFill(VoiceList &list, std::vector<VoiceObject> voices);

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

// Drops the voice of every row; the rows stay.
void FreeListBlocks(VoiceList &list);

} // namespace tonewright
