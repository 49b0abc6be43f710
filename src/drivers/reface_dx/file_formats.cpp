// Judges and lists the files of the reface DX: a header tells count and size of the records behind
// it.
#include "drivers/reface_dx/file_formats.h"

#include "common/text.h"
#include "drivers/reface_dx/files.h"
#include "drivers/reface_dx/voice_codec.h"

#include <algorithm>
#include <array>
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
VoiceObject RefaceRecord(std::span<const std::uint8_t> bytes, std::size_t index) {
    const std::size_t size = RefaceHeader<Kind>(bytes)->recordSize;
    const auto record = bytes.subspan(RefaceFileHeaderSize + index * size, size);
    return {{record.begin(), record.end()}};
}

template <RefaceFileKind Kind>
VoiceLine RefaceLine(std::span<const std::uint8_t> bytes, std::size_t index) {
    const VoiceObject voice = RefaceRecord<Kind>(bytes, index);
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

// A record has a size of its own, to which a block from another program may not keep.
bool RefaceIsKept(const VoiceObject *voice) {
    return voice->bytes.size() == RefaceVoiceObjectSize;
}

bool RefaceFitsAMessage(const VoiceObject *voice) {
    const auto parts = voice ? RefaceVoiceOf(*voice) : std::nullopt;
    return !parts || (FitAMessage(parts->common) && FitAMessage(parts->operators));
}

template <RefaceFileKind Kind> std::size_t RefaceMisfits(std::span<const std::uint8_t> bytes) {
    const std::size_t count = RefaceCount<Kind>(bytes);
    std::size_t misfits = 0;
    for (std::size_t index = 0; index < count; ++index) {
        const VoiceObject voice = RefaceRecord<Kind>(bytes, index);
        misfits += RefaceCanBeSent(&voice) && !RefaceFitsAMessage(&voice);
    }
    return misfits;
}

// Whether the first message is one of those that a voice is sent in: the frame around its blocks,
// or its common block.
bool IsRefaceDump(std::span<const std::uint8_t> bytes) {
    constexpr std::array<int, 9> Frame = {0xF0, 0x43, -1,   0x7F, 0x1C,
                                          0x00, -1,   0x05, -1}; // -1: any
    constexpr std::uint8_t FrameOfBlocks = 0x0E, CommonBlock = 0x30;
    const auto fits = [](std::uint8_t byte, int wanted) { return wanted < 0 || byte == wanted; };
    return bytes.size() >= Frame.size() &&
           std::ranges::equal(bytes.first<Frame.size()>(), Frame, fits) && bytes[2] < 0x10 &&
           (bytes[8] == FrameOfBlocks || bytes[8] == CommonBlock);
}

template <RefaceFileKind Kind> bool IsWhole(std::span<const std::uint8_t> bytes) {
    return JudgeRefaceFile<Kind>(bytes).state == VoiceFileState::Ok;
}

std::string RecogniseRefaceBank(std::span<const std::uint8_t> bytes) {
    return IsWhole<RefaceFileKind::Bank>(bytes) ? "a reface DX bank" : "";
}

std::string RecogniseRefaceVoice(std::span<const std::uint8_t> bytes) {
    if (IsRefaceDump(bytes)) {
        return "a reface DX voice as the instrument sends it";
    }
    return IsWhole<RefaceFileKind::SingleVoice>(bytes) ? "a reface DX single-voice file" : "";
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
                                          .isKept = RefaceIsKept,
                                          .canBeSent = RefaceCanBeSent,
                                          .fitsAMessage = RefaceFitsAMessage,
                                          .misfits = RefaceMisfits<RefaceFileKind::Bank>,
                                          .recognise = RecogniseRefaceBank,
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
                                           .isKept = RefaceIsKept,
                                           .canBeSent = RefaceCanBeSent,
                                           .fitsAMessage = RefaceFitsAMessage,
                                           .misfits = RefaceMisfits<RefaceFileKind::SingleVoice>,
                                           .recognise = RecogniseRefaceVoice,
                                           .cameWhole = RefaceCameWhole,
                                           .voicesWritten = 1};

} // namespace tonewright
