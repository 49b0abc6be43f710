// The block of one undo level, byte for byte.
#include "core/undo_level.h"

#include "driver_rows.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

VoiceObject VoiceOf(std::uint8_t mark, std::size_t payloadSize = 3) {
    const std::vector<std::uint8_t> payload(payloadSize, mark);
    return MakeVoiceObject(FirstDriverId, payload);
}

VoiceList FullList() {
    VoiceList list;
    for (int row = 0; row < 32; ++row) {
        ListSetVoice(list, ListAdd(list), VoiceOf(static_cast<std::uint8_t>(row)));
    }
    ListSetVisibleRows(list, 10);
    return list;
}

TEST(UndoLevel, HoldsTheHeaderAndThirtyTwoWholeBlocks) {
    VoiceList list = FullList();
    ListSelect(list, 5);
    ListSetTopRow(list, 3);
    const auto level = MakeUndoLevel(nullptr, list);
    ASSERT_EQ(level.size(), 36u + 32 * 55);
    const std::vector<std::uint8_t> header = {
        0x44, 0x4D, 0x65, 0x4D, // the number 0x4D654D44, low byte first
        36,   0,    0,    0,    55, 0, 0, 0, 32, 0, 0, 0, 'y', '7', 'X', 'D',
        5,    0,    0,    0,    3,  0, 0, 0, 0,  0, 0, 0, 0,   0,   0,   0};
    EXPECT_EQ(std::vector(level.begin(), level.begin() + 36), header);
    for (int row = 0; row < 32; ++row) {
        const VoiceObject voice = VoiceOf(static_cast<std::uint8_t>(row));
        EXPECT_TRUE(
            std::equal(voice.bytes.begin(), voice.bytes.end(), level.begin() + 36 + row * 55))
            << row;
    }
}

TEST(UndoLevel, HasAsManyItemsAsABankOfTheFamilyHasRows) {
    VoiceList list = FullList();
    FirstRow.bankRows = 3;
    const auto level = MakeUndoLevel(nullptr, list);
    RestoreDriverRows();
    ASSERT_EQ(level.size(), 36u + 3 * 55);
    EXPECT_EQ(ReadLittle32(level, 12), 3u);
    ASSERT_TRUE(RestoreUndoLevel(list, level));
    EXPECT_EQ(ListCount(list), 3);
}

TEST(UndoLevel, OfAFamilyInNoRowHasThirtyTwoItems) {
    VoiceList list = FullList();
    for (VoiceObject &voice : list.items) {
        WriteLittle32(voice.bytes, 16, MakeDriverId("none"));
    }
    EXPECT_EQ(MakeUndoLevel(nullptr, list).size(), 36u + 32 * 55);
}

TEST(UndoLevel, NoSelectionIsMinusOne) {
    const auto level = MakeUndoLevel(nullptr, FullList());
    EXPECT_EQ(ReadLittle32(level, 20), 0xFFFFFFFFu);
}

TEST(UndoLevel, RestoresVoicesSelectionAndScrollPositionTogether) {
    VoiceList list = FullList();
    ListSelect(list, 20);
    ListSetTopRow(list, 2); // the selected row is out of sight
    const auto level = MakeUndoLevel(nullptr, list);
    const auto before = list.items;
    ListSetVoice(list, 7, VoiceOf(99));
    ListSelect(list, 0);
    ListSetTopRow(list, 22);
    ASSERT_TRUE(RestoreUndoLevel(list, level));
    EXPECT_EQ(list.items, before);
    EXPECT_EQ(list.selection, 20);
    EXPECT_EQ(list.topRow, 2);
}

TEST(UndoLevel, AListOfFewerThanThirtyTwoRowsMakesNone) {
    VoiceList list = FullList();
    ListDelete(list, 31);
    EXPECT_TRUE(MakeUndoLevel(nullptr, list).empty());
}

TEST(UndoLevel, ARowWithoutAVoiceMakesNone) {
    VoiceList list = FullList();
    ListTakeVoice(list, 9);
    EXPECT_TRUE(MakeUndoLevel(nullptr, list).empty());
    list = FullList();
    ListTakeVoice(list, 0);
    EXPECT_TRUE(MakeUndoLevel(nullptr, list).empty());
}

TEST(UndoLevel, ARowShorterThanTheFirstMakesNone) {
    VoiceList list = FullList();
    ListSetVoice(list, 9, VoiceOf(9, 2));
    EXPECT_TRUE(MakeUndoLevel(nullptr, list).empty());
}

TEST(UndoLevel, ALongerRowIsCutToTheLengthOfTheFirst) {
    VoiceList list = FullList();
    ListSetVoice(list, 9, VoiceOf(9, 8));
    const auto level = MakeUndoLevel(nullptr, list);
    ASSERT_EQ(level.size(), 36u + 32 * 55);
}

TEST(UndoLevel, AFirstRowWhoseSizesLieMakesNone) {
    VoiceList list = FullList();
    VoiceObject lying = VoiceOf(0);
    WriteLittle32(lying.bytes, 8, 0x7FFFFFFF);
    ListSetVoice(list, 0, lying);
    EXPECT_TRUE(MakeUndoLevel(nullptr, list).empty());
}

TEST(UndoLevel, ABlockThatIsNoLevelLeavesTheListAlone) {
    VoiceList list = FullList();
    const auto before = list.items;
    auto level = MakeUndoLevel(nullptr, list);
    level[0] ^= 1;
    EXPECT_FALSE(RestoreUndoLevel(list, level));
    EXPECT_FALSE(RestoreUndoLevel(list, std::span(level).first(20)));
    EXPECT_EQ(list.items, before);
}

} // namespace
} // namespace tonewright
