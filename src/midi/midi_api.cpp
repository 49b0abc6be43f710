// The MIDI table of this process, which begins without any device.
#include "midi/midi_api.h"

namespace tonewright {

const std::int32_t MidiLatency = 0;
MidiApi TheMidi;

} // namespace tonewright
