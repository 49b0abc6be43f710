#include "extras/archive_store.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "extras/sqlite_database.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <thread>

namespace tonewright {
namespace {

// Voices that differ, and of which each number is seen in each field.
ArchivePlace PlaceOf(std::uint64_t number) {
    ArchivePlace place{.identity = 0x0102030405060708 + number, .family = ArchiveFamilyReface};
    std::ranges::fill(place.name, static_cast<std::uint8_t>('A' + number % 26));
    place.algorithm = static_cast<std::uint8_t>(1 + number % 32);
    return place;
}

VoiceFeatures FeaturesOfNumber(std::uint64_t number) {
    VoiceFeatures features{};
    features.front() = static_cast<std::uint8_t>(number);
    features.back() = static_cast<std::uint8_t>(number >> 8);
    return features;
}

struct ArchiveStoreTest : testing::Test {
    TempFolder folder;
    std::string path = folder.File("Archive.sqlite");
    ArchiveError error;

    ArchiveStorePointer Open(ArchiveUse use, int wait = 0) {
        return OpenArchive(path, use, error, wait);
    }
    void Run(const char *sql) {
        SqliteFault fault;
        const SqlitePointer database = OpenSqlite(path, SqliteUse::Write, 0, fault);
        ASSERT_TRUE(database);
        EXPECT_TRUE(RunSql(*database, sql)) << TakeFailure(*database).text;
    }
    std::int64_t Number(const char *sql) {
        SqliteFault fault;
        const SqlitePointer database = OpenSqlite(path, SqliteUse::Write, 0, fault);
        return NumberOfSql(*database, sql).value();
    }
};

// A file of so many voices in a folder, in a batch of its own. Gives the id of the file.
std::int64_t PutFile(ArchiveStore &store, const std::string &folderPath, const std::string &name,
                     std::uint64_t voices, bool root = true) {
    ArchiveError error;
    ArchiveFolder folder{.path = folderPath, .root = root};
    std::vector<ArchivePlace> places;
    std::vector<VoiceFeatures> features;
    for (std::uint64_t number = 0; number < voices; ++number) {
        places.push_back(PlaceOf(number));
        features.push_back(FeaturesOfNumber(number));
    }
    ArchiveFile file{.name = name, .voices = voices};
    EXPECT_TRUE(BeginArchiveBatch(store, error));
    EXPECT_TRUE(PutArchiveFolder(store, folder, error));
    file.folder = folder.id;
    EXPECT_TRUE(PutArchiveFile(store, file, error));
    EXPECT_TRUE(PutArchiveVoices(store, file.id, 0, places, features, error));
    EXPECT_TRUE(EndArchiveBatch(store, error)) << error.text;
    return file.id;
}

std::vector<std::string> NamesIn(ArchiveStore &store) {
    std::vector<std::string> names;
    ArchiveError error;
    const auto take = [&](ArchiveFile &file) {
        names.push_back(file.name);
        return true;
    };
    EXPECT_TRUE(ReadArchiveFiles(store, take, error)) << error.text;
    return names;
}

TEST_F(ArchiveStoreTest, WhereThereIsNoArchiveThereIsNothingToReadAndNothingIsMade) {
    EXPECT_FALSE(Open(ArchiveUse::Read));
    EXPECT_FALSE(error);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path));

    folder.WriteText("Archive.sqlite", "");
    EXPECT_FALSE(Open(ArchiveUse::Read));
    EXPECT_FALSE(error);
}

TEST_F(ArchiveStoreTest, MakesTheFolderThatItStandsIn) {
    path = folder.File("new/one/Archive.sqlite");
    EXPECT_TRUE(Open(ArchiveUse::Write)) << error.text;
    EXPECT_TRUE(folder.Holds("new/one/Archive.sqlite"));
}

TEST_F(ArchiveStoreTest, FoldersAndFilesComeBackAsTheyWerePut) {
    {
        const ArchiveStorePointer store = Open(ArchiveUse::Write);
        ASSERT_TRUE(store) << error.text;
        ASSERT_TRUE(BeginArchiveBatch(*store, error));
        ArchiveFolder root{.path = "/banks", .root = true}, below{.path = "/banks/\xFF"};
        EXPECT_TRUE(PutArchiveFolder(*store, root, error));
        EXPECT_TRUE(PutArchiveFolder(*store, below, error));
        ArchiveFile file{.folder = below.id,
                         .name = "no \xC3\x28 text",
                         .size = 1ULL << 40,
                         .changed = -5,
                         .status = 1'700'000'000'123'456'789,
                         .content = ~0ULL,
                         .voices = 0,
                         .again = ReadAgain::Unsure,
                         .fault = "Permission denied"};
        EXPECT_TRUE(PutArchiveFile(*store, file, error));
        EXPECT_EQ(file.id, 1);
        ArchiveFile other{.folder = root.id, .name = "plain"};
        EXPECT_TRUE(PutArchiveFile(*store, other, error));
        other.name = "renamed";
        EXPECT_TRUE(PutArchiveFile(*store, other, error));
        EXPECT_EQ(other.id, 2);
        root.root = false;
        EXPECT_TRUE(PutArchiveFolder(*store, root, error));
        EXPECT_TRUE(EndArchiveBatch(*store, error));
    }
    const ArchiveStorePointer store = Open(ArchiveUse::Read);
    ASSERT_TRUE(store) << error.text;
    const std::vector<ArchiveFolder> folders = ArchiveFolders(*store, error);
    ASSERT_EQ(folders.size(), 2u);
    EXPECT_EQ(folders[0].path, "/banks");
    EXPECT_FALSE(folders[0].root);
    EXPECT_EQ(folders[1].path, "/banks/\xFF");
    std::vector<ArchiveFile> files;
    EXPECT_TRUE(ReadArchiveFiles(
        *store,
        [&](ArchiveFile &file) {
            files.push_back(file);
            return true;
        },
        error));
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].folder, folders[1].id);
    EXPECT_EQ(files[0].name, "no \xC3\x28 text");
    EXPECT_EQ(files[0].size, 1ULL << 40);
    EXPECT_EQ(files[0].changed, -5);
    EXPECT_EQ(files[0].status, 1'700'000'000'123'456'789);
    EXPECT_EQ(files[0].content, ~0ULL);
    EXPECT_EQ(files[0].again, ReadAgain::Unsure);
    EXPECT_EQ(files[0].fault, "Permission denied");
    EXPECT_EQ(files[1].name, "renamed");
    EXPECT_EQ(files[1].fault, "");
}

TEST_F(ArchiveStoreTest, VoicesComeBackInPiecesInTheOrderOfFiles) {
    {
        const ArchiveStorePointer store = Open(ArchiveUse::Write);
        ASSERT_TRUE(store);
        PutFile(*store, "/a", "large", 5000);
        PutFile(*store, "/b", "small", 3);
    }
    const ArchiveStorePointer store = Open(ArchiveUse::Read);
    ASSERT_TRUE(store);
    struct Piece {
        std::int64_t file;
        std::uint64_t first;
        std::size_t count;
        bool operator==(const Piece &) const = default;
    };
    std::vector<Piece> places, features;
    EXPECT_TRUE(ReadArchivePlaces(
        *store,
        [&](std::int64_t file, std::uint64_t first, std::span<const ArchivePlace> span) {
            places.push_back({file, first, span.size()});
            for (std::size_t voice = 0; voice < span.size(); ++voice) {
                EXPECT_EQ(span[voice], PlaceOf(first + voice));
            }
            return true;
        },
        error));
    EXPECT_TRUE(ReadArchiveFeatures(
        *store,
        [&](std::int64_t file, std::uint64_t first, std::span<const VoiceFeatures> span) {
            features.push_back({file, first, span.size()});
            for (std::size_t voice = 0; voice < span.size(); ++voice) {
                EXPECT_EQ(span[voice], FeaturesOfNumber(first + voice));
            }
            return true;
        },
        error));
    const std::vector<Piece> expected = {{1, 0, 4096}, {1, 4096, 904}, {2, 0, 3}};
    EXPECT_EQ(places, expected);
    EXPECT_EQ(features, expected);

    int visits = 0;
    EXPECT_TRUE(ReadArchivePlaces(
        *store,
        [&](std::int64_t, std::uint64_t, std::span<const ArchivePlace>) { return ++visits < 2; },
        error));
    EXPECT_EQ(visits, 2);
}

TEST_F(ArchiveStoreTest, APlaceIsTwentyBytes) {
    {
        const ArchiveStorePointer store = Open(ArchiveUse::Write);
        ASSERT_TRUE(store);
        PutFile(*store, "/a", "one", 1);
    }
    SqliteFault fault;
    const SqlitePointer database = OpenSqlite(path, SqliteUse::Read, 0, fault);
    const SqliteStatement row =
        PrepareSql(*database, "SELECT voices FROM places WHERE id = 1 << 20");
    ASSERT_TRUE(NextRow(*database, row));
    const std::span<const std::uint8_t> bytes = BytesAt(row, 0);
    const std::vector<std::uint8_t> expected = {8,   7,   6,   5,   4,   3,   2,   1,   'A', 'A',
                                                'A', 'A', 'A', 'A', 'A', 'A', 'A', 'A', 1,   1};
    EXPECT_EQ(std::vector(bytes.begin(), bytes.end()), expected);
}

TEST_F(ArchiveStoreTest, FamiliesAreThoseOfTheDrivers) {
    EXPECT_EQ(DriverOfArchiveFamily(ArchiveFamilyDx7), Dx7DriverId);
    EXPECT_EQ(DriverOfArchiveFamily(ArchiveFamilyReface), RefaceDriverId);
    EXPECT_EQ(ArchiveFamilyOfForm(VoiceForm::Dx7Packed), ArchiveFamilyDx7);
    EXPECT_EQ(ArchiveFamilyOfForm(VoiceForm::Dx7Stored), ArchiveFamilyDx7);
    EXPECT_EQ(ArchiveFamilyOfForm(VoiceForm::Reface), ArchiveFamilyReface);
}

TEST_F(ArchiveStoreTest, WhatIsNotEndedIsNotThere) {
    {
        const ArchiveStorePointer store = Open(ArchiveUse::Write);
        ASSERT_TRUE(store);
        PutFile(*store, "/a", "kept", 1);
        ArchiveFile file{.folder = 1, .name = "lost"};
        EXPECT_TRUE(BeginArchiveBatch(*store, error));
        EXPECT_TRUE(PutArchiveFile(*store, file, error));
    }
    const ArchiveStorePointer store = Open(ArchiveUse::Read);
    ASSERT_TRUE(store);
    EXPECT_EQ(NamesIn(*store), std::vector<std::string>{"kept"});
}

TEST_F(ArchiveStoreTest, TheVersionGrowsWithEachBatchOfWhicheverStore) {
    const ArchiveStorePointer store = Open(ArchiveUse::Write);
    ASSERT_TRUE(store);
    const ArchiveStorePointer reader = Open(ArchiveUse::Read);
    ASSERT_TRUE(reader);
    const std::int64_t first = ArchiveVersion(*reader, error);
    EXPECT_EQ(ArchiveVersion(*reader, error), first);
    PutFile(*store, "/a", "one", 1);
    EXPECT_GT(ArchiveVersion(*reader, error), first);
    EXPECT_EQ(ArchiveVersion(*reader, error), ArchiveVersion(*store, error));
    EXPECT_FALSE(error);
}

TEST_F(ArchiveStoreTest, OneWritesWhileAnotherReads) {
    const ArchiveStorePointer store = Open(ArchiveUse::Write);
    ASSERT_TRUE(store);
    PutFile(*store, "/a", "one", 1);
    const ArchiveStorePointer reader = Open(ArchiveUse::Read);
    ASSERT_TRUE(reader);
    ArchiveFile file{.folder = 1, .name = "two"};
    ASSERT_TRUE(BeginArchiveBatch(*store, error));
    ASSERT_TRUE(PutArchiveFile(*store, file, error));
    EXPECT_EQ(NamesIn(*reader), std::vector<std::string>{"one"});
    {
        const ArchiveSnapshot snapshot(*reader);
        EXPECT_EQ(NamesIn(*reader), std::vector<std::string>{"one"});
        EXPECT_TRUE(EndArchiveBatch(*store, error)) << error.text;
        EXPECT_EQ(NamesIn(*reader), std::vector<std::string>{"one"});
    }
    EXPECT_EQ(NamesIn(*reader), (std::vector<std::string>{"one", "two"}));
}

TEST_F(ArchiveStoreTest, NothingStandsBesideItOnceItIsClosed) {
    PutFile(*Open(ArchiveUse::Write), "/a", "one", 1);
    NamesIn(*Open(ArchiveUse::Read));
    EXPECT_TRUE(folder.Holds("Archive.sqlite"));
    EXPECT_FALSE(folder.Holds("Archive.sqlite-wal"));
    EXPECT_FALSE(folder.Holds("Archive.sqlite-shm"));
}

TEST_F(ArchiveStoreTest, OnlyOneBringsItUpAtATime) {
    const ArchiveStorePointer first = Open(ArchiveUse::Write), second = Open(ArchiveUse::Write);
    ASSERT_TRUE(first && second);
    ASSERT_TRUE(LockArchive(*first, {}, error)) << error.text;
    EXPECT_FALSE(LockArchive(*second, {}, error));
    EXPECT_EQ(error.text, "The archive is in use by another program.");
    EXPECT_FALSE(ForgetFolder(*second, "/a", error));
    EXPECT_EQ(error.text, "The archive is in use by another program.");
    UnlockArchive(*first);
    EXPECT_TRUE(LockArchive(*second, {}, error));
    EXPECT_FALSE(error);
    UnlockArchive(*second);
}

TEST_F(ArchiveStoreTest, WaitsForTheOtherOne) {
    const ArchiveStorePointer first = Open(ArchiveUse::Write);
    const ArchiveStorePointer second = Open(ArchiveUse::Write, 20000);
    ASSERT_TRUE(first && second);
    ASSERT_TRUE(LockArchive(*first, {}, error));
    int asked = 0;
    EXPECT_FALSE(LockArchive(
        *second, [&] { return ++asked < 2; }, error));
    EXPECT_FALSE(error);
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(LockArchive(
        *second,
        [&] {
            UnlockArchive(*first);
            return true;
        },
        error));
    EXPECT_FALSE(error);
}

TEST_F(ArchiveStoreTest, ForgetsAFolderWithAllBelowIt) {
    const ArchiveStorePointer store = Open(ArchiveUse::Write);
    ASSERT_TRUE(store);
    const std::string banks = ArchiveFolderPath("/banks"); // has the letter of a disk on Windows
    PutFile(*store, banks, "one", 2);
    PutFile(*store, banks + "/below", "two", 5000, false);
    PutFile(*store, banks + " more", "three", 1);
    EXPECT_FALSE(ForgetFolder(*store, "/other", error));
    EXPECT_FALSE(ForgetFolder(*store, "/banks/below", error)); // was not added
    EXPECT_FALSE(ForgetFolder(*store, "/bank", error));
    EXPECT_FALSE(error);
    EXPECT_EQ(NamesIn(*store).size(), 3u);
    EXPECT_TRUE(ForgetFolder(*store, "/banks/", error)) << error.text;
    EXPECT_EQ(NamesIn(*store), std::vector<std::string>{"three"});
    const std::vector<ArchiveFolder> folders = ArchiveFolders(*store, error);
    ASSERT_EQ(folders.size(), 1u);
    EXPECT_EQ(folders[0].path, banks + " more");
    EXPECT_EQ(CheckArchive(*store, error), std::vector<std::string>{});
    EXPECT_EQ(Number("SELECT count(*) FROM places"), 1);
    EXPECT_EQ(Number("SELECT count(*) FROM features"), 1);
    EXPECT_TRUE(LockArchive(*store, {}, error)); // which it has given back
}

TEST_F(ArchiveStoreTest, RoomOfForgottenFilesGoesBackToTheDisk) {
    {
        const ArchiveStorePointer store = Open(ArchiveUse::Write);
        ASSERT_TRUE(store);
        PutFile(*store, ArchiveFolderPath("/banks"), "one", 50'000);
    }
    const auto full = std::filesystem::file_size(path);
    EXPECT_TRUE(ForgetFolder(*Open(ArchiveUse::Write), "/banks", error));
    EXPECT_GT(full, 3'000'000u);
    EXPECT_LT(std::filesystem::file_size(path), 200'000u);
}

TEST_F(ArchiveStoreTest, ChangedVoicesTakeThePlaceOfTheFormerOnes) {
    const ArchiveStorePointer store = Open(ArchiveUse::Write);
    ASSERT_TRUE(store);
    const std::int64_t former = PutFile(*store, "/a", "one", 9000);
    PutFile(*store, "/b", "two", 4);
    ArchiveFile file{.id = former, .folder = 1, .name = "one", .voices = 1};
    const ArchivePlace places[] = {PlaceOf(7)};
    const VoiceFeatures features[] = {FeaturesOfNumber(7)};
    ASSERT_TRUE(BeginArchiveBatch(*store, error));
    EXPECT_TRUE(RemoveArchiveVoices(*store, former, error));
    EXPECT_TRUE(PutArchiveVoices(*store, former, 0, places, features, error));
    EXPECT_TRUE(PutArchiveFile(*store, file, error));
    EXPECT_TRUE(EndArchiveBatch(*store, error));
    EXPECT_EQ(CheckArchive(*store, error), std::vector<std::string>{});
    EXPECT_EQ(Number("SELECT count(*) FROM places"), 2);
}

TEST_F(ArchiveStoreTest, ACheckSaysWhatIsWrong) {
    {
        const ArchiveStorePointer store = Open(ArchiveUse::Write);
        ASSERT_TRUE(store);
        PutFile(*store, "/a", "one", 5000);
        EXPECT_EQ(CheckArchive(*store, error), std::vector<std::string>{});
    }
    const auto lines = [&] { return CheckArchive(*Open(ArchiveUse::Read), error); };
    Run("UPDATE file SET voices = 5001");
    EXPECT_EQ(lines(), (std::vector<std::string>{"/a/one: 5000 places for 5001 voices.",
                                                 "/a/one: features of 5000 voices of 5001."}));
    Run("UPDATE file SET voices = 5000; INSERT INTO places VALUES (7 << 20, zeroblob(20))");
    EXPECT_EQ(lines(), std::vector<std::string>{
                           "There are voices of files that the archive does not have."});
    Run("DELETE FROM places WHERE id = 7 << 20; UPDATE places SET voices = zeroblob(40) WHERE"
        " id = 1 << 20");
    EXPECT_EQ(lines(), std::vector<std::string>{"A piece of the table \"places\" is not whole."});
    Run("UPDATE places SET voices = zeroblob(4096 * 20) WHERE id = 1 << 20; DELETE FROM folder");
    EXPECT_EQ(lines(), std::vector<std::string>{"?/one: its folder is missing."});
    EXPECT_FALSE(error);
}

TEST_F(ArchiveStoreTest, FeaturesOfAnotherVersionAreMadeAnew) {
    PutFile(*Open(ArchiveUse::Write), "/a", "one", 3);
    Run("UPDATE archive SET made = 999");
    int visits = 0;
    const auto count = [&](std::int64_t, std::uint64_t, std::span<const VoiceFeatures>) {
        return ++visits > 0;
    };
    {
        const ArchiveStorePointer reader = Open(ArchiveUse::Read);
        EXPECT_TRUE(ReadArchiveFeatures(*reader, count, error));
        EXPECT_EQ(visits, 0);
    }
    const ArchiveStorePointer store = Open(ArchiveUse::Write);
    ASSERT_TRUE(store) << error.text;
    EXPECT_TRUE(ReadArchiveFiles(
        *store,
        [&](ArchiveFile &file) {
            EXPECT_EQ(file.again, ReadAgain::Anew);
            EXPECT_EQ(file.voices, 3u);
            return true;
        },
        error));
    EXPECT_EQ(Number("SELECT count(*) FROM features"), 0);
    EXPECT_EQ(CheckArchive(*store, error), std::vector<std::string>{});
}

TEST_F(ArchiveStoreTest, AnArchiveOfANewerVersionIsLeftAlone) {
    PutFile(*Open(ArchiveUse::Write), "/a", "one", 3);
    Run("PRAGMA user_version = 99");
    const std::vector<std::uint8_t> former = ReadTestFile(path);
    for (const ArchiveUse use : {ArchiveUse::Read, ArchiveUse::Write}) {
        EXPECT_FALSE(Open(use));
        EXPECT_EQ(error.text, "This archive was made by a newer version of the program.");
    }
    EXPECT_EQ(ReadTestFile(path), former);
}

TEST_F(ArchiveStoreTest, AnotherFileIsLeftAlone) {
    Run("CREATE TABLE recipes (name TEXT); PRAGMA user_version = 1");
    const std::vector<std::uint8_t> former = ReadTestFile(path);
    for (const ArchiveUse use : {ArchiveUse::Read, ArchiveUse::Write}) {
        EXPECT_FALSE(Open(use));
        EXPECT_EQ(error.text, "This file is something else than an archive.");
    }
    EXPECT_EQ(ReadTestFile(path), former);

    folder.WriteText("Archive.sqlite", "a letter to somebody");
    for (const ArchiveUse use : {ArchiveUse::Read, ArchiveUse::Write}) {
        EXPECT_FALSE(Open(use));
        EXPECT_EQ(error.text,
                  "The archive is damaged. It is an index only: delete its file and add your "
                  "folders anew.");
    }
    EXPECT_EQ(ReadTestText(path), "a letter to somebody");
}

TEST_F(ArchiveStoreTest, ADamagedArchiveIsAnErrorAndStays) {
    PutFile(*Open(ArchiveUse::Write), "/a", "one", 5000);
    std::vector<std::uint8_t> bytes = ReadTestFile(path);
    std::fill(bytes.begin() + 16384, bytes.end(), 0xA5);
    folder.Write("Archive.sqlite", bytes);
    for (const ArchiveUse use : {ArchiveUse::Read, ArchiveUse::Write}) {
        EXPECT_FALSE(Open(use));
        EXPECT_EQ(error.text,
                  "The archive is damaged. It is an index only: delete its file and add your "
                  "folders anew.");
    }
    EXPECT_EQ(ReadTestFile(path), bytes);
}

TEST_F(ArchiveStoreTest, DamageThatIsSeenLateIsAnErrorToo) {
    PutFile(*Open(ArchiveUse::Write), "/a", "one", 50'000);
    std::vector<std::uint8_t> bytes = ReadTestFile(path);
    std::fill(bytes.begin() + 10 * 16384, bytes.end(), 0xA5);
    folder.Write("Archive.sqlite", bytes);
    const ArchiveStorePointer store = Open(ArchiveUse::Read);
    ASSERT_TRUE(store) << error.text;
    EXPECT_FALSE(ReadArchivePlaces(
        *store, [](std::int64_t, std::uint64_t, std::span<const ArchivePlace>) { return true; },
        error));
    EXPECT_EQ(error.text,
              "The archive is damaged. It is an index only: delete its file and add your "
              "folders anew.");
    EXPECT_FALSE(CheckArchive(*store, error).empty() && !error);
    EXPECT_EQ(ReadTestFile(path), bytes);
}

TEST_F(ArchiveStoreTest, AFolderInItsPlaceCannotBeOpened) {
    std::filesystem::create_directory(PathOfUtf8(path));
    EXPECT_FALSE(Open(ArchiveUse::Write));
    EXPECT_EQ(error.text, "The archive cannot be opened.");
}

TEST_F(ArchiveStoreTest, FoldersAreCalledInOneWay) {
    const std::string base = folder.File("base");
    std::filesystem::create_directories(PathOfUtf8(base + "/below"));
    const std::string plain = ArchiveFolderPath(base);
    EXPECT_EQ(ArchiveFolderPath(base + "/"), plain);
    EXPECT_EQ(ArchiveFolderPath(base + "//./below/.."), plain);
    EXPECT_EQ(ArchiveFolderPath(base + "/below"), plain + "/below");
    EXPECT_EQ(ArchiveFolderPath("syx"), ArchiveFolderPath("./syx/"));
    EXPECT_EQ(PathInFolder(plain, "x.syx"), plain + "/x.syx");
    EXPECT_TRUE(IsInArchiveFolder("/a/b", "/a"));
    EXPECT_TRUE(IsInArchiveFolder("/a", "/a"));
    EXPECT_FALSE(IsInArchiveFolder("/ab", "/a"));
    EXPECT_FALSE(IsInArchiveFolder("/", "/a"));
}

TEST_F(ArchiveStoreTest, TwoThreadsWithAStoreEach) {
    const ArchiveStorePointer store = Open(ArchiveUse::Write);
    ASSERT_TRUE(store);
    PutFile(*store, "/a", "first", 10);
    std::thread writer([&] {
        for (int file = 0; file < 50; ++file) {
            PutFile(*store, "/a", std::to_string(file), 40);
        }
    });
    const ArchiveStorePointer reader = Open(ArchiveUse::Read);
    std::size_t seen = 0;
    while (reader && seen < 51) {
        const std::size_t now = NamesIn(*reader).size();
        EXPECT_GE(now, seen);
        seen = now;
        EXPECT_EQ(CheckArchive(*reader, error), std::vector<std::string>{});
    }
    writer.join();
    EXPECT_EQ(seen, 51u);
}

// Steps of a schema, of which a file may know fewer than a program.
TEST_F(ArchiveStoreTest, AnOlderFileIsBroughtUpByTheStepsThatItLacks) {
    constexpr const char *steps[] = {
        "CREATE TABLE note (text TEXT); INSERT INTO note VALUES ('first')",
        "ALTER TABLE note ADD COLUMN size INTEGER; UPDATE note SET size = length(text)",
        "INSERT INTO note VALUES ('third', 3)",
    };
    const std::span<const char *const> all(steps);
    SqliteFault fault;
    const SqlitePointer database = OpenSqlite(path, SqliteUse::Write, 0, fault);
    ASSERT_TRUE(database);
    EXPECT_TRUE(BringSqliteUp(*database, all.first(1)));
    EXPECT_EQ(SqliteVersion(*database), 1);
    EXPECT_TRUE(BringSqliteUp(*database, all));
    EXPECT_EQ(SqliteVersion(*database), 3);
    EXPECT_EQ(NumberOfSql(*database, "SELECT sum(size) FROM note"), 8);
    EXPECT_TRUE(BringSqliteUp(*database, all));
    EXPECT_EQ(NumberOfSql(*database, "SELECT count(*) FROM note"), 2);
    EXPECT_FALSE(BringSqliteUp(*database, all.first(2))) << "a newer file";
    EXPECT_EQ(SqliteVersion(*database), 3);
    EXPECT_EQ(TakeFailure(*database).fault, SqliteFault::None);
}

TEST_F(ArchiveStoreTest, AStepThatFailsLeavesTheFileAsItWas) {
    constexpr const char *steps[] = {
        "CREATE TABLE note (text TEXT)",
        "INSERT INTO note VALUES ('kept?')",
        "INSERT INTO nowhere VALUES (1)",
    };
    const std::span<const char *const> all(steps);
    SqliteFault fault;
    const SqlitePointer database = OpenSqlite(path, SqliteUse::Write, 0, fault);
    ASSERT_TRUE(BringSqliteUp(*database, all.first(1)));
    EXPECT_FALSE(BringSqliteUp(*database, all));
    EXPECT_EQ(TakeFailure(*database).text, "no such table: nowhere");
    EXPECT_EQ(SqliteVersion(*database), 1);
    EXPECT_EQ(NumberOfSql(*database, "SELECT count(*) FROM note"), 0);
}

} // namespace
} // namespace tonewright
