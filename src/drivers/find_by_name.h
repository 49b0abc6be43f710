// The search for an instrument by the names of its ports, the same for every family.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

// A search as FindSynth of a row makes it, with the clock running. 1 when both ports are found, and
// the driver found is then `family`; else 0.
int FindSynthByName(DriverId family, FoundSynth &found, const PortNames &names);

} // namespace tonewright
