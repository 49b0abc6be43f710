// Which of the built-in instruments plays the voices of a family.
#pragma once

#include "core/midi_ports.h"
#include "core/synth_driver.h"

namespace tonewright {

// How a family keeps voices in the memory of the built-in instrument of that name; nullptr for one
// that is not of its instruments.
const InstrumentMemory *MemoryOfFamily(const SynthDriver &family, const char *instrument);

// The ports by which a voice of the family `id` is heard: `ports`, unless the user has switched the
// built-in instruments on and `ports` has no output, or that of a built-in instrument which plays
// no such voices. Then those of the first one that does, or `ports` where there is none.
MidiPorts PortsToHear(DriverId id, MidiPorts ports);

} // namespace tonewright
