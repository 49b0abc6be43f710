// Judges and lists the files of the reface DX: a header tells count and size of the records behind
// it.
#include "drivers/reface_dx/file_formats.h"

#include "common/text.h"
#include "drivers/reface_dx/files.h"
#include "drivers/reface_dx/voice_codec.h"

#include <algorithm>
#include <optional>

namespace tonewright {
namespace {

// The header of a file of either kind; nothing when it is none.
template <RefaceFileKind Kind>
std::optional<RefaceFileHeader> RefaceHeader(std::span<const std::uint8_t> bytes) {
    auto header = RefaceHeaderOf(bytes, Kind);
    if (header && Kind == RefaceFileKind::SingleVoice) {
        header->voiceCount = 1; // the first record is taken, whatever the count
    }
    return header;
}

template <RefaceFileKind Kind> std::uint64_t RefaceWholeSize(std::span<const std::uint8_t> bytes) {
    const auto header = RefaceHeader<Kind>(bytes);
    return RefaceFileHeaderSize +
           (header ? std::uint64_t{header->voiceCount} * header->recordSize : 0);
}

template <RefaceFileKind Kind> std::size_t RefaceCount(std::span<const std::uint8_t> bytes) {
    const auto header = RefaceHeader<Kind>(bytes);
    return header ? header->voiceCount : 0;
}

template <RefaceFileKind Kind>
VoiceFileReport JudgeRefaceFile(std::span<const std::uint8_t> bytes) {
    constexpr bool IsBank = Kind == RefaceFileKind::Bank;
    if (bytes.size() < RefaceFileHeaderSize) {
        return RefusedFile(FormatText("%zu bytes, and its header alone should have %zu",
                                      bytes.size(), RefaceFileHeaderSize));
    }
    const auto header = RefaceHeader<Kind>(bytes);
    if (!header) {
        constexpr auto Other = IsBank ? RefaceFileKind::SingleVoice : RefaceFileKind::Bank;
        if (RefaceHeaderOf(bytes, Other)) {
            return RefusedFile(IsBank ? "a reface DX single-voice file, not a bank"
                                      : "a reface DX bank, not a single-voice file");
        }
        return RefusedFile(IsBank ? "not a reface DX bank" : "not a reface DX single-voice file");
    }
    if (header->voiceCount > 0 && header->recordSize == 0) {
        return RefusedFile("its records have no bytes");
    }
    if (bytes.size() < RefaceWholeSize<Kind>(bytes)) {
        if (!IsBank) {
            return ShortFile(bytes.size(), RefaceWholeSize<Kind>(bytes));
        }
        return RefusedFile(FormatText("cut off: %zu of %zu voices are there",
                                      (bytes.size() - RefaceFileHeaderSize) / header->recordSize,
                                      std::size_t{header->voiceCount}));
    }
    return {};
}

template <RefaceFileKind Kind>
VoiceLine RefaceLine(std::span<const std::uint8_t> bytes, std::size_t index) {
    const std::size_t size = RefaceHeader<Kind>(bytes)->recordSize;
    const auto record = bytes.subspan(RefaceFileHeaderSize + index * size, size);
    const VoiceObject voice{{record.begin(), record.end()}};
    const auto common = RefaceCommonOf(voice);
    if (!common || HeaderOf(voice)->driverId != RefaceDriverId) {
        return {UnknownVoiceName, 0};
    }
    return {RefaceNameText(&(*common)[RefaceVoice::name]), (*common)[RefaceVoice::algorithm] + 1};
}

bool IsZero(std::span<const std::uint8_t> bytes) {
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte == 0; });
}

// A block that did not arrive is left with the zeros that it began with, which no voice has.
bool RefaceCameWhole(const VoiceObject *voice) {
    const auto parts = voice ? RefaceVoiceOf(*voice) : std::nullopt;
    bool isWhole = parts && !IsZero(parts->common);
    for (std::size_t n = 0; isWhole && n < RefaceOperatorCount; ++n) {
        isWhole = !IsZero(parts->operators.subspan(n * RefaceOperatorSize, RefaceOperatorSize));
    }
    return isWhole;
}

bool RefaceCanBeSent(const VoiceObject *voice) {
    return voice && RefaceVoiceOf(*voice) && HeaderOf(*voice)->driverId == RefaceDriverId;
}

} // namespace

const VoiceFileFormat RefaceBankFormat = {.driver = RefaceDriverId,
                                          .kind = VoiceFileKind::Bank,
                                          .size = RefaceBankFileSize,
                                          .wholeSize = RefaceWholeSize<RefaceFileKind::Bank>,
                                          .judge = JudgeRefaceFile<RefaceFileKind::Bank>,
                                          .count = RefaceCount<RefaceFileKind::Bank>,
                                          .voice = RefaceLine<RefaceFileKind::Bank>,
                                          .canBeWritten = RefaceVoiceCanBeWritten,
                                          .canBeSent = RefaceCanBeSent,
                                          .cameWhole = RefaceCameWhole,
                                          .voicesWritten = RefaceVoicesPerBank};

const VoiceFileFormat RefaceVoiceFormat = {.driver = RefaceDriverId,
                                           .kind = VoiceFileKind::SingleVoice,
                                           .size = RefaceVoiceFileSize,
                                           .wholeSize =
                                               RefaceWholeSize<RefaceFileKind::SingleVoice>,
                                           .judge = JudgeRefaceFile<RefaceFileKind::SingleVoice>,
                                           .count = RefaceCount<RefaceFileKind::SingleVoice>,
                                           .voice = RefaceLine<RefaceFileKind::SingleVoice>,
                                           .canBeWritten = RefaceVoiceCanBeWritten,
                                           .canBeSent = RefaceCanBeSent,
                                           .cameWhole = RefaceCameWhole,
                                           .voicesWritten = 1};

} // namespace tonewright
