// The command that opens the catalogue window for a row of the list: its level of undo, its row,
// and what comes of the window's result. The window itself is stood in for.
#include "shell_fixture.h"

#include "database/database_window.h"

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

class InsertFromDatabase : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        OpenBank();
        TheDatabaseViews.RepaintVoices = [this] { ++repaints; };
    }
    // The window's answer, with that voice chosen.
    void Answer(int result, const VoiceObject &voice = {}) {
        TheDatabaseViews.ShowBox = [this, result, voice](QWidget *owner, DatabaseWindow &state) {
            EXPECT_EQ(owner, TheShellWindow.window);
            EXPECT_EQ(MainListState.clickedIndex, NoRow);
            ++boxes;
            shownFamily = DriverIdAt(state.driverIndex);
            state.chosen = voice;
            return result;
        };
    }
    static int Insert(int row) {
        MainListState.clickedIndex = row;
        return RunCommand(CommandInsertFromDatabase);
    }
    static VoiceObject Dx7Voice() {
        return MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(156, 'N'), {});
    }

    int boxes = 0;
    DriverId shownFamily = NoDriverId;
};

TEST_F(InsertFromDatabase, TheChosenVoiceTakesTheClickedRowWithOneSound) {
    ListSelect(MainList, 9);
    Answer(1, Dx7Voice());
    EXPECT_EQ(Insert(4), 1);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(shownFamily, Dx7DriverId);
    EXPECT_EQ(Names(3, 5), (Strings{"VOICE 04", "NNNNNNNNNN", "VOICE 06"}));
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    EXPECT_EQ(repaints, 1);
    EXPECT_TRUE(MainListState.dirty);
    EXPECT_EQ(MainList.selection, 9);
    EXPECT_EQ(MainListState.clickedIndex, NoRow);
    EXPECT_EQ(UndoCount(), 1);
    EXPECT_EQ(RunCommand(CommandUndo), 1);
    EXPECT_EQ(NameAt(4), "VOICE 05");
}

TEST_F(InsertFromDatabase, TheSelectionIsNotTakenButTheWindowOpensAndMarksTheDocument) {
    ListSelect(MainList, 9);
    Answer(1, Dx7Voice());
    const auto before = MainList.items;
    EXPECT_EQ(Insert(NoRow), 1);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(InsertFromDatabase, ACancelledWindowMarksNothingAndStillCostsALevel) {
    Answer(0, Dx7Voice());
    const auto before = MainList.items;
    EXPECT_EQ(Insert(4), 0);
    EXPECT_EQ(MainList.items, before);
    EXPECT_FALSE(MainListState.dirty);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_EQ(UndoCount(), 1);
}

TEST_F(InsertFromDatabase, OkWithoutAVoiceMarksTheDocument) {
    Answer(1);
    const auto before = MainList.items;
    EXPECT_EQ(Insert(4), 1);
    EXPECT_EQ(MainList.items, before);
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(MainListState.dirty);
}

TEST_F(InsertFromDatabase, WithoutACurrentFamilyItStopsBehindItsLevel) {
    CurrentDriverId = NoDriverId;
    Answer(1, Dx7Voice());
    desktop.ExpectMessage(LevelError); // whose levels are those of a family
    EXPECT_EQ(Insert(4), 0);
    EXPECT_EQ(boxes, 0);
    EXPECT_EQ(MainListState.clickedIndex, NoRow);
    EXPECT_FALSE(MainListState.dirty);
}

TEST_F(InsertFromDatabase, ALevelThatCannotBeMadeIsToldOfAndTheWindowOpensAllTheSame) {
    while (ListCount(MainList) > 3) {
        ListDelete(MainList, 3);
    }
    Answer(1, Dx7Voice());
    desktop.ExpectMessage(LevelError);
    EXPECT_EQ(Insert(2), 1);
    EXPECT_EQ(boxes, 1);
    EXPECT_EQ(NameAt(2), "NNNNNNNNNN");
    EXPECT_EQ(UndoCount(), 0);
}

TEST_F(InsertFromDatabase, ARowBehindABankGetsNoVoice) {
    ListAdd(MainList);
    Answer(1, Dx7Voice());
    EXPECT_EQ(Insert(32), 1);
    EXPECT_EQ(NameAt(32), "-");
    EXPECT_TRUE(desktop.sounds.empty());
    EXPECT_TRUE(MainListState.dirty);
}

} // namespace
} // namespace tonewright
