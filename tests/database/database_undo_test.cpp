// The levels of undo of a list of records.
#include "database/database_undo.h"

#include "support/scripted_desktop.h"
#include "test_catalogue.h"

namespace tonewright {
namespace {

class DatabaseUndo : public testing::TestWithParam<TestFamily> {
protected:
    const TestFamily &family = GetParam();
    RecordList list;
    ScriptedDesktop desktop;

    void Fill(int records) {
        for (int index = 0; index < records; ++index) {
            RecordListAdd(list, {TestRecordAt(family, index)});
        }
    }
    std::string NameAt(int row) const {
        return std::string(RecordFields(*ListRecord(list, row))->name);
    }
    std::uint32_t Pop() {
        std::uint32_t changed = 99;
        EXPECT_EQ(DatabaseUndoPop(nullptr, list, changed), 1);
        return changed;
    }
};

INSTANTIATE_TEST_SUITE_P(Families, DatabaseUndo, testing::ValuesIn(TestFamilies), LabelOf);

TEST_P(DatabaseUndo, BringsRecordsSelectionScrollPositionAndMarkBack) {
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    ListSetVisibleRows(list, 3);
    Fill(9);
    ListSelect(list, 5);
    ListSetTopRow(list, 4);
    const auto before = list.items;
    EXPECT_FALSE(DatabaseUndoAvailable());
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 1);
    EXPECT_TRUE(DatabaseUndoAvailable());
    RecordListDelete(list, 5);
    RecordListDelete(list, 0);
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, true), 1);
    RecordListDelete(list, 0);
    EXPECT_EQ(Pop(), 1u);
    EXPECT_EQ(ListCount(list), 7);
    EXPECT_EQ(list.selection, NoRow);
    EXPECT_EQ(Pop(), 0u);
    EXPECT_EQ(list.items, before);
    EXPECT_EQ(list.selection, 5);
    EXPECT_EQ(list.topRow, 4);
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_P(DatabaseUndo, ASelectedRowThatWasOutOfSightComesIntoIt) {
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    ListSetVisibleRows(list, 3);
    Fill(9);
    ListSelect(list, 1);
    ListSetTopRow(list, 5);
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 1);
    Pop();
    EXPECT_EQ(list.selection, 1);
    EXPECT_EQ(list.topRow, 1);
}

// The block itself, which no other code reads.
TEST_P(DatabaseUndo, ALevelIsAHeadAndTheRecordsBehindIt) {
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    ListSetVisibleRows(list, 1);
    Fill(3);
    ListSelect(list, 2);
    DatabaseSortMode = 110;
    const std::vector<std::uint8_t> level = DatabaseUndoBuild(list, true);
    TestBytes expected = {'D', 'M', 'e', 'M'};
    const auto size = static_cast<std::uint32_t>(family.recordSize);
    const std::string id = family.idText;
    AppendTest32(expected, 36);
    AppendTest32(expected, size);
    AppendTest32(expected, 3);
    expected.insert(expected.end(), id.begin(), id.end());
    for (const std::uint32_t field : {2u, 2u, 110u, 1u}) { // selection, top row, order, flags
        AppendTest32(expected, field);
    }
    for (int index = 0; index < 3; ++index) {
        const TestBytes record = TestRecordAt(family, index);
        expected.insert(expected.end(), record.begin(), record.end());
    }
    EXPECT_EQ(level, expected);
    list.selection = NoRow;
    EXPECT_EQ(Test32(DatabaseUndoBuild(list, false), 20), 0xFFFFFFFF);
    EXPECT_EQ(Test32(DatabaseUndoBuild(list, false), 32), 0u);
}

TEST_P(DatabaseUndo, TheOldestLevelGivesWayAndOneMoreFindsNone) {
    MaxUndoLevel = 3;
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    Fill(10);
    for (int edit = 0; edit < 4; ++edit) {
        EXPECT_EQ(DatabaseUndoPush(nullptr, list, edit > 0), 1);
        RecordListDelete(list, 0);
    }
    for (const int count : {7, 8, 9}) {
        EXPECT_EQ(Pop(), 1u);
        EXPECT_EQ(ListCount(list), count);
    }
    desktop.ExpectMessage("No undo level is available.");
    std::uint32_t changed = 5;
    EXPECT_EQ(DatabaseUndoPop(nullptr, list, changed), 0);
    EXPECT_EQ(changed, 5u);
    EXPECT_EQ(ListCount(list), 9);
}

TEST_P(DatabaseUndo, AListSortedByDateComesBackSortedByName) {
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    for (const auto &[mode, back] : {std::pair{109u, 107u},
                                     {108u, 108u},
                                     {110u, 110u},
                                     {107u, 107u},
                                     {5u, 107u},
                                     {111u, 107u}}) {
        DatabaseSortMode = mode;
        RecordListFill(list, {{TestRecord(family, 0, {"B", "x", 1, 1})},
                              {TestRecord(family, 0, {"A", "y", 2, 2})}});
        EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 1);
        DatabaseSortMode = 109;
        Pop();
        EXPECT_EQ(DatabaseSortMode, back) << mode;
        EXPECT_EQ(NameAt(0), back == 107 ? "A" : "B") << mode;
    }
}

TEST_P(DatabaseUndo, OfAnEmptyListNoLevelIsMade) {
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 1);
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_P(DatabaseUndo, WithoutAStoreEachPushSaysSo) {
    for (const std::uint32_t levels : {0u, 65537u}) {
        MaxUndoLevel = levels;
        desktop.ExpectMessage(
            "There has been an error initializing the Undo function.\n\nUndo will "
            "be unavailable for this session of the Tonewright database.");
        EXPECT_EQ(DatabaseUndoInit(nullptr), 0);
        Fill(1);
        desktop.ExpectMessage("No undo level could be created.");
        EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 0);
        EXPECT_FALSE(DatabaseUndoAvailable());
    }
    MaxUndoLevel = 65536;
    EXPECT_EQ(DatabaseUndoInit(nullptr), 1);
}

TEST_P(DatabaseUndo, RecordsOfAnotherSizeThanTheFirstOneSaysMakeNoLevel) {
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    const std::string failure = "There has been an error building this undo level.";
    DatabaseRecord first{TestRecordAt(family, 0)};
    first.bytes[20] ^= 1;
    RecordListAdd(list, first);
    desktop.ExpectMessage(failure);
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 0);
    RecordListFill(list, {{TestRecordAt(family, 0)}, {TestRecordAt(family, 1)}});
    list.items[1].bytes.pop_back();
    desktop.ExpectMessage(failure);
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 0);
    EXPECT_FALSE(DatabaseUndoAvailable());
}

TEST_P(DatabaseUndo, TheEndOfTheWindowDropsAllLevels) {
    ASSERT_EQ(DatabaseUndoInit(nullptr), 1);
    Fill(1);
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 1);
    DatabaseUndoEnd();
    EXPECT_FALSE(DatabaseUndoAvailable());
    desktop.ExpectMessage("No undo level could be created.");
    EXPECT_EQ(DatabaseUndoPush(nullptr, list, false), 0);
}

} // namespace
} // namespace tonewright
