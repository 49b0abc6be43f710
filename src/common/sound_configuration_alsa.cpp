// Looks into the settings of libasound.
#include "common/sound_configuration.h"

#include <alsa/asoundlib.h>

namespace tonewright {

bool HasSoundConfiguration() {
    snd_config_t *top = nullptr;
    if (snd_config_update_ref(&top) < 0 || !top) {
        return false;
    }
    snd_config_t *found = nullptr;
    const bool hasDefault = snd_config_search(top, "pcm.default", &found) >= 0;
    snd_config_unref(top);
    return hasDefault;
}

} // namespace tonewright
