// Careful mode: an add or a store that fails leaves the catalogue that was there.
#include "core/dispatch.h"
#include "database/record_list.h"
#include "support/posix_limits.h"
#include "support/scripted_desktop.h"
#include "test_catalogue.h"

#include <cerrno>
#include <csignal>
#include <random>
#include <sys/wait.h>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

class CarefulDatabase : public CatalogueTest {
protected:
    CarefulDatabase() { CarefulMode = 1; }

    std::string Folder() const { return folder.path.string() + "/My Tonewright 17 Documents"; }
    // Of the folder, in the order of their names.
    std::vector<std::string> Files() const {
        std::vector<std::string> names;
        for (const auto &entry : fs::directory_iterator(Folder())) {
            names.push_back(entry.path().filename().string());
        }
        std::ranges::sort(names);
        return names;
    }
    std::string Name() const { return std::string("Voices.") + family.extension; }

    // A list of `count` records and a store of it.
    static void Fill(RecordList &list, const TestFamily &family, int count) {
        for (int index = 0; index < count; ++index) {
            RecordListAdd(list, {TestRecordAt(family, index)});
        }
    }
    int Store(const RecordList &list) const {
        return DatabaseStoreList(nullptr, list, DriverIndexOfId(row.id));
    }
    // As the program stores it: all but both times.
    static TestBytes WithoutTimes(TestBytes file) {
        std::fill(file.begin() + 12, file.begin() + 20, std::uint8_t{0});
        return file;
    }
};

INSTANTIATE_TEST_SUITE_P(Families, CarefulDatabase, testing::ValuesIn(TestFamilies), LabelOf);

TEST_P(CarefulDatabase, AnAddThatFallsShortInAnyWriteLeavesTheFileAsItWas) {
    const TestBytes former = TestCatalogue(family, 2, 2);
    for (rlim_t more = 0; more < family.recordSize; more += family.recordSize / 7) {
        WriteTestFile(Path(), former);
        {
            const FileSizeLimit limited(former.size() + more);
            EXPECT_EQ(Add(9), 0) << more;
            EXPECT_EQ(errno, EFBIG);
        }
        EXPECT_EQ(File(), former) << more;
    }
    const FileSizeLimit limited(former.size() + family.recordSize);
    EXPECT_EQ(Add(9), 1);
    EXPECT_EQ(Size(), former.size() + family.recordSize);
}

TEST_P(CarefulDatabase, OneThatFallsShortAtTheCreationLeavesNoFile) {
    for (const rlim_t limit : {0, 1, 151, 152, 200}) {
        {
            const FileSizeLimit limited(limit);
            EXPECT_EQ(Add(9), 0) << limit;
            EXPECT_EQ(errno, EFBIG);
        }
        EXPECT_EQ(Files(), std::vector<std::string>{});
    }
}

TEST_P(CarefulDatabase, RecordsBehindTheCountAreBackAfterAnAddThatFellShortOverThem) {
    // Three whole records and a part, of which the header counts two: over the third an add writes.
    TestBytes former = TestCatalogue(family, 4, 2);
    former.resize(former.size() - 100);
    WriteTestFile(Path(), former);
    {
        const FileSizeLimit limited(152 + 2 * family.recordSize + 30);
        EXPECT_EQ(Add(9), 0);
    }
    EXPECT_EQ(File(), former);
    former.resize(152 + 2 * family.recordSize + 50); // a part of the third
    WriteTestFile(Path(), former);
    {
        const FileSizeLimit limited(152 + 2 * family.recordSize + 200);
        EXPECT_EQ(Add(9), 0);
    }
    EXPECT_EQ(File(), former);
}

TEST_P(CarefulDatabase, AHoleBehindTheLastRecordIsGoneWithTheAddThatFellShort) {
    const TestBytes former = TestCatalogue(family, 2, 1000);
    WriteTestFile(Path(), former);
    {
        const FileSizeLimit limited(152 + 1000 * family.recordSize + 100);
        EXPECT_EQ(Add(9), 0);
    }
    EXPECT_EQ(File(), former);
}

TEST_P(CarefulDatabase, ACountBeyondTwoGigabytesIsRefusedAndChangesNothing) {
    const TestBytes former = TestCatalogue(family, 2, 0xFFFFFFFF);
    WriteTestFile(Path(), former);
    EXPECT_EQ(Add(9), 0);
    EXPECT_EQ(errno, EFBIG);
    EXPECT_EQ(File(), former);
}

TEST_P(CarefulDatabase, AFullDiskKeepsWhatWasAddedBeforeIt) {
    RunOnSmallDisk(Folder(), [&] {
        WriteTestFile(Path(), TestCatalogue(family, 2, 2));
        FillDisk(Folder() + "/full");
        DatabaseNoDuplicates = 0;
        TestBytes former;
        int result = 1, added = 0;
        while (result == 1 && added < 32) {
            former = File();
            result = Add(added); // some fit into the file's last page
            added += result;
        }
        EXPECT_EQ(result, 0);
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(File(), former);
        EXPECT_EQ(Test32(former, 20), static_cast<std::uint32_t>(2 + added));
    });
}

TEST_P(CarefulDatabase, AFileThatIsNoneStays) {
    for (const TestBytes &bytes : {TestBytes{}, TestBytes(151, 'T'), TestBytes(600, 'T'),
                                   TestCatalogue(TestFamilies[family.sizeB == 0 ? 1 : 0], 2, 2)}) {
        WriteTestFile(Path(), bytes);
        EXPECT_EQ(Add(9), 0);
        EXPECT_EQ(errno, EINVAL);
        EXPECT_EQ(File(), bytes);
    }
}

TEST_P(CarefulDatabase, AVoiceThatIsNoneLeavesTheCatalogue) {
    const TestBytes former = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), former);
    EXPECT_EQ(row.DatabaseAddVoice(nullptr, {}, nullptr, "a.syx", 0), 0);
    EXPECT_EQ(errno, EINVAL);
    EXPECT_EQ(File(), former);
    fs::remove(Path());
    EXPECT_EQ(row.DatabaseAddVoice(nullptr, {}, nullptr, "a.syx", 0), 0);
    EXPECT_FALSE(HasFile());
}

TEST_P(CarefulDatabase, AnAddThatSucceedsWritesWhatItWritesWithoutTheMode) {
    Add(9);
    Add(3);
    const TestBytes careful = File();
    fs::remove(Path());
    CarefulMode = 0;
    Add(9);
    Add(3);
    EXPECT_EQ(WithoutTimes(careful), WithoutTimes(File()));
}

TEST_P(CarefulDatabase, AStoreWritesWhatItWritesWithoutTheMode) {
    for (const int count : {0, 1, 400}) {
        RecordList list;
        Fill(list, family, count);
        EXPECT_EQ(Store(list), 1);
        const TestBytes careful = File();
        EXPECT_EQ(careful.size(), 152 + static_cast<std::size_t>(count) * family.recordSize);
        fs::remove(Path());
        CarefulMode = 0;
        EXPECT_EQ(Store(list), 1);
        EXPECT_EQ(WithoutTimes(careful), WithoutTimes(File()));
        CarefulMode = 1;
    }
    EXPECT_GT(Test32(File(), 12), 1'000'000u);
    EXPECT_EQ(Test32(File(), 12), Test32(File(), 16));
}

TEST_P(CarefulDatabase, AStoreThatFallsShortLeavesTheFormerCatalogue) {
    CreateBackups = 0;
    const TestBytes former = TestCatalogue(family, 2, 2);
    RecordList list;
    Fill(list, family, 400); // more than are written at one time
    const rlim_t whole = 152 + 400 * family.recordSize;
    for (const rlim_t limit :
         {rlim_t{0}, rlim_t{100}, rlim_t{152}, rlim_t{1000}, rlim_t{100'000}, whole - 1}) {
        WriteTestFile(Path(), former);
        {
            const FileSizeLimit limited(limit);
            EXPECT_EQ(Store(list), 0) << limit;
            EXPECT_EQ(errno, EFBIG);
        }
        EXPECT_EQ(File(), former);
        fs::remove(Path());
        {
            const FileSizeLimit limited(limit);
            EXPECT_EQ(Store(list), 0) << limit;
        }
        EXPECT_EQ(Files(), std::vector<std::string>{}); // neither a part nor one beside it
    }
}

TEST_P(CarefulDatabase, AStoreOnAFullDiskLeavesTheFormerCatalogue) {
    CreateBackups = 0;
    RunOnSmallDisk(Folder(), [&] {
        const TestBytes former = TestCatalogue(family, 2, 2);
        WriteTestFile(Path(), former);
        RecordList list;
        Fill(list, family, 100);
        FillDisk(Folder() + "/full");
        EXPECT_EQ(Store(list), 0);
        EXPECT_EQ(errno, ENOSPC);
        EXPECT_EQ(File(), former);
        EXPECT_EQ(Files(), (std::vector<std::string>{Name(), "full"}));
        fs::remove(Folder() + "/full");
        EXPECT_EQ(Store(list), 1);
        EXPECT_EQ(Test32(File(), 20), 100u);
    });
}

TEST_P(CarefulDatabase, AStoreInPlaceOfAFileThatIsNoneIsRefusedAndMakesNoBackup) {
    const std::string backup = Folder() + "/Voices" + family.backupExtension;
    WriteTestText(backup, "a good one");
    RecordList list;
    Fill(list, family, 3);
    for (const TestBytes &bytes :
         {TestBytes(151, 'T'), TestCatalogue(TestFamilies[family.sizeB == 0 ? 1 : 0], 2, 2)}) {
        WriteTestFile(Path(), bytes);
        EXPECT_EQ(Store(list), 0);
        EXPECT_EQ(errno, EINVAL);
        EXPECT_EQ(File(), bytes);
        EXPECT_EQ(ReadTestText(backup), "a good one");
    }
    CarefulMode = 0;
    EXPECT_EQ(Store(list), 1);
    EXPECT_EQ(Test32(File(), 20), 3u);
}

TEST_P(CarefulDatabase, AStoreThatIsNotWantedWithoutABackupSaysSo) {
    const TestBytes former = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), former);
    fs::create_directory(Folder() + "/Voices" + family.backupExtension);
    RecordList list;
    Fill(list, family, 3);
    ScriptedDesktop desktop;
    desktop.ExpectYesNo("Warning: there has been an error creating a backup for your file."
                        "\r\n\r\nClick on Yes to proceed, or click on No to abort this save.",
                        ResultNo);
    EXPECT_EQ(Store(list), 0);
    EXPECT_EQ(errno, ECANCELED);
    EXPECT_EQ(File(), former);
}

TEST_P(CarefulDatabase, ARecordThatIsNoneIsNotStored) {
    const TestBytes former = TestCatalogue(family, 2, 2);
    const TestBytes whole = TestRecordAt(family, 1);
    WriteTestFile(Path(), former);
    TestBytes longer = whole, otherMagic = whole;
    longer.push_back(0);
    otherMagic[0] ^= 1;
    for (const TestBytes &bytes : {longer, otherMagic}) {
        RecordList list;
        list.sorted = false;
        RecordListAdd(list, {whole});
        RecordListAdd(list, {bytes});
        EXPECT_EQ(Store(list), 0);
        EXPECT_EQ(errno, EINVAL);
        EXPECT_EQ(File(), former);
    }
}

TEST_P(CarefulDatabase, BehindALinkTheFileIsReplacedAndTheLinkStays) {
    const std::string target = folder.File("far away");
    WriteTestFile(target, TestCatalogue(family, 2, 2));
    fs::create_symlink(target, Path());
    RecordList list;
    Fill(list, family, 5);
    EXPECT_EQ(Store(list), 1);
    EXPECT_TRUE(fs::is_symlink(Path()));
    EXPECT_EQ(Test32(ReadTestFile(target), 20), 5u);
}

TEST_P(CarefulDatabase, AKillWhileStoringLeavesTheFormerCatalogueOrTheNewOne) {
    CreateBackups = 0;
    const TestBytes former = TestCatalogue(family, 2, 2);
    RecordList list;
    Fill(list, family, 400);
    std::mt19937 random(20);
    constexpr int Kills = 50;
    for (int kill = 0; kill < Kills; ++kill) {
        WriteTestFile(Path(), former);
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            Store(list);
            _exit(0);
        }
        usleep(random() % 3000);
        ::kill(child, SIGKILL);
        ASSERT_EQ(waitpid(child, nullptr, 0), child);
        const TestBytes file = File();
        EXPECT_TRUE(file == former ||
                    (Test32(file, 20) == 400 && file.size() == 152 + 400 * family.recordSize))
            << kill;
    }
}

} // namespace
} // namespace tonewright
