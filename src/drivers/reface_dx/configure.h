// What is done with the settings of a reface DX: they are read, shown and written back, kept in
// files and read from them, and sent again each time the instrument has been found.
#pragma once

#include "core/synth_settings.h"
#include "drivers/reface_dx/settings.h"

namespace tonewright {

// As the command line reads, changes and writes them.
extern const SynthSettings RefaceSettings;

} // namespace tonewright
