// The bytes around the data of a system-exclusive message, and the checksum of those that have one.
//
//   F0 | maker, kind and address | data | checksum | F7
//
// The bytes between F0 and F7 are below 80.
#pragma once

#include <cstdint>
#include <span>

namespace tonewright {

constexpr std::uint8_t StartOfSysex = 0xF0;
constexpr std::uint8_t EndOfSysex = 0xF7;

// The checksum of every bulk dump that the drivers know: the low seven bits of the negated sum of
// `bytes`, so that the sum with it is a multiple of 128. 0 for no bytes.
std::uint8_t SysexChecksum(std::span<const std::uint8_t> bytes);

} // namespace tonewright
