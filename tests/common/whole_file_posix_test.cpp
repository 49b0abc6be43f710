// Files that are replaced as a whole, where there is no room, no permission, or a link in the way.
#include "common/whole_file.h"

#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <vector>

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
    RunUnprivileged({{folder.path, 0500}}, [&] {
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
    RunUnprivileged({{path, 0400}}, [&] {
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

TEST(WriteFileWhole, AFileWithTwoNamesStaysOneFile) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    std::filesystem::create_hard_link(path, folder.File("other"));
    EXPECT_FALSE(WriteWithin(450, path, Fresh));
    EXPECT_EQ(errno, EFBIG);
    EXPECT_EQ(ReadTestText(path), Former);
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(ReadTestText(folder.File("other")), Fresh);
    EXPECT_EQ(StatusOf(path).st_nlink, 2u);
    EXPECT_EQ(EntriesOf(folder.path), 2u);
}

TEST(WriteFileWhole, AFileOfAnotherUserKeepsItsOwnerAndPermissions) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    chmod(path.c_str(), 0666);
    if (geteuid() == 0) { // nobody else may give a file away
        ASSERT_EQ(chown(path.c_str(), 65534, 65533), 0);
    }
    RunUnprivileged({}, [&] {
        const auto before = StatusOf(path);
        EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(ReadTestText(path), Fresh);
        EXPECT_EQ(StatusOf(path).st_uid, before.st_uid);
        EXPECT_EQ(StatusOf(path).st_gid, before.st_gid);
        EXPECT_EQ(StatusOf(path).st_mode, before.st_mode);
        EXPECT_EQ(EntriesOf(folder.path), 1u);
    });
}

// Version 2; each a kind, rights and a number: the owner, user 1000, the group, what users and
// group may at most, everybody else.
constexpr unsigned char AccessList[] = {
    2,  0, 0, 0,                      //
    1,  0, 6, 0, 255,  255, 255, 255, //
    2,  0, 6, 0, 0xE8, 3,   0,   0,   //
    4,  0, 4, 0, 255,  255, 255, 255, //
    16, 0, 6, 0, 255,  255, 255, 255, //
    32, 0, 4, 0, 255,  255, 255, 255,
};

bool GiveAccessList(const std::filesystem::path &path, const char *name) {
    return setxattr(path.c_str(), name, AccessList, sizeof AccessList, 0) == 0;
}

constexpr const char *OfFile = "system.posix_acl_access";
constexpr const char *ForNewFiles = "system.posix_acl_default"; // of a folder

TEST(WriteFileWhole, KeepsAListOfAccessRights) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    if (!GiveAccessList(path, OfFile)) {
        GTEST_SKIP() << "this file system keeps no such list";
    }
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(ReadTestText(path), Fresh);
    unsigned char kept[sizeof AccessList] = {};
    EXPECT_EQ(getxattr(path.c_str(), OfFile, kept, sizeof kept),
              static_cast<ssize_t>(sizeof AccessList));
    EXPECT_TRUE(std::ranges::equal(kept, AccessList));
    // A copy is not for everyone who could be on such a list.
    EXPECT_TRUE(CopyFileWhole(path.c_str(), folder.File("copy").c_str()));
    EXPECT_EQ(StatusOf(folder.File("copy")).st_mode & 07777, 0604u);
}

TEST(WriteFileWhole, AFolderGivesTheFileNoOtherUsers) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    if (!GiveAccessList(folder.path, ForNewFiles)) {
        GTEST_SKIP() << "this file system keeps no such list";
    }
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(ReadTestText(path), Fresh);
    EXPECT_EQ(StatusOf(path).st_mode & 07777, 0640u);
    EXPECT_LT(getxattr(path.c_str(), OfFile, nullptr, 0), 0);
    EXPECT_TRUE(CopyFileWhole(path.c_str(), folder.File("copy").c_str()));
    EXPECT_EQ(StatusOf(folder.File("copy")).st_mode & 07777, 0600u);
}

TEST(WriteFileWhole, WhatIsTooLongToBePutBackIsNotWrittenInPlace) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    constexpr std::uintmax_t size = 64 * 1024 * 1024 + 1;
    std::filesystem::resize_file(path, size);
    std::filesystem::create_hard_link(path, folder.File("other"));
    EXPECT_FALSE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(errno, EFBIG);
    EXPECT_EQ(std::filesystem::file_size(path), size);
}

TEST(WriteFileWhole, TheLongestNameLeavesRoomForAFileBesideIt) {
    const TempFolder folder;
    const std::string path = folder.WriteText(std::string(255, 'n'), Former);
    const auto before = StatusOf(path).st_ino;
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(ReadTestText(path), Fresh);
    EXPECT_NE(StatusOf(path).st_ino, before);
    EXPECT_EQ(EntriesOf(folder.path), 1u);
}

TEST(WriteFileWhole, RemovesWhatAProgramThatWasEndedHasLeft) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    const auto now = std::filesystem::file_time_type::clock::now();
    // Names that are almost those of such files.
    const char *others[] = {"file.x1.new", "file.1x.new",   "file.:1.new",
                            "file..new",   "file.10981098", "other1098.new"};
    for (const char *name : others) {
        std::filesystem::last_write_time(folder.WriteText(name, ""),
                                         now - std::chrono::minutes(61));
    }
    std::filesystem::last_write_time(folder.WriteText("file.1098.new", ""),
                                     now - std::chrono::minutes(61));
    std::filesystem::last_write_time(folder.WriteText("file.13.new", ""),
                                     now - std::chrono::minutes(59));
    std::filesystem::create_directory(folder.File("file.14.new"));
    std::filesystem::last_write_time(folder.File("file.14.new"), now - std::chrono::minutes(61));
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_FALSE(folder.Holds("file.1098.new"));
    EXPECT_TRUE(folder.Holds("file.13.new"));
    EXPECT_TRUE(folder.Holds("file.14.new"));
    for (const char *name : others) {
        EXPECT_TRUE(folder.Holds(name)) << name;
    }
}

TEST(WriteFileWhole, TellsBeforeTheFileChangesAndNotWhenItWillNot) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    std::vector<Replacing> told;
    const BeforeReplacing note = [&](Replacing how) {
        told.push_back(how);
        EXPECT_EQ(ReadTestText(path), Former);
        EXPECT_EQ(EntriesOf(folder.path), 2u); // the new one, or the other name
    };
    {
        const FileSizeLimit limit(899);
        EXPECT_FALSE(WriteFileWhole(path.c_str(), Fresh, note));
    }
    EXPECT_TRUE(told.empty());
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh, note));
    WriteTestText(path, Former);
    std::filesystem::create_hard_link(path, folder.File("other"));
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh, note));
    EXPECT_EQ(told, (std::vector<Replacing>{Replacing::AsAWhole, Replacing::InPlace}));
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

TEST(CopyFileWhole, CopiesAFileOfManyPieces) {
    const TempFolder folder;
    std::vector<std::uint8_t> bytes(200'001);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        bytes[i] = static_cast<std::uint8_t>(i % 251);
    }
    const std::string from = folder.Write("from", bytes), to = folder.File("to");
    EXPECT_TRUE(CopyFileWhole(from.c_str(), to.c_str()));
    EXPECT_EQ(ReadTestFile(to), bytes);
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
