// Creation times of files that cannot be opened for writing.
#include "common/file_time.h"

#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

using namespace tonewright;

TEST(FileCreationTime, OfAFileWithoutWritePermissionIsNone) {
    const TempFolder temp;
    const std::string path = temp.WriteText("bank.syx", "content");
    RunUnprivileged({{path, 0400}}, [&path] {
        std::uint64_t time = 77;
        EXPECT_FALSE(FileCreationTime(path.c_str(), &time));
        EXPECT_EQ(time, 77u);
    });
    RunUnprivileged({{path, 0600}}, [&path] {
        std::uint64_t time = 0;
        EXPECT_TRUE(FileCreationTime(path.c_str(), &time));
    });
}

TEST(FileCreationTime, OfAFileThatIsLockedIsNone) {
    const TempFolder temp;
    const std::string path = temp.WriteText("bank.syx", "content");
    const int holder = open(path.c_str(), O_RDONLY);
    ASSERT_GE(holder, 0);
    ASSERT_EQ(flock(holder, LOCK_SH), 0);
    std::uint64_t time = 0;
    EXPECT_FALSE(FileCreationTime(path.c_str(), &time));
    close(holder);
    EXPECT_TRUE(FileCreationTime(path.c_str(), &time));
}

TEST(FileCreationTime, OfAPipeThatNobodyReadsDoesNotBlock) {
    const TempFolder temp;
    const std::string path = temp.File("pipe");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    std::uint64_t time = 0;
    EXPECT_FALSE(FileCreationTime(path.c_str(), &time));
}
