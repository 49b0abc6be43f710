// The archive in memory, as the window and the commands ask it: voices (each once, however often it
// is found), where each stands, found by name in the moment of typing.
#pragma once

#include "extras/archive_store.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

struct ArchiveIndex; // read-only once it is made; threads may share it

// Reads all of it. `cancelled` (may be empty) is asked from time to time. Null with an error, or
// when cancelled.
std::shared_ptr<const ArchiveIndex> LoadArchiveIndex(ArchiveStore &store, ArchiveError &error,
                                                     const std::function<bool()> &cancelled = {});

// Voices are numbered from 0, in no order that means anything; places as well.
using ArchiveVoiceNumber = std::uint32_t;
using ArchivePlaceNumber = std::uint32_t;

std::size_t VoiceCount(const ArchiveIndex &index);
std::size_t PlaceCount(const ArchiveIndex &index);

struct ArchiveVoiceInfo {
    VoiceIdentity identity = 0;
    std::uint8_t family = 0, algorithm = 0;
    std::uint32_t places = 0; // times found
};
ArchiveVoiceInfo VoiceInfo(const ArchiveIndex &index, ArchiveVoiceNumber voice);
// All places of a voice, in the order of their files' paths.
std::span<const ArchivePlaceNumber> PlacesOf(const ArchiveIndex &index, ArchiveVoiceNumber voice);

struct ArchivePlaceInfo {
    std::string name;        // Latin-1, as the voice is called there
    std::string path;        // of the file
    std::uint64_t place = 0; // in the file, from 0
};
ArchivePlaceInfo PlaceInfo(const ArchiveIndex &index, ArchivePlaceNumber place);

std::optional<ArchiveVoiceNumber> VoiceOfIdentity(const ArchiveIndex &index,
                                                  VoiceIdentity identity);

enum class ArchiveColumn { Name, Instrument, Algorithm, Times, File, Place };

struct ArchiveQuery {
    std::string text;  // Latin-1; words, each of which the name of a place holds, letters of either
                       // case being the same; empty: all
    int family = -1;   // ArchiveFamily...; -1: either
    int algorithm = 0; // from 1; 0: any
    std::string folder;        // absolute path; places in it or below; empty: any
    bool onlyRepeated = false; // voices that are found more than once
    ArchiveColumn sort = ArchiveColumn::Name;
    bool descending = false;
};

// The voices that have a place that fits, each once, in order; with the place by which each is
// shown: the first that fits.
struct ArchiveHit {
    ArchiveVoiceNumber voice;
    ArchivePlaceNumber place;
};
std::vector<ArchiveHit> FindInArchive(const ArchiveIndex &index, const ArchiveQuery &query);

// The nearest voices, the nearest first, without the voice itself (by identity).
struct SimilarVoice {
    ArchiveVoiceNumber voice;
    float distance;
};
std::vector<SimilarVoice> FindSimilar(const ArchiveIndex &index, ArchiveStore &store,
                                      const DumpVoice &voice, std::size_t count,
                                      ArchiveError &error);

} // namespace tonewright
