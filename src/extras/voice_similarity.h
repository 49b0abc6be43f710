// How alike two voices sound: a distance over their parameters, weighted by what an ear notices.
//
// (The measure and its weights are written down here by whoever changes them.)
#pragma once

#include "extras/dump_voice.h"

#include <array>
#include <cstdint>

namespace tonewright {

// What of a voice is compared, in few bytes; made once and kept in the archive. The first byte says
// the family, others are never alike.
constexpr std::size_t VoiceFeatureSize = 48; // bytes
using VoiceFeatures = std::array<std::uint8_t, VoiceFeatureSize>;
// Changes whenever the features of a voice would be other bytes: an archive makes them anew then.
constexpr int VoiceFeatureVersion = 1;

VoiceFeatures FeaturesOf(const DumpVoice &voice);

// 0 for voices that are heard alike, growing; infinite for voices of different families.
float DistanceOf(const VoiceFeatures &one, const VoiceFeatures &other);

} // namespace tonewright
