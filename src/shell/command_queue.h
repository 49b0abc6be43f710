// The one queue of posted work. An entry starts when the one before it has returned, and never
// inside a running command: not from a message box, not while a transfer pumps events.
#pragma once

#include <functional>

namespace tonewright {

// Puts work at the end of the queue and wakes the window.
void Post(std::function<void()> work);

// Runs the first entry of the queue, unless something is running already. Called by the window each
// time it was woken; true when an entry was run.
bool RunNextPosted();

// Marks that something is running, as long as it lives; on the way out it wakes the window when
// posted work waits.
struct RunningMark {
    RunningMark();
    ~RunningMark();
    RunningMark(const RunningMark &) = delete;
    RunningMark &operator=(const RunningMark &) = delete;
};
bool SomethingIsRunning();

// Drops what waits; the window is closing.
void ClearPosted();

} // namespace tonewright
