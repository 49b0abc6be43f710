// Finds the messages in what is written to a built-in instrument, byte by byte as on a MIDI cable.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace tonewright {

// A longer system-exclusive message is dropped as a whole.
constexpr std::size_t LongestReadMessage = 8192;

struct MessageReader {
    std::vector<std::uint8_t> sysex; // what has come of the message that is under way
    bool insideSysex = false;
    bool tooLong = false;
};

// A whole message: F0 to F7, or a short one with all its data bytes, each of seven bits.
using TakeMessage = std::function<void(std::span<const std::uint8_t>)>;

// Bytes of a system-exclusive message, or of several. Real-time bytes may stand anywhere and are
// dropped; any other status byte breaks the message off.
void ReadBytes(MessageReader &reader, std::span<const std::uint8_t> bytes, const TakeMessage &take);

// One word as the MIDI table carries it, lowest byte first: a short message, or the next four bytes
// of a system-exclusive one, of which those behind F7 mean nothing. A short message whose data
// bytes are above 7F is dropped.
void ReadWord(MessageReader &reader, std::uint32_t word, const TakeMessage &take);

} // namespace tonewright
