// The catalogue window without its window: what each of its commands does, asks and changes.
#include "database/database_window.h"

#include "support/scripted_desktop.h"
#include "test_catalogue.h"

namespace tonewright {
namespace {

// The launcher, with a box that chooses a voice at once.
class DatabaseLauncher : public CatalogueTest {
protected:
    ScriptedDesktop desktop;
    VoiceList list;
    int repaints = 0;
    VoiceObject chosen = TestVoiceOf(GetParam(), 7);

    DatabaseLauncher() {
        for (int row = 0; row < 34; ++row) {
            ListAdd(list);
        }
        TheDatabaseViews.RepaintVoices = [this] { ++repaints; };
    }
    int Run(int target, int result) {
        TheDatabaseViews.ShowBox = [this, result](QWidget *, DatabaseWindow &state) {
            EXPECT_EQ(state.driverIndex, RowIndex());
            EXPECT_EQ(state.changed, 0u);
            EXPECT_TRUE(state.chosen.bytes.empty());
            state.chosen = chosen;
            return result;
        };
        return RunDatabaseWindow(nullptr, list, target, RowIndex());
    }
    int RowIndex() const { return DriverIndexOfId(row.id); }
    bool IsPlaced(int row) const {
        return ListVoice(list, row) && *ListVoice(list, row) == TestVoiceOf(GetParam(), 7);
    }
    void ExpectNothingPlaced() {
        for (int row = 0; row < ListCount(list); ++row) {
            EXPECT_EQ(ListVoice(list, row), nullptr) << row;
        }
        EXPECT_EQ(repaints, 0);
        EXPECT_TRUE(desktop.sounds.empty());
    }
};

TEST_P(DatabaseLauncher, PutsTheChosenVoiceIntoTheTargetRow) {
    for (const int row : {0, 31}) {
        EXPECT_EQ(Run(row, 1), 1);
        EXPECT_TRUE(IsPlaced(row));
    }
    EXPECT_EQ(repaints, 2);
    EXPECT_EQ(desktop.sounds.size(), 2u);
}

TEST_P(DatabaseLauncher, PlacesNothingWithoutATargetRowOfABank) {
    EXPECT_EQ(Run(NoRow, 1), 1);
    EXPECT_EQ(Run(32, 1), 1);
    ExpectNothingPlaced();
}

TEST_P(DatabaseLauncher, PlacesNothingAfterCancel) {
    EXPECT_EQ(Run(3, 0), 0);
    ExpectNothingPlaced();
}

TEST_P(DatabaseLauncher, PlacesNothingWhenNoVoiceWasChosen) {
    chosen = {};
    EXPECT_EQ(Run(3, 1), 1);
    ExpectNothingPlaced();
}

TEST_P(DatabaseLauncher, IsCancelledWhereThereIsNoBox) {
    EXPECT_EQ(RunDatabaseWindow(nullptr, list, 3, RowIndex()), 0);
    ExpectNothingPlaced();
}

INSTANTIATE_TEST_SUITE_P(Families, DatabaseLauncher, testing::ValuesIn(TestFamilies), LabelOf);

} // namespace
} // namespace tonewright
