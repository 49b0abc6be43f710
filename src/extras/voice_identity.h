// What makes two voices the same: what is heard of them. Names and bits that no parameter has do
// not count, nor in which form a voice is stored.
#pragma once

#include "extras/dump_voice.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

// A number of 64 bits made of all parameters of a voice, the same in every version of the program
// and on every machine. Two voices that differ share it once in 2^64.
// A DX7 voice counts as a bank holds it, with all four bits of each detune: an operator that is off
// is one of level 0. Voices of the two families never share a number by having the same bytes.
using VoiceIdentity = std::uint64_t;
VoiceIdentity IdentityOf(const DumpVoice &voice);

// As it is shown and typed: 16 hexadecimal digits. Reading takes letters of either case; nothing
// for anything but 16 digits.
std::string TextOfIdentity(VoiceIdentity identity);
std::optional<VoiceIdentity> ReadIdentity(std::string_view text);

} // namespace tonewright
