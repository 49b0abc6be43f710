// The parameters of a DX7 voice for editor and command line.
#pragma once

#include "drivers/voice_parameters.h"

namespace tonewright {

extern const VoiceParameters Dx7Parameters;

} // namespace tonewright
