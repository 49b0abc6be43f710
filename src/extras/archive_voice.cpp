// Looks through the places of a voice for one that still holds it.
#include "extras/archive_voice.h"

#include "extras/dump_reader.h"

#include <utility>

namespace tonewright {
namespace {

std::optional<KeptVoice> ReadAt(const ArchivePlaceInfo &place, VoiceIdentity identity) {
    std::optional<KeptVoice> voice = ReadVoiceAt(place.path.c_str(), place.place);
    if (voice && IdentityOf(voice->Voice()) != identity) {
        voice.reset(); // the file has changed
    }
    return voice;
}

} // namespace

std::optional<KeptVoice> ReadArchiveVoice(const ArchiveIndex &index, ArchiveHit hit) {
    const VoiceIdentity identity = VoiceInfo(index, hit.voice).identity;
    const ArchivePlaceInfo chosen = PlaceInfo(index, hit.place);
    if (auto voice = ReadAt(chosen, identity)) {
        return voice;
    }
    // Elsewhere it may have another name.
    std::optional<KeptVoice> other;
    for (const ArchivePlaceNumber number : PlacesOf(index, hit.voice)) {
        const ArchivePlaceInfo place = PlaceInfo(index, number);
        if (number == hit.place || (other && place.name != chosen.name)) {
            continue;
        }
        if (auto voice = ReadAt(place, identity)) {
            if (place.name == chosen.name) {
                return voice;
            }
            other = std::move(voice);
        }
    }
    return other;
}

} // namespace tonewright
