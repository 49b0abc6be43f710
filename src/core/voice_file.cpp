// The reports and the question that formats share.
#include "core/voice_file.h"

#include "common/desktop.h"
#include "common/text.h"

#include <algorithm>
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
    return std::ranges::all_of(bytes, [](std::uint8_t byte) { return byte < 0x80; });
}

bool AskToOpenDamaged(QWidget *window, const char *path) {
    return AskYesNo(window, FormatText("The data in the document %s may be damaged.\n\n"
                                       "Do you wish to open it anyway?",
                                       FileNameOfPath(path))) == ResultYes;
}

} // namespace tonewright
