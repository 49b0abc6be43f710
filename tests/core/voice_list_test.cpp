// The rules of the voice list: those of a platform list box.
#include "core/voice_list.h"

#include "driver_rows.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

VoiceObject VoiceOf(std::uint8_t mark) {
    const std::uint8_t payload[] = {mark};
    return MakeVoiceObject(FirstDriverId, payload);
}

VoiceList ListOf(int rows) {
    VoiceList list;
    for (int row = 0; row < rows; ++row) {
        ListSetVoice(list, ListAdd(list), VoiceOf(static_cast<std::uint8_t>(row)));
    }
    return list;
}

TEST(VoiceList, DeletingTheSelectedRowLeavesNoSelection) {
    VoiceList list = ListOf(5);
    ListSelect(list, 2);
    EXPECT_TRUE(ListDelete(list, 2));
    EXPECT_EQ(list.selection, NoRow);
    EXPECT_EQ(ListCount(list), 4);
}

TEST(VoiceList, InsertingOrDeletingBeforeTheSelectionShiftsIt) {
    VoiceList list = ListOf(5);
    ListSelect(list, 2);
    EXPECT_EQ(ListInsert(list, 2), 2);
    EXPECT_EQ(list.selection, 3);
    EXPECT_EQ(ListInsert(list, 4), 4);
    EXPECT_EQ(list.selection, 3);
    EXPECT_TRUE(ListDelete(list, 0));
    EXPECT_EQ(list.selection, 2);
    EXPECT_TRUE(ListDelete(list, 4));
    EXPECT_EQ(list.selection, 2);
}

TEST(VoiceList, InsertingBeyondTheCountFails) {
    VoiceList list = ListOf(3);
    EXPECT_EQ(ListInsert(list, 4), NoRow);
    EXPECT_EQ(ListInsert(list, -1), NoRow);
    EXPECT_EQ(ListCount(list), 3);
    EXPECT_EQ(ListInsert(list, 3), 3);
    EXPECT_EQ(ListVoice(list, 3), nullptr);
}

TEST(VoiceList, TopRowLeavesNoGapBelowTheLastRow) {
    VoiceList list = ListOf(10);
    ListSetVisibleRows(list, 4);
    ListSetTopRow(list, 9);
    EXPECT_EQ(list.topRow, 6);
    ListSetTopRow(list, -3);
    EXPECT_EQ(list.topRow, 0);
    ListSetTopRow(list, 6);
    ListDelete(list, 9);
    EXPECT_EQ(list.topRow, 5);
    ListSetVisibleRows(list, 20);
    EXPECT_EQ(list.topRow, 0);
}

TEST(VoiceList, SelectingScrollsTheRowIntoView) {
    VoiceList list = ListOf(10);
    ListSetVisibleRows(list, 4);
    ListSelect(list, 7);
    EXPECT_EQ(list.topRow, 4);
    ListSelect(list, 2);
    EXPECT_EQ(list.topRow, 2);
    ListSelect(list, 99);
    EXPECT_EQ(list.selection, NoRow);
    EXPECT_EQ(list.topRow, 2);
}

TEST(VoiceList, WithoutAViewSelectingARowFurtherDownDoesNotScroll) {
    VoiceList list = ListOf(10);
    ListSelect(list, 7);
    EXPECT_EQ(list.topRow, 0);
}

TEST(VoiceList, SettingAVoiceOfARowThatDoesNotExistChangesNothing) {
    VoiceList list = ListOf(2);
    EXPECT_FALSE(ListSetVoice(list, 2, VoiceOf(9)));
    EXPECT_FALSE(ListSetVoice(list, -1, VoiceOf(9)));
    EXPECT_EQ(*ListVoice(list, 1), VoiceOf(1));
    EXPECT_EQ(ListCount(list), 2);
}

TEST(VoiceList, FreeingTheBlocksKeepsTheRows) {
    VoiceList list = ListOf(3);
    FreeListBlocks(list);
    EXPECT_EQ(ListCount(list), 3);
    EXPECT_EQ(ListVoice(list, 0), nullptr);
}

TEST(VoiceList, FillingIsOneChangeThatLeavesNeitherSelectionNorScrolling) {
    VoiceList list = ListOf(9);
    ListSetVisibleRows(list, 2);
    ListSelect(list, 8);
    std::vector<ListChange> heard;
    list.observer = [&](ListChange change) { heard.push_back(change); };
    ListFill(list, {VoiceOf(21), VoiceObject(), VoiceOf(23), VoiceOf(24)});
    EXPECT_EQ(heard, std::vector{ListChange::Items});
    EXPECT_EQ(list.items,
              (std::vector<VoiceObject>{VoiceOf(21), VoiceObject(), VoiceOf(23), VoiceOf(24)}));
    EXPECT_EQ(ListCount(list), 4);
    EXPECT_EQ(list.selection, NoRow);
    EXPECT_EQ(list.topRow, 0);
}

TEST(VoiceList, AVoiceThatIsWrittenToIsChangedInPlaceAndToldOf) {
    VoiceList list = ListOf(3);
    int heard = 0;
    list.observer = [&](ListChange change) {
        EXPECT_EQ(change, ListChange::Item);
        EXPECT_EQ(*ListVoice(list, 1), VoiceOf(7)) << "the change is made when it is told of";
        ++heard;
    };
    const auto write = [](VoiceObject &voice) { MutablePayloadOf(voice)[0] = 7; };
    EXPECT_TRUE(ListWriteVoice(list, 1, write));
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(*ListVoice(list, 0), VoiceOf(0));
    EXPECT_EQ(*ListVoice(list, 2), VoiceOf(2));
}

TEST(VoiceList, ARowThatHoldsNoVoiceIsNotWrittenTo) {
    VoiceList list = ListOf(2);
    ListAdd(list);
    list.observer = [](ListChange) { ADD_FAILURE() << "nothing has changed"; };
    for (const int row : {-1, 2, 3}) {
        EXPECT_FALSE(ListWriteVoice(list, row, [](VoiceObject &) { ADD_FAILURE(); })) << row;
    }
}

TEST(VoiceList, TakingAVoiceIsToldOfAndLeavesTheRow) {
    VoiceList list = ListOf(2);
    std::vector<ListChange> heard;
    list.observer = [&](ListChange change) { heard.push_back(change); };
    EXPECT_EQ(ListTakeVoice(list, 1), VoiceOf(1));
    EXPECT_EQ(ListTakeVoice(list, 1), VoiceObject{});
    EXPECT_EQ(heard, std::vector{ListChange::Item});
    EXPECT_EQ(ListCount(list), 2);
}

TEST(VoiceList, AListThatIsNotAsItAlwaysIsIsFound) {
    VoiceList sound = ListOf(10);
    ListSetVisibleRows(sound, 4);
    ListSelect(sound, 9);
    EXPECT_EQ(VoiceListFault(sound), nullptr);
    const auto faulty = [&](auto spoil) {
        VoiceList list = sound;
        spoil(list);
        return VoiceListFault(list) != nullptr;
    };
    EXPECT_TRUE(faulty([](VoiceList &list) { list.selection = 10; }));
    EXPECT_TRUE(faulty([](VoiceList &list) { list.selection = -2; }));
    EXPECT_TRUE(faulty([](VoiceList &list) { list.topRow = 7; }));
    EXPECT_TRUE(faulty([](VoiceList &list) { list.topRow = -1; }));
    EXPECT_TRUE(faulty([](VoiceList &list) { list.visibleRows = -1; }));
    EXPECT_TRUE(faulty([](VoiceList &list) { list.itemHeight = 0; }));
}

TEST(VoiceList, TheObserverHearsOfRowsSelectionScrollingAndState) {
    VoiceList list = ListOf(10);
    std::vector<ListChange> heard;
    list.observer = [&](ListChange change) { heard.push_back(change); };
    ListSetVisibleRows(list, 3);
    ListSelect(list, 5);
    ListSetVoice(list, 5, VoiceOf(1));
    ListAdd(list);
    ListEnable(list, false);
    EXPECT_EQ(heard, (std::vector{ListChange::Selection, ListChange::TopRow, ListChange::Item,
                                  ListChange::Items, ListChange::State}));
}

} // namespace
} // namespace tonewright
