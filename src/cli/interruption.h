// Ctrl-C and its like while an instrument is in the middle of something: an instrument that is left
// alone then keeps a note sounding, or the settings of the transfer.
#pragma once

namespace tonewright {

// From now on a request to end the program is only noted, and a pipe that nobody reads any more
// fails instead of ending it.
void PostponeInterruption();

// True when the user wants the program to end.
bool InterruptionWaits();

// Ends the postponement, and with it the program if that was asked for.
void AllowInterruption();

} // namespace tonewright
