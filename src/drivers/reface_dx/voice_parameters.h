// The parameters of a reface DX voice for editor and command line.
#pragma once

#include "drivers/voice_parameters.h"

namespace tonewright {

extern const VoiceParameters RefaceParameters;

} // namespace tonewright
