// Failures of the system in the middle of replacing a file.
#include "common/open_file.h"
#include "common/whole_file.h"

#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <dlfcn.h>
#include <sys/mount.h>
#include <vector>

namespace {

int StreamsUntilFailure = -1; // that the system still gives; -1 for any number

} // namespace

// Stands in front of the system's own for the whole program.
extern "C" FILE *fdopen(int descriptor, const char *mode) noexcept {
    if (StreamsUntilFailure == 0) {
        errno = ENOMEM;
        return nullptr;
    }
    StreamsUntilFailure -= StreamsUntilFailure > 0 ? 1 : 0;
    using Function = FILE *(*)(int, const char *);
    static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "fdopen"));
    return real(descriptor, mode);
}

namespace tonewright {
namespace {

namespace fs = std::filesystem;

const std::string Former(1000, 'f');
const std::string Fresh(900, 'n');

std::ptrdiff_t EntriesOf(const fs::path &folder) {
    return std::distance(fs::directory_iterator(folder), {});
}

// From now on nothing can be written at all.
void LeaveNoRoom(int) {
    const rlimit none = {.rlim_cur = 0, .rlim_max = RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &none);
}

TEST(WriteFileWhole, WhatCannotBePutBackEitherIsToldApart) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    fs::create_hard_link(path, folder.File("other")); // so that it is written in place
    bool written = true;
    int reason = 0;
    {
        // The room ends with the write that falls short, so that there is none to put back what it
        // has overwritten by then.
        const FileSizeLimit limit(450, LeaveNoRoom);
        written = WriteFileWhole(path.c_str(), Fresh);
        reason = errno;
    }
    EXPECT_FALSE(written);
    EXPECT_EQ(reason, ENOTRECOVERABLE);
    EXPECT_EQ(ReadTestText(path), Fresh.substr(0, 450) + Former.substr(450));
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(ReadTestText(path), Fresh);
}

TEST(WriteFileWhole, WhatWasNotOverwrittenNeedsNoPuttingBack) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    fs::create_hard_link(path, folder.File("other"));
    bool written = true;
    int reason = 0;
    {
        const FileSizeLimit limit(0, LeaveNoRoom);
        written = WriteFileWhole(path.c_str(), Fresh);
        reason = errno;
    }
    EXPECT_FALSE(written);
    EXPECT_EQ(reason, EFBIG);
    EXPECT_EQ(ReadTestText(path), Former);
}

std::ptrdiff_t OpenDescriptors() {
    return EntriesOf("/proc/self/fd");
}

TEST(WriteFileWhole, AStreamThatCannotBeMadeLeavesTheFormerFileAndNothingElse) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    const auto before = OpenDescriptors();
    for (const char *name : {"file", "fresh"}) {
        // Of a file that is there, the first is the one that asks whether it may be written.
        for (int streams = 0; streams < (std::string(name) == "file" ? 2 : 1); ++streams) {
            StreamsUntilFailure = streams;
            const bool written = WriteFileWhole(folder.File(name).c_str(), Fresh);
            const int reason = errno;
            StreamsUntilFailure = -1;
            EXPECT_FALSE(written) << name << streams;
            EXPECT_EQ(reason, ENOMEM) << name << streams;
            EXPECT_EQ(ReadTestText(path), Former) << name << streams;
            EXPECT_EQ(EntriesOf(folder.path), 1) << name << streams;
            EXPECT_EQ(OpenDescriptors(), before) << name << streams;
        }
    }
    fs::create_hard_link(path, folder.File("other")); // so that the second is for a write in place
    StreamsUntilFailure = 1;
    const bool written = WriteFileWhole(path.c_str(), Fresh);
    StreamsUntilFailure = -1;
    EXPECT_FALSE(written);
    EXPECT_EQ(ReadTestText(path), Former);
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(ReadTestText(path), Fresh);
}

TEST(CopyFileWhole, AStreamThatCannotBeMadeLeavesTheFormerCopyAndNothingElse) {
    const TempFolder folder;
    const std::string from = folder.WriteText("from", Fresh), to = folder.WriteText("to", Former);
    const auto before = OpenDescriptors();
    for (const int streams : {0, 1}) {
        StreamsUntilFailure = streams;
        const bool copied = CopyFileWhole(from.c_str(), to.c_str());
        const int reason = errno;
        StreamsUntilFailure = -1;
        EXPECT_FALSE(copied) << streams;
        EXPECT_EQ(reason, ENOMEM) << streams;
        EXPECT_EQ(ReadTestText(to), Former) << streams;
        EXPECT_EQ(EntriesOf(folder.path), 2) << streams;
        EXPECT_EQ(OpenDescriptors(), before) << streams;
    }
}

TEST(WriteFileWhole, AFileThatIsMountedIsWrittenInPlace) {
    const TempFolder folder;
    RunOnSmallDisk(folder.path.string(), [&] {
        const std::string path = folder.WriteText("file", "below");
        const std::string mounted = folder.WriteText("mounted", Former);
        ASSERT_EQ(mount(mounted.c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
        ASSERT_NE(std::rename(folder.WriteText("try", "").c_str(), path.c_str()), 0);
        ASSERT_EQ(errno, EBUSY);
        fs::remove(folder.File("try"));
        std::vector<Replacing> told;
        EXPECT_TRUE(
            WriteFileWhole(path.c_str(), Fresh, [&told](Replacing how) { told.push_back(how); }));
        EXPECT_EQ(told, std::vector{Replacing::AsAWhole});
        EXPECT_EQ(ReadTestText(path), Fresh);
        EXPECT_EQ(ReadTestText(mounted), Fresh);
        EXPECT_EQ(EntriesOf(folder.path), 2);
        const std::string from = folder.WriteText("from", Former);
        EXPECT_TRUE(CopyFileWhole(from.c_str(), path.c_str()));
        EXPECT_EQ(ReadTestText(mounted), Former);
        EXPECT_EQ(EntriesOf(folder.path), 3);
    });
}

TEST(WriteFileWhole, InAFolderThatIsReadOnlyAFileThatIsNotIsWrittenInPlace) {
    const TempFolder folder, elsewhere;
    const std::string mounted = elsewhere.WriteText("mounted", Former);
    RunOnSmallDisk(folder.path.string(), [&] {
        const std::string path = folder.WriteText("file", "below");
        ASSERT_EQ(mount(mounted.c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
        ASSERT_EQ(mount(nullptr, folder.path.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
        EXPECT_FALSE(WriteFileWhole(folder.File("another").c_str(), Fresh));
        ASSERT_EQ(errno, EROFS);
        EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
        EXPECT_EQ(ReadTestText(path), Fresh);
    });
}

TEST(WriteFileWhole, TheLongestFileThatCanBePutBackIsWrittenInPlace) {
    const TempFolder folder;
    const std::string path = folder.WriteText("file", Former);
    std::filesystem::resize_file(path, 64 * 1024 * 1024);
    fs::create_hard_link(path, folder.File("other"));
    EXPECT_TRUE(WriteFileWhole(path.c_str(), Fresh));
    EXPECT_EQ(ReadTestText(folder.File("other")), Fresh);
}

} // namespace
} // namespace tonewright
