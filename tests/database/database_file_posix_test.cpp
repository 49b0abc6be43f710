// Full disks, closed files and odd paths while a catalogue is made, added to and stored.
#include "core/dispatch.h"
#include "database/record_list.h"
#include "support/posix_limits.h"
#include "support/scripted_desktop.h"
#include "test_catalogue.h"

#include <cerrno>
#include <filesystem>
#include <string>

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
    for (const mode_t mode : {0, 0400}) {
        RunUnprivileged({{Path(), mode}}, [&] {
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
    RunUnprivileged({{Path(), 0400}}, [&] {
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
    RunUnprivileged({{folder.File("My Tonewright 17 Documents"), 0500}},
                    [&] { EXPECT_EQ(Add(9), 0); });
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

TEST_P(DatabaseFaults, OnAFullDiskNoneIsMade) {
    const std::string disk = folder.path.string() + "/My Tonewright 17 Documents";
    RunOnSmallDisk(disk, [&] {
        FillDisk(disk + "/full");
        EXPECT_EQ(row.DatabaseOpen(Path().c_str(), DatabaseUpdate), nullptr);
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(Add(0), 0);
        EXPECT_FALSE(HasFile());
    });
}

TEST_P(DatabaseFaults, AStoreThatFillsTheDiskKeepsWhatCameOutAndCountsOneMore) {
    const std::string disk = folder.path.string() + "/My Tonewright 17 Documents";
    const int driver = DriverIndexOfId(row.id);
    RunOnSmallDisk(disk, [&] {
        RecordList list;
        list.sorted = false;
        for (int index = 0; index < 200; ++index) { // 87 KB, and the disk has 64
            RecordListAdd(list, {TestRecordAt(family, index)});
        }
        EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 0);
        const std::uint32_t whole = (Size() - 152) / family.recordSize;
        EXPECT_GT(whole, 100u);
        EXPECT_EQ(Test32(File(), 20), whole + 1);
        RecordList back;
        back.sorted = false;
        EXPECT_EQ(DatabaseLoadList(driver, back), 1);
        ASSERT_EQ(ListCount(back), static_cast<int>(whole));
        EXPECT_EQ(back.items.back().bytes, TestRecordAt(family, static_cast<int>(whole) - 1));
    });
}

TEST_P(DatabaseFaults, OnAFullDiskAStoreAsksBeforeItGoesOnWithoutABackup) {
    const std::string NoBackup =
        "Warning: there has been an error creating a backup for your file.\r\n\r\n"
        "Click on Yes to proceed, or click on No to abort this save.";
    const std::string disk = folder.path.string() + "/My Tonewright 17 Documents";
    const std::string backup = disk + "/Voices" + family.backupExtension;
    const int driver = DriverIndexOfId(row.id);
    RunOnSmallDisk(disk, [&] {
        const TestBytes file = TestCatalogue(family, 30, 30);
        WriteTestFile(Path(), file);
        RecordList list;
        EXPECT_EQ(DatabaseLoadList(driver, list), 1);
        FillDisk(disk + "/full");
        ScriptedDesktop desktop;
        desktop.ExpectYesNo(NoBackup, ResultNo);
        EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 0);
        EXPECT_EQ(Size(), file.size());
        EXPECT_FALSE(fs::exists(backup)); // a part of a copy is none
        desktop.ExpectYesNo(NoBackup, ResultYes);
        EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 1); // in the room of the former one
        EXPECT_EQ(Size(), file.size());
        EXPECT_FALSE(fs::exists(backup));
    });
}

TEST_P(DatabaseFaults, AStoreChangesNoFileThatMayNotBeWrittenAndNoFolder) {
    const TestBytes bytes = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), bytes);
    CreateBackups = 0;
    const int driver = DriverIndexOfId(row.id);
    RecordList list;
    RecordListAdd(list, {TestRecordAt(family, 0)});
    RunUnprivileged({{Path(), 0400}, {folder.File("My Tonewright 17 Documents"), 0500}},
                    [&] { EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 0); });
    EXPECT_EQ(File(), bytes);
    fs::remove(Path());
    fs::create_directory(Path());
    EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 0);
    EXPECT_EQ(Add(0), 0);
    EXPECT_TRUE(fs::is_directory(Path()));
}

TEST_P(DatabaseFaults, LinksToFoldersAndToThemselvesStay) {
    const int driver = DriverIndexOfId(row.id);
    RecordList list;
    RecordListAdd(list, {TestRecordAt(family, 0)});
    CreateBackups = 0;
    for (const fs::path &target : {folder.path, fs::path(Path())}) {
        fs::remove(Path());
        fs::create_symlink(target, Path());
        EXPECT_EQ(Add(0), 0);
        EXPECT_EQ(DatabaseStoreList(nullptr, list, driver), 0);
        EXPECT_EQ(DatabaseLoadList(driver, list), 0);
        EXPECT_TRUE(fs::is_symlink(Path()));
        EXPECT_TRUE(fs::exists(folder.path));
    }
}

// A path is cut at 260 bytes, and what is left of it is used; a name has at most 255 of them on
// this system, so that the folder takes its share.
TEST_P(DatabaseFaults, PathsOf255To270BytesAreUsedAsTheyAreCut) {
    const std::string base = folder.path.string() + "/My Tonewright 17 Documents/";
    const std::size_t extension = 1 + std::string(family.extension).size();
    for (std::size_t size = 255; size <= 270; ++size) {
        DatabaseCurrentName = std::string(size - base.size() - extension, 'n');
        const std::string whole = base + DatabaseCurrentName + "." + family.extension;
        ASSERT_EQ(whole.size(), size);
        const std::string path = row.DatabasePath();
        EXPECT_EQ(path, whole.substr(0, 260));
        EXPECT_EQ(Add(1), 1) << size;
        EXPECT_TRUE(fs::is_regular_file(path)) << size;
        RecordList list;
        EXPECT_EQ(DatabaseLoadList(DriverIndexOfId(row.id), list), 1);
        EXPECT_EQ(ListCount(list), 1);
        fs::remove(path);
    }
}

} // namespace
} // namespace tonewright
