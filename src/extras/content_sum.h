// A sum over the bytes of a file, by which it is known again under another name: XXH64 with the
// seed 0, as its specification describes it. No guard against somebody who wants two files to
// share one.
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

    ContentSum();
    void Add(std::span<const std::uint8_t> bytes);
    std::uint64_t Value() const;
};

} // namespace tonewright
