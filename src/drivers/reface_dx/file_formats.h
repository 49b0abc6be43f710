// The formats of the files of the reface DX, for whoever looks into them without opening them.
#pragma once

#include "core/voice_file.h"

namespace tonewright {

extern const VoiceFileFormat RefaceBankFormat;
extern const VoiceFileFormat RefaceVoiceFormat;

} // namespace tonewright
