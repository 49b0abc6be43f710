// Files that cannot be read, written or copied whole.
#include "common/file_bytes.h"

#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sys/stat.h>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

WriteOutcome WriteWithin(rlim_t size, const std::string &path, const Bytes &bytes) {
    const FileSizeLimit limit(size);
    return WriteFileBytes(path.c_str(), bytes);
}

TEST(WriteFileBytes, DeletesAFileThatFallsShort) {
    const TempFolder folder;
    for (const rlim_t size : {0u, 1u, 999u}) {
        const std::string path = folder.Write("file", {});
        EXPECT_EQ(WriteWithin(size, path, Bytes(1000, 5)), WriteOutcome::Short) << size;
        EXPECT_FALSE(folder.Holds("file")) << size;
    }
    EXPECT_EQ(WriteWithin(1000, folder.File("file"), Bytes(1000, 5)), WriteOutcome::Done);
}

TEST(WriteFileBytes, DeletesWhatFellShortBehindALinkAndKeepsTheLink) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.File("real"));
    const std::string real = folder.Write("real/file", Bytes(10, 1));
    std::filesystem::create_symlink("real/file", folder.File("middle"));
    std::filesystem::create_symlink("middle", folder.File("link"));
    EXPECT_EQ(WriteWithin(999, folder.File("link"), Bytes(1000, 5)), WriteOutcome::Short);
    EXPECT_FALSE(folder.Holds("real/file"));
    EXPECT_TRUE(folder.Holds("middle"));
    EXPECT_TRUE(folder.Holds("link"));
    EXPECT_EQ(WriteWithin(1000, folder.File("link"), Bytes(1000, 5)), WriteOutcome::Done);
    EXPECT_EQ(ReadTestFile(real), Bytes(1000, 5));
}

TEST(WriteFileBytes, LeavesTheReasonOfAShortWriteInErrno) {
    const TempFolder folder;
    std::filesystem::create_symlink("file", folder.File("link"));
    errno = 0;
    EXPECT_EQ(WriteWithin(999, folder.File("link"), Bytes(1000, 5)), WriteOutcome::Short);
    EXPECT_EQ(errno, EFBIG);
}

TEST(WriteFileBytes, LeavesAReadOnlyFileAsItIs) {
    const TempFolder folder;
    const std::string path = folder.Write("file", Bytes{1, 2});
    RunUnprivileged({{path, 0400}}, [&] {
        EXPECT_EQ(WriteFileBytes(path.c_str(), Bytes{3}), WriteOutcome::NotOpened);
    });
    EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2}));
}

TEST(ReadFileBytes, GivesNothingWithoutPermission) {
    const TempFolder folder;
    const std::string path = folder.Write("file", Bytes{1, 2});
    RunUnprivileged({{path, 0}}, [&] { EXPECT_FALSE(ReadFileBytes(path.c_str(), 10)); });
}

TEST(ReadFileBytes, GivesNothingForAPipeWithoutAWriterAndDoesNotWaitForOne) {
    const TempFolder folder;
    const std::string path = MakePipe(folder.File("x.syx"));
    EXPECT_FALSE(ReadFileBytes(path.c_str(), 10));
    std::filesystem::create_symlink(path, folder.File("link.syx"));
    EXPECT_FALSE(ReadFileBytes(folder.File("link.syx").c_str(), 10));
}

TEST(ReadFileBytes, TakesNothingOutOfAPipeThatIsInUse) {
    const TempFolder folder;
    const std::string path = MakePipe(folder.File("x.syx"));
    const BusyPipe pipe(path, Bytes(100, 5));
    EXPECT_FALSE(ReadFileBytes(path.c_str(), 10));
    EXPECT_EQ(pipe.Waiting(), 100);
}

TEST(ReadFileBytes, GivesNothingForADevice) {
    EXPECT_FALSE(ReadFileBytes("/dev/zero", 10));
    EXPECT_FALSE(ReadFileBytes("/dev/null", 10));
}

TEST(ReadFileBytes, LeavesTheReasonInErrno) {
    const TempFolder folder;
    const auto reason = [](const std::string &path) {
        errno = 0;
        EXPECT_FALSE(ReadFileBytes(path.c_str(), 10));
        return errno;
    };
    EXPECT_EQ(reason(folder.File("missing")), ENOENT);
    EXPECT_EQ(reason(folder.path.string()), EISDIR);
    EXPECT_EQ(reason(MakePipe(folder.File("pipe"))), ENOTSUP);
}

TEST(WriteFileBytes, OpensNoPipeAndDoesNotWaitForAReader) {
    const TempFolder folder;
    const std::string path = MakePipe(folder.File("x.syx"));
    EXPECT_EQ(WriteFileBytes(path.c_str(), Bytes(10, 5)), WriteOutcome::NotOpened);
    EXPECT_TRUE(std::filesystem::is_fifo(path));
    const BusyPipe pipe(path, Bytes(100, 5));
    EXPECT_EQ(WriteFileBytes(path.c_str(), Bytes(10, 5)), WriteOutcome::NotOpened);
    EXPECT_EQ(pipe.Waiting(), 100);
    EXPECT_TRUE(std::filesystem::is_fifo(path));
}

TEST(CopyFileTo, NeitherCopiesAPipeNorReplacesOne) {
    const TempFolder folder;
    const std::string pipe = MakePipe(folder.File("x.syx"));
    const std::string file = folder.Write("file", Bytes{1});
    EXPECT_FALSE(CopyFileTo(pipe.c_str(), folder.File("to").c_str()));
    EXPECT_FALSE(folder.Holds("to"));
    EXPECT_FALSE(CopyFileTo(file.c_str(), pipe.c_str()));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST(CopyFileTo, RemovesACopyThatFallsShort) {
    const TempFolder folder;
    const std::string from = folder.Write("from", Bytes(1000, 5));
    const std::string to = folder.Write("to", Bytes(10, 6));
    bool copied = true;
    {
        const FileSizeLimit limit(999);
        copied = CopyFileTo(from.c_str(), to.c_str());
    }
    EXPECT_FALSE(copied);
    EXPECT_FALSE(folder.Holds("to"));
    EXPECT_EQ(ReadTestFile(from), Bytes(1000, 5));
}

TEST(CopyFileTo, ReplacesAReadOnlyCopy) {
    const TempFolder folder;
    const std::string from = folder.Write("from", Bytes{1});
    const std::string to = folder.Write("to", Bytes{2});
    ASSERT_EQ(chmod(to.c_str(), 0400), 0);
    RunUnprivileged({}, [&] { EXPECT_TRUE(CopyFileTo(from.c_str(), to.c_str())); });
    EXPECT_EQ(ReadTestFile(to), Bytes{1});
}

TEST(CopyFileTo, MakesAFileOfItsOwnOfAnotherNameOfTheSameFile) {
    const TempFolder folder;
    const std::string from = folder.Write("from", Bytes{1, 2});
    const std::string to = folder.File("to");
    std::filesystem::create_hard_link(from, to);
    EXPECT_TRUE(CopyFileTo(from.c_str(), to.c_str()));
    EXPECT_EQ(ReadTestFile(to), (Bytes{1, 2}));
    WriteTestFile(from, Bytes{3});
    EXPECT_EQ(ReadTestFile(to), (Bytes{1, 2}));
}

TEST(CopyFileTo, MakesAFileOfItsOwnOfALinkToTheSameFile) {
    const TempFolder folder;
    const std::string from = folder.Write("from", Bytes{1, 2});
    const std::string to = folder.File("to");
    for (const std::string &lead : {std::string("from"), from}) {
        std::filesystem::remove(to);
        std::filesystem::create_symlink(lead, to);
        EXPECT_TRUE(CopyFileTo(from.c_str(), to.c_str()));
        EXPECT_FALSE(std::filesystem::is_symlink(to));
        WriteTestFile(from, Bytes{3});
        EXPECT_EQ(ReadTestFile(to), (Bytes{1, 2}));
        WriteTestFile(from, Bytes{1, 2});
    }
}

TEST(CopyFileTo, OntoTheSameNameFailsHoweverItIsSpelt) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.File("real"));
    const std::string path = folder.Write("real/file", Bytes{1, 2});
    std::filesystem::create_hard_link(path, folder.File("real/other name"));
    std::filesystem::create_directory_symlink("real", folder.File("linked"));
    for (const char *name : {"real/file", "linked/file", "real/./file", "real/../linked//file"}) {
        const std::string other = folder.File(name);
        EXPECT_FALSE(CopyFileTo(path.c_str(), other.c_str())) << name;
        EXPECT_FALSE(CopyFileTo(other.c_str(), path.c_str())) << name;
        EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2}));
    }
    const std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(folder.File("real"));
    EXPECT_FALSE(CopyFileTo("file", path.c_str()));
    EXPECT_FALSE(CopyFileTo(path.c_str(), "file"));
    EXPECT_TRUE(CopyFileTo("file", "other name"));
    std::filesystem::current_path(former);
    EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2}));
}

TEST(CopyFileTo, FromALinkOntoWhatItLeadsToFailsAndKeepsBoth) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.File("real"));
    folder.Write("real/file", Bytes{1, 2});
    std::filesystem::create_symlink("real/file", folder.File("middle"));
    std::filesystem::create_symlink(folder.File("middle"), folder.File("link"));
    for (const char *name : {"real/file", "middle", "link"}) {
        EXPECT_FALSE(CopyFileTo(folder.File("link").c_str(), folder.File(name).c_str())) << name;
        EXPECT_EQ(ReadTestFile(folder.File("link")), (Bytes{1, 2})) << name;
        EXPECT_EQ(ReadTestFile(folder.File("real/file")), (Bytes{1, 2})) << name;
    }
    EXPECT_TRUE(std::filesystem::is_symlink(folder.File("middle")));
}

TEST(CopyFileTo, FromLinksInACircleFails) {
    const TempFolder folder;
    std::filesystem::create_symlink("b", folder.File("a"));
    std::filesystem::create_symlink("a", folder.File("b"));
    EXPECT_FALSE(CopyFileTo(folder.File("a").c_str(), folder.File("to").c_str()));
    EXPECT_FALSE(folder.Holds("to"));
}

TEST(CopyFileTo, ReplacesALinkAndNotWhatItLeadsTo) {
    const TempFolder folder;
    const std::string from = folder.Write("from", Bytes{1});
    const std::string other = folder.Write("other", Bytes{2});
    std::filesystem::create_symlink(other, folder.File("to"));
    EXPECT_TRUE(CopyFileTo(from.c_str(), folder.File("to").c_str()));
    EXPECT_EQ(ReadTestFile(folder.File("to")), Bytes{1});
    EXPECT_EQ(ReadTestFile(other), Bytes{2});
}

} // namespace
} // namespace tonewright
