// The history of documents: what enters it, its order, what a click does, and its file.
#include "shell/history.h"
#include "shell_fixture.h"

#include <chrono>
#include <ctime>
#include <filesystem>

namespace tonewright {
namespace {

using Strings = std::vector<std::string>;

class History : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        MakeProgramFolders();
        RememberFileHistoryCount = 10;
        HistoryMenuChanged = [this] { ++rebuilds; };
        HistoryInit();
    }
    void TearDown() override {
        HistoryMenuChanged = nullptr;
        HistoryEnd();
        ShellTest::TearDown();
    }

    std::string FilePath() const {
        return home.File("Quillbrook/Tonewright 17/FileMenuHistory.txt");
    }
    void WriteHistory(const std::string &text) { WriteTestText(FilePath(), text); }
    std::string HistoryText() const { return ReadTestText(FilePath()); }
    // A document by its name in the home folder.
    std::string Document(const std::string &name) { return home.WriteText(name, "bank"); }
    void Restart() {
        HistoryEnd();
        HistoryInit();
        HistoryRead();
    }

    // The entries' paths with their pin marks and without the home folder.
    Strings Entries() const {
        Strings names;
        for (const HistoryEntry &entry : HistoryEntries()) {
            names.push_back(entry.path.substr(home.Folder().size()));
        }
        return names;
    }
    std::vector<std::uint32_t> Times() const {
        std::vector<std::uint32_t> times;
        for (const HistoryEntry &entry : HistoryEntries()) {
            times.push_back(entry.time);
        }
        return times;
    }
    void Pick(int index, bool shift, bool control) {
        desktop.shiftDown = shift;
        desktop.controlDown = control;
        std::string path = "untouched";
        EXPECT_EQ(HistoryPick(path, index), 0);
        EXPECT_EQ(path, "untouched");
        desktop.shiftDown = desktop.controlDown = false;
    }
    void ShiftClick(int index) { Pick(index, true, false); }
    void CtrlClick(int index) { Pick(index, false, true); }

    static std::uint32_t Now() { return static_cast<std::uint32_t>(std::time(nullptr)); }

    int rebuilds = 0; // of the menu
};

TEST_F(History, TheLatestDocumentStandsFirst) {
    HistoryAdd(nullptr, Document("b.syx"), 200);
    HistoryAdd(nullptr, Document("c.syx"), 300);
    HistoryAdd(nullptr, Document("a.syx"), 100);
    EXPECT_EQ(Entries(), (Strings{"c.syx", "b.syx", "a.syx"}));
    EXPECT_EQ(Times(), (std::vector<std::uint32_t>{300, 200, 100}));
    EXPECT_EQ(rebuilds, 3);
}

TEST_F(History, MinusOneStandsForThePresentTime) {
    const std::uint32_t before = Now();
    HistoryAdd(nullptr, Document("a.syx"), -1);
    ASSERT_EQ(HistoryEntries().size(), 1u);
    EXPECT_GE(Times()[0], before);
    EXPECT_LE(Times()[0], Now());
}

TEST_F(History, ADocumentThatDoesNotExistOrHasNoPathIsNotTaken) {
    std::filesystem::create_directory(home.path / "folder.syx");
    HistoryAdd(nullptr, home.File("gone.syx"), -1);
    HistoryAdd(nullptr, "", -1);
    HistoryAdd(nullptr, "/P", -1);
    HistoryAdd(nullptr, home.File("folder.syx"), -1);
    EXPECT_TRUE(HistoryEntries().empty());
    EXPECT_EQ(rebuilds, 0);
}

TEST_F(History, APathOf260BytesIsTakenAndALongerOneIsNot) {
    // In a folder, since a name alone has at most 255 bytes.
    std::filesystem::create_directory(home.File("folder"));
    const std::string start = home.File("folder/");
    const std::string longest =
        Document("folder/" + std::string(260 - start.size() - 4, 'n') + ".syx");
    const std::string longer =
        Document("folder/" + std::string(261 - start.size() - 4, 'n') + ".syx");
    ASSERT_EQ(longest.size(), 260u);
    HistoryAdd(nullptr, longer, 100);
    EXPECT_TRUE(HistoryEntries().empty());
    HistoryAdd(nullptr, longest, 100);
    ASSERT_EQ(HistoryEntries().size(), 1u);
    EXPECT_EQ(HistoryEntries()[0].path, longest);
}

TEST_F(History, ADocumentThatIsThereAlreadyGetsThePresentTimeAndKeepsItsPlace) {
    HistoryAdd(nullptr, Document("old.syx"), 100);
    HistoryAdd(nullptr, Document("new.syx"), 200);
    rebuilds = 0;
    const std::uint32_t before = Now();
    HistoryAdd(nullptr, home.File("old.syx"), 5);
    EXPECT_EQ(Entries(), (Strings{"new.syx", "old.syx"}));
    EXPECT_GE(Times()[1], before); // the time that was given does not count
    EXPECT_LE(Times()[1], Now());
    EXPECT_EQ(rebuilds, 0);
    // The next rebuild puts it where it belongs.
    HistoryAdd(nullptr, Document("older.syx"), 50);
    EXPECT_EQ(Entries(), (Strings{"old.syx", "new.syx", "older.syx"}));
}

TEST_F(History, ARenewedDocumentStandsFirstAfterAStart) {
    HistoryAdd(nullptr, Document("old.syx"), 100);
    HistoryAdd(nullptr, Document("new.syx"), 200);
    HistoryAdd(nullptr, home.File("old.syx"), -1);
    HistorySave();
    Restart();
    EXPECT_EQ(Entries(), (Strings{"old.syx", "new.syx"}));
}

TEST_F(History, PathsAreTheSameWhateverTheCaseOfTheirLettersAndTheirPin) {
    HistoryAdd(nullptr, Document("bank.syx"), 100);
    CtrlClick(0);
    Document("BANK.SYX");
    HistoryAdd(nullptr, home.File("BANK.SYX"), -1);
    HistoryAdd(nullptr, home.File("bank.syx"), -1);
    EXPECT_EQ(Entries(), Strings{"bank.syx/P"});
}

TEST_F(History, AFullHistoryGivesUpItsOldestEntryThatIsNotPinned) {
    RememberFileHistoryCount = 3;
    HistoryInit();
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistoryAdd(nullptr, Document("b.syx"), 200);
    HistoryAdd(nullptr, Document("c.syx"), 300);
    CtrlClick(2); // the oldest one
    EXPECT_EQ(Entries(), (Strings{"a.syx/P", "c.syx", "b.syx"}));
    HistoryAdd(nullptr, Document("d.syx"), 400);
    EXPECT_EQ(Entries(), (Strings{"a.syx/P", "d.syx", "c.syx"}));
}

TEST_F(History, AFullHistoryOfPinnedEntriesGivesUpTheOldestOfThem) {
    RememberFileHistoryCount = 2;
    HistoryInit();
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistoryAdd(nullptr, Document("b.syx"), 200);
    CtrlClick(0);
    CtrlClick(1);
    EXPECT_EQ(Entries(), (Strings{"b.syx/P", "a.syx/P"}));
    HistoryAdd(nullptr, Document("c.syx"), 50);
    EXPECT_EQ(Entries(), (Strings{"b.syx/P", "c.syx"}));
}

TEST_F(History, AFullHistoryTakesADocumentThatIsOlderThanAllOfIt) {
    RememberFileHistoryCount = 2;
    HistoryInit();
    HistoryAdd(nullptr, Document("a.syx"), 300);
    HistoryAdd(nullptr, Document("b.syx"), 200);
    HistoryAdd(nullptr, Document("c.syx"), 100);
    EXPECT_EQ(Entries(), (Strings{"a.syx", "c.syx"}));
}

TEST_F(History, ACountOf30BehavesAs20) {
    RememberFileHistoryCount = 30;
    HistoryInit();
    EXPECT_EQ(RememberFileHistoryCount, 20u);
    for (int number = 0; number < 25; ++number) {
        HistoryAdd(nullptr, Document(std::to_string(number) + ".syx"), 100 + number);
    }
    EXPECT_EQ(HistoryEntries().size(), 20u);
    EXPECT_EQ(Entries().front(), "24.syx");
    EXPECT_EQ(Entries().back(), "5.syx");
}

TEST_F(History, ACountBeyondAllReasonBehavesAs20) {
    RememberFileHistoryCount = 4294967295;
    HistoryInit();
    EXPECT_EQ(RememberFileHistoryCount, 20u);
}

TEST_F(History, WithACountOf0NothingIsKeptReadOrWritten) {
    const std::string text = Document("a.syx") + ",100\n";
    WriteHistory(text);
    RememberFileHistoryCount = 0;
    HistoryInit();
    HistoryRead();
    HistoryAdd(nullptr, Document("b.syx"), -1);
    EXPECT_TRUE(HistoryEntries().empty());
    EXPECT_EQ(rebuilds, 0);
    HistorySave();
    EXPECT_EQ(HistoryText(), text);
}

TEST_F(History, ACountThatBecomes0KeepsTheFileAsItIs) {
    WriteHistory("as it is");
    HistoryAdd(nullptr, Document("a.syx"), 100);
    RememberFileHistoryCount = 0;
    HistorySave();
    EXPECT_EQ(HistoryText(), "as it is");
}

TEST_F(History, ACountThatGrowsDuringTheRunChangesNothingUntilTheNextStart) {
    RememberFileHistoryCount = 2;
    HistoryInit();
    RememberFileHistoryCount = 15;
    for (const char *name : {"a.syx", "b.syx", "c.syx"}) {
        HistoryAdd(nullptr, Document(name), 100);
    }
    EXPECT_EQ(HistoryEntries().size(), 2u);
}

TEST_F(History, AClickHandsBackThePlainPath) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    CtrlClick(0);
    std::string path;
    EXPECT_EQ(HistoryPick(path, 0), 1);
    EXPECT_EQ(path, home.File("a.syx"));
    EXPECT_EQ(Entries(), Strings{"a.syx/P"});
}

TEST_F(History, AClickBeyondTheEntriesDoesNothing) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    rebuilds = 0;
    std::string path = "untouched";
    for (const int index : {-1, 1, 19}) {
        EXPECT_EQ(HistoryPick(path, index), 0) << index;
    }
    desktop.shiftDown = true;
    EXPECT_EQ(HistoryPick(path, 1), 0);
    EXPECT_EQ(path, "untouched");
    EXPECT_EQ(Entries(), Strings{"a.syx"});
    EXPECT_EQ(rebuilds, 0);
}

TEST_F(History, CtrlClickPinsAnEntryAndSortsIt) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistoryAdd(nullptr, Document("b.syx"), 200);
    rebuilds = 0;
    CtrlClick(1);
    EXPECT_EQ(Entries(), (Strings{"a.syx/P", "b.syx"}));
    EXPECT_EQ(Times(), (std::vector<std::uint32_t>{100, 200}));
    EXPECT_EQ(rebuilds, 1);
}

TEST_F(History, CtrlClickOnAPinnedEntryTakesThePinAwayAndSortsIt) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistoryAdd(nullptr, Document("b.syx"), 200);
    CtrlClick(1);
    CtrlClick(0);
    EXPECT_EQ(Entries(), (Strings{"b.syx", "a.syx"}));
}

TEST_F(History, ShiftClickRemovesAnEntryWhetherPinnedOrNot) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistoryAdd(nullptr, Document("b.syx"), 200);
    HistoryAdd(nullptr, Document("c.syx"), 300);
    CtrlClick(0);
    EXPECT_EQ(Entries(), (Strings{"c.syx/P", "b.syx", "a.syx"}));
    rebuilds = 0;
    ShiftClick(0);
    EXPECT_EQ(Entries(), (Strings{"b.syx", "a.syx"}));
    ShiftClick(0);
    EXPECT_EQ(Entries(), (Strings{"a.syx"}));
    EXPECT_EQ(rebuilds, 2);
    EXPECT_TRUE(home.Holds("c.syx"));
}

TEST_F(History, ShiftCountsMoreThanCtrl) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    Pick(0, true, true);
    EXPECT_TRUE(HistoryEntries().empty());
}

TEST_F(History, AMenuItemOpensItsDocumentWithoutADialog) {
    HistoryAdd(nullptr, home.Write("bank.syx", TestBank()), 100);
    HistoryAdd(nullptr, Document("later.syx"), 200);
    EXPECT_EQ(RunCommand(182), 1);
    EXPECT_EQ(ListCount(MainList), 32);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
    EXPECT_EQ(PendingOpenPath, "");
    EXPECT_EQ(titles, Strings{"Tonewright [ bank.syx ]"});
    EXPECT_GE(Times()[1], Now() - 5);
    EXPECT_LE(Times()[1], Now());
}

TEST_F(History, AMenuItemAsksForADirtyDocumentAsOpenDoes) {
    OpenBank();
    MainListChanged(0);
    HistoryAdd(nullptr, home.Write("other.syx", TestBank()), 4000000000);
    desktop.ExpectYesNoCancel(SaveQuestion, ResultCancel);
    EXPECT_EQ(RunCommand(181), 0);
    EXPECT_EQ(CurrentDocumentPath, home.File("bank.syx"));
}

TEST_F(History, AnEntryThatCannotBeOpenedIsReportedAndStaysUntilTheNextStart) {
    HistoryAdd(nullptr, Document("gone.syx"), 100);
    std::filesystem::remove(home.path / "gone.syx");
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(181), 0);
    EXPECT_EQ(Entries(), Strings{"gone.syx"});
    EXPECT_EQ(CurrentDocumentPath, home.File("gone.syx"));
    HistorySave();
    Restart();
    EXPECT_TRUE(HistoryEntries().empty());
}

TEST_F(History, OpenSaveAndSaveAsAddTheDocumentWithThePresentTime) {
    const std::uint32_t before = Now();
    const auto expectTimes = [&](std::size_t entries) {
        EXPECT_EQ(Times().size(), entries);
        for (const std::uint32_t time : Times()) {
            EXPECT_GE(time, before);
            EXPECT_LE(time, Now());
        }
    };
    OpenBank();
    EXPECT_EQ(Entries(), Strings{"bank.syx"});
    expectTimes(1);
    desktop.Expect(
        ExpectedFileDialog{.kind = FileDialogKind::Save, .answer = home.File("copy.syx")});
    EXPECT_EQ(RunCommand(CommandSaveAs), 1);
    expectTimes(2);
    ShiftClick(0);
    ShiftClick(0);
    EXPECT_EQ(RunCommand(CommandSave), 1);
    EXPECT_EQ(Entries(), Strings{"copy.syx"});
    expectTimes(1);
}

TEST_F(History, AFailedOpenAddsNothing) {
    PendingOpenPath = Document("no bank.syx");
    desktop.ExpectMessage(ReadError);
    EXPECT_EQ(RunCommand(CommandOpen), 0);
    EXPECT_TRUE(HistoryEntries().empty());
}

TEST_F(History, TheFileHoldsALineForEachEntryInItsOrder) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistoryAdd(nullptr, Document("b & c.syx"), 1700000000);
    HistoryAdd(nullptr, Document("d.syx"), 4000000000);
    CtrlClick(2);
    HistorySave();
    EXPECT_EQ(HistoryText(), home.File("a.syx") + "/P,100\n" + home.File("d.syx") +
                                 ",-294967296\n" + home.File("b & c.syx") + ",1700000000\n");
    Restart();
    EXPECT_EQ(Entries(), (Strings{"a.syx/P", "d.syx", "b & c.syx"}));
    EXPECT_EQ(Times(), (std::vector<std::uint32_t>{100, 4000000000, 1700000000}));
}

TEST_F(History, AMissingFileGivesAnEmptyHistoryAndIsNotMade) {
    HistoryRead();
    EXPECT_TRUE(HistoryEntries().empty());
    HistorySave();
    EXPECT_FALSE(std::filesystem::exists(FilePath()));
}

TEST_F(History, WithoutItsFolderNothingIsSavedAndNothingReported) {
    std::filesystem::remove(home.path / "Quillbrook/Tonewright 17");
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistorySave();
    EXPECT_FALSE(home.Holds("Quillbrook/Tonewright 17"));
}

TEST_F(History, AFileOfWhichNothingExistsIsLeftAsItIs) {
    WriteHistory(home.File("gone.syx") + ",100\n");
    HistoryRead();
    HistorySave();
    EXPECT_EQ(HistoryText(), home.File("gone.syx") + ",100\n");
}

TEST_F(History, AfterTheLastEntryWasRemovedTheFileIsEmpty) {
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistorySave();
    Restart();
    ShiftClick(0);
    HistorySave();
    EXPECT_EQ(HistoryText(), "");
}

TEST_F(History, DocumentsThatAreGoneFallOutAtTheStart) {
    WriteHistory(Document("a.syx") + ",100\n" + home.File("gone.syx") + ",300\n" +
                 Document("b.syx") + "/P,50\n");
    HistoryRead();
    EXPECT_EQ(Entries(), (Strings{"b.syx/P", "a.syx"}));
    EXPECT_EQ(rebuilds, 1);
}

TEST_F(History, APathWithACommaIsDroppedAtTheNextStart) {
    HistoryAdd(nullptr, Document("one, two.syx"), 100);
    HistoryAdd(nullptr, Document("three.syx"), 50);
    HistorySave();
    Restart();
    EXPECT_EQ(Entries(), Strings{"three.syx"});
}

TEST_F(History, LinesMayEndInCarriageReturnsAndTheLastOneInNothing) {
    WriteHistory(Document("a.syx") + ",100\r\n\r\n" + Document("b.syx") + ",50\r\n" +
                 Document("c.syx") + ",20");
    HistoryRead();
    EXPECT_EQ(Entries(), (Strings{"a.syx", "b.syx", "c.syx"}));
}

TEST_F(History, ATimeThatIsNoNumberCountsAs0AndMinusOneAsNow) {
    WriteHistory(Document("a.syx") + "\n" + Document("b.syx") + ",soon\n" + Document("c.syx") +
                 ", 7 days\n" + Document("d.syx") + ",-1\n");
    HistoryRead();
    EXPECT_EQ(Entries(), (Strings{"d.syx", "c.syx", "a.syx", "b.syx"}));
    EXPECT_EQ(Times()[1], 7u);
    EXPECT_EQ(Times()[2], 0u);
    EXPECT_GE(Times()[0], Now() - 5);
    EXPECT_LE(Times()[0], Now());
}

TEST_F(History, ALineIsReadUpTo259Bytes) {
    // A path of 250 bytes leaves room for eight digits of the time.
    const std::string longName(250 - home.Folder().size() - 4, 'n');
    const std::string path = Document(longName + ".syx");
    ASSERT_EQ(path.size(), 250u);
    WriteHistory(path + ",1700000123\n" + Document("next.syx") + ",5\n");
    HistoryRead();
    EXPECT_EQ(Entries(), (Strings{longName + ".syx", "next.syx"}));
    EXPECT_EQ(Times()[0], 17000001u);
}

TEST_F(History, AFileWithMoreLinesThanEntriesKeepsWhatWasAddedLast) {
    RememberFileHistoryCount = 2;
    HistoryInit();
    WriteHistory(Document("a.syx") + ",100\n" + Document("b.syx") + ",90\n" + Document("c.syx") +
                 ",80\n" + Document("d.syx") + ",70\n");
    HistoryRead();
    EXPECT_EQ(Entries(), (Strings{"a.syx", "d.syx"}));
}

TEST_F(History, ALineThatStandsTwiceGivesOneEntryOfThePresentTime) {
    const std::string path = Document("a.syx");
    WriteHistory(path + ",100\n" + path + "/P,200\n");
    HistoryRead();
    EXPECT_EQ(Entries(), Strings{"a.syx"});
    EXPECT_GE(Times()[0], Now() - 5);
    EXPECT_LE(Times()[0], Now());
}

// ---- garbage

struct Garbage {
    const char *name;
    std::string content;
};

std::string RandomBytes(std::size_t size) {
    std::mt19937 random(4711);
    std::string bytes(size, 0);
    for (char &byte : bytes) {
        byte = static_cast<char>(random() & 0xFF);
    }
    return bytes;
}

std::vector<Garbage> AllGarbage() {
    std::string many;
    for (int number = 0; number < 20000; ++number) {
        many += "/gone/" + std::to_string(number) + "/bank.syx,1\n";
    }
    return {
        {"random bytes", RandomBytes(1'000'000)},
        {"a line of 10 MB", std::string(10'000'000, 'x')},
        {"a line of 10 MB with a number", std::string(10'000'000, 'x') + ",5\n"},
        {"zero bytes", std::string(1'000'000, '\0')},
        {"line feeds", std::string(1'000'000, '\n')},
        {"commas", std::string(1'000'000, ',')},
        {"pin marks", std::string("/P,1\n/P\n/P/P,2\n//P,3\n")},
        {"folders", std::string("/,1\n.,2\n..,3\n/tmp,4\n/tmp/,5\n")},
        {"many folders that are gone", many},
        {"broken characters", std::string("\xFF\xFE\x80,1\n\xC3,2\n\xF0\x9F\x92,3\n")},
    };
}

TEST_F(History, GarbageInTheFileGivesNoEntries) {
    for (const Garbage &garbage : AllGarbage()) {
        WriteHistory(garbage.content);
        Restart();
        EXPECT_TRUE(HistoryEntries().empty()) << garbage.name;
    }
}

TEST_F(History, DocumentsBeforeAndBehindGarbageAreFound) {
    const std::string first = Document("first.syx");
    const std::string last = Document("Last One.syx");
    for (const Garbage &garbage : AllGarbage()) {
        WriteHistory(first + ",20\n" + garbage.content + "\n" + last + "/P,10\n");
        Restart();
        EXPECT_EQ(Entries(), (Strings{"Last One.syx/P", "first.syx"})) << garbage.name;
    }
}

TEST_F(History, ADocumentAmongManyThatAreGoneIsFound) {
    std::string text;
    for (int number = 0; number < 1000; ++number) {
        text += home.File("gone " + std::to_string(number) + ".syx") + ",1\n";
        text += home.File("no such folder/gone " + std::to_string(number) + ".syx") + ",1\n";
    }
    const Strings names = {"here.syx",     "CAPITALS.SYX", "gone 5.syy", "tilde~1.syx",
                           "\xC3\xA4.syx", "\xE4.syx",     "blank ",     "dot."};
    std::uint32_t time = 100;
    for (const std::string &name : names) {
        text += Document(name) + "," + std::to_string(time--) + "\n";
    }
    WriteHistory(text);
    HistoryRead();
    EXPECT_EQ(Entries(), names);
}

TEST_F(History, AFolderOrAPipeInPlaceOfTheFileIsNoHistory) {
    std::filesystem::create_directory(FilePath());
    HistoryRead();
    EXPECT_TRUE(HistoryEntries().empty());
    HistoryAdd(nullptr, Document("a.syx"), 100);
    HistorySave();
    EXPECT_TRUE(std::filesystem::is_directory(FilePath()));
}

// ---- pictures

TEST_F(History, ThePictureFollowsTheExtension) {
    EXPECT_EQ(DocumentPictureOf("/x/bank.syx"), 8502u);
    EXPECT_EQ(DocumentPictureOf("BANK.SYX"), 8502u);
    EXPECT_EQ(DocumentPictureOf("/x/bank.srx"), 8501u);
    EXPECT_EQ(DocumentPictureOf("/x/voice.sy1"), 8500u);
    EXPECT_EQ(DocumentPictureOf("/x.syx/bank"), 8500u);
    EXPECT_EQ(DocumentPictureOf(""), 8500u);
}

TEST_F(History, ARowWithoutAPictureIsPassedOver) {
    Dx7Row.documentPicture = 0;
    EXPECT_EQ(DocumentPictureOf("bank.syx"), 8500u);
    RefaceRow.bankExtension = "syx";
    EXPECT_EQ(DocumentPictureOf("bank.syx"), 8501u);
}

} // namespace
} // namespace tonewright
