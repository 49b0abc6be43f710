// Full disks, closed files and kills while a catalogue is made and added to.
#include "support/posix_limits.h"
#include "test_catalogue.h"

#include <chrono>
#include <csignal>
#include <random>
#include <sys/wait.h>
#include <thread>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

class DatabaseFaults : public CatalogueTest {};

INSTANTIATE_TEST_SUITE_P(Families, DatabaseFaults, testing::ValuesIn(TestFamilies), LabelOf);

TEST_P(DatabaseFaults, ACreationThatFallsShortOpensNothingAndStays) {
    for (const rlim_t limit : {0, 1, 76, 151}) {
        fs::remove(Path());
        {
            const FileSizeLimit limited(limit);
            EXPECT_FALSE(row.DatabaseOpen(Path().c_str(), 3)) << limit;
        }
        EXPECT_EQ(Size(), limit);
    }
}

TEST_P(DatabaseFaults, AnAddThatFallsShortInAnyWriteDeletesTheFileAndTheNextOneMakesItAnew) {
    const rlim_t whole = 152 + 3 * family.recordSize;
    for (const rlim_t limit : {rlim_t{0}, rlim_t{100}, rlim_t{151}}) { // at its creation
        const FileSizeLimit limited(limit);
        EXPECT_EQ(Add(0), 0) << limit;
        EXPECT_FALSE(HasFile());
    }
    for (const rlim_t limit :
         {whole - family.recordSize, whole - family.recordSize / 2, whole - 1}) {
        WriteTestFile(Path(), TestCatalogue(family, 2, 2));
        {
            const FileSizeLimit limited(limit);
            EXPECT_EQ(Add(9), 0) << limit;
        }
        EXPECT_FALSE(HasFile());
    }
    EXPECT_EQ(Add(9), 1);
    WriteTestFile(Path(), TestCatalogue(family, 2, 2));
    const FileSizeLimit limited(whole);
    EXPECT_EQ(Add(9), 1);
    EXPECT_EQ(Size(), whole);
}

TEST_P(DatabaseFaults, AFullDiskWhileAddingCostsTheWholeCatalogue) {
    const std::string disk = folder.path.string() + "/My Tonewright 17 Documents";
    RunOnSmallDisk(disk, [&] {
        WriteTestFile(Path(), TestCatalogue(family, 2, 2));
        FillDisk(disk + "/full");
        DatabaseNoDuplicates = 0;
        int result = 1;
        for (int number = 0; number < 32 && result == 1; ++number) {
            result = Add(number); // some fit into the file's last page
        }
        EXPECT_EQ(result, 0);
        EXPECT_FALSE(HasFile());
    });
}

TEST_P(DatabaseFaults, AFileThatMayNotBeOpenedSurvivesTheAddThatFails) {
    const TestBytes bytes = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), bytes);
    fs::permissions(folder.path, fs::perms::all);
    fs::permissions(folder.path / "My Tonewright 17 Documents", fs::perms::all);
    for (const auto perms : {fs::perms::none, fs::perms(0444)}) {
        fs::permissions(Path(), perms);
        RunUnprivileged([&] {
            EXPECT_EQ(Add(9), 0);
            EXPECT_TRUE(HasFile());
        });
        EXPECT_EQ(File(), bytes);
    }
}

TEST_P(DatabaseFaults, InAFolderThatMayNotBeWrittenNothingIsMade) {
    fs::permissions(folder.path, fs::perms(0755));
    fs::permissions(folder.path / "My Tonewright 17 Documents", fs::perms(0555));
    RunUnprivileged([&] { EXPECT_EQ(Add(9), 0); });
    EXPECT_FALSE(HasFile());
}

TEST_P(DatabaseFaults, APipeInItsPlaceStaysAndHoldsNobodyUp) {
    MakePipe(Path());
    EXPECT_EQ(Add(9), 0);
    EXPECT_EQ(row.DatabaseOpen(Path().c_str(), 2), nullptr);
    EXPECT_TRUE(fs::is_fifo(Path()));
}

// What a kill may leave: the former records and, whole or in part, the next one; where there was no
// file, none or the beginning of one.
TEST_P(DatabaseFaults, AKillWhileAddingLeavesTheFormerRecords) {
    DatabaseMakePrettyNames = 0;
    DatabaseNoDuplicates = 0;
    std::mt19937 random(17);
    constexpr int Kills = 50;
    for (int kill = 0; kill < Kills; ++kill) {
        const int before = kill % 3; // records that are there
        if (before == 0) {
            fs::remove(Path());
        } else {
            WriteTestFile(Path(),
                          TestCatalogue(family, before, static_cast<std::uint32_t>(before)));
        }
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            for (int number = 0;; ++number) {
                Add(number % 32);
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 3000));
        ::kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        if (before == 0 && (!HasFile() || Size() < 152)) {
            continue;
        }
        const TestBytes file = File();
        const std::uint32_t count = Test32(file, 20);
        EXPECT_EQ(TestTextAt(file, 0, 8), "TnwrTWdb");
        EXPECT_GE(count, static_cast<std::uint32_t>(before));
        EXPECT_GE(file.size(), 152 + count * family.recordSize);
        EXPECT_LE(file.size(), 152 + (count + 1) * family.recordSize);
        for (int index = 0; index < before; ++index) {
            const auto at = 152 + static_cast<std::size_t>(index) * family.recordSize;
            EXPECT_EQ(TestTextAt(file, at, family.recordSize),
                      TestTextAt(TestRecordAt(family, index), 0, family.recordSize));
        }
    }
}

} // namespace
} // namespace tonewright
