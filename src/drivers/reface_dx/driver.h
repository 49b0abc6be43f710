// The row of the reface DX.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

extern const SynthDriver RefaceDriver;

} // namespace tonewright
