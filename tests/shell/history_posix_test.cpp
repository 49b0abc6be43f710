// The history's file where there is no room for it.
#include "shell/history.h"

#include "shell_fixture.h"
#include "support/posix_limits.h"

#include <cerrno>

namespace tonewright {
namespace {

class HistoryObstacles : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        RememberFileHistoryCount = 10;
        HistoryInit();
        HistoryAdd(nullptr, home.Write("a.syx", {}), 100);
    }
    void TearDown() override {
        HistoryEnd();
        ShellTest::TearDown();
    }
    std::string TextOfA() const { return home.File("a.syx") + ",100\n"; }
};

TEST_F(HistoryObstacles, AWriteThatFallsShortIsToldAndLeavesTheFormerHistory) {
    MakeProgramFolders();
    ASSERT_TRUE(HistorySave());
    HistoryAdd(nullptr, home.Write("b.syx", {}), 50);
    const rlim_t size = 2 * TextOfA().size() - 1;
    for (const rlim_t limited : {rlim_t{0}, size / 2, size - 1}) {
        bool saved = true;
        int reason = 0;
        {
            const FileSizeLimit limit(limited);
            saved = HistorySave();
            reason = errno;
        }
        EXPECT_FALSE(saved) << limited;
        EXPECT_EQ(reason, EFBIG) << limited;
        EXPECT_EQ(ReadTestText(HistoryFilePath()), TextOfA()) << limited;
    }
    {
        const FileSizeLimit limit(size);
        EXPECT_TRUE(HistorySave());
    }
    EXPECT_EQ(ReadTestText(HistoryFilePath()), TextOfA() + home.File("b.syx") + ",50\n");
}

TEST_F(HistoryObstacles, AFullDiskIsToldAndLeavesTheFormerHistory) {
    const std::string maker = home.File("Quillbrook");
    std::filesystem::create_directory(maker);
    RunOnSmallDisk(maker, [&] {
        MakeProgramFolders();
        ASSERT_TRUE(HistorySave());
        FillDisk(maker + "/filler");
        HistoryAdd(nullptr, home.Write("b.syx", {}), 50);
        EXPECT_FALSE(HistorySave());
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(ReadTestText(HistoryFilePath()), TextOfA());
    });
}

TEST_F(HistoryObstacles, ALinkThatLeadsNowhereIsTold) {
    MakeProgramFolders();
    std::filesystem::create_symlink(home.File("no/where.txt"), HistoryFilePath());
    EXPECT_FALSE(HistorySave());
    EXPECT_EQ(errno, ENOENT);
}

} // namespace
} // namespace tonewright
