// What stands below MIDI ports and sound cards here prints nothing.
#include "common/quiet_library.h"

namespace tonewright {

void KeepAlsaQuiet() {}

void KeepJackQuiet() {}

} // namespace tonewright
