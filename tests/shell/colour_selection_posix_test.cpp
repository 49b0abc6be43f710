// The colour box's changes of a table on a full disk.
#include "shell/colour_selection.h"

#include "common/folders.h"
#include "support/posix_limits.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace tonewright {
namespace {

TEST(ColourSelectionFaults, AChangeThatHasNoRoomIsToldAndTheListKeepsIt) {
    TempFolder home;
    PlatformFolders = {
        .applicationData = home.Folder(), .documents = "", .pictures = "", .programs = ""};
    const std::string folder = home.File("Quillbrook/Tonewright 17/");
    std::filesystem::create_directories(folder);
    const std::string path = folder + "TNWRGT.CCL";
    WriteTestText(path, "a=1,2,3\nb=4,5,6\n");
    ColourSelection selection;
    BeginColourSelection(selection);
    ScriptedDesktop desktop;
    desktop.ExpectMessage("The color table could not be saved.\n\n" + path +
                          ": File too large.\n\nThe change stays in the list. It will be saved "
                          "once more when the list is changed or left.");
    {
        const FileSizeLimit limit(10);
        AddColour(nullptr, selection, {"c", 0x00090807});
    }
    desktop.ExpectNothingLeft();
    EXPECT_EQ(ReadTestText(path), "a=1,2,3\nb=");
    EXPECT_EQ(ListCount(selection.table), 3);
    EXPECT_TRUE(selection.editPending);
    EndColourSelection(nullptr, selection);
    EXPECT_EQ(ReadTestText(path), "a=1,2,3\nb=4,5,6\nc=7,8,9\n");
}

} // namespace
} // namespace tonewright
