// The bytes of documents made of voices as they were found.
#pragma once

#include "extras/dump_voice.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tonewright {

// A bank of these voices, 1 to 32 of one family, filled up by initial voices: of the DX7 each as it
// is packed (PackedBytesOf), with all bits of its detunes.
std::vector<std::uint8_t> BankBytesOf(std::span<const KeptVoice> voices);

// A single-voice file.
std::vector<std::uint8_t> VoiceFileBytesOf(const KeptVoice &voice);

// Whether a bank keeps less of the voice than a single-voice file: in a bank an operator that is
// off has no level.
bool LosesLevelInBank(const KeptVoice &voice);

} // namespace tonewright
