// A sum over bytes: XXH64, a published function. By it a file is known again under another name,
// and a voice by its parameters. No guard against somebody who wants two files to share one.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace tonewright {

// Bytes are added in pieces of any size.
struct ContentSum {
    std::array<std::uint64_t, 4> lanes;
    std::array<std::uint8_t, 32> rest; // those that fill no block of 32 yet
    std::uint64_t size = 0;            // bytes that were added

    explicit ContentSum(std::uint64_t seed = 0);
    void Add(std::span<const std::uint8_t> bytes);
    std::uint64_t Value() const;
};

} // namespace tonewright
