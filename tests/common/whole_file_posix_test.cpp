// Files that are replaced as a whole, where there is no room, no permission, or a link in the way.
#include "common/whole_file.h"

#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sys/stat.h>

namespace tonewright {
namespace {

bool WriteWithin(rlim_t size, const std::string &path, const std::string &text) {
    const FileSizeLimit limit(size);
    return WriteFileWhole(path.c_str(), text);
}

std::size_t EntriesOf(const std::filesystem::path &folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder), {}));
}

struct stat StatusOf(const std::string &path) {
    struct stat status {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

const std::string Former(1000, 'f');
const std::string Fresh(900, 'n');

TEST(WriteFileWhole, AWriteThatFallsShortLeavesTheFormerFileAndNothingElse) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    for (const rlim_t size : {0u, 450u, 899u}) {
        EXPECT_FALSE(WriteWithin(size, path, Fresh)) << size;
        EXPECT_EQ(errno, EFBIG) << size;
        EXPECT_EQ(ReadTestText(path), Former) << size;
        EXPECT_EQ(EntriesOf(folder.path), 1u) << size;
    }
    EXPECT_TRUE(WriteWithin(900, path, Fresh));
    EXPECT_EQ(ReadTestText(path), Fresh);
    EXPECT_EQ(EntriesOf(folder.path), 1u);
}

TEST(WriteFileWhole, ANewFileThatFallsShortIsNotThere) {
    const TempFolder folder;
    EXPECT_FALSE(WriteWithin(899, folder.File("file"), Fresh));
    EXPECT_EQ(EntriesOf(folder.path), 0u);
    EXPECT_TRUE(WriteFileWhole(folder.File("file").c_str(), Fresh));
    EXPECT_TRUE(WriteFileWhole(folder.File("empty").c_str(), ""));
    EXPECT_EQ(ReadTestText(folder.File("empty")), "");
}

TEST(WriteFileWhole, AFullDiskLeavesTheFormerFile) {
    const TempFolder folder;
    RunOnSmallDisk(folder.path.string(), [&] {
        const std::string path = folder.WriteText("file", Former);
        FillDisk(folder.File("filler"));
        EXPECT_FALSE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(ReadTestText(path), Former);
        EXPECT_EQ(EntriesOf(folder.path), 2u);
        std::filesystem::remove(folder.File("filler"));
        EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(ReadTestText(path), Fresh);
    });
}

TEST(WriteFileWhole, InAFolderThatTakesNoFileItIsWrittenInPlace) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    chmod(path.c_str(), 0666);
    chmod(folder.path.c_str(), 0555);
    RunUnprivileged([&] {
        const std::string longer(1500, 'l');
        const auto before = StatusOf(path).st_ino;
        for (const rlim_t size : {0u, 600u, 1200u, 1499u}) {
            EXPECT_FALSE(WriteWithin(size, path, longer)) << size;
            EXPECT_EQ(errno, EFBIG) << size;
            EXPECT_EQ(ReadTestText(path), Former) << size;
        }
        EXPECT_FALSE(WriteWithin(450, path, Fresh));
        EXPECT_EQ(ReadTestText(path), Former);
        EXPECT_TRUE(WriteFileWhole(path.c_str(), longer));
        EXPECT_EQ(ReadTestText(path), longer);
        EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(ReadTestText(path), Fresh);
        EXPECT_EQ(StatusOf(path).st_ino, before);
        EXPECT_FALSE(WriteFileWhole(folder.File("another").c_str(), Fresh));
        EXPECT_EQ(errno, EACCES);
    });
}

TEST(WriteFileWhole, AReadOnlyFileStays) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    chmod(path.c_str(), 0444);
    chmod(folder.path.c_str(), 0777);
    RunUnprivileged([&] {
        EXPECT_FALSE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(errno, EACCES);
        EXPECT_EQ(ReadTestText(path), Former);
        EXPECT_EQ(EntriesOf(folder.path), 1u);
    });
}

TEST(WriteFileWhole, KeepsPermissionsAndOwner) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    for (const mode_t mode : {0600u, 0640u, 0664u, 0666u}) {
        ASSERT_EQ(chmod(path.c_str(), mode), 0);
        EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(StatusOf(path).st_mode & 07777, mode);
    }
    if (geteuid() == 0) {
        ASSERT_EQ(chown(path.c_str(), 65534, 65533), 0);
        EXPECT_TRUE(WriteFileWhole(path.c_str(), Former));
        EXPECT_EQ(StatusOf(path).st_uid, 65534u);
        EXPECT_EQ(StatusOf(path).st_gid, 65533u);
    }
}

TEST(WriteFileWhole, WritesBehindLinks) {
    const TempFolder folder;
    std::filesystem::create_directory(folder.File("real"));
    std::filesystem::create_symlink("real/file", folder.File("middle"));
    std::filesystem::create_symlink("middle", folder.File("link"));
    for (const std::string &text : {Fresh, Former}) { // first a file that is not there yet
        EXPECT_TRUE(WriteFileWhole(folder.File("link").c_str(), text));
        EXPECT_EQ(ReadTestText(folder.File("real/file")), text);
        EXPECT_TRUE(std::filesystem::is_symlink(folder.File("link")));
        EXPECT_TRUE(std::filesystem::is_symlink(folder.File("middle")));
        EXPECT_EQ(EntriesOf(folder.path), 3u);
        EXPECT_EQ(EntriesOf(folder.File("real")), 1u);
    }
    std::filesystem::create_symlink("round", folder.File("round"));
    EXPECT_FALSE(WriteFileWhole(folder.File("round").c_str(), Fresh));
    EXPECT_EQ(errno, ELOOP);
}

TEST(WriteFileWhole, WhatIsNoFileStays) {
    const TempFolder folder;
    const std::string pipe = MakePipe(folder.File("pipe"));
    EXPECT_FALSE(WriteFileWhole(pipe.c_str(), Fresh));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_FALSE(WriteFileWhole(folder.path.c_str(), Fresh));
    EXPECT_EQ(errno, EISDIR);
    for (const std::string &path : {std::string(), folder.File("no/file"), folder.File("no/")}) {
        EXPECT_FALSE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(errno, ENOENT);
    }
    EXPECT_EQ(EntriesOf(folder.path), 1u);
}

TEST(CopyFileWhole, ACopyThatFallsShortLeavesTheFormerOne) {
    const TempFolder folder;
    const std::string from = folder.WriteText("from", Fresh);
    const std::string to = folder.WriteText("to", Former);
    for (const rlim_t size : {0u, 450u, 899u}) {
        const FileSizeLimit limit(size);
        EXPECT_FALSE(CopyFileWhole(from.c_str(), to.c_str()));
    }
    EXPECT_EQ(ReadTestText(to), Former);
    EXPECT_EQ(EntriesOf(folder.path), 2u);
    chmod(from.c_str(), 0640);
    chmod(to.c_str(), 0444); // a former copy may be read-only
    EXPECT_TRUE(CopyFileWhole(from.c_str(), to.c_str()));
    EXPECT_EQ(ReadTestText(to), Fresh);
    EXPECT_EQ(StatusOf(to).st_mode & 07777, 0640u);
}

TEST(CopyFileWhole, ReplacesALinkAndNotWhatItLeadsTo) {
    const TempFolder folder;
    const std::string from = folder.WriteText("from", Fresh);
    std::filesystem::create_symlink("from", folder.File("to"));
    EXPECT_TRUE(CopyFileWhole(from.c_str(), folder.File("to").c_str()));
    EXPECT_FALSE(std::filesystem::is_symlink(folder.File("to")));
    EXPECT_EQ(ReadTestText(from), Fresh);
    const std::string pipe = MakePipe(folder.File("pipe"));
    EXPECT_FALSE(CopyFileWhole(from.c_str(), pipe.c_str()));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_FALSE(CopyFileWhole(folder.File("missing").c_str(), from.c_str()));
    EXPECT_EQ(ReadTestText(from), Fresh);
}

} // namespace
} // namespace tonewright
