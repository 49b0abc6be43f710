// Takes libasound's complaints, such as that there is no sequencer, off standard error.
#include "midi/quiet_library.h"

#include <alsa/asoundlib.h>

namespace tonewright {
namespace {

void KeepQuiet(const char *, int, const char *, int, const char *, ...) {}

} // namespace

void KeepMidiLibraryQuiet() {
    snd_lib_error_set_handler(KeepQuiet);
}

} // namespace tonewright
