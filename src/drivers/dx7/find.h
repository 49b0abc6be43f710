// Looks for a DX7, TX7 or Volca FM among the MIDI ports.
#pragma once

#include "core/voice_object.h"

#include <cstdint>

class QWidget;

namespace tonewright {

// Operation of the DX7 row; see core/synth_driver.h. The ports are taken by their names only, for
// these instruments answer nothing; `firmware` and `autodetect` are not used.
int Dx7FindSynth(QWidget *window, DriverId *driver, int *midiIn, int *midiOut,
                 std::uint32_t *firmware, const char *inPattern, const char *outPattern,
                 bool autodetect);

} // namespace tonewright
