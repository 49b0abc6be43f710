// The archive: an index of the voices in the user's own files, which stay where they are. One
// SQLite database beside the settings; its tables are made and read here and nowhere else.
//
//   folder   folders that the user has added (root = 1) and those below them that hold files
//   file     one row for each file that was looked at: folder, name (bytes as the system gives
//            them), size, time of change, sum over its content, number of voices, or why not
//   places   for each file with voices, in pieces: 20 bytes for each voice in the order of the file
//            (identity 8, name 10, family 1, algorithm 1; little-endian)
//   features in pieces as above: what `similar` compares (VoiceFeatureSize bytes for each voice)
//
// Voices that are equal have the same identity; that they are one voice is seen when the places are
// in memory (extras/archive_index.h), so that adding files only ever appends.
#pragma once

#include "extras/voice_identity.h"
#include "extras/voice_similarity.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

// "Archive.sqlite" beside the settings.
std::string ArchivePath();

// A voice at its place in a file.
struct ArchivePlace {
    VoiceIdentity identity = 0;
    std::array<std::uint8_t, 10> name = {}; // as in the voice
    std::uint8_t family = 0;                // ArchiveFamily...
    std::uint8_t algorithm = 0;             // from 1

    bool operator==(const ArchivePlace &) const = default;
};
constexpr std::uint8_t ArchiveFamilyDx7 = 0;
constexpr std::uint8_t ArchiveFamilyReface = 1;
DriverId DriverOfArchiveFamily(std::uint8_t family);
std::uint8_t ArchiveFamilyOfForm(VoiceForm form);

struct ArchiveFile {
    std::int64_t id = 0;
    std::int64_t folder = 0;
    std::string name; // without the folder, UTF-8 or whatever bytes the system gives
    std::uint64_t size = 0;
    std::int64_t changed = 0;  // nanoseconds since 1970
    std::uint64_t content = 0; // sum over all bytes
    std::uint64_t voices = 0;
    std::string fault; // in words, why it could not be read; empty
};

struct ArchiveFolder {
    std::int64_t id = 0;
    std::string path;  // absolute, without a slash at the end
    bool root = false; // added by the user
};

// An error is a text for the user: "The archive is in use by another program.", "The disk is full."
struct ArchiveError {
    std::string text; // empty: none
    explicit operator bool() const { return !text.empty(); }
};

enum class ArchiveUse { Read, Write };

struct ArchiveStore; // sqlite connection with its statements
struct CloseArchive {
    void operator()(ArchiveStore *store) const;
};
using ArchiveStorePointer = std::unique_ptr<ArchiveStore, CloseArchive>;

// Opens, makes (Write) or brings an older one to the present schema (Write). Read of an archive
// that does not exist gives no store and no error. Waits up to `waitMilliseconds` for another
// program that writes. A damaged file, or one of a newer version, is an error and stays as it is.
ArchiveStorePointer OpenArchive(const std::string &path, ArchiveUse use, ArchiveError &error,
                                int waitMilliseconds = 10000);

// All folders and files. `visit` may be called in any order; false ends it.
std::vector<ArchiveFolder> ArchiveFolders(ArchiveStore &store, ArchiveError &error);
bool ReadArchiveFiles(ArchiveStore &store, const std::function<bool(ArchiveFile &)> &visit,
                      ArchiveError &error);
// The places of all files, file after file in the order of their ids: in pieces, `first` being the
// place in the file (from 0) of the first one.
using PlacesVisitor = std::function<bool(std::int64_t file, std::uint64_t first,
                                         std::span<const ArchivePlace> places)>;
bool ReadArchivePlaces(ArchiveStore &store, const PlacesVisitor &visit, ArchiveError &error);
using FeaturesVisitor = std::function<bool(std::int64_t file, std::uint64_t first,
                                           std::span<const VoiceFeatures> features)>;
bool ReadArchiveFeatures(ArchiveStore &store, const FeaturesVisitor &visit, ArchiveError &error);

// Grows with every change of the archive by whichever program: whoever has read it reads anew when
// it differs.
std::int64_t ArchiveVersion(ArchiveStore &store, ArchiveError &error);

// SQLite's own check of the whole file, and ours: each file has as many places as it says. Lines
// for the user; none when all is sound.
std::vector<std::string> CheckArchive(ArchiveStore &store, ArchiveError &error);

// Removes a folder that was added, and all files below it. False where it is not in the archive.
bool ForgetFolder(ArchiveStore &store, const std::string &path, ArchiveError &error);

} // namespace tonewright
