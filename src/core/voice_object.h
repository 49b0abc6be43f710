// A voice in memory: one self-describing block of bytes, the same for every family of
// instruments. Code outside a driver copies whole blocks and never looks into the payload.
//
//   offset  0  magic           "TNWo", T in the high byte (so the bytes in memory read "oWNT")
//           4  payloadOffset   52
//           8  payloadSize     bytes of the voice proper
//          12  extraSize       bytes of further driver data behind the payload
//          16  driverId        the driver that owns the payload
//          20  reserved        32 bytes of zero
//          52  payload, then extra
//
// All header fields are 32 bits, little-endian. The layout is fixed: whole blocks go to the
// clipboard and into undo levels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

// Four characters, stored little-endian, so that the bytes in a file read as the text.
using DriverId = std::uint32_t;

constexpr DriverId MakeDriverId(const char (&text)[5]) {
    return static_cast<DriverId>(static_cast<unsigned char>(text[0])) |
           static_cast<DriverId>(static_cast<unsigned char>(text[1])) << 8 |
           static_cast<DriverId>(static_cast<unsigned char>(text[2])) << 16 |
           static_cast<DriverId>(static_cast<unsigned char>(text[3])) << 24;
}

constexpr DriverId NoDriverId = MakeDriverId("????");
static_assert(NoDriverId == 0x3F3F3F3F);

constexpr std::uint32_t VoiceObjectMagic = 0x544E576F; // "TNWo", T in the high byte
constexpr std::size_t VoiceObjectHeaderSize = 52;

// A value that owns its bytes; no bytes means "no voice". Copying it duplicates the block.
struct VoiceObject {
    std::vector<std::uint8_t> bytes;

    bool operator==(const VoiceObject &) const = default;
};

struct VoiceObjectHeader {
    std::uint32_t magic = 0;
    std::uint32_t payloadOffset = 0;
    std::uint32_t payloadSize = 0;
    std::uint32_t extraSize = 0;
    DriverId driverId = NoDriverId;
};

// The payload and the extra data of a block, within the block's real size.
struct VoicePayload {
    std::span<const std::uint8_t> payload;
    std::span<const std::uint8_t> extra;
};

// Makes a block with payloadOffset 52 around `payload` and `extra` (both copied).
VoiceObject MakeVoiceObject(DriverId driverId, std::span<const std::uint8_t> payload,
                            std::span<const std::uint8_t> extra = {});

// The header fields of a block; nothing when the block is shorter than its header of 52 bytes.
// The magic is not looked at.
std::optional<VoiceObjectHeader> HeaderOf(const VoiceObject &voice);
std::optional<VoiceObjectHeader> HeaderOf(std::span<const std::uint8_t> block);

// Payload and extra of a block. Fails when the block is shorter than 52 bytes, its magic is wrong,
// or payloadOffset + payloadSize + extraSize (taken in 64 bits) runs past the block's real end.
std::optional<VoicePayload> PayloadOf(const VoiceObject &voice);
// The same of bytes that are not in a block of their own.
std::optional<VoicePayload> PayloadOf(std::span<const std::uint8_t> block);

// The payload of a block, for writing in place; empty where PayloadOf fails.
std::span<std::uint8_t> MutablePayloadOf(VoiceObject &voice);

// payloadOffset + payloadSize + extraSize of a block that PayloadOf accepts; 0 for any other.
std::size_t RecordSizeOf(const VoiceObject &voice);

// What stands for the name of a block that is none.
constexpr const char *UnknownVoiceName = "Unknown Voice";

// The text of a voice's name, which is a field of at least one byte without a terminator: the bytes
// without those of 0x20 or below at the end, but for the first, which always stays; a zero byte
// inside the name ends it.
std::string MakeVoiceNameText(std::span<const std::uint8_t> field);

// Little-endian 32-bit access to a block of bytes. The caller guarantees offset + 4 <= size.
std::uint32_t ReadLittle32(std::span<const std::uint8_t> bytes, std::size_t offset);
void WriteLittle32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value);

} // namespace tonewright
