// The store of undo levels and the Undo command.
#include "shell_fixture.h"

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

const std::string NoLevel = "No undo level is available.";
const std::string NoStore = "No undo level could be created.";
const std::string InitError = "There has been an error initializing the Undo function.\n\nUndo "
                              "will be unavailable for this session of Tonewright.";

class Undo : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        OpenBank();
    }
    // A level of a list whose first voice has this name.
    void PushNamed(const std::string &tenBytes) {
        SetNameAt(0, tenBytes);
        EXPECT_EQ(UndoPush(nullptr, MainList), 1);
    }
};

TEST_F(Undo, OfFourPushesTheThreeNewestStayWithAMaximumOfThree) {
    PushNamed("ONE       ");
    PushNamed("TWO       ");
    PushNamed("THREE     ");
    PushNamed("FOUR      ");
    EXPECT_EQ(UndoCount(), 3);
    SetNameAt(0, "NOW       ");
    Strings names;
    while (UndoAvailable()) {
        EXPECT_EQ(UndoPop(nullptr, MainList), 1);
        names.push_back(NameAt(0));
    }
    EXPECT_EQ(names, (Strings{"FOUR", "THREE", "TWO"}));
}

TEST_F(Undo, ADirectPopOfAnEmptyStoreShowsAMessage) {
    const auto before = MainList.items;
    desktop.ExpectMessage(NoLevel);
    EXPECT_EQ(UndoPop(nullptr, MainList), 0);
    EXPECT_EQ(MainList.items, before);
}

TEST_F(Undo, TheMenuShowsNoMessageForAnEmptyStore) {
    EXPECT_FALSE(CommandAllowed(CommandUndo));
    EXPECT_EQ(RunUserCommand(CommandUndo), 0);
}

TEST_F(Undo, AnEmptyListMakesNoLevelAndSucceeds) {
    ListReset(MainList);
    EXPECT_EQ(UndoPush(nullptr, MainList), 1);
    EXPECT_FALSE(UndoAvailable());
    UndoEnd(); // even without a store
    CurrentDriverId = NoDriverId;
    EXPECT_EQ(UndoPush(nullptr, MainList), 1);
}

TEST_F(Undo, AListOfFewerThan32RowsFailsToMakeALevel) {
    ListDelete(MainList, 31);
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(UndoPush(nullptr, MainList), 0);
    EXPECT_FALSE(UndoAvailable());
    EXPECT_FALSE(CommandAllowed(CommandUndo));
}

TEST_F(Undo, AFailedPushIntoAFullStoreHasLostTheOldestLevel) {
    PushNamed("ONE       ");
    PushNamed("TWO       ");
    PushNamed("THREE     ");
    ListTakeVoice(MainList, 20);
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(UndoPush(nullptr, MainList), 0);
    EXPECT_EQ(UndoCount(), 2);
    EXPECT_EQ(UndoPop(nullptr, MainList), 1);
    EXPECT_EQ(NameAt(0), "THREE");
    EXPECT_EQ(NameAt(20), "VOICE 21");
}

TEST_F(Undo, WithoutACurrentDriverNoLevelIsMade) {
    CurrentDriverId = NoDriverId;
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(UndoPush(nullptr, MainList), 0);
}

TEST_F(Undo, ADriverThatMakesNoLevelsMakesNone) {
    Dx7Row.MakeUndoLevel = nullptr;
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(UndoPush(nullptr, MainList), 0);
    Dx7Row.MakeUndoLevel = [](QWidget *, const VoiceList &) { return std::vector<std::uint8_t>(); };
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(UndoPush(nullptr, MainList), 0);
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(Undo, NumbersOfLevelsThatMakeNoStore) {
    // -5 of the configuration file is kept modulo 2^32.
    for (const std::uint32_t levels : {0u, 4294967291u, 65537u, 2000000000u}) {
        MaxUndoLevel = levels;
        desktop.ExpectMessage(InitError);
        EXPECT_EQ(UndoInit(nullptr), 0) << levels;
        desktop.ExpectMessage(NoStore);
        EXPECT_EQ(UndoPush(nullptr, MainList), 0) << levels;
        EXPECT_FALSE(UndoAvailable()) << levels;
        desktop.ExpectMessage(NoLevel);
        EXPECT_EQ(UndoPop(nullptr, MainList), 0) << levels;
        EXPECT_EQ(UndoClear(), 0) << levels;
    }
}

TEST_F(Undo, NumbersOfLevelsThatMakeAStore) {
    for (const std::uint32_t levels : {1u, 32u, 65536u}) {
        MaxUndoLevel = levels;
        EXPECT_EQ(UndoInit(nullptr), 1) << levels;
        EXPECT_EQ(UndoPush(nullptr, MainList), 1) << levels;
        EXPECT_EQ(UndoPush(nullptr, MainList), 1) << levels;
        EXPECT_EQ(UndoCount(), levels == 1 ? 1 : 2) << levels;
        EXPECT_EQ(UndoClear(), 1) << levels;
    }
}

TEST_F(Undo, AChangedMaximumWaitsForTheNextStart) {
    MaxUndoLevel = 1;
    for (int i = 0; i < 5; ++i) {
        UndoPush(nullptr, MainList);
    }
    EXPECT_EQ(UndoCount(), 3);
    UndoEnd();
    UndoInit(nullptr);
    UndoPush(nullptr, MainList);
    UndoPush(nullptr, MainList);
    EXPECT_EQ(UndoCount(), 1);
}

TEST_F(Undo, ALevelRestoresSelectionAndScrollPositionWithTheVoices) {
    const auto before = MainList.items;
    ListSetVisibleRows(MainList, 10);
    ListSelect(MainList, 20);
    ListSetTopRow(MainList, 3); // the selected row is out of sight
    UndoPush(nullptr, MainList);
    ListReset(MainList);
    EXPECT_EQ(UndoPop(nullptr, MainList), 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(MainList.selection, 20);
    EXPECT_EQ(MainList.topRow, 3);
}

TEST_F(Undo, ALevelWithoutASelectionRestoresNone) {
    ListSelect(MainList, NoRow);
    UndoPush(nullptr, MainList);
    ListSelect(MainList, 9);
    UndoPop(nullptr, MainList);
    EXPECT_EQ(MainList.selection, NoRow);
}

TEST_F(Undo, ALevelComesBackUnderAnotherDriverAsTheVoicesThatItHolds) {
    const auto before = MainList.items;
    UndoPush(nullptr, MainList);
    ListReset(MainList);
    CurrentDriverId = RefaceDriverId;
    EXPECT_EQ(UndoPop(nullptr, MainList), 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_STREQ(VoiceObjectName(*ListVoice(MainList, 4)), "VOICE 05");
}

TEST_F(Undo, LevelsHoldTheVoicesOfTheOtherFamilyToo) {
    ListReset(MainList);
    CurrentDriverId = RefaceDriverId;
    for (int row = 0; row < 32; ++row) {
        ListSetVoice(MainList, ListAdd(MainList), RefaceDxVoice(static_cast<std::uint8_t>(row)));
    }
    const auto before = MainList.items;
    EXPECT_EQ(UndoPush(nullptr, MainList), 1);
    ListReset(MainList);
    EXPECT_EQ(UndoPop(nullptr, MainList), 1);
    EXPECT_EQ(MainList.items, before);
}

TEST_F(Undo, TheStoreItselfLeavesDirtyAlone) {
    UndoPush(nullptr, MainList);
    UndoPop(nullptr, MainList);
    EXPECT_FALSE(MainListState.dirty);
    MainListState.dirty = true;
    UndoPush(nullptr, MainList);
    UndoPop(nullptr, MainList);
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(Undo, TheCommandFollowsTheStore) {
    UndoPush(nullptr, MainList);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
    UndoPush(nullptr, MainList);
    UndoPop(nullptr, MainList);
    EXPECT_TRUE(CommandAllowed(CommandUndo));
    UndoPop(nullptr, MainList);
    EXPECT_FALSE(CommandAllowed(CommandUndo));
    UndoPush(nullptr, MainList);
    EXPECT_EQ(UndoClear(), 1);
    EXPECT_FALSE(CommandAllowed(CommandUndo));
    EXPECT_FALSE(UndoAvailable());
    UndoPush(nullptr, MainList);
    EXPECT_EQ(UndoEnd(), 1);
    EXPECT_FALSE(UndoAvailable());
    EXPECT_FALSE(CommandAllowed(CommandUndo));
    UndoInit(nullptr);
    UndoPush(nullptr, MainList);
    UndoInit(nullptr);
    EXPECT_FALSE(CommandAllowed(CommandUndo));
}

TEST_F(Undo, ClearingDisablesTheCommandEvenWithoutAStore) {
    UndoEnd();
    SetRule(CommandRule::UndoLevelThere, true);
    EXPECT_EQ(UndoClear(), 0);
    EXPECT_FALSE(CommandAllowed(CommandUndo));
}

TEST_F(Undo, TheCommandRepaintsTheListAndMarksTheChangeInIt) {
    UndoPush(nullptr, MainList);
    SetNameAt(0, "NOW       ");
    ListSelect(MainList, NoRow);
    RefreshCopy();
    EXPECT_EQ(RunUserCommand(CommandUndo), 1);
    EXPECT_EQ(NameAt(0), "VOICE 01");
    EXPECT_GE(repaints, 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_TRUE(CommandAllowed(CommandCopy)); // row 0 is selected again
    EXPECT_FALSE(CommandAllowed(CommandUndo));
}

TEST_F(Undo, ACommandGoesOnWithoutALevel) {
    ListDelete(MainList, 31);
    MainListState.clickedIndex = 3;
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(RunCommand(CommandMoveUp), 1);
    EXPECT_EQ(Names(2, 3), (Strings{"VOICE 04", "VOICE 03"}));
}

} // namespace
} // namespace tonewright
