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

TEST(WriteFileBytes, LeavesAReadOnlyFileAsItIs) {
    const TempFolder folder;
    ASSERT_EQ(chmod(folder.path.c_str(), 0777), 0);
    const std::string path = folder.Write("file", Bytes{1, 2});
    ASSERT_EQ(chmod(path.c_str(), 0444), 0);
    RunUnprivileged(
        [&] { EXPECT_EQ(WriteFileBytes(path.c_str(), Bytes{3}), WriteOutcome::NotOpened); });
    EXPECT_EQ(ReadTestFile(path), (Bytes{1, 2}));
}

TEST(ReadFileBytes, GivesNothingWithoutPermission) {
    const TempFolder folder;
    ASSERT_EQ(chmod(folder.path.c_str(), 0777), 0);
    const std::string path = folder.Write("file", Bytes{1, 2});
    ASSERT_EQ(chmod(path.c_str(), 0), 0);
    RunUnprivileged([&] { EXPECT_FALSE(ReadFileBytes(path.c_str(), 10)); });
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
    ASSERT_EQ(chmod(folder.path.c_str(), 0777), 0);
    const std::string from = folder.Write("from", Bytes{1});
    ASSERT_EQ(chmod(folder.Write("to", Bytes{2}).c_str(), 0444), 0);
    RunUnprivileged([&] { EXPECT_TRUE(CopyFileTo(from.c_str(), folder.File("to").c_str())); });
    EXPECT_EQ(ReadTestFile(folder.File("to")), Bytes{1});
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
