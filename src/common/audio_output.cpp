// The sound card in use.
#include "common/audio_output.h"

namespace tonewright {

AudioOutput TheAudioOutput = PlatformAudioOutput();

} // namespace tonewright
