// The checksum of bulk dumps.
#include "midi/sysex.h"

#include <algorithm>
#include <cstring>

namespace tonewright {
namespace {

using Word = std::uint64_t;

// A word as four lanes of 16 bits, each with the sum of two of its eight bytes.
Word PairSums(Word word) {
    constexpr Word evenBytes = 0x00FF00FF00FF00FF;
    return (word & evenBytes) + (word >> 8 & evenBytes);
}

unsigned SumOfLanes(Word lanes) {
    unsigned sum = 0;
    for (; lanes != 0; lanes >>= 16) {
        sum += lanes & 0xFFFF;
    }
    return sum;
}

} // namespace

// Eight bytes at a time: thousands of banks in one run are measured by it.
std::uint8_t SysexChecksum(std::span<const std::uint8_t> bytes) {
    constexpr std::size_t wordsUntilFull = 0xFFFF / (2 * 0xFF); // of a lane
    unsigned sum = 0;
    while (bytes.size() >= sizeof(Word)) {
        const std::size_t words = std::min(bytes.size() / sizeof(Word), wordsUntilFull);
        Word lanes = 0;
        for (std::size_t index = 0; index < words; ++index) {
            Word word;
            std::memcpy(&word, bytes.data() + index * sizeof word, sizeof word);
            lanes += PairSums(word);
        }
        sum += SumOfLanes(lanes);
        bytes = bytes.subspan(words * sizeof(Word));
    }
    for (const std::uint8_t byte : bytes) {
        sum += byte;
    }
    return static_cast<std::uint8_t>(-sum & 0x7F);
}

} // namespace tonewright
