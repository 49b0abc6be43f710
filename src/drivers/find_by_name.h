// The search for an instrument by the names of its ports, the same for every family.
#pragma once

#include "core/voice_object.h"

namespace tonewright {

// Looks for an input whose name contains `inPattern` and an output whose name contains
// `outPattern`, and writes the device indices of those it finds to *midiIn and *midiOut. 1 when it
// finds both, and *driver is then `family`; else 0. The pointers may be null.
int FindSynthByName(DriverId family, DriverId *driver, int *midiIn, int *midiOut,
                    const char *inPattern, const char *outPattern);

} // namespace tonewright
