// Tables of named colours: lines as they are read, the order, what is written, and the files.
#include "common/colour_table.h"

#include "common/folders.h"
#include "common/settings.h"
#include "common/text.h"
#include "support/paths.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>

namespace tonewright {
namespace {

using namespace std::string_literals;
namespace fs = std::filesystem;

class ColourTables : public testing::Test {
protected:
    void SetUp() override { fs::create_directories(Folder()); }
    void UseFolder() const {
        PlatformFolders = {
            .applicationData = folder.Folder(), .documents = "", .pictures = "", .programs = ""};
    }
    std::string Folder() const { return folder.File("Quillbrook/Tonewright 17/"); }

    // The table of a text, as it would be written.
    static std::string Read(const std::string &text) {
        ColourTable table;
        LineReader lines = LinesOf(text);
        ColourTableRead(lines, table);
        EXPECT_EQ(ListCount(table), static_cast<int>(table.items.size()));
        return ColourTableText(table);
    }
    static ColourTable TableOf(const std::string &text) {
        ColourTable table;
        LineReader lines = LinesOf(text);
        ColourTableRead(lines, table);
        return table;
    }

    TempFolder folder;
};

TEST_F(ColourTables, ABlankInFrontOfTheSignBelongsToTheNameAndTwoCommasAreOne) {
    const ColourTable table = TableOf("Navy = 0,,0,128\n");
    ASSERT_EQ(ListCount(table), 1);
    EXPECT_EQ(table.items[0].name, "Navy ");
    EXPECT_EQ(table.items[0].colour, 0x00800000u);
}

TEST_F(ColourTables, AValueAbove255IsCutToItsLow8Bits) {
    EXPECT_EQ(Read("a=256,257,511\n"), "a=0,1,255\n");
    EXPECT_EQ(Read("a=-1,+7,4294967298\n"), "a=255,7,2\n");
    // Of 300 digits the low bits count too.
    EXPECT_EQ(Read("a=" + ("1" + std::string(240, '0') + "7") + ",1,2\n"), "a=7,1,2\n");
    EXPECT_EQ(Read("a=" + std::string(300, '9') + ",1,2\n"), ""); // longer than a line
}

TEST_F(ColourTables, ALineWithoutANameOrASignIsPassedOver) {
    EXPECT_EQ(Read("=1,2,3\n"), "");
    EXPECT_EQ(Read("Navy 1,2,3\n\n \nb=1,2,3\n"), "b=1,2,3\n");
    EXPECT_EQ(Read(" =1,2,3\n"), " =1,2,3\n");
}

TEST_F(ColourTables, BlanksBackspacesAndSignsMayStandBehindTheFirstSign) {
    EXPECT_EQ(Read("a== \b= \b=1,2,3\n"), "a=1,2,3\n");
    EXPECT_EQ(Read("a=b=1,2,3\n"), "");
    EXPECT_EQ(Read("a,b=1,2,3\n"), "a,b=1,2,3\n");
}

TEST_F(ColourTables, ALineThatLacksANumberIsPassedOver) {
    for (const char *text : {"a=1,2\n", "a=1,2,\n", "a=,1,2,3\n", "a=1 2 3\n", "a=1;2;3\n", "a=\n",
                             "a=1,x,3\n", "a=1,-,3\n", "a=1,+-2,3\n", "a=0x1,2,3\n"}) {
        EXPECT_EQ(Read(text), "") << text;
    }
    EXPECT_EQ(Read("a= 1, 2,,,\t3 and more\r\n"), "a=1,2,3\n");
    EXPECT_EQ(Read("a=1,2,3,4\n"), "a=1,2,3\n");
    EXPECT_EQ(Read("a=1,2,3"), "a=1,2,3\n");
}

TEST_F(ColourTables, ALineHolds259BytesAndItsRestIsALineOfItsOwn) {
    const std::string fits = std::string(253, 'n') + "=1,2,3";
    EXPECT_EQ(Read(fits), fits + "\n");
    // The line feed no longer fits and is a line of its own.
    EXPECT_EQ(Read(fits + "\nb=4,5,6\n"), "b=4,5,6\n" + fits + "\n");
    EXPECT_EQ(Read(std::string(254, 'n') + "=1,2,34"), "");
    EXPECT_EQ(Read(std::string(259, 'n') + "b=1,2,3\n"), "b=1,2,3\n");
    // Of the number the digits 3456 are in the line.
    EXPECT_EQ(Read(std::string(250, 'n') + "=1,2,3456789"), std::string(250, 'n') + "=1,2,128\n");
}

TEST_F(ColourTables, ANulEndsItsLine) {
    EXPECT_EQ(Read("a=1,2,3\0,4\nb\0=4,5,6\nc=7,8\0,9\n"s), "a=1,2,3\n");
    EXPECT_EQ(Read(std::string(1'000'000, '\0')), "");
}

TEST_F(ColourTables, BytesOfAllKindsStayInANameAsTheyAre) {
    EXPECT_EQ(Read("\xFF\x01\t\xC3=1,2,3\n"), "\xFF\x01\t\xC3=1,2,3\n");
}

TEST_F(ColourTables, NamesAreSortedWithoutRegardToCaseAndEqualOnesKeepTheirOrder) {
    EXPECT_EQ(Read("b=1,1,1\nB=2,2,2\na=3,3,3\n\xC3\x84=4,4,4\nC=5,5,5\nb=6,6,6\n"),
              "a=3,3,3\nb=1,1,1\nB=2,2,2\nb=6,6,6\nC=5,5,5\n\xC3\x84=4,4,4\n");
    ColourTable table = TableOf("a=1,1,1\nc=2,2,2\n");
    EXPECT_EQ(ColourTableAdd(table, {"B", 3}), 1);
    EXPECT_EQ(ColourTableAdd(table, {"b", 4}), 2);
    EXPECT_EQ(ColourTableAdd(table, {"d", 5}), 4);
    EXPECT_EQ(ColourTableText(table), "a=1,1,1\nB=3,0,0\nb=4,0,0\nc=2,2,2\nd=5,0,0\n");
}

TEST_F(ColourTables, TheRowsAreTheListBoxs) {
    ColourTable table = TableOf("a=1,0,0\nb=2,0,0\nc=1,0,0\n");
    ListSelect(table, 2);
    EXPECT_EQ(ColourTableRowOf(table, 1), 0);
    EXPECT_EQ(ColourTableRowOf(table, 2), 1);
    EXPECT_EQ(ColourTableRowOf(table, 3), NoRow);
    ColourTableAdd(table, {"aa", 7});
    EXPECT_EQ(table.selection, 3);
    EXPECT_TRUE(ColourTableDelete(table, 0));
    EXPECT_EQ(table.selection, 2);
    EXPECT_FALSE(ColourTableDelete(table, 3));
    EXPECT_FALSE(ColourTableDelete(table, NoRow));
    EXPECT_EQ(ListCount(table), 3);
}

TEST_F(ColourTables, AFileThatCannotBeOpenedLeavesAnEmptyList) {
    ColourTable table = TableOf("a=1,1,1\n");
    ListSelect(table, 0);
    EXPECT_EQ(ColourTableLoad(folder.File("none").c_str(), table), 0);
    EXPECT_EQ(ListCount(table), 0);
    EXPECT_EQ(table.selection, NoRow);
    table = TableOf("a=1,1,1\n");
    EXPECT_EQ(ColourTableLoad(Folder().c_str(), table), 0);
    EXPECT_EQ(ListCount(table), 0);
    EXPECT_EQ(ColourTableLoad(folder.WriteText("b", "").c_str(), table), 1);
    EXPECT_EQ(ListCount(table), 0);
}

TEST_F(ColourTables, WhatIsSavedIsLoadedAgain) {
    const std::string path = folder.WriteText("t\xC3\xB6.ccl", "old line that is longer\n");
    const ColourTable table = TableOf("b=1,2,3\na = 4,5,256\n");
    EXPECT_EQ(ColourTableSave(path.c_str(), &table), 1);
    EXPECT_EQ(ReadTestText(path), "a =4,5,0\nb=1,2,3\n");
    ColourTable again;
    EXPECT_EQ(ColourTableLoad(path.c_str(), again), 1);
    EXPECT_EQ(ColourTableText(again), ColourTableText(table));
    EXPECT_FALSE(folder.Holds("t\xC3\xB6.ccl.bak"));
}

TEST_F(ColourTables, SavingRemovesTheFileWithBakBehindItsNameFirst) {
    const std::string path = folder.File("t.ccl");
    folder.WriteText("t.ccl.bak", "kept?");
    const ColourTable table = TableOf("a=1,2,3\n");
    EXPECT_EQ(ColourTableSave(path.c_str(), &table), 1);
    EXPECT_FALSE(folder.Holds("t.ccl.bak"));
    // Also when the table itself cannot be opened.
    folder.WriteText("t.ccl.bak", "kept?");
    fs::remove(path);
    fs::create_directory(path);
    EXPECT_EQ(ColourTableSave(path.c_str(), &table), 0);
    EXPECT_FALSE(folder.Holds("t.ccl.bak"));
    // A folder of that name is none that was written here.
    fs::create_directory(path + ".bak");
    EXPECT_EQ(ColourTableSave(path.c_str(), &table), 0);
    EXPECT_TRUE(folder.Holds("t.ccl.bak"));
}

TEST_F(ColourTables, AListThatCannotBeCountedTakesTheFileAwayForTheOneWithBak) {
    const std::string path = folder.WriteText("t.ccl", "a=1,2,3\n");
    EXPECT_EQ(ColourTableSave(path.c_str(), nullptr), 0);
    EXPECT_FALSE(folder.Holds("t.ccl"));
    // The file with ".bak" has been removed before.
    folder.WriteText("t.ccl.bak", "b=1,2,3\n");
    EXPECT_EQ(ColourTableSave(path.c_str(), nullptr), 0);
    EXPECT_FALSE(folder.Holds("t.ccl"));
    EXPECT_FALSE(folder.Holds("t.ccl.bak"));
    // What is no file stays, and gets the name.
    fs::create_directory(path + ".bak");
    EXPECT_EQ(ColourTableSave(path.c_str(), nullptr), 0);
    EXPECT_TRUE(fs::is_directory(path));
}

TEST_F(ColourTables, WithoutAPathNothingIsTouched) {
    const fs::path former = fs::current_path();
    fs::current_path(folder.path);
    folder.WriteText(".bak", "kept");
    const ColourTable table = TableOf("a=1,2,3\n");
    EXPECT_EQ(ColourTableSave("", &table), 0);
    EXPECT_EQ(ColourTableSave("", nullptr), 0);
    fs::current_path(former);
    EXPECT_EQ(ReadTestText(folder.File(".bak")), "kept");
}

TEST_F(ColourTables, TheCurrentOneStandsInTheUsersFolderAndIsTheDefaultWithoutAName) {
    EXPECT_EQ(ColourTablePath(), "");
    UseFolder();
    EXPECT_EQ(ColourTablePath(), Folder() + "TNWRGT.CCL");
    ColourTableFile = "Mine.ccl";
    EXPECT_EQ(ColourTablePath(), Folder() + "Mine.ccl");
    EXPECT_EQ(ColourTableName(), "Mine.ccl");
    ColourTableFile = "";
    EXPECT_EQ(ColourTablePath(), Folder() + "TNWRGT.CCL");
    EXPECT_EQ(ColourTableName(), "TNWRGT.CCL");
}

TEST_F(ColourTables, WhereTheSettingIsNoPlainNameTheDefaultTableIsTheCurrentOne) {
    UseFolder();
    for (const char *file : {"../Tonewright 17.ini", "/etc/a.ccl", "a/b.ccl", "a\\b.ccl", "c:a.ccl",
                             "a\nb.ccl", "a\x1F.ccl", ".", "..", "..."}) {
        ColourTableFile = file;
        EXPECT_EQ(ColourTablePath(), Folder() + "TNWRGT.CCL") << file;
        EXPECT_EQ(ColourTableName(), "TNWRGT.CCL") << file;
    }
    // 260 bytes have room in a path.
    const std::string fits = std::string(260 - Folder().size() - 4, 'n') + ".CCL";
    ColourTableFile = fits;
    EXPECT_EQ(ColourTablePath(), Folder() + fits);
    ColourTableFile = "n" + fits;
    EXPECT_EQ(ColourTablePath(), Folder() + "TNWRGT.CCL");
    for (const char *file : {"colors.txt", ".hidden", "a b", "\xC3\xB6.ccl", "a..b"}) {
        ColourTableFile = file;
        EXPECT_EQ(ColourTablePath(), Folder() + file);
    }
}

TEST_F(ColourTables, ANameMeansTheTableThatDiffersFromItInTheCaseOfLettersOnly) {
    UseFolder();
    WriteTestText(Folder() + "more.ccl", "");
    for (const char *name : {"more", "MORE", "More.CCL", "more.ccl"}) {
        EXPECT_EQ(ColourTableMeantBy(name), "more.ccl") << name;
    }
    EXPECT_EQ(ColourTableMeantBy("mor"), "mor.CCL");
    EXPECT_EQ(ColourTableMeantBy("mor.ccl"), "mor.ccl");
    WriteTestText(Folder() + "MORE.CCL", "");
    EXPECT_EQ(ColourTableMeantBy("more.ccl"), "more.ccl"); // the very file comes first
    EXPECT_EQ(ColourTableMeantBy("MORE"), "MORE.CCL");
}

TEST_F(ColourTables, TheProgramsTableIsCopiedWhereThereIsNone) {
    UseFolder();
    ApplicationPath = folder.Folder();
    InstallColourTable(); // there is nothing to copy
    EXPECT_TRUE(fs::is_empty(Folder()));
    folder.WriteText("TNWRGT.CCL", "a=1,2,3\n");
    InstallColourTable();
    EXPECT_EQ(ReadTestText(ColourTablePath()), "a=1,2,3\n");
    WriteTestText(ColourTablePath(), "mine=1,2,3\n");
    InstallColourTable();
    EXPECT_EQ(ReadTestText(ColourTablePath()), "mine=1,2,3\n");
    // A link to a disk that is away is no missing file.
    fs::remove(ColourTablePath());
    fs::create_symlink(folder.File("away/mine.ccl"), ColourTablePath());
    InstallColourTable();
    EXPECT_TRUE(fs::is_symlink(ColourTablePath()));
    fs::remove_all(Folder());
    InstallColourTable(); // there is no place for it
    EXPECT_FALSE(folder.Holds("Quillbrook/Tonewright 17"));
}

TEST_F(ColourTables, TheNamesAreThoseOfTheFilesThatEndInCclInLettersOfEitherCase) {
    EXPECT_EQ(ColourTableNames(), std::vector<std::string>{});
    UseFolder();
    for (const char *name :
         {"b.ccl", "A.CCL", "a.Ccl", "\xC3\xB6.CCL", ".ccl", "c.txt", "cclx", "d.ccl.bak", "l",
          " a.ccl", "=a.ccl", "a:b.ccl", "a\\b.ccl", "a\nb.ccl"}) {
        WriteTestText(Folder() + name, "");
    }
    fs::create_directory(Folder() + "e.ccl");
    const std::string fits = std::string(240 - 4, 'n') + ".ccl";
    WriteTestText(Folder() + "n" + fits, "");
    EXPECT_EQ(ColourTableNames(),
              (std::vector<std::string>{".ccl", "A.CCL", "a.Ccl", "b.ccl", "\xC3\xB6.CCL"}));
}

TEST(ColoursOfTheProgram, AreAtLeast40SortedOnesThatDifferInNameAndColour) {
    const std::string text = ReadTestText(SourceFile("resources/TNWRGT.CCL"));
    ColourTable table;
    LineReader lines = LinesOf(text);
    ColourTableRead(lines, table);
    EXPECT_EQ(ColourTableText(table), text); // sorted, and written as the program writes
    EXPECT_GE(ListCount(table), 40);
    std::set<std::string> names;
    std::set<std::uint32_t> colours;
    for (const NamedColour &item : table.items) {
        EXPECT_TRUE(names.insert(item.name).second) << item.name;
        EXPECT_TRUE(colours.insert(item.colour).second) << item.name;
        for (const char letter : item.name) {
            EXPECT_TRUE((letter >= 'A' && letter <= 'Z') || (letter >= 'a' && letter <= 'z'))
                << item.name;
        }
    }
}

} // namespace
} // namespace tonewright
