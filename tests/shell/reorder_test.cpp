// What the end of a drag inside the list does.
#include "shell/reorder.h"

#include "shell_fixture.h"

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

class Reorder : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        OpenBank();
    }
};

TEST_F(Reorder, AVoiceDraggedUpwardLandsOnTheTargetRowAndIsSelected) {
    DropVoiceAt(5, 2);
    EXPECT_EQ(Names(1, 6),
              (Strings{"VOICE 02", "VOICE 06", "VOICE 03", "VOICE 04", "VOICE 05", "VOICE 07"}));
    EXPECT_EQ(MainList.selection, 2);
    EXPECT_EQ(ListCount(MainList), 32);
}

TEST_F(Reorder, AVoiceDraggedDownwardLandsAboveTheTargetAndTheVoiceBelowItIsSelected) {
    DropVoiceAt(2, 5);
    EXPECT_EQ(Names(1, 6),
              (Strings{"VOICE 02", "VOICE 04", "VOICE 05", "VOICE 03", "VOICE 06", "VOICE 07"}));
    EXPECT_EQ(MainList.selection, 5);
    EXPECT_EQ(NameAt(MainList.selection), "VOICE 06");
    EXPECT_EQ(ListCount(MainList), 32);
}

TEST_F(Reorder, AVoiceDraggedToTheNextRowKeepsItsPlaceAndTheNextIsSelected) {
    DropVoiceAt(2, 3);
    EXPECT_EQ(Names(1, 4), (Strings{"VOICE 02", "VOICE 03", "VOICE 04", "VOICE 05"}));
    EXPECT_EQ(MainList.selection, 3);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(Reorder, NothingComesBelowTheLastRow) {
    DropVoiceAt(0, 31);
    EXPECT_EQ(Names(29, 31), (Strings{"VOICE 31", "VOICE 01", "VOICE 32"}));
    EXPECT_EQ(MainList.selection, 31);
}

TEST_F(Reorder, ADragCostsOneLevelAndMarksTheDocument) {
    const auto before = MainList.items;
    DropVoiceAt(31, 0);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
    EXPECT_TRUE(desktop.sounds.empty());
    UndoPop(nullptr, MainList);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(MainList.selection, 0);
}

TEST_F(Reorder, ARowWithoutAVoiceMovesLikeAnyOtherThoughWithoutALevel) {
    ListTakeVoice(MainList, 5);
    desktop.ExpectMessage(LevelError);
    DropVoiceAt(5, 2);
    EXPECT_EQ(Names(1, 6),
              (Strings{"VOICE 02", "-", "VOICE 03", "VOICE 04", "VOICE 05", "VOICE 07"}));
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(Reorder, ARowDroppedOnItselfOrOutsideTheListChangesNothing) {
    const auto before = MainList.items;
    for (const auto &[from, to] : {std::pair(3, 3), {3, -1}, {3, 32}, {-1, 3}, {32, 3}}) {
        DropVoiceAt(from, to);
    }
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(MainList.selection, 0);
    EXPECT_EQ(UndoCount(), 0);
    EXPECT_FALSE(MainListState.dirty);
}

} // namespace
} // namespace tonewright
