// The row of the DX7, TX7 and Volca FM family.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

extern const SynthDriver Dx7Driver;

} // namespace tonewright
