// A row of the list that is played for as long as a key is held, without a box.
#pragma once

#include "midi/audition.h"
#include "shell/command_queue.h"

#include <memory>

namespace tonewright {

// A row that is being played. Neither commands nor posted work start meanwhile.
struct RowAudition {
    RunningMark running;
    AuditionState state;
};
struct EndRowAudition {
    void operator()(RowAudition *audition) const;
};
using PlayedRow = std::unique_ptr<RowAudition, EndRowAudition>;

// Sends the voice of a row and plays it, the lowest note of the keyboard of the Audition box, until
// the result goes. No program is selected, which would recall the first voice of the instrument.
// Nothing is played, and the result is empty, where there is no such row, where something else is
// running, and where the voice could not be sent, which a message has said.
PlayedRow PlayRow(int row);

} // namespace tonewright
