// Voices as bytes, for dragging them from a window of the extras into the main list: for each voice
// a byte for its form, the number of VoiceForm, and the bytes of that form.
#pragma once

#include "extras/dump_voice.h"

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace tonewright {

// The type under which they are dragged.
constexpr const char *VoiceParcelType = "application/x-tonewright-archive";

std::vector<std::uint8_t> PackVoices(std::span<const KeptVoice> voices);
// Nothing for bytes that are not such voices to the last one, and for none at all.
std::optional<std::vector<KeptVoice>> UnpackVoices(std::span<const std::uint8_t> parcel);

} // namespace tonewright
