// Voices of the list into the catalogue: which go, with which fields, what is said when one does
// not, and what careful mode keeps and says.
#include "shell_fixture.h"

#include "database/test_catalogue.h"
#include "shell/careful.h"
#include "support/reface_bytes.h"

#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

const TestFamily &Dx7 = TestFamilies[0];
const TestFamily &Reface = TestFamilies[1];
const std::string Dx7Name = "Yamaha DX7, TX7, Korg Volca FM";
const std::string NotThisVoice = "This voice could not be added to the current database.";
const std::string NotAllVoices = "One or more voices could not be added to the current database.";
const std::string AsItWas = "\n\nThe database has been left as it was.";

class AddToDatabase : public ShellTest {
protected:
    void SetUp() override {
        ShellTest::SetUp();
        fs::create_directory(home.path / "My Tonewright 17 Documents");
        DatabaseMakePrettyNames = 0;
    }

    std::string Path(const TestFamily &family = Dx7) const {
        return home.File("My Tonewright 17 Documents/Voices." + std::string(family.extension));
    }
    // With voices whose bytes are known.
    void OpenBank() {
        ShellTest::OpenBank();
        for (int row = 0; row < 32; ++row) {
            ListSetVoice(MainList, row, TestVoiceOf(Dx7, row));
        }
    }
    // The row that was clicked, and whether Shift is held when the command runs.
    int Add(int row, bool shift = false) {
        MainListState.clickedIndex = row;
        desktop.shiftDown = shift;
        return RunCommand(CommandAddToDatabase);
    }
    // A catalogue of two records.
    TestBytes WriteCatalogue(const TestFamily &family = Dx7) {
        const TestBytes bytes = TestCatalogue(family, 2, 2);
        WriteTestFile(Path(family), bytes);
        return bytes;
    }
    // A catalogue of the voices of these rows, in their order, as the test bank has them.
    void ExpectRecords(const TestFamily &family, const std::vector<int> &rows,
                       const std::string &source) const {
        TestBytes records;
        for (const int row : rows) {
            const std::string name = family.sizeB == 0 ? TestVoiceName(row) : TestRefaceName(row);
            const TestBytes record = TestRecord(family, row,
                                                {name.substr(0, name.find_last_not_of(' ') + 1),
                                                 source, static_cast<std::uint32_t>(row),
                                                 static_cast<std::uint32_t>(CurrentDocumentTime)});
            records.insert(records.end(), record.begin(), record.end());
        }
        const TestBytes file = ReadTestFile(Path(family));
        EXPECT_EQ(Test32(file, 20), rows.size());
        EXPECT_EQ(TestBytes(file.begin() + 152, file.end()), records);
    }
    // What no add touches.
    void ExpectDocumentUntouched() {
        EXPECT_EQ(UndoCount(), 0);
        EXPECT_FALSE(MainListState.dirty);
        EXPECT_TRUE(titles.empty());
        EXPECT_EQ(repaints, 0);
        EXPECT_EQ(MainListState.clickedIndex, NoRow);
    }
    static VoiceObject LongerDx7Voice() {
        return MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(157, 1), {});
    }
};

TEST_F(AddToDatabase, TheClickedVoiceGoesThereUnderItsNameWithTheDocumentAsItsSource) {
    OpenBank();
    EXPECT_GT(CurrentDocumentTime, 0);
    EXPECT_EQ(Add(4), 1);
    ExpectRecords(Dx7, {4}, "bank.syx");
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    ExpectDocumentUntouched();
}

TEST_F(AddToDatabase, ItGoesBehindTheOthers) {
    OpenBank();
    EXPECT_EQ(Add(4), 1);
    EXPECT_EQ(Add(0), 1);
    EXPECT_EQ(Add(31), 1);
    ExpectRecords(Dx7, {4, 0, 31}, "bank.syx");
}

TEST_F(AddToDatabase, WithoutAClickedRowItIsTheSelectedVoice) {
    OpenBank();
    ListSelect(MainList, 7);
    EXPECT_EQ(Add(NoRow), 1);
    ExpectRecords(Dx7, {7}, "bank.syx");
}

TEST_F(AddToDatabase, WithoutARowNothingHappens) {
    OpenBank();
    ListSelect(MainList, NoRow);
    EXPECT_EQ(Add(NoRow), 0);
    EXPECT_FALSE(fs::exists(Path()));
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(AddToDatabase, ShiftAddsAllVoicesWithOneSound) {
    OpenBank();
    EXPECT_EQ(Add(4, true), 1);
    std::vector<int> all;
    for (int row = 0; row < 32; ++row) {
        all.push_back(row);
    }
    ExpectRecords(Dx7, all, "bank.syx");
    EXPECT_EQ(desktop.sounds, Strings{ConfirmSound});
    ExpectDocumentUntouched();
}

TEST_F(AddToDatabase, ShiftNeedsNoRow) {
    OpenBank();
    ListSelect(MainList, NoRow);
    EXPECT_EQ(Add(NoRow, true), 1);
    EXPECT_EQ(Test32(ReadTestFile(Path()), 20), 32u);
}

TEST_F(AddToDatabase, VoicesOfTheRefaceDxGoToTheCatalogueOfTheirOwn) {
    PendingOpenPath = home.Write("mine.srx", TestRefaceBank());
    ASSERT_EQ(RunCommand(CommandOpen), 1);
    EXPECT_EQ(Add(3), 1);
    EXPECT_EQ(Add(1), 1);
    ExpectRecords(Reface, {3, 1}, "mine.srx");
    EXPECT_FALSE(fs::exists(Path(Dx7)));
}

TEST_F(AddToDatabase, ACutListOfThreeVoicesIsAddedWhole) {
    const auto bank = TestRefaceBank();
    PendingOpenPath = home.Write("cut.srx", std::span(bank).first(160 + 3 * 202 + 100));
    desktop.ExpectMessage(ReadError);
    RunCommand(CommandOpen);
    ASSERT_EQ(ListCount(MainList), 3);
    EXPECT_EQ(Add(0, true), 1);
    ExpectRecords(Reface, {0, 1, 2}, "cut.srx");
}

TEST_F(AddToDatabase, NameAndSourceAreMadePrettyWhereTheSettingsSaySo) {
    DatabaseMakePrettyNames = 1;
    OpenBank();
    EXPECT_EQ(Add(4), 1);
    EXPECT_EQ(TestTextAt(ReadTestFile(Path()), 152 + 28, 9), std::string("Voice 05\0", 9));
    EXPECT_EQ(TestTextAt(ReadTestFile(Path()), 152 + 93, 9), std::string("Bank.syx\0", 9));
}

TEST_F(AddToDatabase, TheSourceIsLatin1) {
    OpenBank();
    CurrentDocumentPath = "/b\xC3\xA4nke/B\xC3\xA4nk \xE2\x82\xAC\xC5\x93.syx";
    EXPECT_EQ(Add(4), 1);
    EXPECT_EQ(TestTextAt(ReadTestFile(Path()), 152 + 93, 12), std::string("B\xE4nk ??.syx\0", 12));
}

TEST_F(AddToDatabase, ALongSourceIsCutAfter64CharactersOfLatin1) {
    OpenBank();
    std::string name;
    for (int i = 0; i < 70; ++i) {
        name += "\xC3\xA4";
    }
    CurrentDocumentPath = home.Folder() + name + ".syx";
    EXPECT_EQ(Add(4), 1);
    EXPECT_EQ(TestTextAt(ReadTestFile(Path()), 152 + 93, 65), std::string(64, '\xE4') + '\0');
}

TEST_F(AddToDatabase, AVoiceThatIsThereAlreadyIsASuccess) {
    OpenBank();
    EXPECT_EQ(Add(4), 1);
    EXPECT_EQ(Add(4), 1);
    EXPECT_EQ(Add(0, true), 1);
    EXPECT_EQ(Test32(ReadTestFile(Path()), 20), 32u);
    EXPECT_EQ(desktop.sounds.size(), 3u);
}

TEST_F(AddToDatabase, AVoiceOfTheOtherFamilyIsRefusedAndCostsNothing) {
    OpenBank();
    const TestBytes former = WriteCatalogue();
    ListSetVoice(MainList, 4, RefaceDxVoice(1));
    desktop.ExpectMessage(NotThisVoice);
    EXPECT_EQ(Add(4), 0);
    EXPECT_EQ(ReadTestFile(Path()), former);
    EXPECT_TRUE(desktop.sounds.empty());
    ExpectDocumentUntouched();
}

TEST_F(AddToDatabase, WithShiftTheOthersAreAddedAllTheSame) {
    OpenBank();
    ListSetVoice(MainList, 1, RefaceDxVoice(1));
    desktop.ExpectMessage(NotAllVoices);
    EXPECT_EQ(Add(4, true), 0);
    std::vector<int> others = {0};
    for (int row = 2; row < 32; ++row) {
        others.push_back(row);
    }
    ExpectRecords(Dx7, others, "bank.syx");
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(AddToDatabase, WhatIsNoWholeVoiceCostsNothing) {
    OpenBank();
    const TestBytes former = WriteCatalogue();
    for (const VoiceObject &voice :
         {VoiceObject{}, LongerDx7Voice(),
          MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(155, 1), {}),
          MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(156, 1),
                          std::vector<std::uint8_t>(1, 1))}) {
        MainList.items[4] = voice;
        desktop.ExpectMessage(NotThisVoice);
        EXPECT_EQ(Add(4), 0);
        EXPECT_EQ(ReadTestFile(Path()), former);
    }
}

TEST_F(AddToDatabase, WithoutACurrentFamilyNothingIsAdded) {
    OpenBank();
    const TestBytes former = WriteCatalogue();
    CurrentDriverId = NoDriverId;
    desktop.ExpectMessage(NotThisVoice);
    EXPECT_EQ(Add(4), 0);
    desktop.ExpectMessage(NotAllVoices);
    EXPECT_EQ(Add(4, true), 0);
    EXPECT_EQ(ReadTestFile(Path()), former);
    EXPECT_FALSE(fs::exists(Path(Reface)));
}

TEST_F(AddToDatabase, AFileThatIsNoCatalogueIsReplacedAtTheSecondTry) {
    OpenBank();
    WriteTestText(Path(), "no catalogue");
    desktop.ExpectMessage(NotThisVoice);
    EXPECT_EQ(Add(4), 0);
    EXPECT_FALSE(fs::exists(Path()));
    EXPECT_EQ(Add(4), 1);
    ExpectRecords(Dx7, {4}, "bank.syx");
}

class CarefulAdd : public AddToDatabase {
protected:
    void SetUp() override {
        AddToDatabase::SetUp();
        CarefulMode = 1;
        OpenBank();
    }
};

TEST_F(CarefulAdd, GoesItsPlainWay) {
    EXPECT_EQ(Add(4), 1);
    EXPECT_EQ(Add(1), 1);
    ExpectRecords(Dx7, {4, 1}, "bank.syx");
    EXPECT_EQ(desktop.sounds, (Strings{ConfirmSound, ConfirmSound}));
    ExpectDocumentUntouched();
}

TEST_F(CarefulAdd, AFileThatIsNoCatalogueStaysAndIsNamed) {
    for (const TestBytes &bytes : {TestBytes{}, TestBytes(151, 'T'), TestCatalogue(Reface, 2, 2)}) {
        WriteTestFile(Path(), bytes);
        const std::string reason =
            "\n\n" + Path() + ": it is no database for the " + Dx7Name + "." + AsItWas;
        desktop.ExpectMessage(NotThisVoice + reason);
        EXPECT_EQ(Add(4), 0);
        desktop.ExpectMessage(
            NotAllVoices +
            "\n\nNot added: 32 of the 32 voices in the list, at these places: 1, 2, 3, 4, 5, 6, 7, "
            "8, 9, 10, 11, 12, 13, 14, 15, "
            "16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32." +
            reason);
        EXPECT_EQ(Add(4, true), 0);
        EXPECT_EQ(ReadTestFile(Path()), bytes);
    }
}

TEST_F(CarefulAdd, AFolderInItsPlaceIsNamedToo) {
    fs::create_directory(Path());
    desktop.ExpectMessage(NotThisVoice + "\n\n" + Path() + ": Is a directory." + AsItWas);
    EXPECT_EQ(Add(4), 0);
}

TEST_F(CarefulAdd, VoicesThatAreNoneAreNamed) {
    const TestBytes former = WriteCatalogue();
    const auto expectRefused = [&](const VoiceObject &voice, const std::string &reason) {
        MainList.items[4] = voice;
        desktop.ExpectMessage(NotThisVoice + "\n\n" + reason + AsItWas);
        EXPECT_EQ(Add(4), 0);
        EXPECT_EQ(ReadTestFile(Path()), former);
    };
    expectRefused(RefaceDxVoice(1), "Voice 5 of the list is not a voice for the " + Dx7Name +
                                        ", which is your current synthesizer.");
    expectRefused(MakeVoiceObject(Dx7DriverId, std::vector<std::uint8_t>(155, 1), {}),
                  "Voice 5 of the list is incomplete.");
    expectRefused(LongerDx7Voice(), "Voice 5 of the list has another form than the voices in a "
                                    "database for the " +
                                        Dx7Name + ".");
}

TEST_F(CarefulAdd, WithShiftHowManyAndWhichAreNamed) {
    for (const int row : {0, 3, 31}) {
        ListSetVoice(MainList, row, LongerDx7Voice());
    }
    desktop.ExpectMessage(NotAllVoices +
                          "\n\nNot added: 3 of the 32 voices in the list, at these "
                          "places: 1, 4, 32.\n\nVoice 1 of the list has another form than the "
                          "voices in a database for the " +
                          Dx7Name + ".");
    EXPECT_EQ(Add(NoRow, true), 0);
    EXPECT_EQ(Test32(ReadTestFile(Path()), 20), 29u);
    EXPECT_TRUE(desktop.sounds.empty());
}

TEST_F(CarefulAdd, OfALongListTheFirst32PlacesAreNamed) {
    while (ListCount(MainList) < 40) {
        ListAdd(MainList);
    }
    for (int row = 1; row < 40; ++row) {
        ListSetVoice(MainList, row, LongerDx7Voice());
    }
    std::string places = "2";
    for (int place = 3; place <= 33; ++place) {
        places += ", " + std::to_string(place);
    }
    desktop.ExpectMessage(NotAllVoices +
                          "\n\nNot added: 39 of the 40 voices in the list, at these "
                          "places: " +
                          places +
                          " and others.\n\nVoice 2 of the list has "
                          "another form than the voices in a database for the " +
                          Dx7Name + ".");
    EXPECT_EQ(Add(NoRow, true), 0);
}

TEST_F(CarefulAdd, BothFaultsOfVoicesAndOfTheFileAreNamed) {
    ListSetVoice(MainList, 2, LongerDx7Voice());
    while (ListCount(MainList) > 4) {
        ListDelete(MainList, 4);
    }
    WriteTestText(Path(), "no catalogue");
    desktop.ExpectMessage(
        NotAllVoices +
        "\n\nNot added: 4 of the 4 voices in the list, at these places: 1, 2, 3, "
        "4.\n\nVoice 3 of the list has another form than the voices in a database for the " +
        Dx7Name + ".\n\n" + Path() + ": it is no database for the " + Dx7Name + "." + AsItWas);
    EXPECT_EQ(Add(NoRow, true), 0);
}

TEST_F(CarefulAdd, WithoutACurrentFamilyTheWayToOneIsNamed) {
    CurrentDriverId = NoDriverId;
    desktop.ExpectMessage(NotThisVoice +
                          "\n\nThere is no current synthesizer. Please choose one with Select "
                          "synthesizer in the Edit menu. This empties the list: voices that you "
                          "want to keep must be saved before." +
                          AsItWas);
    EXPECT_EQ(Add(4), 0);
}

// The instrument of a download that breaks off.
TEST_F(CarefulAdd, AVoiceThatDidNotArriveIsNotAddedAndTheOthersAre) {
    CurrentDriverId = RefaceDriverId;
    MainList.items.assign(MainList.items.size(), {});
    for (int row = 0; row < ListCount(MainList); ++row) {
        ListSetVoice(MainList, row, TestVoiceOf(Reface, row));
    }
    ListSetVoice(MainList, 6, RefaceDxVoice(0)); // which is all that came of it
    desktop.ExpectMessage("Your synthesizer did not send all of its voices. These places of the "
                          "list are incomplete: 7.");
    EXPECT_TRUE(CarefulMissesVoices(nullptr));
    desktop.ExpectMessage(NotThisVoice + "\n\nVoice 7 of the list is incomplete." + AsItWas);
    EXPECT_EQ(Add(6), 0);
    EXPECT_FALSE(fs::exists(Path(Reface)));
    EXPECT_EQ(Add(5), 1);
    CarefulMode = 0;
    EXPECT_EQ(Add(6), 1);
    EXPECT_EQ(Test32(ReadTestFile(Path(Reface)), 20), 2u);
}

} // namespace
} // namespace tonewright
