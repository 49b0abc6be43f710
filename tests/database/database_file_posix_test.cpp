// Full disks, closed files and kills while a catalogue is made and added to.
#include "core/dispatch.h"
#include "database/record_list.h"
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

TEST_P(DatabaseFaults, AFileThatMayNotBeWrittenIsNotReplaced) {
    CreateBackups = 0;
    const TestBytes bytes = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), bytes);
    fs::permissions(folder.path, fs::perms::all);
    fs::permissions(folder.path / "My Tonewright 17 Documents", fs::perms::all);
    fs::permissions(Path(), fs::perms(0444));
    RunUnprivileged([&] {
        EXPECT_EQ(row.DatabaseOpen(Path().c_str(), 2), nullptr);
        EXPECT_EQ(errno, EACCES);
        EXPECT_EQ(DatabaseStoreList(nullptr, {}, DriverIndexOfId(row.id)), 0);
    });
    EXPECT_EQ(File(), bytes);
}

TEST_P(DatabaseFaults, AFileThatCouldNotBeLookedIntoSurvivesTheAddThatFails) {
    const TestBytes bytes = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), bytes);
    {
        const NoMoreFiles none;
        EXPECT_EQ(Add(9), 0);
    }
    EXPECT_EQ(File(), bytes);
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

TEST_P(DatabaseFaults, AStoreThatFallsShortKeepsTheRecordsInFrontAndCountsOneMore) {
    CreateBackups = 0;
    RecordList list;
    for (int index = 0; index < 6; ++index) {
        RecordListAdd(list, {TestRecordAt(family, index)});
    }
    const int driver = DriverIndexOfId(row.id);
    for (rlim_t whole = 0; whole < 6; ++whole) {
        for (const rlim_t more : {rlim_t{0}, rlim_t{1}, rlim_t{family.recordSize - 1}}) {
            {
                const FileSizeLimit limited(152 + whole * family.recordSize + more);
                EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 0);
            }
            EXPECT_EQ(Test32(File(), 20), whole + 1);
            RecordList back;
            EXPECT_EQ(DatabaseLoadList(driver, back), 1);
            EXPECT_EQ(ListCount(back), static_cast<int>(whole));
        }
    }
    for (const rlim_t limit : {0, 151}) {
        const FileSizeLimit limited(limit);
        EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 0);
        EXPECT_EQ(Size(), limit);
    }
}

TEST_P(DatabaseFaults, AKillWhileStoringLeavesTheCatalogueOrItsBackupWhole) {
    const TestBytes former = TestCatalogue(family, 40, 40);
    std::mt19937 random(18);
    const int driver = DriverIndexOfId(row.id);
    const std::string backup =
        folder.path.string() + "/My Tonewright 17 Documents/Voices" + family.backupExtension;
    for (int kill = 0; kill < 50; ++kill) {
        WriteTestFile(Path(), former);
        fs::remove(backup);
        RecordList list;
        ASSERT_EQ(DatabaseLoadList(driver, list), 1);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            DatabaseStoreList(nullptr, list, driver);
            _exit(0);
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 1500));
        ::kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const auto isWhole = [&](const std::string &path) {
            if (!fs::exists(path) || fs::file_size(path) != former.size()) {
                return false;
            }
            const TestBytes file = ReadTestFile(path);
            const TestBytes records(file.begin() + 152, file.end());
            return Test32(file, 20) == 40 && records.size() == 40 * family.recordSize &&
                   TestTextAt(file, 152, 4) == "RwnT";
        };
        EXPECT_TRUE(isWhole(Path()) || isWhole(backup)) << kill;
    }
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
