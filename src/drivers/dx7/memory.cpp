// The memory of a DX7 or Volca FM: packed voices, and one voice as its single-voice dump holds it.
#include "drivers/dx7/memory.h"

#include "drivers/dx7/voice_codec.h"

#include <algorithm>
#include <array>

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

VoiceObject Dx7MemoryVoice(Bytes packed) {
    std::array<std::uint8_t, Dx7VoiceSize> voice;
    UnpackDx7Voice(voice, packed.first<Dx7PackedVoiceSize>());
    return MakeDx7VoiceObject(voice);
}

// All that a voice in memory has but the byte behind it, which operators are on: in the instrument
// all of them are.
VoiceObject Dx7EditedVoice(Bytes buffer) {
    constexpr std::uint8_t allOperators = 0x3F;
    std::array<std::uint8_t, Dx7VoiceSize> voice;
    std::ranges::copy(buffer.first<Dx7Voice::operatorEnable>(), voice.begin());
    voice[Dx7Voice::operatorEnable] = allOperators;
    return MakeDx7VoiceObject(voice);
}

} // namespace

const InstrumentMemory Dx7Memories[2] = {{.instrument = "DX7",
                                          .voiceSize = Dx7PackedVoiceSize,
                                          .memoryVoice = Dx7MemoryVoice,
                                          .editedVoice = Dx7EditedVoice},
                                         {.instrument = "Volca FM",
                                          .voiceSize = Dx7PackedVoiceSize,
                                          .memoryVoice = Dx7MemoryVoice,
                                          .editedVoice = Dx7EditedVoice}};

} // namespace tonewright
