// State of the main window's document and of the voice that its commands act on.
#pragma once

#include "core/voice_object.h"

namespace tonewright {

struct ListState {
    int clickedIndex = -1; // row under the last right or middle click
    bool dirty = false;    // the document differs from its file
};
extern ListState MainListState;

// The row that a command acts on: clickedIndex, or else the selection; -1: none. It takes
// clickedIndex away, which is -1 from then on: a command calls it once, and a second call answers
// with the selection.
int ListIndexForCommand();

// The window's message after a change by a gesture (0: dirty, refresh) and at start (1: make the
// driver named by SelectKeyboardName current, show it).
void MainListChanged(int value);

// Makes a family current whose instrument has not been looked for.
void SelectFamily(DriverId family);

} // namespace tonewright
