// A MIDI table around another one for as long as a program works with it: one clock for all
// operations, a note of what could not be sent, and an end that does not wait.
#pragma once

#include "midi/midi_api.h"

namespace tonewright {

struct MidiSession {
    MidiApi inner;
    // Asked while something is awaited. True: the user wants the program to end, and whatever is
    // under way comes to its own end without waiting for anything more. Null: never.
    bool (*isCancelled)() = nullptr;
    bool writeFailed = false; // set by a write that did not succeed
};

// Starts the clock of `session.inner` and passes every call on to it but for the clock's: an
// operation that starts and stops the clock finds it running and leaves it so, and the times of a
// trace go on from one operation to the next. `session` outlives the table and is not moved.
MidiApi MakeSessionApi(MidiSession &session);
// Stops the clock. Every stream is closed by then.
void EndSession(MidiSession &session);

} // namespace tonewright
