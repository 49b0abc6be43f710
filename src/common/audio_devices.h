// Looking for sound cards, which may take seconds: on a thread of its own, for a window that goes
// on meanwhile.
#pragma once

#include "common/audio_output.h"

#include <memory>
#include <optional>

namespace tonewright {

struct AudioDeviceSearch;

// Begins to ask TheAudioOutput for its devices. A search that is no longer wanted is left behind.
std::shared_ptr<AudioDeviceSearch> SearchAudioDevices();

struct FoundAudioDevices {
    std::vector<AudioDevice> devices;
    std::string why; // there are none: words without a full stop
};
// What the search has found; nothing as long as it goes on. Once.
std::optional<FoundAudioDevices> TakeFoundDevices(AudioDeviceSearch &search);

} // namespace tonewright
