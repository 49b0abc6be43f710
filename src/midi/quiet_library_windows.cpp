// The platform's MIDI calls print nothing.
#include "midi/quiet_library.h"

namespace tonewright {

void KeepMidiLibraryQuiet() {}

} // namespace tonewright
