// Looks into voice files without opening them as a document.
#include "cli/voice_file.h"

#include "common/file_bytes.h"
#include "common/text.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace tonewright {
namespace {

VoiceFileReport Refused(std::string reason) {
    return {VoiceFileState::Refused, std::move(reason)};
}

VoiceFileReport ReportOf(Dx7FileVerdict verdict, std::size_t size, std::size_t wholeSize,
                         const char *whatItShouldBe) {
    switch (verdict) {
    case Dx7FileVerdict::Ok:
        return {};
    case Dx7FileVerdict::TooShort:
        return Refused(FormatText("%zu bytes instead of %zu", size, wholeSize));
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

VoiceLine Dx7Line(Dx7UnpackedConst voice) {
    return {Dx7NameText(&voice[Dx7Voice::name]), voice[Dx7Voice::algorithm] + 1};
}

VoiceLine Dx7BankLine(std::span<const std::uint8_t> bytes, int index) {
    std::array<std::uint8_t, Dx7VoiceSize> voice;
    UnpackDx7Voice(
        voice,
        bytes.subspan(Dx7FileHeaderSize + Dx7PackedVoiceSize * index).first<Dx7PackedVoiceSize>());
    return Dx7Line(voice);
}

VoiceLine Dx7VoiceFileLine(std::span<const std::uint8_t> bytes, int) {
    return Dx7Line(bytes.subspan<Dx7FileHeaderSize>().first<Dx7VoiceSize>());
}

constexpr VoiceFileFormat Formats[] = {
    {Dx7DriverId, VoiceFileKind::Bank, Dx7BankFileSize, Dx7VoicesPerBank, JudgeDx7BankFile,
     Dx7BankLine},
    {Dx7DriverId, VoiceFileKind::SingleVoice, Dx7VoiceFileSize, 1, JudgeDx7VoiceFile,
     Dx7VoiceFileLine},
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
    return format.judge(bytes);
}

} // namespace tonewright
