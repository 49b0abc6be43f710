// The 32 voices that the built-in reface DX leaves the factory with.
#pragma once

#include "midi/instruments/instrument.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tonewright {

// A voice is a common block and four operator blocks.
constexpr std::size_t RefaceCommonBytes = 38;
constexpr std::size_t RefaceOperatorBytes = 28;
constexpr std::size_t RefaceOperators = 4;
constexpr std::size_t RefaceVoiceBytes = RefaceCommonBytes + RefaceOperators * RefaceOperatorBytes;

// Writes as many of the voices as `memory` has room for.
void FillRefaceFactoryVoices(std::span<std::uint8_t> memory);

} // namespace tonewright
