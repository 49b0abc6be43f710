// Opening, closing, reading, writing and adding, on real files of both families.
#include "database/database_file.h"

#include "common/platform.h"
#include "test_catalogue.h"

#include <ctime>
#include <filesystem>

namespace tonewright {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t ReadOnly = 1, Empty = 2, Update = 3, Append = 4;

class DatabaseFile : public CatalogueTest {};

INSTANTIATE_TEST_SUITE_P(Families, DatabaseFile, testing::ValuesIn(TestFamilies), LabelOf);

bool IsNow(std::uint32_t seconds) {
    const auto now = static_cast<std::uint32_t>(std::time(nullptr));
    return seconds <= now && now - seconds < 60;
}

TEST_P(DatabaseFile, ANewOneHasExactlyTheBytesOfItsHeader) {
    auto database = row.DatabaseOpen(Path().c_str(), Update);
    ASSERT_TRUE(database);
    EXPECT_EQ(row.DatabaseClose(database), 1);
    const TestBytes file = File();
    ASSERT_EQ(file.size(), 152u);
    EXPECT_EQ(TestTextAt(file, 0, 8), "TnwrTWdb");
    EXPECT_EQ(TestTextAt(file, 8, 4), family.idText);
    EXPECT_TRUE(IsNow(Test32(file, 12)));
    EXPECT_TRUE(IsNow(Test32(file, 16)));
    EXPECT_EQ(Test32(file, 20), 0u);
    EXPECT_EQ(TestTextAt(file, 24, 128), std::string(128, '\0'));
}

TEST_P(DatabaseFile, ItsPathIsThatOfTheSettingsNameInTheDocuments) {
    EXPECT_EQ(row.DatabasePath(), Path());
    DatabaseCurrentName = "Mine";
    EXPECT_TRUE(std::string(row.DatabasePath())
                    .ends_with(PathSeparator + std::string("Mine.") + family.extension));
    DatabaseCurrentName = std::string(400, 'x');
    EXPECT_EQ(std::string(row.DatabasePath()).size(), 260u);
    EXPECT_TRUE(std::string(row.DatabasePath()).ends_with("xxx"));
}

TEST_P(DatabaseFile, APathThatIsCutWithinItsExtensionIsUsedAsItIs) {
    const std::size_t room = 260 - (Path().size() - std::string("Voices.").size() -
                                    std::string(family.extension).size());
    DatabaseCurrentName = std::string(room - 4, 'x');
    const std::string path = row.DatabasePath();
    EXPECT_EQ(path.size(), 260u);
    EXPECT_TRUE(path.ends_with("x." + std::string(family.extension).substr(0, 3))) << path;
}

TEST_P(DatabaseFile, InfoTellsItsConstants) {
    EXPECT_EQ(row.DatabaseInfo(0).number, 32);
    EXPECT_STREQ(row.DatabaseInfo(1).text, family.sizeB == 0 ? "syx" : "srx");
    EXPECT_STREQ(row.DatabaseInfo(2).text, family.extension);
    EXPECT_STREQ(row.DatabaseInfo(3).text, family.backupExtension);
    for (const int selector : {4, -1, 255}) {
        EXPECT_EQ(row.DatabaseInfo(selector).number, -1);
        EXPECT_EQ(row.DatabaseInfo(selector).text, nullptr);
    }
}

TEST_P(DatabaseFile, AFileShorterThanItsHeaderDoesNotOpen) {
    for (const std::size_t size : {0, 1, 151}) {
        TestBytes bytes = TestCatalogueHeader(family, 0);
        bytes.resize(size);
        WriteTestFile(Path(), bytes);
        for (const std::uint32_t mode : {ReadOnly, Update, Append}) {
            EXPECT_FALSE(row.DatabaseOpen(Path().c_str(), mode)) << size << " " << mode;
        }
        EXPECT_EQ(File(), bytes);
    }
}

TEST_P(DatabaseFile, AForeignMagicAndAnotherFamilyDoNotOpen) {
    for (const std::size_t at : {0, 7, 8, 11}) {
        TestBytes bytes = TestCatalogue(family, 1, 1);
        bytes[at] ^= 1;
        WriteTestFile(Path(), bytes);
        EXPECT_FALSE(row.DatabaseOpen(Path().c_str(), Update)) << at;
        EXPECT_EQ(errno, EINVAL);
        EXPECT_EQ(File(), bytes);
    }
    WriteTestFile(Path(), TestCatalogue(TestFamilies[family.sizeB == 0 ? 1 : 0], 1, 1));
    EXPECT_FALSE(row.DatabaseOpen(Path().c_str(), Update));
}

TEST_P(DatabaseFile, TheTimeOfTheLastCloseIsRewrittenByEachCloseAndNothingElse) {
    TestBytes bytes = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), bytes);
    auto database = row.DatabaseOpen(Path().c_str(), Update);
    ASSERT_TRUE(database);
    EXPECT_EQ(row.DatabaseClose(database), 1);
    TestBytes after = File();
    EXPECT_TRUE(IsNow(Test32(after, 16)));
    std::copy(bytes.begin() + 16, bytes.begin() + 20, after.begin() + 16);
    EXPECT_EQ(after, bytes);
}

TEST_P(DatabaseFile, OpenForReadingItClosesWithAFailureAndChangesNoByte) {
    const TestBytes bytes = TestCatalogue(family, 2, 2);
    for (const std::uint32_t mode : {1u, 5u}) {
        WriteTestFile(Path(), bytes);
        auto database = row.DatabaseOpen(Path().c_str(), mode);
        ASSERT_TRUE(database);
        DatabaseRecord record;
        EXPECT_EQ(row.DatabaseReadRecord(*database, 1, record), 1);
        EXPECT_EQ(record.bytes, TestRecordAt(family, 1));
        EXPECT_EQ(row.DatabaseWriteRecord(*database, 0, record), 0);
        EXPECT_EQ(row.DatabaseClose(database), 0);
        EXPECT_EQ(File(), bytes);
    }
}

TEST_P(DatabaseFile, OpenForReadingAMissingOneIsNotMade) {
    for (const std::uint32_t mode : {1u, 5u, 0u, 8u}) {
        EXPECT_FALSE(row.DatabaseOpen(Path().c_str(), mode));
        EXPECT_FALSE(HasFile());
    }
}

TEST_P(DatabaseFile, AModeOfNoneOfItsBitsOpensNothing) {
    const TestBytes bytes = TestCatalogue(family, 2, 2);
    WriteTestFile(Path(), bytes);
    for (const std::uint32_t mode : {0u, 8u, 16u}) {
        EXPECT_FALSE(row.DatabaseOpen(Path().c_str(), mode));
    }
    EXPECT_EQ(File(), bytes);
}

TEST_P(DatabaseFile, AnEmptyOneIsMadeInThePlaceOfAnyOther) {
    for (const std::uint32_t mode : {2u, 6u}) {
        WriteTestFile(Path(), TestCatalogue(family, 5, 5));
        auto database = row.DatabaseOpen(Path().c_str(), mode);
        ASSERT_TRUE(database);
        EXPECT_EQ(DatabaseCount(*database), 0u);
        EXPECT_EQ(row.DatabaseClose(database), 1);
        EXPECT_EQ(Size(), 152u);
        EXPECT_TRUE(IsNow(Test32(File(), 12)));
    }
}

TEST_P(DatabaseFile, AllThreeBitsMeanReadingAndWriting) {
    WriteTestFile(Path(), TestCatalogue(family, 2, 2));
    auto database = row.DatabaseOpen(Path().c_str(), 7);
    ASSERT_TRUE(database);
    EXPECT_EQ(row.DatabaseWriteRecord(*database, 0, {TestRecordAt(family, 9)}), 1);
    EXPECT_EQ(row.DatabaseClose(database), 1);
    EXPECT_EQ(Size(), 152 + 2 * family.recordSize);
}

TEST_P(DatabaseFile, OpenForAppendingItsCloseAddsTheHeaderAtTheEnd) {
    auto database = row.DatabaseOpen(Path().c_str(), Append);
    ASSERT_TRUE(database);
    EXPECT_EQ(row.DatabaseClose(database), 1);
    EXPECT_EQ(Size(), 304u);
    EXPECT_EQ(TestTextAt(File(), 152, 8), "TnwrTWdb");
}

TEST_P(DatabaseFile, ALinkToItStaysWhenItIsReplaced) {
    const std::string target = folder.File("target");
    WriteTestFile(target, TestCatalogue(family, 2, 2));
    fs::create_symlink(target, Path());
    EXPECT_EQ(row.DatabaseClose(row.DatabaseOpen(Path().c_str(), Empty)), 1);
    EXPECT_TRUE(fs::is_symlink(Path()));
    EXPECT_EQ(fs::file_size(target), 152u);
}

TEST_P(DatabaseFile, BehindADanglingLinkItIsMade) {
    const std::string target = folder.File("target");
    fs::create_symlink(target, Path());
    EXPECT_EQ(row.DatabaseClose(row.DatabaseOpen(Path().c_str(), Update)), 1);
    EXPECT_TRUE(fs::is_symlink(Path()));
    EXPECT_EQ(fs::file_size(target), 152u);
}

TEST_P(DatabaseFile, AFolderInItsPlaceStays) {
    fs::create_directory(Path());
    for (const std::uint32_t mode : {ReadOnly, Empty, Update, Append}) {
        EXPECT_FALSE(row.DatabaseOpen(Path().c_str(), mode));
    }
    EXPECT_EQ(Add(0), 0);
    EXPECT_TRUE(fs::is_directory(Path()));
}

// ---- records

TEST_P(DatabaseFile, ARecordStandsAtItsMultipleBehindTheHeader) {
    WriteTestFile(Path(), TestCatalogue(family, 3, 3));
    auto database = row.DatabaseOpen(Path().c_str(), ReadOnly);
    ASSERT_TRUE(database);
    for (const int index : {2, 0, 1, 1, 2}) {
        DatabaseRecord record;
        ASSERT_EQ(row.DatabaseReadRecord(*database, static_cast<std::uint32_t>(index), record), 1);
        EXPECT_EQ(record.bytes, TestRecordAt(family, index));
    }
}

TEST_P(DatabaseFile, ACountBeyondTheFileGivesNoRecordsThere) {
    WriteTestFile(Path(), TestCatalogue(family, 2, 7));
    auto database = row.DatabaseOpen(Path().c_str(), ReadOnly);
    ASSERT_TRUE(database);
    DatabaseRecord record{{1, 2, 3}};
    EXPECT_EQ(row.DatabaseReadRecord(*database, 2, record), 0);
    EXPECT_EQ(row.DatabaseReadRecord(*database, 6, record), 0);
    EXPECT_EQ(record.bytes, (TestBytes{1, 2, 3}));
    EXPECT_EQ(row.DatabaseReadRecord(*database, 1, record), 1);
    EXPECT_EQ(row.DatabaseReadRecord(*database, 0xFFFFFFFF, record), 0);
}

TEST_P(DatabaseFile, ARecordBehindTheCountIsReadIfItIsThere) {
    WriteTestFile(Path(), TestCatalogue(family, 2, 1));
    auto database = row.DatabaseOpen(Path().c_str(), ReadOnly);
    DatabaseRecord record;
    EXPECT_EQ(row.DatabaseReadRecord(*database, 1, record), 1);
}

TEST_P(DatabaseFile, ARecordWithoutItsMagicAndACutOneReadAsNone) {
    TestBytes bytes = TestCatalogue(family, 3, 3);
    bytes[152 + family.recordSize + 3] ^= 1;
    bytes.pop_back();
    WriteTestFile(Path(), bytes);
    auto database = row.DatabaseOpen(Path().c_str(), ReadOnly);
    DatabaseRecord record;
    EXPECT_EQ(row.DatabaseReadRecord(*database, 0, record), 1);
    EXPECT_EQ(row.DatabaseReadRecord(*database, 1, record), 0);
    EXPECT_EQ(row.DatabaseReadRecord(*database, 2, record), 0);
}

TEST_P(DatabaseFile, TheFamilyOfARecordIsNotLookedAt) {
    TestBytes bytes = TestCatalogue(family, 1, 1);
    bytes[152 + 4] = '?';
    WriteTestFile(Path(), bytes);
    auto database = row.DatabaseOpen(Path().c_str(), ReadOnly);
    DatabaseRecord record;
    EXPECT_EQ(row.DatabaseReadRecord(*database, 0, record), 1);
}

TEST_P(DatabaseFile, WritingRaisesTheCountAlsoForWhatItRefuses) {
    WriteTestFile(Path(), TestCatalogue(family, 2, 2));
    auto database = row.DatabaseOpen(Path().c_str(), Update);
    ASSERT_TRUE(database);
    DatabaseRecord wrong{TestRecordAt(family, 0)};
    wrong.bytes[0] ^= 1;
    EXPECT_EQ(row.DatabaseWriteRecord(*database, 4, wrong), 0);
    EXPECT_EQ(DatabaseCount(*database), 5u);
    DatabaseRecord shorter{TestRecordAt(family, 0)};
    shorter.bytes.pop_back();
    EXPECT_EQ(row.DatabaseWriteRecord(*database, 0, shorter), 0);
    EXPECT_EQ(DatabaseCount(*database), 5u);
    EXPECT_EQ(row.DatabaseClose(database), 1);
    EXPECT_EQ(Test32(File(), 20), 5u);
    EXPECT_EQ(Size(), 152 + 2 * family.recordSize);
}

TEST_P(DatabaseFile, TheCountIsInTheFileFromTheCloseOn) {
    WriteTestFile(Path(), TestCatalogue(family, 1, 1));
    auto database = row.DatabaseOpen(Path().c_str(), Update);
    EXPECT_EQ(row.DatabaseWriteRecord(*database, 1, {TestRecordAt(family, 1)}), 1);
    EXPECT_EQ(Size(), 152 + 2 * family.recordSize) << "the record is out of the buffer";
    EXPECT_EQ(Test32(File(), 20), 1u);
    EXPECT_EQ(row.DatabaseClose(database), 1);
    EXPECT_EQ(Test32(File(), 20), 2u);
}

TEST_P(DatabaseFile, ReadingAndWritingByTurnsHitTheirPlaces) {
    WriteTestFile(Path(), TestCatalogue(family, 3, 3));
    auto database = row.DatabaseOpen(Path().c_str(), Update);
    DatabaseRecord record;
    EXPECT_EQ(row.DatabaseReadRecord(*database, 0, record), 1);
    EXPECT_EQ(row.DatabaseWriteRecord(*database, 1, {TestRecordAt(family, 11)}), 1);
    EXPECT_EQ(row.DatabaseReadRecord(*database, 2, record), 1);
    EXPECT_EQ(record.bytes, TestRecordAt(family, 2));
    EXPECT_EQ(row.DatabaseReadRecord(*database, 1, record), 1);
    EXPECT_EQ(record.bytes, TestRecordAt(family, 11));
    EXPECT_EQ(row.DatabaseWriteRecord(*database, 2, {TestRecordAt(family, 12)}), 1);
    EXPECT_EQ(row.DatabaseClose(database), 1);
    const TestBytes file = File();
    EXPECT_EQ(TestTextAt(file, 152 + 28, 6), "Name 0");
    EXPECT_EQ(TestTextAt(file, 152 + family.recordSize + 28, 7), "Name 11");
    EXPECT_EQ(TestTextAt(file, 152 + 2 * family.recordSize + 28, 7), "Name 12");
}

TEST_P(DatabaseFile, APlaceBeyondTwoGigabytesIsRefusedAndCountsNothing) {
    WriteTestFile(Path(), TestCatalogue(family, 1, 1));
    auto database = row.DatabaseOpen(Path().c_str(), Update);
    const auto last = static_cast<std::uint32_t>((0x7FFFFFFF - 152) / family.recordSize);
    EXPECT_EQ(row.DatabaseWriteRecord(*database, last + 1, {TestRecordAt(family, 0)}), 0);
    EXPECT_EQ(row.DatabaseWriteRecord(*database, 0xFFFFFFFF, {TestRecordAt(family, 0)}), 0);
    EXPECT_EQ(DatabaseCount(*database), 1u);
    EXPECT_EQ(Size(), 152 + family.recordSize);
}

TEST_P(DatabaseFile, WhatBeginsWithinItIsCountedWhateverTheHeaderSays) {
    const std::size_t one = family.recordSize;
    for (const auto &[size, records] : {std::pair<std::size_t, std::uint64_t>{152, 0},
                                        {153, 1},
                                        {152 + one, 1},
                                        {152 + one + 1, 2},
                                        {152 + 3 * one, 3}}) {
        TestBytes bytes = TestCatalogue(family, 4, 0xFFFFFFFF);
        bytes.resize(size);
        WriteTestFile(Path(), bytes);
        auto database = row.DatabaseOpen(Path().c_str(), ReadOnly);
        ASSERT_TRUE(database);
        EXPECT_EQ(RecordsThatBegin(*database), records) << size;
    }
}

// ---- adding

TEST_P(DatabaseFile, AVoiceIsAddedWithAllThatIsSaidOfIt) {
    CurrentDocumentTime = 0x1'2345'6789;
    DatabaseMakePrettyNames = 0;
    EXPECT_EQ(Add(4, "My Name", "Bank.syx", 17), 1);
    const TestBytes file = File();
    ASSERT_EQ(file.size(), 152 + family.recordSize);
    EXPECT_EQ(Test32(file, 20), 1u);
    const TestBytes record(file.begin() + 152, file.end());
    EXPECT_EQ(record, TestRecord(family, 4, {"My Name", "Bank.syx", 17, 0x23456789}));
}

TEST_P(DatabaseFile, WithoutANameTheVoicesOwnIsTaken) {
    DatabaseMakePrettyNames = 0;
    EXPECT_EQ(Add(0), 1);
    EXPECT_EQ(TestTextAt(File(), 152 + 28, 11).c_str(), family.name);
}

// The first byte of a name always stays; behind it, what is a blank or below at the end goes.
TEST_P(DatabaseFile, ANameOfBlanksAndControlCharactersKeepsItsFirst) {
    DatabaseMakePrettyNames = 0;
    TestBytes payload = TestPayloadOf(family, 0);
    const std::string name = " \x01\x20\x1F      ";
    std::copy(name.begin(), name.end(),
              payload.begin() + static_cast<std::ptrdiff_t>(family.nameOffset));
    const VoiceObject voice = TestVoiceWith(family, payload);
    EXPECT_EQ(row.DatabaseAddVoice(nullptr, voice, nullptr, "a", 0), 1);
    EXPECT_EQ(TestTextAt(File(), 152 + 28, 65), " " + std::string(64, '\0'));
}

TEST_P(DatabaseFile, TextsOfMoreThan64CharactersAreStoredAsTheirFirst64) {
    DatabaseMakePrettyNames = 0;
    for (const std::size_t size : {64, 65, 200}) {
        fs::remove(Path());
        const std::string name(size, 'n'), source(size, 's');
        EXPECT_EQ(Add(0, name.c_str(), source.c_str()), 1);
        EXPECT_EQ(TestTextAt(File(), 152 + 28, 65), std::string(64, 'n') + '\0');
        EXPECT_EQ(TestTextAt(File(), 152 + 93, 65), std::string(64, 's') + '\0');
        EXPECT_EQ(TestTextAt(File(), 152 + 158, 4), std::string(4, '\0'));
    }
}

TEST_P(DatabaseFile, TextsAreMadePrettyWhenTheSettingsSaySo) {
    EXPECT_EQ(Add(0, "  THE  BIG   ONE", "MY BANK.SYX"), 1);
    EXPECT_EQ(TestTextAt(File(), 152 + 28, 65), " the big one" + std::string(53, '\0'));
    EXPECT_EQ(TestTextAt(File(), 152 + 93, 65), "My bank.syx" + std::string(54, '\0'));
}

TEST_P(DatabaseFile, TheSameVoiceOfTheSameDocumentIsStoredOnce) {
    EXPECT_EQ(Add(0, "Bell", "a.syx", 1), 1);
    CurrentDocumentTime = 77;
    EXPECT_EQ(Add(0, "Bell", "a.syx", 2), 1);
    EXPECT_EQ(Add(0, "BELL", "A.SYX", 3), 1) << "in any case of letters";
    DatabaseMakePrettyNames = 0;
    EXPECT_EQ(Add(0, "bELL", "a.Syx", 3), 1);
    EXPECT_EQ(Test32(File(), 20), 1u);
    EXPECT_EQ(Size(), 152 + family.recordSize);
}

TEST_P(DatabaseFile, AnotherNameSourceOrVoiceIsNoDuplicate) {
    EXPECT_EQ(Add(0, "Bell", "a.syx"), 1);
    EXPECT_EQ(Add(0, "Bells", "a.syx"), 1);
    EXPECT_EQ(Add(0, "Bell", "b.syx"), 1);
    EXPECT_EQ(Add(1, "Bell", "a.syx"), 1);
    TestBytes payload = TestPayloadOf(family, 0);
    payload.back() ^= 1;
    EXPECT_EQ(row.DatabaseAddVoice(nullptr, TestVoiceWith(family, payload), "Bell", "a.syx", 0), 1);
    EXPECT_EQ(Test32(File(), 20), 5u);
}

TEST_P(DatabaseFile, WithDuplicatesAllowedTheSameVoiceIsStoredAgain) {
    DatabaseNoDuplicates = 0;
    EXPECT_EQ(Add(0), 1);
    EXPECT_EQ(Add(0), 1);
    EXPECT_EQ(Test32(File(), 20), 2u);
    EXPECT_EQ(Size(), 152 + 2 * family.recordSize);
}

TEST_P(DatabaseFile, OnlyTheFirst32RecordsAreCompared) {
    DatabaseMakePrettyNames = 0;
    WriteTestFile(Path(), TestCatalogue(family, 40, 40));
    EXPECT_EQ(Add(31, "Name 31", "Bank 31.syx"), 1);
    EXPECT_EQ(Test32(File(), 20), 40u);
    EXPECT_EQ(Add(0, "Name 32", "Bank 32.syx"), 1);
    EXPECT_EQ(Test32(File(), 20), 41u);
}

TEST_P(DatabaseFile, RecordsThatCannotBeReadAreNoDuplicatesAndThoseBehindThemAreStill) {
    DatabaseMakePrettyNames = 0;
    TestBytes bytes = TestCatalogue(family, 3, 3);
    bytes[152] ^= 1;                         // magic of the first
    bytes[152 + family.recordSize + 22] = 1; // size of the second
    WriteTestFile(Path(), bytes);
    EXPECT_EQ(Add(0, "Name 0", "Bank 0.syx"), 1);
    EXPECT_EQ(Add(1, "Name 1", "Bank 1.syx"), 1);
    EXPECT_EQ(Add(2, "Name 2", "Bank 2.syx"), 1);
    EXPECT_EQ(Test32(File(), 20), 5u);
}

TEST_P(DatabaseFile, RecordsBehindTheCountAreOverwrittenByTheNextAdd) {
    DatabaseMakePrettyNames = 0;
    WriteTestFile(Path(), TestCatalogue(family, 3, 1));
    EXPECT_EQ(Add(9, "New", "b.syx"), 1);
    const TestBytes file = File();
    EXPECT_EQ(file.size(), 152 + 3 * family.recordSize);
    EXPECT_EQ(Test32(file, 20), 2u);
    EXPECT_EQ(TestTextAt(file, 152 + family.recordSize + 28, 4), std::string("New") + '\0');
    EXPECT_EQ(TestTextAt(file, 152 + 2 * family.recordSize + 28, 6), "Name 2");
}

TEST_P(DatabaseFile, ACountBeyondTheFilePutsTheNextVoiceBehindAHole) {
    WriteTestFile(Path(), TestCatalogue(family, 1, 4));
    EXPECT_EQ(Add(9), 1);
    EXPECT_EQ(Size(), 152 + 5 * family.recordSize);
    EXPECT_EQ(Test32(File(), 20), 5u);
}

TEST_P(DatabaseFile, AnAbsurdCountCostsTheFileAtTheNextAdd) {
    WriteTestFile(Path(), TestCatalogue(family, 3, 0xFFFFFFFF));
    EXPECT_EQ(Add(9), 0);
    EXPECT_FALSE(HasFile());
}

TEST_P(DatabaseFile, AddingToAFileThatIsNoneDeletesItAndTheNextAddMakesANewOne) {
    TestBytes shorter = TestCatalogueHeader(family, 0);
    shorter.pop_back();
    TestBytes foreign = TestCatalogue(family, 2, 2);
    foreign[0] = 'X';
    const TestBytes other = TestCatalogue(TestFamilies[family.sizeB == 0 ? 1 : 0], 2, 2);
    for (const TestBytes &bytes : {shorter, foreign, other}) {
        WriteTestFile(Path(), bytes);
        EXPECT_EQ(Add(0), 0);
        EXPECT_FALSE(HasFile());
        EXPECT_EQ(Add(0), 1);
        EXPECT_EQ(Test32(File(), 20), 1u);
    }
}

TEST_P(DatabaseFile, AddingWhatIsNoVoiceOfTheFamilyDeletesIt) {
    VoiceObject noMagic = TestVoiceOf(family, 0);
    noMagic.bytes[0] ^= 1;
    VoiceObject cut = TestVoiceOf(family, 0);
    cut.bytes.pop_back();
    VoiceObject otherSizes = TestVoiceOf(family, 0);
    otherSizes.bytes[8] -= 1;
    VoiceObject otherFamily = TestVoiceOf(family, 0);
    otherFamily.bytes[16] = '?';
    for (const VoiceObject &voice : {VoiceObject{}, noMagic, cut, otherSizes, otherFamily}) {
        WriteTestFile(Path(), TestCatalogue(family, 2, 2));
        EXPECT_EQ(row.DatabaseAddVoice(nullptr, voice, "Name", "a.syx", 0), 0);
        EXPECT_FALSE(HasFile());
    }
}

} // namespace
} // namespace tonewright
