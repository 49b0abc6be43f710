// What an archive knows, and what stands in the files themselves, for tests that compare both.
#pragma once

#include "common/utf8_path.h"
#include "extras/archive_store.h"
#include "extras/archive_update.h"
#include "extras/dump_reader.h"
#include "support/dump_bytes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace tonewright {

using Identities = std::vector<VoiceIdentity>;
using ArchiveContents = std::map<std::string, Identities>; // by the paths of files with voices

// A bank of which each number has voices of its own.
inline DumpBytes NumberedBank(int number) {
    DumpBytes voices = TestPackedVoices(32);
    for (std::size_t voice = 0; voice < 32; ++voice) {
        voices[128 * voice] = static_cast<std::uint8_t>(number % 100);
        voices[128 * voice + 1] = static_cast<std::uint8_t>(number / 100 % 100);
    }
    return TestBulk(0x09, voices);
}

inline Identities IdentitiesOfFile(const std::string &path) {
    Identities identities;
    DumpVisitor visitor;
    visitor.voice = [&](const FoundVoice &found) {
        identities.push_back(IdentityOf(found.voice));
        return true;
    };
    ReadDumps(path.c_str(), visitor);
    return identities;
}

// Regular files in the folder and below, as they stand.
inline ArchiveContents ContentsOfFolder(const std::string &folder) {
    ArchiveContents contents;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(PathOfUtf8(folder))) {
        const std::string path = Utf8OfPath(entry.path());
        Identities identities = entry.is_regular_file() ? IdentitiesOfFile(path) : Identities();
        if (!identities.empty()) {
            contents[ArchiveFolderPath(path)] = std::move(identities);
        }
    }
    return contents;
}

// Another program that brings the archive up, as long as it lives: whoever else wants to waits.
struct OtherArchiveUpdate {
    ArchiveError error;
    ArchiveStorePointer store = OpenArchive(ArchivePath(), ArchiveUse::Write, error);

    OtherArchiveUpdate() { EXPECT_TRUE(store && LockArchive(*store, {}, error)) << error.text; }
};

struct ArchiveRows {
    std::map<std::string, ArchiveFile> files; // by path
    ArchiveContents contents;
};

inline ArchiveRows RowsOf(ArchiveStore &store) {
    ArchiveError error;
    std::map<std::int64_t, std::string> folders, paths;
    for (const ArchiveFolder &folder : ArchiveFolders(store, error)) {
        folders[folder.id] = folder.path;
    }
    ArchiveRows rows;
    const auto takeFile = [&](ArchiveFile &file) {
        paths[file.id] = PathInFolder(folders.at(file.folder), file.name);
        EXPECT_FALSE(rows.files.contains(paths[file.id])) << paths[file.id] << " is there twice";
        rows.files[paths[file.id]] = file;
        return true;
    };
    EXPECT_TRUE(ReadArchiveFiles(store, takeFile, error)) << error.text;
    const auto takePlaces = [&](std::int64_t file, std::uint64_t first,
                                std::span<const ArchivePlace> places) {
        Identities &identities = rows.contents[paths.at(file)];
        EXPECT_EQ(identities.size(), first);
        for (const ArchivePlace &place : places) {
            identities.push_back(place.identity);
        }
        return true;
    };
    EXPECT_TRUE(ReadArchivePlaces(store, takePlaces, error)) << error.text;
    return rows;
}

} // namespace tonewright
