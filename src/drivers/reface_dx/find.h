// Looks for a reface DX among the MIDI ports.
#pragma once

#include "core/synth_driver.h"

namespace tonewright {

// Operation of the reface DX row; see core/synth_driver.h. Without `autodetect` the ports are taken
// by their names. With it, ports named "reface DX" and then ports named "USB Audio Device" are
// asked for their identity (universal identity request). The second pass runs also when the first
// has found the instrument, and may write its own ports; the result is then 0 and the success is in
// `found`. A reply whose bytes 8 and 9 are 01 00 ends the search with 1, and no driver is written.
int RefaceFindSynth(QWidget *window, FoundSynth &found, const PortNames &names, bool autodetect);

} // namespace tonewright
