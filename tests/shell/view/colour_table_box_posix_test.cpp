// The box for another table of colours, with names of files that are no text.
#include "shell/view/colour_table_boxes.h"

#include "common/folders.h"
#include "support/modal_box.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDialog>

#include <filesystem>

namespace tonewright {
namespace {

TEST(ColourTableBox, ListsNoNameThatItCouldNotHandBackAsItIs) {
    TempFolder home;
    PlatformFolders = {
        .applicationData = home.Folder(), .documents = "", .pictures = "", .programs = ""};
    const std::string folder = home.File("Quillbrook/Tonewright 17/");
    std::filesystem::create_directories(folder);
    WriteTestText(folder + "a\xFF.ccl", "");
    WriteTestText(folder + "b\xC3\xB6.ccl", "");
    WithModalBox([] { RunColourTableBox(nullptr); },
                 [](QDialog &box) {
                     const auto *names = box.findChild<QComboBox *>("control_101");
                     EXPECT_EQ(names->count(), 1);
                     EXPECT_EQ(names->itemText(0), QString::fromUtf8("b\xC3\xB6.ccl"));
                     box.reject();
                 });
}

} // namespace
} // namespace tonewright
