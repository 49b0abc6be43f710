// Requests to end the program, for Windows: a window program hears of them by its windows alone.
#include "shell/end_signals.h"

namespace tonewright {

int CatchEndSignals() {
    return -1;
}

void ReleaseEndSignals() {}

} // namespace tonewright
