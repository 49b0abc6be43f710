// Building and reading the block that holds a voice.
#include "core/voice_object.h"

#include <algorithm>

namespace tonewright {

std::uint32_t ReadLittle32(std::span<const std::uint8_t> bytes, std::size_t offset) {
    return static_cast<std::uint32_t>(bytes[offset]) |
           static_cast<std::uint32_t>(bytes[offset + 1]) << 8 |
           static_cast<std::uint32_t>(bytes[offset + 2]) << 16 |
           static_cast<std::uint32_t>(bytes[offset + 3]) << 24;
}

void WriteLittle32(std::span<std::uint8_t> bytes, std::size_t offset, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

VoiceObject MakeVoiceObject(DriverId driverId, std::span<const std::uint8_t> payload,
                            std::span<const std::uint8_t> extra) {
    VoiceObject voice;
    voice.bytes.resize(VoiceObjectHeaderSize + payload.size() + extra.size());
    WriteLittle32(voice.bytes, 0, VoiceObjectMagic);
    WriteLittle32(voice.bytes, 4, VoiceObjectHeaderSize);
    WriteLittle32(voice.bytes, 8, static_cast<std::uint32_t>(payload.size()));
    WriteLittle32(voice.bytes, 12, static_cast<std::uint32_t>(extra.size()));
    WriteLittle32(voice.bytes, 16, driverId);
    const auto end = std::ranges::copy(payload, voice.bytes.begin() + VoiceObjectHeaderSize).out;
    std::ranges::copy(extra, end);
    return voice;
}

std::optional<VoiceObjectHeader> HeaderOf(const VoiceObject &voice) {
    return HeaderOf(std::span(voice.bytes));
}

std::optional<VoiceObjectHeader> HeaderOf(std::span<const std::uint8_t> block) {
    if (block.size() < VoiceObjectHeaderSize) {
        return std::nullopt;
    }
    return VoiceObjectHeader{.magic = ReadLittle32(block, 0),
                             .payloadOffset = ReadLittle32(block, 4),
                             .payloadSize = ReadLittle32(block, 8),
                             .extraSize = ReadLittle32(block, 12),
                             .driverId = ReadLittle32(block, 16)};
}

std::optional<VoicePayload> PayloadOf(const VoiceObject &voice) {
    return PayloadOf(std::span(voice.bytes));
}

std::optional<VoicePayload> PayloadOf(std::span<const std::uint8_t> block) {
    const auto header = HeaderOf(block);
    if (!header || header->magic != VoiceObjectMagic) {
        return std::nullopt;
    }
    const std::uint64_t end = std::uint64_t{header->payloadOffset} + header->payloadSize +
                              std::uint64_t{header->extraSize};
    if (end > block.size()) {
        return std::nullopt;
    }
    return VoicePayload{.payload = block.subspan(header->payloadOffset, header->payloadSize),
                        .extra =
                            block.subspan(std::size_t{header->payloadOffset} + header->payloadSize,
                                          header->extraSize)};
}

std::span<std::uint8_t> MutablePayloadOf(VoiceObject &voice) {
    const auto payload = PayloadOf(voice);
    if (!payload) {
        return {};
    }
    const auto header = HeaderOf(voice);
    return std::span(voice.bytes).subspan(header->payloadOffset, header->payloadSize);
}

std::size_t RecordSizeOf(const VoiceObject &voice) {
    const auto header = HeaderOf(voice);
    if (!PayloadOf(voice)) {
        return 0;
    }
    return std::size_t{header->payloadOffset} + header->payloadSize + header->extraSize;
}

std::string MakeVoiceNameText(std::span<const std::uint8_t> field) {
    while (field.size() > 1 && field.back() <= 0x20) {
        field = field.first(field.size() - 1);
    }
    return {field.begin(), std::ranges::find(field, std::uint8_t{0})};
}

} // namespace tonewright
