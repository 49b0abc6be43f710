// Finds the messages in what is written to a built-in instrument, byte by byte as on a MIDI cable.
#include "midi/instruments/message_reader.h"

#include <algorithm>
#include <array>

namespace tonewright {

namespace {

constexpr std::uint8_t FirstStatus = 0x80;
constexpr std::uint8_t StartOfSysex = 0xF0;
constexpr std::uint8_t EndOfSysex = 0xF7;
constexpr std::uint8_t FirstRealTime = 0xF8;

// Bytes of a short message by its status; no status of a system message is followed here, since no
// instrument listens to song positions and the like.
std::size_t ShortMessageSize(std::uint8_t status) {
    const bool hasOneDataByte = (status & 0xF0) == 0xC0 || (status & 0xF0) == 0xD0;
    return hasOneDataByte ? 2 : 3;
}

void BreakOff(MessageReader &reader) {
    reader.sysex.clear();
    reader.insideSysex = false;
    reader.tooLong = false;
}

void ReadByte(MessageReader &reader, std::uint8_t byte, const TakeMessage &take) {
    if (byte >= FirstRealTime) {
        return;
    }
    if (byte == StartOfSysex) {
        BreakOff(reader);
        reader.insideSysex = true;
        reader.sysex.push_back(byte);
        return;
    }
    if (!reader.insideSysex) {
        return;
    }
    if (byte >= FirstStatus && byte != EndOfSysex) {
        BreakOff(reader);
        return;
    }
    if (reader.sysex.size() < LongestReadMessage) {
        reader.sysex.push_back(byte);
    } else {
        reader.tooLong = true;
    }
    if (byte == EndOfSysex) {
        if (!reader.tooLong) {
            take(reader.sysex);
        }
        BreakOff(reader);
    }
}

} // namespace

void ReadBytes(MessageReader &reader, std::span<const std::uint8_t> bytes,
               const TakeMessage &take) {
    for (const std::uint8_t byte : bytes) {
        ReadByte(reader, byte, take);
    }
}

void ReadWord(MessageReader &reader, std::uint32_t word, const TakeMessage &take) {
    std::array<std::uint8_t, 4> bytes{};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(word >> (8 * i));
    }
    const std::uint8_t status = bytes[0];
    if (status >= FirstRealTime) {
        return;
    }
    const bool isPartOfSysex =
        status < FirstStatus || status == StartOfSysex || status == EndOfSysex;
    if (isPartOfSysex) {
        const auto end = std::ranges::find(bytes, EndOfSysex);
        const auto count = static_cast<std::size_t>(end - bytes.begin());
        ReadBytes(reader, std::span(bytes).first(std::min(count + 1, bytes.size())), take);
        return;
    }
    BreakOff(reader);
    if (status > StartOfSysex) {
        return;
    }
    const auto message = std::span<const std::uint8_t>(bytes).first(ShortMessageSize(status));
    if (std::ranges::all_of(message.subspan(1), [](std::uint8_t b) { return b < FirstStatus; })) {
        take(message);
    }
}

} // namespace tonewright
