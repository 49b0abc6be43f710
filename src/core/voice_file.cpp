// The reports and the question that formats share.
#include "core/voice_file.h"

#include "common/desktop.h"
#include "common/text.h"

#include <cstring>
#include <utility>

namespace tonewright {

VoiceFileReport RefusedFile(std::string reason) {
    return {VoiceFileState::Refused, std::move(reason)};
}

VoiceFileReport ShortFile(std::size_t size, std::uint64_t wholeSize) {
    return RefusedFile(
        FormatText("%zu bytes instead of %llu", size, static_cast<unsigned long long>(wholeSize)));
}

bool FitAMessage(std::span<const std::uint8_t> bytes) {
    // Eight bytes at a time, since whole banks are looked through.
    constexpr std::uint64_t HighBits = 0x8080808080808080;
    std::uint64_t bits = 0;
    std::size_t at = 0;
    for (std::uint64_t word; at + sizeof word <= bytes.size(); at += sizeof word) {
        std::memcpy(&word, &bytes[at], sizeof word);
        bits |= word;
    }
    for (; at < bytes.size(); ++at) {
        bits |= bytes[at];
    }
    return (bits & HighBits) == 0;
}

bool AskToOpenDamaged(QWidget *window, const char *path) {
    return AskYesNo(window, FormatText("The data in the document %s may be damaged.\n\n"
                                       "Do you wish to open it anyway?",
                                       FileNameOfPath(path))) == ResultYes;
}

} // namespace tonewright
