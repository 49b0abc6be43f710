// A driver table for tests: changeable copies of the two real rows, so that a test can put an
// operation of its own into one of them. The rest of the program sees them as the table.
#pragma once

#include "core/synth_driver.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"

namespace tonewright {

extern SynthDriver Dx7Row;
extern SynthDriver RefaceRow;

// Makes both rows equal to the real ones again.
void RestoreDriverRows();

} // namespace tonewright
