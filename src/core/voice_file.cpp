// The reports that formats share.
#include "core/voice_file.h"

#include "common/text.h"

#include <utility>

namespace tonewright {

VoiceFileReport RefusedFile(std::string reason) {
    return {VoiceFileState::Refused, std::move(reason)};
}

VoiceFileReport ShortFile(std::size_t size, std::uint64_t wholeSize) {
    return RefusedFile(
        FormatText("%zu bytes instead of %llu", size, static_cast<unsigned long long>(wholeSize)));
}

} // namespace tonewright
