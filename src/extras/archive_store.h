// The archive: an index of the voices in the user's own files, which stay where they are. One
// SQLite database beside the settings; its tables are made and read here and nowhere else.
//
//   archive  one row: a count of changes, and by which versions of reader and features it was made
//   folder   folders that the user has added (root = 1) and those below them that hold files
//   file     one row for each file that was looked at: folder, name (bytes as the system gives
//            them), size, times, sum over its content, number of voices, or why not
//   places   for each file with voices, in pieces of 4,096 voices: 20 bytes for each voice in the
//            order of the file (identity 8, name 10, family 1, algorithm 1; little-endian). The
//            id of a piece is that of the file, times 2^20, and the number of the piece from 0.
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
#include <string_view>
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

// What the next update does with a file that has not changed.
enum class ReadAgain : std::uint8_t {
    No,
    Unsure, // reads it: it could not be read, or may have changed in the moment of reading
    Anew,   // reads it and writes its voices anew: this version finds, or notes, more than the last
};

struct ArchiveFile {
    std::int64_t id = 0;
    std::int64_t folder = 0;
    std::string name = {}; // without the folder, UTF-8 or whatever bytes the system gives
    std::uint64_t size = 0;
    std::int64_t changed = 0;  // nanoseconds since 1970
    std::int64_t status = 0;   // the same of whatever the system notes of it, its name too; or 0
    std::uint64_t content = 0; // sum over all bytes
    std::uint64_t voices = 0;
    ReadAgain again = ReadAgain::No;
    std::string fault = {}; // in words, why it could not be read; empty
};

struct ArchiveFolder {
    std::int64_t id = 0;
    std::string path = {}; // absolute, without a slash at the end
    bool root = false;     // added by the user
};
// The path of a file in a folder.
std::string PathInFolder(const std::string &folder, const std::string &name);
// Whether a path is that of the folder, or of what stands in it or below.
bool IsInArchiveFolder(std::string_view path, std::string_view folder);
// A folder as the archive calls it: absolute, without a slash at the end.
std::string ArchiveFolderPath(const std::string &path);

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
// A store is used by one thread at a time; several threads open one each.
ArchiveStorePointer OpenArchive(const std::string &path, ArchiveUse use, ArchiveError &error,
                                int waitMilliseconds = 10000);

// While it lives, all that is read stands as it was when it was first read, whatever another
// program writes meanwhile.
struct ArchiveSnapshot {
    ArchiveStore &store;

    explicit ArchiveSnapshot(ArchiveStore &store);
    ~ArchiveSnapshot();
    ArchiveSnapshot(const ArchiveSnapshot &) = delete;
    ArchiveSnapshot &operator=(const ArchiveSnapshot &) = delete;
};

// All folders and files, by their ids. False from `visit` ends it; false is returned for an error.
std::vector<ArchiveFolder> ArchiveFolders(ArchiveStore &store, ArchiveError &error);
bool ReadArchiveFiles(ArchiveStore &store, const std::function<bool(ArchiveFile &)> &visit,
                      ArchiveError &error);
// The places of all files, file after file in the order of their ids: in pieces, `first` being the
// place in the file (from 0) of the first one.
using PlacesVisitor = std::function<bool(std::int64_t file, std::uint64_t first,
                                         std::span<const ArchivePlace> places)>;
bool ReadArchivePlaces(ArchiveStore &store, const PlacesVisitor &visit, ArchiveError &error);
// None when another version of the program has made them.
using FeaturesVisitor = std::function<bool(std::int64_t file, std::uint64_t first,
                                           std::span<const VoiceFeatures> features)>;
bool ReadArchiveFeatures(ArchiveStore &store, const FeaturesVisitor &visit, ArchiveError &error);

// Whether there are voices, or may be, that cannot be compared before the next update: another
// version of the program has read them.
bool LacksArchiveFeatures(ArchiveStore &store, ArchiveError &error);

// Grows with every change of the archive by whichever program: whoever has read it reads anew when
// it differs.
std::int64_t ArchiveVersion(ArchiveStore &store, ArchiveError &error);

// SQLite's own check of the whole file, and ours: each file has as many places as it says. Lines
// for the user; none when all is sound.
std::vector<std::string> CheckArchive(ArchiveStore &store, ArchiveError &error);

// Removes a folder that was added, and all files below it but those of folders in it that were
// added by themselves. False where it is not in the archive, or where `goOn` (may be empty) has
// ended the wait for another program.
bool ForgetFolder(ArchiveStore &store, const std::string &path, ArchiveError &error,
                  const std::function<bool()> &goOn = {});

// What follows is for bringing the archive up (extras/archive_update.h).

// One program at a time does so, while others read. The others are waited for as long as the store
// says, if `goOn` (asked from time to time) does not end it; false then, without an error.
bool LockArchive(ArchiveStore &store, const std::function<bool()> &goOn, ArchiveError &error);
void UnlockArchive(ArchiveStore &store);

// Writing stands between begin and end; all of it is there afterwards, or none. After an error the
// batch is dropped.
bool BeginArchiveBatch(ArchiveStore &store, ArchiveError &error);
bool EndArchiveBatch(ArchiveStore &store, ArchiveError &error);
bool DropArchiveBatch(ArchiveStore &store, ArchiveError &error);
// Writes a row anew; one with the id 0 is a new row, which gets its id.
bool PutArchiveFolder(ArchiveStore &store, ArchiveFolder &folder, ArchiveError &error);
bool PutArchiveFile(ArchiveStore &store, ArchiveFile &file, ArchiveError &error);
// Voices of a file behind those that it has: `first` is a multiple of ArchivePieceVoices.
constexpr std::size_t ArchivePieceVoices = 4096;
bool PutArchiveVoices(ArchiveStore &store, std::int64_t file, std::uint64_t first,
                      std::span<const ArchivePlace> places, std::span<const VoiceFeatures> features,
                      ArchiveError &error);
bool RemoveArchiveVoices(ArchiveStore &store, std::int64_t file, ArchiveError &error);
// With its voices.
bool RemoveArchiveFile(ArchiveStore &store, std::int64_t file, ArchiveError &error);
// Folders without files that the user has not added.
bool RemoveEmptyArchiveFolders(ArchiveStore &store, ArchiveError &error);

} // namespace tonewright
