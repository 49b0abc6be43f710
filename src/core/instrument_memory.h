// How an instrument keeps voices in its memory, for whoever has the bytes of that memory.
#pragma once

#include "core/voice_object.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tonewright {

struct InstrumentMemory {
    const char *instrument; // a part of its name that no other instrument's holds
    std::size_t voiceSize;  // bytes of one voice; the voices lie one behind the other
    // The voice of `voiceSize` bytes of the memory, and that of the bytes of the edit buffer.
    VoiceObject (*memoryVoice)(std::span<const std::uint8_t> voice);
    VoiceObject (*editedVoice)(std::span<const std::uint8_t> editBuffer);
};

} // namespace tonewright
