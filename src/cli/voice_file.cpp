// Looks into voice files without opening them as a document.
#include "cli/voice_file.h"

#include "common/file_bytes.h"
#include "common/text.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/files.h"
#include "drivers/reface_dx/voice_codec.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

namespace tonewright {
namespace {

VoiceFileReport Refused(std::string reason) {
    return {VoiceFileState::Refused, std::move(reason)};
}

VoiceFileReport TooShort(std::size_t size, std::uint64_t wholeSize) {
    return Refused(
        FormatText("%zu bytes instead of %llu", size, static_cast<unsigned long long>(wholeSize)));
}

// ---- DX7: one system-exclusive message of a fixed size

VoiceFileReport ReportOf(Dx7FileVerdict verdict, std::size_t size, std::size_t wholeSize,
                         const char *whatItShouldBe) {
    switch (verdict) {
    case Dx7FileVerdict::Ok:
        return {};
    case Dx7FileVerdict::TooShort:
        return TooShort(size, wholeSize);
    case Dx7FileVerdict::WrongHeader:
        break;
    case Dx7FileVerdict::WrongCount:
        return {VoiceFileState::Damaged, "wrong byte count"};
    case Dx7FileVerdict::WrongChecksum:
        return {VoiceFileState::Damaged, "wrong checksum"};
    }
    return Refused(std::string("not a ") + whatItShouldBe);
}

VoiceFileReport JudgeDx7BankFile(std::span<const std::uint8_t> bytes) {
    return ReportOf(JudgeDx7Bank(bytes), bytes.size(), Dx7BankFileSize, "DX7 32-voice dump");
}

VoiceFileReport JudgeDx7VoiceFile(std::span<const std::uint8_t> bytes) {
    return ReportOf(JudgeDx7Voice(bytes), bytes.size(), Dx7VoiceFileSize, "DX7 single-voice file");
}

// A DX7 file is as large and has as many voices as each other of its kind.
template <std::uint64_t Number> std::uint64_t Always(std::span<const std::uint8_t>) {
    return Number;
}

VoiceLine Dx7Line(Dx7UnpackedConst voice) {
    return {Dx7NameText(&voice[Dx7Voice::name]), voice[Dx7Voice::algorithm] + 1};
}

VoiceLine Dx7BankLine(std::span<const std::uint8_t> bytes, std::size_t index) {
    std::array<std::uint8_t, Dx7VoiceSize> voice;
    UnpackDx7Voice(
        voice,
        bytes.subspan(Dx7FileHeaderSize + Dx7PackedVoiceSize * index).first<Dx7PackedVoiceSize>());
    return Dx7Line(voice);
}

VoiceLine Dx7VoiceFileLine(std::span<const std::uint8_t> bytes, std::size_t) {
    return Dx7Line(bytes.subspan<Dx7FileHeaderSize>().first<Dx7VoiceSize>());
}

// Rows without a voice become voices of zero bytes.
bool Dx7CanBeWritten(const VoiceObject *) {
    return true;
}

bool Dx7CanBeSent(const VoiceObject *voice) {
    return Dx7VoiceOf(voice).has_value();
}

// ---- reface DX: a header that tells count and size of the records behind it

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
        return Refused(FormatText("%zu bytes, and its header alone should have %zu", bytes.size(),
                                  RefaceFileHeaderSize));
    }
    const auto header = RefaceHeader<Kind>(bytes);
    if (!header) {
        constexpr auto Other = IsBank ? RefaceFileKind::SingleVoice : RefaceFileKind::Bank;
        if (RefaceHeaderOf(bytes, Other)) {
            return Refused(IsBank ? "a reface DX single-voice file, not a bank"
                                  : "a reface DX bank, not a single-voice file");
        }
        return Refused(IsBank ? "not a reface DX bank" : "not a reface DX single-voice file");
    }
    if (header->voiceCount > 0 && header->recordSize == 0) {
        return Refused("its records have no bytes");
    }
    if (bytes.size() < RefaceWholeSize<Kind>(bytes)) {
        if (!IsBank) {
            return TooShort(bytes.size(), RefaceWholeSize<Kind>(bytes));
        }
        return Refused(FormatText("cut off: %zu of %zu voices are there",
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
    if (!common || HeaderOf(voice)->driverId != RefaceDxDriverId) {
        return {"Unknown Voice", 0};
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
    return voice && RefaceVoiceOf(*voice) && HeaderOf(*voice)->driverId == RefaceDxDriverId;
}

// ----

constexpr VoiceFileFormat Formats[] = {
    {.driver = Dx7DriverId,
     .kind = VoiceFileKind::Bank,
     .size = Dx7BankFileSize,
     .wholeSize = Always<Dx7BankFileSize>,
     .judge = JudgeDx7BankFile,
     .count = Always<Dx7VoicesPerBank>,
     .voice = Dx7BankLine,
     .canBeWritten = Dx7CanBeWritten,
     .canBeSent = Dx7CanBeSent,
     .cameWhole = nullptr,
     .voicesWritten = Dx7VoicesPerBank},
    {.driver = Dx7DriverId,
     .kind = VoiceFileKind::SingleVoice,
     .size = Dx7VoiceFileSize,
     .wholeSize = Always<Dx7VoiceFileSize>,
     .judge = JudgeDx7VoiceFile,
     .count = Always<1>,
     .voice = Dx7VoiceFileLine,
     .canBeWritten = Dx7CanBeWritten,
     .canBeSent = Dx7CanBeSent,
     .cameWhole = nullptr,
     .voicesWritten = 1},
    {.driver = RefaceDxDriverId,
     .kind = VoiceFileKind::Bank,
     .size = RefaceBankFileSize,
     .wholeSize = RefaceWholeSize<RefaceFileKind::Bank>,
     .judge = JudgeRefaceFile<RefaceFileKind::Bank>,
     .count = RefaceCount<RefaceFileKind::Bank>,
     .voice = RefaceLine<RefaceFileKind::Bank>,
     .canBeWritten = RefaceVoiceCanBeWritten,
     .canBeSent = RefaceCanBeSent,
     .cameWhole = RefaceCameWhole,
     .voicesWritten = RefaceVoicesPerBank},
    {.driver = RefaceDxDriverId,
     .kind = VoiceFileKind::SingleVoice,
     .size = RefaceVoiceFileSize,
     .wholeSize = RefaceWholeSize<RefaceFileKind::SingleVoice>,
     .judge = JudgeRefaceFile<RefaceFileKind::SingleVoice>,
     .count = RefaceCount<RefaceFileKind::SingleVoice>,
     .voice = RefaceLine<RefaceFileKind::SingleVoice>,
     .canBeWritten = RefaceVoiceCanBeWritten,
     .canBeSent = RefaceCanBeSent,
     .cameWhole = RefaceCameWhole,
     .voicesWritten = 1},
};

// The extension of a format's files; null while its driver does not read them.
const char *ExtensionOf(const VoiceFileFormat &format) {
    const SynthDriver *driver = DriverOfId(format.driver);
    if (!driver) {
        return nullptr;
    }
    if (format.kind == VoiceFileKind::Bank) {
        return driver->OpenBank ? driver->bankExtension : nullptr;
    }
    return driver->ImportVoice ? driver->voiceExtension : nullptr;
}

} // namespace

const VoiceFileFormat *FormatOfDriver(DriverId driver, VoiceFileKind kind) {
    for (const VoiceFileFormat &format : Formats) {
        if (format.driver == driver && format.kind == kind && ExtensionOf(format)) {
            return &format;
        }
    }
    return nullptr;
}

const VoiceFileFormat *FormatOfPath(std::string_view path) {
    const std::string extension = ExtensionOfPath(path);
    for (const VoiceFileFormat &format : Formats) {
        const char *own = ExtensionOf(format);
        if (own && EqualNoCase(extension, own)) {
            return &format;
        }
    }
    return nullptr;
}

std::string UnknownFormatReason() {
    std::string extensions;
    for (const VoiceFileFormat &format : Formats) {
        if (const char *extension = ExtensionOf(format)) {
            extensions += extensions.empty() ? "" : ", ";
            extensions += extension;
        }
    }
    return "the extension is none of those that can be read (" + extensions + ")";
}

VoiceFileReport ReadVoiceFile(const char *path, const VoiceFileFormat &format,
                              std::vector<std::uint8_t> &bytes) {
    errno = 0;
    auto read = ReadFileBytes(path, format.size);
    if (!read) {
        bytes.clear();
        return Refused(std::string("not readable: ") + std::strerror(errno));
    }
    bytes = std::move(*read);
    // The start of a larger file than the program writes tells how much of it there is to read.
    const std::uint64_t wholeSize = format.wholeSize(bytes);
    if (wholeSize > format.size && bytes.size() == format.size) {
        constexpr std::uint64_t Limit = std::numeric_limits<std::size_t>::max();
        read = ReadFileBytes(path, static_cast<std::size_t>(std::min(wholeSize, Limit)));
        if (read) {
            bytes = std::move(*read);
        }
    }
    return format.judge(bytes);
}

} // namespace tonewright
