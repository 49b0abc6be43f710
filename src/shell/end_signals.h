// The system's requests to end the program, as a file that an event loop can wait for.
#pragma once

namespace tonewright {

// From now on the first request of each kind to end (Ctrl-C, the end of the terminal, a shutdown)
// ends nothing: a byte waits in the file whose descriptor this returns. Requests that were ignored
// before stay so. -1 where the platform has none of this.
int CatchEndSignals();

// From now on a request ends the program at once.
void ReleaseEndSignals();

} // namespace tonewright
