// Tables of named colours where the disk is full and where a folder or file is closed.
#include "common/colour_table.h"

#include "common/folders.h"
#include "common/settings.h"
#include "support/posix_limits.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

ColourTable ThreeColours() {
    ColourTable table;
    ColourTableAdd(table, {"a", 0x030201});
    ColourTableAdd(table, {"b", 0x060504});
    ColourTableAdd(table, {"c", 0x090807});
    return table; // each line has 8 bytes
}

TEST(ColourTableFaults, AFullDiskLeavesTheLinesThatHadRoomAndNoBackup) {
    TempFolder folder;
    const std::string path = folder.WriteText("t.ccl", "former=255,255,255\n");
    folder.WriteText("t.ccl.bak", "former=255,255,255\n");
    const ColourTable table = ThreeColours();
    int saved = -1;
    int reason = 0;
    {
        const FileSizeLimit limit(20);
        saved = ColourTableSave(path.c_str(), &table);
        reason = errno;
    }
    EXPECT_EQ(saved, 0);
    EXPECT_EQ(reason, EFBIG);
    EXPECT_EQ(ReadTestText(path), "a=1,2,3\nb=4,5,6\nc=7,");
    EXPECT_FALSE(folder.Holds("t.ccl.bak"));
    EXPECT_EQ(ColourTableSave(path.c_str(), &table), 1);
    EXPECT_EQ(ReadTestText(path), "a=1,2,3\nb=4,5,6\nc=7,8,9\n");
}

TEST(ColourTableFaults, AFileThatCannotBeOpenedForWritingStaysAsItIs) {
    TempFolder folder;
    const std::string path = folder.WriteText("t.ccl", "former=255,255,255\n");
    RunUnprivileged({{path, 0400}}, [&] {
        const ColourTable table = ThreeColours();
        EXPECT_EQ(ColourTableSave(path.c_str(), &table), 0);
        EXPECT_EQ(errno, EACCES);
        EXPECT_EQ(ColourTableSave(path.c_str(), nullptr), 0);
    });
    EXPECT_EQ(ReadTestText(path), "former=255,255,255\n");
}

TEST(ColourTableFaults, APipeInItsPlaceIsNoTable) {
    TempFolder folder;
    const std::string path = MakePipe(folder.File("t.ccl"));
    ColourTable table = ThreeColours();
    EXPECT_EQ(ColourTableSave(path.c_str(), &table), 0);
    EXPECT_EQ(ColourTableLoad(path.c_str(), table), 0);
    EXPECT_EQ(ListCount(table), 0);
}

TEST(ColourTableFaults, AFileThatCannotBeReadToItsEndIsNoTable) {
    ColourTable table = ThreeColours();
    ListSelect(table, 1);
    EXPECT_EQ(ColourTableLoad("/proc/self/mem", table), 0); // nobody reads its start
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(ListCount(table), 0);
    // The lines before the fault are not the table either.
    TempFolder folder;
    LineReader lines = LinesOf("a=1,2,3\nb=4,5,6\n");
    lines.file = OpenFile(folder.File("closed").c_str(), "wb"); // not for reading
    lines.fileEnded = false;
    table = ThreeColours();
    EXPECT_EQ(ColourTableRead(lines, table), 0);
    EXPECT_EQ(errno, EBADF);
    EXPECT_EQ(ListCount(table), 0);
}

TEST(ColourTableFaults, WhereTheProgramsTableCannotBeCopiedThereIsNone) {
    TempFolder folder;
    PlatformFolders = {
        .applicationData = folder.Folder(), .documents = "", .pictures = "", .programs = ""};
    ApplicationPath = folder.Folder();
    folder.WriteText("TNWRGT.CCL", "a=1,2,3\nb=1,2,3\n");
    const std::string users = folder.File("Quillbrook/Tonewright 17");
    fs::create_directories(users);
    {
        const FileSizeLimit limit(10);
        InstallColourTable();
    }
    EXPECT_TRUE(fs::is_empty(users));
    RunUnprivileged({{users, 0500}}, [&] {
        InstallColourTable();
        EXPECT_TRUE(fs::is_empty(users));
    });
    InstallColourTable();
    EXPECT_EQ(ReadTestText(users + "/TNWRGT.CCL"), "a=1,2,3\nb=1,2,3\n");
}

} // namespace
} // namespace tonewright
