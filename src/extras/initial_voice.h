// The voice that an instrument starts from: what fills up a bank of fewer voices.
#pragma once

#include "extras/dump_voice.h"

namespace tonewright {

// One sine wave, which sounds as long as its key is held: of the DX7 the published initial voice
// "INIT VOICE", packed; of the reface DX a voice of the same kind, "Init Voice". `family` is one of
// the two.
KeptVoice InitialVoiceOf(DriverId family);

} // namespace tonewright
