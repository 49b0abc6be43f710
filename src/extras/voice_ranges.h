// What values the bytes of voices have, and voices that stand in a file without a message around
// them, which their values alone tell from other bytes.
#pragma once

#include "extras/dump_voice.h"

#include <cstdint>
#include <span>

namespace tonewright {

// Whether all parameters of so many voices of a form, one behind the other, have values that the
// instrument has. Bits that no parameter has do not count, nor do names.
bool AreInRange(VoiceForm form, std::span<const std::uint8_t> bytes, std::size_t voices);

struct HeaderlessVoices {
    VoiceForm form = VoiceForm::Dx7Packed; // or Dx7Single
    std::size_t start = 0;                 // of the first one
    std::size_t voices = 0;                // 0: there are none
    int confidence = 0;                    // per cent, below 100
    bool inRange = true;                   // all of them
};

// The DX7 voices that stand in bytes, whole numbers of voices from their first one: what is in
// front of the first voice is of that size and none. `isAll`: these are all the bytes between two
// messages, and not only their start.
HeaderlessVoices JudgeHeaderless(std::span<const std::uint8_t> bytes, bool isAll);

// Where some packed voices begin that other bytes stand in front of; 0 where none do within the
// first 255 bytes.
std::size_t FindHeaderless(std::span<const std::uint8_t> bytes);

} // namespace tonewright
