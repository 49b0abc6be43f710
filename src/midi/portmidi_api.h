// The MIDI table of the machine's real ports.
#pragma once

#include "midi/midi_api.h"

namespace tonewright {

// Every call goes to PortMidi and PortTime; the library is initialised by the first call that needs
// it. A machine without MIDI has no devices, and what is asked of an index or a stream that does
// not exist fails; nothing is printed. All tables made here share one library and its streams.
MidiApi MakePortMidiApi();

} // namespace tonewright
