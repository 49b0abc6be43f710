// The checksum of bulk dumps.
#include "midi/sysex.h"

namespace tonewright {

std::uint8_t SysexChecksum(std::span<const std::uint8_t> bytes) {
    unsigned sum = 0;
    for (const std::uint8_t byte : bytes) {
        sum += byte;
    }
    return static_cast<std::uint8_t>(-sum & 0x7F);
}

} // namespace tonewright
