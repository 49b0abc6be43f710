// Whole files read, written and copied.
#include "common/file_bytes.h"

#include "common/open_file.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <span>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes CountingBytes(std::size_t size) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i * 7 + i / 251);
    }
    return bytes;
}

// A reader of `source` that delivers no more than the next of `sizes` at each call, and then all
// that it is asked for.
struct SlowReader {
    std::span<const std::uint8_t> source;
    std::vector<std::size_t> sizes;
    std::vector<std::size_t> asked = {};

    std::size_t operator()(std::uint8_t *place, std::size_t size) {
        const std::size_t call = asked.size();
        asked.push_back(size);
        const std::size_t got =
            std::min({call < sizes.size() ? sizes[call] : size, size, source.size()});
        std::copy_n(source.begin(), got, place);
        source = source.subspan(got);
        return got;
    }
};

TEST(ReadInPieces, GoesOnAfterLessThanItAskedFor) {
    const Bytes all = CountingBytes(200000);
    SlowReader reader{all, {1, 7}};
    Bytes bytes(300000, 0xEE); // what was there before is no part of it
    ReadInPieces(all.size(), bytes, std::ref(reader));
    EXPECT_EQ(bytes, all);
    EXPECT_EQ(reader.asked,
              (std::vector<std::size_t>{65536, 65535, 65528, 65536, 200000 - 131072}));
}

TEST(ReadInPieces, EndsWhereNothingMoreComes) {
    const Bytes all = CountingBytes(70);
    SlowReader reader{all, {1, 7, 62}};
    Bytes bytes(300, 0xEE);
    ReadInPieces(100, bytes, std::ref(reader));
    EXPECT_EQ(bytes, all);
    EXPECT_EQ(reader.asked, (std::vector<std::size_t>{100, 99, 92, 30}));
    SlowReader empty{{}, {}};
    ReadInPieces(100, bytes, std::ref(empty));
    EXPECT_EQ(bytes, Bytes());
    ReadInPieces(0, bytes, std::ref(reader));
    EXPECT_EQ(reader.asked.size(), 4u);
}

TEST(ReadBytesOf, GoesOnWhereTheFileStandsAndStopsAtItsEnd) {
    const TempFolder folder;
    const Bytes all = CountingBytes(200000);
    const FilePointer file = OpenFile(folder.Write("file", all).c_str(), "rb");
    ASSERT_TRUE(file);
    EXPECT_EQ(ReadBytesOf(file.get(), 0), Bytes());
    EXPECT_EQ(ReadBytesOf(file.get(), 160), Bytes(all.begin(), all.begin() + 160));
    EXPECT_EQ(ReadBytesOf(file.get(), 100000), Bytes(all.begin() + 160, all.begin() + 100160));
    EXPECT_EQ(ReadBytesOf(file.get(), std::size_t{1} << 40),
              Bytes(all.begin() + 100160, all.end()));
    EXPECT_EQ(ReadBytesOf(file.get(), 1), Bytes());
}

TEST(ReadOnBehind, KeepsWhatIsThereAndCountsItToo) {
    const TempFolder folder;
    const Bytes all = CountingBytes(200000);
    const FilePointer file = OpenFile(folder.Write("file", all).c_str(), "rb");
    ASSERT_TRUE(file);
    Bytes bytes = ReadBytesOf(file.get(), 160);
    ReadOnBehind(bytes, file.get(), 160);
    EXPECT_EQ(bytes, Bytes(all.begin(), all.begin() + 160));
    ReadOnBehind(bytes, file.get(), 1000);
    EXPECT_EQ(bytes, Bytes(all.begin(), all.begin() + 1000));
    ReadOnBehind(bytes, file.get(), 7);
    EXPECT_EQ(bytes, Bytes(all.begin(), all.begin() + 1000));
    ReadOnBehind(bytes, file.get(), std::size_t{1} << 40);
    EXPECT_EQ(bytes, all);
}

TEST(DeleteWrittenFile, RemovesAFileAndNothingElse) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.path / "folder");
    DeleteWrittenFile(folder.Write("file", CountingBytes(10)).c_str());
    DeleteWrittenFile(folder.File("folder").c_str());
    DeleteWrittenFile(folder.File("missing").c_str());
    EXPECT_FALSE(folder.Holds("file"));
    EXPECT_TRUE(folder.Holds("folder"));
}

TEST(ReadFileBytes, GivesTheWholeFileWithinTheLimit) {
    const TempFolder folder;
    for (const std::size_t size : {0u, 1u, 4104u, 65535u, 65536u, 65537u, 300000u}) {
        const std::string path = folder.Write("file", CountingBytes(size));
        EXPECT_EQ(ReadFileBytes(path.c_str(), size), CountingBytes(size)) << size;
        EXPECT_EQ(ReadFileBytes(path.c_str(), size + 1), CountingBytes(size)) << size;
        EXPECT_EQ(ReadFileBytes(path.c_str(), 1u << 30), CountingBytes(size)) << size;
    }
}

TEST(ReadFileBytes, StopsAtTheLimit) {
    const TempFolder folder;
    const std::string path = folder.Write("file", CountingBytes(200000));
    for (const std::size_t limit : {0u, 1u, 164u, 65536u, 65537u, 199999u}) {
        EXPECT_EQ(ReadFileBytes(path.c_str(), limit), CountingBytes(limit)) << limit;
    }
}

TEST(ReadFileBytes, GivesNothingForAMissingFileOrAFolder) {
    const TempFolder folder;
    EXPECT_FALSE(ReadFileBytes(folder.File("missing").c_str(), 10));
    EXPECT_FALSE(ReadFileBytes(folder.path.string().c_str(), 10));
    EXPECT_FALSE(ReadFileBytes("", 10));
}

TEST(WriteFileBytes, ReplacesTheContents) {
    const TempFolder folder;
    const std::string path = folder.Write("Größe ♪", CountingBytes(500));
    EXPECT_EQ(WriteFileBytes(path.c_str(), CountingBytes(20)), WriteOutcome::Done);
    EXPECT_EQ(ReadTestFile(path), CountingBytes(20));
    EXPECT_EQ(WriteFileBytes(path.c_str(), {}), WriteOutcome::Done);
    EXPECT_EQ(ReadTestFile(path), Bytes());
    EXPECT_EQ(WriteFileBytes(path.c_str(), CountingBytes(100000)), WriteOutcome::Done);
    EXPECT_EQ(ReadTestFile(path), CountingBytes(100000));
}

TEST(WriteFileBytes, OpensNeitherAFolderNorAFileInAMissingOne) {
    const TempFolder folder;
    EXPECT_EQ(WriteFileBytes(folder.path.string().c_str(), CountingBytes(3)),
              WriteOutcome::NotOpened);
    EXPECT_EQ(WriteFileBytes(folder.File("none/file").c_str(), CountingBytes(3)),
              WriteOutcome::NotOpened);
    EXPECT_TRUE(std::filesystem::is_directory(folder.path));
}

TEST(CopyFileTo, ReplacesTheTarget) {
    const TempFolder folder;
    const std::string from = folder.Write("from", CountingBytes(300));
    const std::string to = folder.Write("to", CountingBytes(9000));
    EXPECT_TRUE(CopyFileTo(from.c_str(), to.c_str()));
    EXPECT_EQ(ReadTestFile(to), CountingBytes(300));
    EXPECT_EQ(ReadTestFile(from), CountingBytes(300));
}

TEST(CopyFileTo, CopiesAnEmptyAndALargeFile) {
    const TempFolder folder;
    for (const std::size_t size : {0u, 3000000u}) {
        const std::string from = folder.Write("from", CountingBytes(size));
        EXPECT_TRUE(CopyFileTo(from.c_str(), folder.File("to").c_str())) << size;
        EXPECT_EQ(ReadTestFile(folder.File("to")), CountingBytes(size)) << size;
    }
}

TEST(CopyFileTo, LeavesAFolderInPlaceOfTheTarget) {
    const TempFolder folder;
    const std::string from = folder.Write("from", CountingBytes(300));
    std::filesystem::create_directory(folder.File("to"));
    EXPECT_FALSE(CopyFileTo(from.c_str(), folder.File("to").c_str()));
    EXPECT_TRUE(std::filesystem::is_directory(folder.File("to")));
}

TEST(CopyFileTo, OfAMissingFileOrAFolderFails) {
    const TempFolder folder;
    EXPECT_FALSE(CopyFileTo(folder.File("missing").c_str(), folder.File("to").c_str()));
    EXPECT_FALSE(CopyFileTo(folder.path.string().c_str(), folder.File("to").c_str()));
    EXPECT_FALSE(folder.Holds("to"));
}

TEST(CopyFileTo, OntoItselfFailsAndKeepsTheFile) {
    const TempFolder folder;
    const std::string path = folder.Write("file", CountingBytes(300));
    EXPECT_FALSE(CopyFileTo(path.c_str(), path.c_str()));
    EXPECT_EQ(ReadTestFile(path), CountingBytes(300));
}

TEST(FileExists, IsTrueForAFileOnly) {
    const TempFolder folder;
    EXPECT_TRUE(FileExists(folder.Write("Ordnung ♪", {}).c_str()));
    EXPECT_FALSE(FileExists(folder.File("missing").c_str()));
    EXPECT_FALSE(FileExists(folder.path.string().c_str()));
    EXPECT_FALSE(FileExists(""));
}

} // namespace
} // namespace tonewright
