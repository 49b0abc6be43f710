// Reads and writes the parts of a reface DX voice.
#include "drivers/reface_dx/voice_codec.h"

#include "common/text.h"

#include <algorithm>
#include <array>

namespace tonewright {

VoiceObject MakeRefaceVoiceObject() {
    constexpr std::array<std::uint8_t, RefaceOperatorsSize> zeros{};
    return MakeVoiceObject(RefaceDriverId, std::span(zeros).first<RefaceCommonSize>(), zeros);
}

std::optional<RefaceVoiceParts> RefaceVoiceOf(const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    if (!parts || parts->payload.size() < RefaceCommonSize ||
        parts->extra.size() < RefaceOperatorsSize) {
        return std::nullopt;
    }
    return RefaceVoiceParts{.common = parts->payload.first<RefaceCommonSize>(),
                            .operators = parts->extra.first<RefaceOperatorsSize>()};
}

std::optional<MutableRefaceVoiceParts> MutableRefaceVoiceOf(VoiceObject &voice) {
    const auto parts = RefaceVoiceOf(voice);
    if (!parts) {
        return std::nullopt;
    }
    const auto offset = [&voice](std::span<const std::uint8_t> part) {
        return static_cast<std::size_t>(part.data() - voice.bytes.data());
    };
    const std::span<std::uint8_t> bytes = voice.bytes;
    return MutableRefaceVoiceParts{
        .common = bytes.subspan(offset(parts->common)).first<RefaceCommonSize>(),
        .operators = bytes.subspan(offset(parts->operators)).first<RefaceOperatorsSize>()};
}

std::optional<std::span<const std::uint8_t, RefaceCommonSize>>
RefaceCommonOf(const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    if (!parts || parts->payload.size() < RefaceCommonSize) {
        return std::nullopt;
    }
    return parts->payload.first<RefaceCommonSize>();
}

std::optional<std::span<const std::uint8_t, RefaceOperatorSize>>
RefaceOperatorOf(const VoiceObject &voice, std::size_t index) {
    const auto parts = PayloadOf(voice);
    const std::size_t start = index * RefaceOperatorSize;
    if (!parts || parts->extra.size() < start + RefaceOperatorSize) {
        return std::nullopt;
    }
    return parts->extra.subspan(start).first<RefaceOperatorSize>();
}

const char *RefaceNameText(const std::uint8_t *tenBytes) {
    static std::string text;
    text = MakeVoiceNameText({tenBytes, RefaceNameSize});
    return text.c_str();
}

int RefaceVoiceName(std::string &name, const VoiceObject &voice) {
    const auto common = RefaceCommonOf(voice);
    if (!common) {
        return 0;
    }
    name = RefaceNameText(&(*common)[RefaceVoice::name]);
    return static_cast<int>(name.size());
}

int RefaceVoiceAlgorithm(const VoiceObject &voice) {
    const auto common = RefaceCommonOf(voice);
    return common ? (*common)[RefaceVoice::algorithm] + 1 : 0;
}

std::string RefacePlaceText(int index) {
    return FormatText("%d (Bank %d - %d)", index + 1, index / RefaceProgramsPerBank + 1,
                      index % RefaceProgramsPerBank + 1);
}

} // namespace tonewright
