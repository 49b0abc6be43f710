// Voices of the list into the catalogue of a disk that is full: what is lost without careful mode,
// and what it says and keeps.
#include "shell_fixture.h"

#include "support/posix_limits.h"

#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

class AddToFullDisk : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        fs::create_directory(Folder());
        OpenBank();
    }
    std::string Folder() const { return home.File("My Tonewright 17 Documents"); }
    std::string Path() const { return Folder() + "/Voices.syx_db"; }
    std::size_t Count() const { return ReadTestFile(Path()).at(20); }

    // Adds as many voices of the list, one by one, as find room; their number.
    int AddUntilFull(const std::string &message) {
        FillDisk(Folder() + "/full");
        desktop.ExpectMessage(message);
        for (int row = 1; row < 32; ++row) { // the first one is there
            MainListState.clickedIndex = row;
            if (RunCommand(CommandAddToDatabase) == 0) {
                return row - 1;
            }
        }
        return -1;
    }
    void AddFirst() {
        MainListState.clickedIndex = 0;
        ASSERT_EQ(RunCommand(CommandAddToDatabase), 1);
    }
};

TEST_F(AddToFullDisk, TheCatalogueGoesWithoutCarefulMode) {
    RunOnSmallDisk(Folder(), [this] {
        AddFirst();
        EXPECT_GT(AddUntilFull("This voice could not be added to the current database."), 1);
        EXPECT_FALSE(fs::exists(Path()));
        desktop.ExpectNothingLeft();
    });
}

TEST_F(AddToFullDisk, InCarefulModeItStaysAndTheReasonIsNamed) {
    CarefulMode = 1;
    RunOnSmallDisk(Folder(), [this] {
        AddFirst();
        const int added =
            AddUntilFull("This voice could not be added to the current database.\n\n" + Path() +
                         ": No space left on device.\n\nThe database has been left as it was.");
        EXPECT_GT(added, 1);
        EXPECT_EQ(Count(), static_cast<std::size_t>(1 + added));
        EXPECT_EQ(fs::file_size(Path()), 152 + Count() * 446);
        desktop.ExpectNothingLeft();
    });
}

TEST_F(AddToFullDisk, WithShiftThoseThatFoundNoRoomAreNamed) {
    CarefulMode = 1;
    // Room for six.
    const FileSizeLimit limited(152 + 6 * 446 + 445);
    while (ListCount(MainList) > 9) {
        ListDelete(MainList, 9);
    }
    desktop.ExpectMessage("One or more voices could not be added to the current database.\n\n"
                          "Not added: 3 of the 9 voices in the list, at these places: 7, 8, "
                          "9.\n\n" +
                          Path() + ": File too large.");
    desktop.shiftDown = true;
    EXPECT_EQ(RunCommand(CommandAddToDatabase), 0);
    EXPECT_EQ(Count(), 6u);
    EXPECT_EQ(fs::file_size(Path()), 152 + 6 * 446u);
}

TEST_F(AddToFullDisk, WithShiftAndWithoutCarefulModeTheVoicesBehindItBeginAnew) {
    const FileSizeLimit limited(152 + 6 * 446 + 445);
    while (ListCount(MainList) > 9) {
        ListDelete(MainList, 9);
    }
    desktop.ExpectMessage("One or more voices could not be added to the current database.");
    desktop.shiftDown = true;
    EXPECT_EQ(RunCommand(CommandAddToDatabase), 0);
    EXPECT_EQ(Count(), 2u); // the eighth and the ninth
    EXPECT_TRUE(desktop.sounds.empty());
}

} // namespace
} // namespace tonewright
