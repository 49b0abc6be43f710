// A sum over bytes.
#include "extras/content_sum.h"

#include <algorithm>
#include <bit>

namespace tonewright {
namespace {

constexpr std::uint64_t Prime1 = 0x9E3779B185EBCA87, Prime2 = 0xC2B2AE3D27D4EB4F,
                        Prime3 = 0x165667B19E3779F9, Prime4 = 0x85EBCA77C2B2AE63,
                        Prime5 = 0x27D4EB2F165667C5;
constexpr std::size_t BlockSize = 32; // bytes, eight for each lane

// A little-endian number of so many bytes; compilers make one load of it.
template <std::size_t Size> std::uint64_t Load(const std::uint8_t *bytes) {
    std::uint64_t number = 0;
    for (std::size_t byte = 0; byte < Size; ++byte) {
        number |= static_cast<std::uint64_t>(bytes[byte]) << 8 * byte;
    }
    return number;
}

std::uint64_t Round(std::uint64_t lane, std::uint64_t number) {
    return std::rotl(lane + number * Prime2, 31) * Prime1;
}

void AddBlock(std::array<std::uint64_t, 4> &lanes, const std::uint8_t *bytes) {
    for (std::uint64_t &lane : lanes) {
        lane = Round(lane, Load<8>(bytes));
        bytes += 8;
    }
}

} // namespace

ContentSum::ContentSum(std::uint64_t seed)
    : lanes{seed + Prime1 + Prime2, seed + Prime2, seed, seed - Prime1}, rest{} {}

void ContentSum::Add(std::span<const std::uint8_t> bytes) {
    const std::size_t waiting = size % BlockSize;
    size += bytes.size();
    if (waiting > 0) {
        const std::size_t taken = std::min(BlockSize - waiting, bytes.size());
        std::copy_n(bytes.data(), taken, rest.data() + waiting);
        bytes = bytes.subspan(taken);
        if (waiting + taken < BlockSize) {
            return;
        }
        AddBlock(lanes, rest.data());
    }
    for (; bytes.size() >= BlockSize; bytes = bytes.subspan(BlockSize)) {
        AddBlock(lanes, bytes.data());
    }
    std::ranges::copy(bytes, rest.begin());
}

std::uint64_t ContentSum::Value() const {
    std::uint64_t sum = lanes[2] + Prime5; // the seed, while no block has been added
    if (size >= BlockSize) {
        sum = std::rotl(lanes[0], 1) + std::rotl(lanes[1], 7) + std::rotl(lanes[2], 12) +
              std::rotl(lanes[3], 18);
        for (const std::uint64_t lane : lanes) {
            sum = (sum ^ Round(0, lane)) * Prime1 + Prime4;
        }
    }
    sum += size;
    const std::uint8_t *bytes = rest.data(), *end = bytes + size % BlockSize;
    for (; end - bytes >= 8; bytes += 8) {
        sum = std::rotl(sum ^ Round(0, Load<8>(bytes)), 27) * Prime1 + Prime4;
    }
    if (end - bytes >= 4) {
        sum = std::rotl(sum ^ Load<4>(bytes) * Prime1, 23) * Prime2 + Prime3;
        bytes += 4;
    }
    for (; bytes < end; ++bytes) {
        sum = std::rotl(sum ^ *bytes * Prime5, 11) * Prime1;
    }
    sum = (sum ^ sum >> 33) * Prime2;
    sum = (sum ^ sum >> 29) * Prime3;
    return sum ^ sum >> 32;
}

} // namespace tonewright
