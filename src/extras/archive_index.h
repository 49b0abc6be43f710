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

// What an index is made of. `places` hold those of a file in their order, `first` being the place
// of the first one; the others may stand in any order.
struct ArchiveContent {
    struct Places {
        std::int64_t file = 0;
        std::uint64_t first = 0;
        std::vector<ArchivePlace> places;
    };
    std::vector<ArchiveFolder> folders;
    std::vector<ArchiveFile> files;
    std::vector<Places> places;
};
std::shared_ptr<const ArchiveIndex> MakeArchiveIndex(const ArchiveContent &content);

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

// What is searched for. All that is given must hold.
//
// The text is Latin-1: words with blanks (or any control characters) between them, each of which
// stands somewhere in the name, in any order and also within a longer word. Letters stand for both
// cases, and only with the same accent: "PIANO" finds "E.Piano 1". A word of more than ten
// characters finds nothing; no word finds everything.
//
// In each order places that are equal in the column follow by name, then by path, then by place in
// the file, also when the column itself descends. Names are in the order of their characters,
// letters counting as small ones; files by their whole path, byte for byte, and there by place.
struct ArchiveQuery {
    std::string text = {};
    int family = -1;           // ArchiveFamily...; -1: either
    int algorithm = 0;         // from 1; 0: any
    std::string folder = {};   // absolute path; places in it or below; empty: any
    bool onlyRepeated = false; // voices that are found more than once
    ArchiveColumn sort = ArchiveColumn::Name;
    bool descending = false;
};

// The voices that have a place that fits, each once, in order; with the place by which each is
// shown: the first in this order that fits. The first query that sorts by another column than the
// name takes two or three times as long as those that follow.
struct ArchiveHit {
    ArchiveVoiceNumber voice;
    ArchivePlaceNumber place;

    bool operator==(const ArchiveHit &) const = default;
};
std::vector<ArchiveHit> FindInArchive(const ArchiveIndex &index, const ArchiveQuery &query);

// The nearest voices, the nearest first, without the voice itself (by identity). That there are
// none before the archive is updated, since another version has made it, is an error.
struct SimilarVoice {
    ArchiveVoiceNumber voice;
    float distance;
};
std::vector<SimilarVoice> FindSimilar(const ArchiveIndex &index, ArchiveStore &store,
                                      const DumpVoice &voice, std::size_t count,
                                      ArchiveError &error);

} // namespace tonewright
