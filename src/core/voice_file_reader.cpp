// Looks into voice files without opening them as a document.
#include "core/voice_file_reader.h"

#include "common/file_bytes.h"
#include "common/open_file.h"
#include "common/text.h"
#include "core/dispatch.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

namespace tonewright {
namespace {

constexpr VoiceFileKind Kinds[] = {VoiceFileKind::Bank, VoiceFileKind::SingleVoice};

// The format of a row's files and their extension; no format while the row does not read them.
struct RowFormat {
    const VoiceFileFormat *format = nullptr;
    const char *extension = "";
};

RowFormat FormatOfRow(const SynthDriver &driver, VoiceFileKind kind) {
    if (kind == VoiceFileKind::Bank) {
        return {driver.OpenBank ? driver.bankFormat : nullptr, driver.bankExtension};
    }
    return {driver.ImportVoice ? driver.voiceFormat : nullptr, driver.voiceExtension};
}

// What a file that was refused is instead, as far as a family knows it: ", but ..." behind the
// reason, or nothing.
std::string Recognise(const char *path) {
    constexpr std::size_t Limit = 1024 * 1024; // bytes that are looked through
    const auto bytes = ReadFileBytes(path, Limit);
    for (const SynthDriver *driver : SynthDrivers) {
        for (const VoiceFileKind kind : Kinds) {
            const VoiceFileFormat *format = FormatOfRow(*driver, kind).format;
            const bool knows = bytes && format && format->recognise;
            if (std::string what = knows ? format->recognise(*bytes) : ""; !what.empty()) {
                return ", but " + what;
            }
        }
    }
    return "";
}

} // namespace

const VoiceFileFormat *FormatOfDriver(DriverId driver, VoiceFileKind kind) {
    const SynthDriver *row = DriverOfId(driver);
    return row ? FormatOfRow(*row, kind).format : nullptr;
}

const VoiceFileFormat *FormatOfPath(std::string_view path) {
    const std::string extension = ExtensionOfPath(path);
    for (const SynthDriver *driver : SynthDrivers) {
        for (const VoiceFileKind kind : Kinds) {
            const RowFormat row = FormatOfRow(*driver, kind);
            if (row.format && EqualNoCase(extension, row.extension)) {
                return row.format;
            }
        }
    }
    return nullptr;
}

const VoiceFileFormat *BankFormatOfPath(std::string_view path) {
    const VoiceFileFormat *format = FormatOfPath(path);
    return format && format->kind == VoiceFileKind::Bank ? format : nullptr;
}

std::string UnknownFormatReason() {
    std::string extensions;
    for (const SynthDriver *driver : SynthDrivers) {
        for (const VoiceFileKind kind : Kinds) {
            if (const RowFormat row = FormatOfRow(*driver, kind); row.format) {
                extensions += (extensions.empty() ? "" : ", ") + std::string(row.extension);
            }
        }
    }
    return "the extension is none of those that can be read (" + extensions + ")";
}

std::string UnknownFormatReason(const char *path) {
    return UnknownFormatReason() + Recognise(path);
}

VoiceFileReport ReadVoiceFile(const char *path, const VoiceFileFormat &format,
                              std::vector<std::uint8_t> &bytes, std::uint64_t *unread) {
    errno = 0;
    std::uint64_t size = 0;
    if (!ReadStartOfFile(path, format.size, bytes, &size)) {
        bytes.clear();
        return RefusedFile(std::string("not readable: ") + std::strerror(errno));
    }
    // The start of a larger file than the program writes tells how much of it there is to read.
    const std::uint64_t wholeSize = format.wholeSize(bytes);
    if (wholeSize > format.size && bytes.size() == format.size) {
        constexpr std::uint64_t Limit = std::numeric_limits<std::size_t>::max();
        if (auto whole =
                ReadFileBytes(path, static_cast<std::size_t>(std::min(wholeSize, Limit)))) {
            bytes = std::move(*whole);
        }
    }
    if (unread) {
        *unread = size > wholeSize ? size - wholeSize : 0;
    }
    VoiceFileReport report = format.judge(bytes);
    if (report.state == VoiceFileState::Refused) {
        report.reason += Recognise(path);
    }
    return report;
}

std::string ReasonNotOpened(const char *path, const VoiceFileFormat *format) {
    if (!format) {
        return UnknownFormatReason();
    }
    std::vector<std::uint8_t> bytes;
    const VoiceFileReport report = ReadVoiceFile(path, *format, bytes);
    switch (report.state) {
    case VoiceFileState::Ok:
        return "could not be opened";
    case VoiceFileState::Refused:
        return report.reason;
    case VoiceFileState::Damaged:
        break;
    }
    return report.reason + ", and the answer was not to open it";
}

} // namespace tonewright
