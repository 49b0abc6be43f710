// Looks for a DX7, TX7 or Volca FM among the MIDI ports.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

// Operation of the DX7 row; see core/synth_driver.h. The ports are taken by their names only, for
// these instruments answer nothing; `autodetect` is not used, and no firmware is found.
int Dx7FindSynth(QWidget *window, FoundSynth &found, const PortNames &names, bool autodetect);

} // namespace tonewright
