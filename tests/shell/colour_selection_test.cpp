// The decisions of the colour box, without its window.
#include "shell/colour_selection.h"

#include "common/folders.h"
#include "common/settings.h"
#include "support/scripted_desktop.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>

namespace tonewright {
namespace {

constexpr const char *DeleteQuestion =
    "Do you really want to delete this color from the current color database?";

class ColourSelections : public testing::Test {
protected:
    void SetUp() override {
        std::filesystem::create_directories(Folder());
        PlatformFolders = {
            .applicationData = home.Folder(), .documents = "", .pictures = "", .programs = ""};
        WriteTable("Amber=255,191,0\nBlack=0,0,0\nInk=0,0,0\nNavy=0,0,128\n");
        BeginColourSelection(selection);
    }
    std::string Folder() const { return home.File("Quillbrook/Tonewright 17/"); }
    std::string Path(const std::string &name = "TNWRGT.CCL") const { return Folder() + name; }
    void WriteTable(const std::string &text) const { WriteTestText(Path(), text); }
    std::string Saved() const { return ReadTestText(Path()); }
    // No file can be written in the place of the table.
    void BlockTable() const {
        std::filesystem::remove(Path());
        std::filesystem::create_directory(Path());
    }
    void UnblockTable() const { std::filesystem::remove(Path()); }
    // What is said of a table in whose place there is a folder.
    std::string NotSaved(const std::string &consequence) const {
        return "The color table could not be saved.\n\n" + Path() + ": Is a directory.\n\n" +
               consequence;
    }
    std::string StaysInList() const {
        return NotSaved("The change stays in the list. It will be saved once more when the list is "
                        "changed or left.");
    }
    std::string MayItBeLost() const {
        return NotSaved("Do you wish to open another color table and lose the changes?");
    }

    TempFolder home;
    ScriptedDesktop desktop;
    ColourSelection selection;
};

TEST_F(ColourSelections, FieldsMakeAColourOfTheLow8BitsOfEachNumber) {
    EXPECT_EQ(ColourOfFields({"1", "2", "3"}), 0x00030201u);
    EXPECT_EQ(ColourOfFields({"", "256", "299"}), 0x002B0000u);
    EXPECT_EQ(ColourOfFields({"x", " 7", "-1"}), 0x00FF0700u);
}

TEST_F(ColourSelections, TheListMovesToAnExactMatchAndStaysWithoutOne) {
    SelectColour(selection, 0x00800000);
    EXPECT_EQ(selection.table.selection, 3);
    EXPECT_EQ(NameOfColour(selection, 0x00800000), "Navy");
    SelectColour(selection, 0x00800001);
    EXPECT_EQ(selection.table.selection, 3);
    EXPECT_EQ(NameOfColour(selection, 0x00800001), "");
}

TEST_F(ColourSelections, OfSeveralNamesTheSelectedOneCounts) {
    EXPECT_EQ(NameOfColour(selection, 0), "Black");
    ListSelect(selection.table, 2);
    SelectColour(selection, 0);
    EXPECT_EQ(selection.table.selection, 2);
    EXPECT_EQ(NameOfColour(selection, 0), "Ink");
    ListSelect(selection.table, 0);
    SelectColour(selection, 0);
    EXPECT_EQ(selection.table.selection, 1);
}

TEST_F(ColourSelections, AColourThatIsThereIsAddedAfterAQuestionOnly) {
    EXPECT_TRUE(MayAddColour(nullptr, selection, 0x00123456));
    const std::string question = "This color already exists in the current color database as "
                                 "Navy. Do you wish to add it anyway?";
    desktop.ExpectYesNo(question, ResultNo);
    EXPECT_FALSE(MayAddColour(nullptr, selection, 0x00800000));
    desktop.ExpectYesNo(question, ResultYes);
    EXPECT_TRUE(MayAddColour(nullptr, selection, 0x00800000));
}

TEST_F(ColourSelections, AWholeColourHasANameAndOneToThreeDigitsInEachField) {
    EXPECT_TRUE(IsWholeColour("a", {"0", "12", "255"}));
    EXPECT_TRUE(IsWholeColour(" a ", {"0", "12", "255"}));
    EXPECT_FALSE(IsWholeColour("", {"0", "12", "255"}));
    EXPECT_FALSE(IsWholeColour("  ", {"0", "12", "255"}));
    for (const char *field : {"", "1234", "1x", "-1", " 1", "+1"}) {
        EXPECT_FALSE(IsWholeColour("a", {"0", "12", field})) << field;
        EXPECT_FALSE(IsWholeColour("a", {field, "12", "0"})) << field;
    }
}

TEST_F(ColourSelections, ANameHoldsNoSignAndNoControlCharacter) {
    for (const char32_t character : U" aZ,;#~\u00A0\u00E4\u97F3\U0001F3B9") {
        EXPECT_EQ(MayStandInColourName(character), character != 0) << std::uint32_t(character);
    }
    for (const char32_t character : U"=\t\n\x1F\x7F\x9F") {
        EXPECT_FALSE(MayStandInColourName(character)) << std::uint32_t(character);
    }
}

TEST_F(ColourSelections, TheLongestNameComesBackFromTheFile) {
    std::string name;
    for (int i = 0; i < ColourNameLimit; ++i) {
        name += "\U0001F3B9";
    }
    AddColour(nullptr, selection, {name, 0x00FFFFFF});
    ColourTable again;
    ColourTableLoad(Path().c_str(), again);
    EXPECT_EQ(again.items.back().name, name);
    EXPECT_EQ(again.items.back().colour, 0x00FFFFFFu);
}

TEST_F(ColourSelections, AddingSelectsTheNewRowAndSaves) {
    AddColour(nullptr, selection, {"Coal", 0});
    EXPECT_EQ(selection.table.selection, 2);
    EXPECT_EQ(Saved(), "Amber=255,191,0\nBlack=0,0,0\nCoal=0,0,0\nInk=0,0,0\nNavy=0,0,128\n");
    EXPECT_FALSE(selection.editPending);
}

TEST_F(ColourSelections, DeletingTheFirstRowSelectsTheNewFirstRow) {
    ListSelect(selection.table, 0);
    desktop.ExpectYesNo(DeleteQuestion, ResultYes);
    EXPECT_TRUE(DeleteColour(nullptr, selection));
    EXPECT_EQ(selection.table.selection, 0);
    EXPECT_EQ(selection.table.items[0].name, "Black");
    EXPECT_EQ(Saved(), "Black=0,0,0\nInk=0,0,0\nNavy=0,0,128\n");
}

TEST_F(ColourSelections, DeletingAnotherRowSelectsTheOneBefore) {
    ListSelect(selection.table, 3);
    desktop.ExpectYesNo(DeleteQuestion, ResultYes);
    EXPECT_TRUE(DeleteColour(nullptr, selection));
    EXPECT_EQ(selection.table.selection, 2);
    EXPECT_EQ(Saved(), "Amber=255,191,0\nBlack=0,0,0\nInk=0,0,0\n");
}

TEST_F(ColourSelections, WithoutASelectionOrAYesNothingIsDeleted) {
    EXPECT_FALSE(DeleteColour(nullptr, selection));
    ListSelect(selection.table, 1);
    desktop.ExpectYesNo(DeleteQuestion, ResultNo);
    EXPECT_FALSE(DeleteColour(nullptr, selection));
    EXPECT_EQ(selection.table.selection, 1);
    EXPECT_EQ(ListCount(selection.table), 4);
}

TEST_F(ColourSelections, TheLastRowLeavesAnEmptyList) {
    WriteTable("a=1,2,3\n");
    BeginColourSelection(selection);
    ListSelect(selection.table, 0);
    desktop.ExpectYesNo(DeleteQuestion, ResultYes);
    EXPECT_TRUE(DeleteColour(nullptr, selection));
    EXPECT_EQ(selection.table.selection, NoRow);
    EXPECT_EQ(Saved(), "");
}

TEST_F(ColourSelections, AnEditThatCouldNotBeSavedIsToldAndSavedAtTheEnd) {
    BlockTable();
    desktop.ExpectMessage(StaysInList());
    AddColour(nullptr, selection, {"Coal", 1});
    desktop.ExpectNothingLeft();
    EXPECT_TRUE(selection.editPending);
    EXPECT_EQ(ListCount(selection.table), 5);
    UnblockTable();
    EndColourSelection(nullptr, selection);
    EXPECT_EQ(Saved(), "Amber=255,191,0\nBlack=0,0,0\nCoal=1,0,0\nInk=0,0,0\nNavy=0,0,128\n");
    EXPECT_FALSE(selection.editPending);
    // Without an edit that is pending the file is left alone.
    WriteTable("other=1,2,3\n");
    EndColourSelection(nullptr, selection);
    EXPECT_EQ(Saved(), "other=1,2,3\n");
}

TEST_F(ColourSelections, ADeletionThatCouldNotBeSavedIsToldAndTheNextChangeSavesIt) {
    BlockTable();
    ListSelect(selection.table, 0);
    desktop.ExpectYesNo(DeleteQuestion, ResultYes);
    desktop.ExpectMessage(StaysInList());
    EXPECT_TRUE(DeleteColour(nullptr, selection));
    EXPECT_TRUE(selection.editPending);
    EXPECT_EQ(selection.table.selection, 0);
    UnblockTable();
    AddColour(nullptr, selection, {"Coal", 1});
    EXPECT_FALSE(selection.editPending);
    EXPECT_EQ(Saved(), "Black=0,0,0\nCoal=1,0,0\nInk=0,0,0\nNavy=0,0,128\n");
}

TEST_F(ColourSelections, AnEditThatCannotBeSavedAtTheEndEitherIsSaidToBeLost) {
    BlockTable();
    desktop.ExpectMessage(StaysInList());
    AddColour(nullptr, selection, {"Coal", 1});
    desktop.ExpectMessage(NotSaved("The changes of its colors are lost."));
    EndColourSelection(nullptr, selection);
    EXPECT_TRUE(selection.editPending);
}

TEST_F(ColourSelections, ToATableThatCouldNotBeReadNoColourIsAdded) {
    BlockTable();
    BeginColourSelection(selection); // without a word
    EXPECT_EQ(ListCount(selection.table), 0);
    EXPECT_EQ(selection.readError, EISDIR);
    desktop.ExpectMessage("The color table could not be read.\n\n" + Path() +
                          ": Is a directory.\n\nIt stays as it is, and no color can be added to "
                          "it.");
    EXPECT_FALSE(MayAddColour(nullptr, selection, 1));
    desktop.ExpectNothingLeft();
    // One that does not exist is made by the first colour.
    UnblockTable();
    BeginColourSelection(selection);
    EXPECT_EQ(selection.readError, 0);
    EXPECT_TRUE(MayAddColour(nullptr, selection, 1));
    WriteTable("a=1,2,3\n");
    BeginColourSelection(selection);
    EXPECT_EQ(selection.readError, 0);
}

TEST_F(ColourSelections, AnotherTableBecomesTheCurrentOne) {
    WriteTestText(Path("Mine.ccl"), "mine=1,2,3\n");
    ListSelect(selection.table, 1);
    OpenColourTable(nullptr, selection, "Mine.ccl");
    EXPECT_EQ(ColourTableFile, "Mine.ccl");
    EXPECT_EQ(ColourTableText(selection.table), "mine=1,2,3\n");
    EXPECT_EQ(selection.table.selection, NoRow);
    OpenColourTable(nullptr, selection, "New");
    EXPECT_EQ(ColourTableFile, "New.CCL");
    EXPECT_EQ(ListCount(selection.table), 0);
    AddColour(nullptr, selection, {"a", 1});
    EXPECT_EQ(ReadTestText(Path("New.CCL")), "a=1,0,0\n");
    EXPECT_EQ(ReadTestText(Path("Mine.ccl")), "mine=1,2,3\n");
}

TEST_F(ColourSelections, AnExistingTableIsOpenedWhateverTheCaseOfItsLetters) {
    WriteTestText(Path("more.ccl"), "mine=1,2,3\n");
    EXPECT_TRUE(OpenColourTable(nullptr, selection, "More"));
    EXPECT_EQ(ColourTableFile, "more.ccl");
    EXPECT_EQ(ListCount(selection.table), 1);
}

TEST_F(ColourSelections, AnEditThatIsPendingGoesToTheFormerTable) {
    BlockTable();
    desktop.ExpectMessage(StaysInList());
    AddColour(nullptr, selection, {"Coal", 1});
    UnblockTable();
    EXPECT_TRUE(OpenColourTable(nullptr, selection, "New.CCL"));
    EXPECT_EQ(Saved(), "Amber=255,191,0\nBlack=0,0,0\nCoal=1,0,0\nInk=0,0,0\nNavy=0,0,128\n");
    EXPECT_EQ(ColourTableFile, "New.CCL");
    EXPECT_FALSE(selection.editPending);
    EndColourSelection(nullptr, selection);
    EXPECT_FALSE(std::filesystem::exists(Path("New.CCL")));
}

TEST_F(ColourSelections, AnEditThatCannotBeSavedIsLostToAnotherTableAfterAYesOnly) {
    BlockTable();
    desktop.ExpectMessage(StaysInList());
    AddColour(nullptr, selection, {"Coal", 1});
    desktop.ExpectYesNo(MayItBeLost(), ResultNo);
    EXPECT_FALSE(OpenColourTable(nullptr, selection, "New.CCL"));
    EXPECT_EQ(ColourTableFile, "TNWRGT.CCL");
    EXPECT_TRUE(selection.editPending);
    EXPECT_EQ(ListCount(selection.table), 5);
    desktop.ExpectYesNo(MayItBeLost(), ResultYes);
    EXPECT_TRUE(OpenColourTable(nullptr, selection, "New.CCL"));
    EXPECT_EQ(ColourTableFile, "New.CCL");
    EXPECT_EQ(ListCount(selection.table), 0);
    EndColourSelection(nullptr, selection);
    EXPECT_FALSE(std::filesystem::exists(Path("New.CCL")));
}

TEST_F(ColourSelections, ATableIsAFileOfTheUsersFolderThatEndsInCcl) {
    for (const char *name : {"TNWRGT.CCL", "a.ccl", "a", "my colors", "a.b.cCL", "\xC3\xB6.CCL"}) {
        EXPECT_TRUE(IsColourTableName(name)) << name;
    }
    for (const char *name : {"", " a", "=a", "a.txt", "a.", "..", ".", "../a", "/a.ccl", "a/b.ccl",
                             "a\\b.ccl", "c:a", "a\nb", "Extras.ini"}) {
        EXPECT_FALSE(IsColourTableName(name)) << name;
    }
    // In the path nothing of a name is cut.
    const std::size_t room = 260 - Folder().size() - 4;
    EXPECT_TRUE(IsColourTableName(std::string(room, 'a')));
    EXPECT_FALSE(IsColourTableName(std::string(room + 1, 'a')));
    EXPECT_TRUE(IsColourTableName(std::string(room, 'a') + ".ccl"));
    PlatformFolders = {};
    EXPECT_TRUE(IsColourTableName(std::string(236, 'a')));
    EXPECT_FALSE(IsColourTableName(std::string(237, 'a')));
}

} // namespace
} // namespace tonewright
