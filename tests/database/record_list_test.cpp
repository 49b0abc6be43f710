// The list of records: its orders, and the catalogue that it is read from and written to.
#include "database/record_list.h"

#include "database/record_sort.h"
#include "support/scripted_desktop.h"
#include "test_catalogue.h"

#include <algorithm>
#include <random>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

const TestFamily &Dx7 = TestFamilies[0];

DatabaseRecord RecordOf(const TestEntry &entry) {
    return {TestRecord(Dx7, 0, entry)};
}

std::vector<std::string> NamesOf(const RecordList &list) {
    std::vector<std::string> names;
    for (const DatabaseRecord &record : list.items) {
        names.emplace_back(RecordFields(record)->name);
    }
    return names;
}

using Names = std::vector<std::string>;

// In four different orders by what they are sorted by; two of them share each but the name.
const TestEntry Entries[] = {
    {"delta", "Zoo", 5, 4'000'000'000},
    {"Alpha", "moon", 0xFFFFFFFF, 7},
    {"charlie", "Moon", 31, 7},
    {"Bravo", "zoo", 5, 100},
};

class RecordOrder : public testing::Test {
protected:
    RecordList list;

    // Without a selection from the reverse of the order before: equals keep the order that they
    // had.
    Names InOrder(std::uint32_t mode) {
        if (list.selection == NoRow) {
            std::ranges::reverse(list.items);
        }
        DatabaseSortMode = mode;
        RecordListSort(list);
        return NamesOf(list);
    }
    void Fill() {
        for (const TestEntry &entry : Entries) {
            RecordListAdd(list, RecordOf(entry));
        }
    }
};

TEST_F(RecordOrder, ByNameWithoutRegardToCase) {
    Fill();
    EXPECT_EQ(NamesOf(list), (Names{"Alpha", "Bravo", "charlie", "delta"}));
    EXPECT_EQ(InOrder(107), (Names{"Alpha", "Bravo", "charlie", "delta"}));
}

TEST_F(RecordOrder, BySourceAndThenByName) {
    Fill();
    EXPECT_EQ(InOrder(108), (Names{"Alpha", "charlie", "Bravo", "delta"}));
}

TEST_F(RecordOrder, ByDateWithoutASignAndThenByName) {
    Fill();
    EXPECT_EQ(InOrder(109), (Names{"Alpha", "charlie", "Bravo", "delta"}));
}

TEST_F(RecordOrder, ByPositionWithASignAndThenByName) {
    Fill();
    EXPECT_EQ(InOrder(110), (Names{"Alpha", "Bravo", "delta", "charlie"}));
}

TEST_F(RecordOrder, AnyOtherModeIsByName) {
    Fill();
    for (const std::uint32_t mode : {0u, 106u, 111u, 0xFFFFFFFFu}) {
        EXPECT_EQ(InOrder(mode), (Names{"Alpha", "Bravo", "charlie", "delta"})) << mode;
    }
}

// Small letters stand behind "_" and in front of "{", and bytes above 7F behind all.
TEST_F(RecordOrder, TextsAreComparedByTheirBytesWithCapitalsTakenForSmallLetters) {
    for (const char *name :
         {"{", "Z", "_", "a", "\xE4", "\xC4", "aa", "", "12345678", "123456789"}) {
        RecordListAdd(list, RecordOf({name, "s", 0, 0}));
    }
    const Names expected = {"", "12345678", "123456789", "_", "a", "aa", "Z", "{", "\xC4", "\xE4"};
    EXPECT_EQ(NamesOf(list), expected);
    EXPECT_EQ(InOrder(107), expected);
}

TEST_F(RecordOrder, NamesThatBeginWithTheSameEightCharactersAreComparedToTheirEnd) {
    for (const char *name : {"Electric Piano 2", "ELECTRIC piano 1", "Electric", "electric B"}) {
        RecordListAdd(list, RecordOf({name, "s", 0, 0}));
    }
    EXPECT_EQ(InOrder(107),
              (Names{"Electric", "electric B", "ELECTRIC piano 1", "Electric Piano 2"}));
}

TEST_F(RecordOrder, SortingAllAtOnceGivesWhatAddingOneByOneGives) {
    std::mt19937 random(5);
    for (int turn = 0; turn < 200; ++turn) {
        std::vector<DatabaseRecord> records;
        const int count = static_cast<int>(random() % 40);
        for (int n = 0; n < count; ++n) {
            std::string name, source;
            for (unsigned size = random() % 11; size > 0; --size) {
                name += "aAbB _"[random() % 6];
                source += "xXy"[random() % 3];
            }
            records.push_back(RecordOf({name, source, static_cast<std::uint32_t>(random() % 3 - 1),
                                        static_cast<std::uint32_t>(random() % 3)}));
            records.back().bytes[290] = static_cast<std::uint8_t>(n); // tells equals apart
        }
        DatabaseSortMode = 107 + turn % 4;
        RecordList one, other;
        for (const DatabaseRecord &record : records) {
            RecordListAdd(one, record);
        }
        RecordListFill(other, records);
        EXPECT_EQ(one.items, other.items);
    }
}

TEST_F(RecordOrder, TheSelectedRecordStaysSelected) {
    Fill();
    ListSelect(list, 2);
    InOrder(108);
    EXPECT_EQ(list.selection, 1);
    InOrder(110);
    EXPECT_EQ(list.selection, 3);
    ListSelect(list, NoRow);
    InOrder(107);
    EXPECT_EQ(list.selection, NoRow);
}

// All four fields are compared, the texts with their case.
TEST_F(RecordOrder, OfEqualRecordsTheFirstIsSelected) {
    for (const TestEntry &entry : {TestEntry{"same", "s", 1, 2}, TestEntry{"SAME", "s", 1, 2},
                                   TestEntry{"same", "S", 1, 2}, TestEntry{"same", "s", 2, 2},
                                   TestEntry{"same", "s", 1, 3}, TestEntry{"same", "s", 1, 2}}) {
        RecordListAdd(list, RecordOf(entry));
    }
    const int first[] = {0, 1, 2, 3, 4, 0};
    for (int row = 0; row < 6; ++row) {
        ListSelect(list, row);
        RecordListSort(list);
        EXPECT_EQ(list.selection, first[row]);
    }
}

TEST_F(RecordOrder, WithoutAnOrderRecordsStandAsTheyWereAdded) {
    list.sorted = false;
    Fill();
    EXPECT_EQ(NamesOf(list), (Names{"delta", "Alpha", "charlie", "Bravo"}));
    RecordListSort(list);
    EXPECT_EQ(NamesOf(list), (Names{"delta", "Alpha", "charlie", "Bravo"}));
}

TEST_F(RecordOrder, ARecordInThePlaceOfAnotherStaysThereUntilTheListIsSorted) {
    Fill();
    int told = 0;
    list.observer = [&told](ListChange change) { told += change == ListChange::Item; };
    EXPECT_TRUE(RecordListPut(list, 0, RecordOf({"zulu", "s", 0, 0})));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(NamesOf(list)[0], "zulu");
    RecordListSort(list);
    EXPECT_EQ(NamesOf(list)[3], "zulu");
    EXPECT_FALSE(RecordListPut(list, 4, RecordOf({"x", "s", 0, 0})));
    EXPECT_FALSE(RecordListPut(list, 0, {}));
}

TEST_F(RecordOrder, ARowThatIsDeletedTakesItsRecordAlong) {
    Fill();
    ListSelect(list, 2);
    EXPECT_TRUE(RecordListDelete(list, 1));
    EXPECT_EQ(NamesOf(list), (Names{"Alpha", "charlie", "delta"}));
    EXPECT_EQ(list.selection, 1);
    EXPECT_FALSE(RecordListDelete(list, 3));
    EXPECT_FALSE(RecordListDelete(list, -1));
    EXPECT_EQ(ListRecord(list, 3), nullptr);
    EXPECT_EQ(RecordListAdd(list, {}), NoRow);
    EXPECT_EQ(RecordListFault(list), nullptr);
    list.items.pop_back();
    EXPECT_STREQ(RecordListFault(list), "the rows are not as many as the records");
}

// ---- the catalogue

class CatalogueList : public CatalogueTest {
protected:
    RecordList list;
    const int index = DriverIndexOfId(row.id);

    int Load() { return DatabaseLoadList(index, list); }
    int Store() { return DatabaseStoreList(nullptr, list, index); }
    std::string Backup() const {
        return folder.File(std::string("My Tonewright 17 Documents/Voices") +
                           family.backupExtension);
    }
};

INSTANTIATE_TEST_SUITE_P(Families, CatalogueList, testing::ValuesIn(TestFamilies), LabelOf);

TEST_P(CatalogueList, IsLoadedInItsOrderWithTheFirstSelected) {
    TestBytes bytes = TestCatalogueHeader(family, 3);
    for (const int number : {2, 0, 1}) {
        const TestBytes record = TestRecordAt(family, number);
        bytes.insert(bytes.end(), record.begin(), record.end());
    }
    WriteTestFile(Path(), bytes);
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(NamesOf(list), (Names{"Name 0", "Name 1", "Name 2"}));
    EXPECT_EQ(list.selection, 0);
    list.sorted = false;
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(NamesOf(list), (Names{"Name 2", "Name 0", "Name 1"}));
}

TEST_P(CatalogueList, AMissingFileIsMadeByLoading) {
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(Size(), 152u);
    EXPECT_EQ(ListCount(list), 0);
    EXPECT_EQ(list.selection, NoRow);
}

TEST_P(CatalogueList, WithoutRecordsTheListKeepsWhatItHolds) {
    RecordListAdd(list, {TestRecordAt(family, 5)});
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(NamesOf(list), (Names{"Name 5"}));
    EXPECT_EQ(list.selection, 0);
}

TEST_P(CatalogueList, AShortFileAForeignMagicAndAnotherFamilyGiveAnEmptyListAndStay) {
    const TestBytes whole = TestCatalogue(family, 1, 1);
    TestBytes foreign = whole, other = whole;
    foreign[7] ^= 1;
    other[8] ^= 1;
    const TestBytes empty, cut(whole.begin(), whole.begin() + 151);
    for (const TestBytes &bytes : {empty, cut, foreign, other}) {
        WriteTestFile(Path(), bytes);
        EXPECT_EQ(Load(), 0);
        EXPECT_EQ(ListCount(list), 0);
        EXPECT_EQ(File(), bytes);
    }
}

TEST_P(CatalogueList, ACountBeyondTheFileGivesTheRecordsThatAreThere) {
    WriteTestFile(Path(), TestCatalogue(family, 3, 0xFFFFFFFF));
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(ListCount(list), 3);
}

TEST_P(CatalogueList, RecordsThatCannotBeReadArePassedOver) {
    TestBytes bytes = TestCatalogue(family, 4, 4);
    bytes[152 + family.recordSize] ^= 1;
    bytes.pop_back();
    WriteTestFile(Path(), bytes);
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(NamesOf(list), (Names{"Name 0", "Name 2"}));
}

TEST_P(CatalogueList, RecordsBehindTheCountAreInvisible) {
    WriteTestFile(Path(), TestCatalogue(family, 4, 2));
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(ListCount(list), 2);
}

TEST_P(CatalogueList, LoadingRewritesTheTimeOfTheLastChangeAndStoringThatOfTheCreationToo) {
    WriteTestFile(Path(), TestCatalogue(family, 2, 2));
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(Test32(File(), 12), 1000u);
    EXPECT_GT(Test32(File(), 16), 1'000'000u);
    EXPECT_EQ(Store(), 1);
    EXPECT_GT(Test32(File(), 12), 1'000'000u);
}

TEST_P(CatalogueList, WhatIsLoadedIsStoredByteForByteInTheOrderThatIsShown) {
    TestBytes bytes = TestCatalogue(family, 12, 12);
    for (std::size_t at = 152 + 162; at < 152 + 290; ++at) {
        bytes[at] = static_cast<std::uint8_t>(at); // of no field
    }
    bytes[152 + 4] = '?';
    WriteTestFile(Path(), bytes);
    EXPECT_EQ(Load(), 1);
    EXPECT_EQ(Store(), 1);
    const TestBytes file = File();
    ASSERT_EQ(file.size(), bytes.size());
    EXPECT_EQ(Test32(file, 20), 12u);
    EXPECT_EQ(TestTextAt(file, 24, 128), std::string(128, '\0'));
    const int order[] = {0, 1, 10, 11, 2, 3, 4, 5, 6, 7, 8, 9};
    for (std::size_t place = 0; place < 12; ++place) {
        EXPECT_EQ(TestTextAt(file, 152 + place * family.recordSize, family.recordSize),
                  TestTextAt(bytes,
                             152 + static_cast<std::size_t>(order[place]) * family.recordSize,
                             family.recordSize));
    }
}

TEST_P(CatalogueList, TheFormerFileBecomesTheBackupWhenTheSettingsSaySo) {
    const TestBytes former = TestCatalogue(family, 3, 3);
    WriteTestFile(Path(), former);
    WriteTestText(Backup(), "older");
    RecordListAdd(list, {TestRecordAt(family, 7)});
    EXPECT_EQ(Store(), 1);
    EXPECT_EQ(ReadTestFile(Backup()), former);
    EXPECT_EQ(Size(), 152 + family.recordSize);
    CreateBackups = 0;
    fs::remove(Backup());
    EXPECT_EQ(Store(), 1);
    EXPECT_FALSE(fs::exists(Backup()));
}

TEST_P(CatalogueList, WithoutABackupItIsStoredOnlyAfterYes) {
    const std::string question =
        "Warning: there has been an error creating a backup for your file."
        "\r\n\r\nClick on Yes to proceed, or click on No to abort this save.";
    const TestBytes former = TestCatalogue(family, 3, 3);
    WriteTestFile(Path(), former);
    fs::create_directory(Backup());
    RecordListAdd(list, {TestRecordAt(family, 7)});
    ScriptedDesktop desktop;
    desktop.ExpectYesNo(question, ResultNo);
    EXPECT_EQ(Store(), 0);
    EXPECT_EQ(File(), former);
    desktop.ExpectYesNo(question, ResultYes);
    EXPECT_EQ(Store(), 1);
    EXPECT_EQ(Size(), 152 + family.recordSize);
}

TEST_P(CatalogueList, ARowThatIsNotThereLoadsAndStoresNothing) {
    RecordListAdd(list, {TestRecordAt(family, 7)});
    for (const int other : {-1, 99}) {
        EXPECT_EQ(DatabaseLoadList(other, list), 0);
        EXPECT_EQ(DatabaseStoreList(nullptr, list, other), 0);
    }
    EXPECT_EQ(ListCount(list), 1);
    EXPECT_FALSE(HasFile());
}

} // namespace
} // namespace tonewright
