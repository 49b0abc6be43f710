// The catalogue window: what it holds, and what its buttons, its menu and the mouse do. The window
// itself is database/view/database_box.
#pragma once

#include "core/voice_list.h"
#include "core/voice_object.h"
#include "database/record_list.h"

#include <cstdint>
#include <functional>

class QWidget;

namespace tonewright {

// One open window.
struct DatabaseWindow {
    QWidget *window = nullptr; // owner of messages
    int driverIndex = -1;      // row of the driver table, of whose catalogues one is shown
    RecordList records;
    std::uint32_t changed = 0; // not 0: the list differs from the file, and OK stores it
    VoiceObject chosen;        // by OK; without bytes: none
};

// What the window is seen by, and what it asks of the main window; filled in by the view, and by
// tests. An empty member does nothing.
struct DatabaseViews {
    // Runs the dialog; its result.
    std::function<int(QWidget *owner, DatabaseWindow &state)> ShowBox;
    // The list that a voice was chosen for has changed.
    std::function<void()> RepaintVoices;
};
extern DatabaseViews TheDatabaseViews;

// Lets the user browse and edit the current catalogue of a row of the driver table, and puts the
// voice that was chosen into the row `target` of `list`, unless that is NoRow or lies behind the
// rows of a bank; then the list is repainted and a sound played. The result of the dialog: not 0
// for OK, with a voice or without one.
int RunDatabaseWindow(QWidget *owner, VoiceList &list, int target, int driverIndex);

} // namespace tonewright
