// Packs voices for a drag, and unpacks what was dropped.
#include "extras/voice_parcel.h"

#include <utility>

namespace tonewright {
namespace {

constexpr auto LastForm = static_cast<std::uint8_t>(VoiceForm::Reface);

} // namespace

std::vector<std::uint8_t> PackVoices(std::span<const KeptVoice> voices) {
    std::vector<std::uint8_t> parcel;
    for (const KeptVoice &voice : voices) {
        parcel.push_back(static_cast<std::uint8_t>(voice.form));
        parcel.insert(parcel.end(), voice.bytes.begin(), voice.bytes.end());
    }
    return parcel;
}

std::optional<std::vector<KeptVoice>> UnpackVoices(std::span<const std::uint8_t> parcel) {
    std::vector<KeptVoice> voices;
    while (!parcel.empty()) {
        if (parcel[0] > LastForm) {
            return std::nullopt;
        }
        const auto form = static_cast<VoiceForm>(parcel[0]);
        const std::size_t size = SizeOfForm(form);
        if (parcel.size() - 1 < size) {
            return std::nullopt;
        }
        const auto bytes = parcel.subspan(1, size);
        voices.push_back({.form = form, .bytes = {bytes.begin(), bytes.end()}});
        parcel = parcel.subspan(1 + size);
    }
    if (voices.empty()) {
        return std::nullopt;
    }
    return voices;
}

} // namespace tonewright
