// One MIDI table that lists the devices of two.
#pragma once

#include "midi/midi_api.h"

namespace tonewright {

// The devices of `first` come ahead of those of `second`. Both clocks start and stop together; the
// time is that of `second`, or of `first` when the clock of `second` did not start.
MidiApi MakeCompositeApi(MidiApi first, MidiApi second);

} // namespace tonewright
