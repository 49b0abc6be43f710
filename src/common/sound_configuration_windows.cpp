// The system knows its sound devices itself.
#include "common/sound_configuration.h"

namespace tonewright {

bool HasSoundConfiguration() {
    return true;
}

} // namespace tonewright
