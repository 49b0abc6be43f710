// The formats of the files of the DX7 family, for whoever looks into them without opening them.
#pragma once

#include "core/voice_file.h"

namespace tonewright {

extern const VoiceFileFormat Dx7BankFormat;
extern const VoiceFileFormat Dx7VoiceFormat;

} // namespace tonewright
