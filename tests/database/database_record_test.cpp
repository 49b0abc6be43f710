// Records as bytes: fields, voices, pretty names, duplicates.
#include "database/database_record.h"

#include "test_catalogue.h"

namespace tonewright {
namespace {

class DatabaseRecordOf : public testing::TestWithParam<TestFamily> {
protected:
    const TestFamily &family = GetParam();

    DatabaseRecord Record(int number = 3) const {
        return {TestRecord(family, number, {"Bell", "Bank.syx", 7, 0x89ABCDEF})};
    }
};

INSTANTIATE_TEST_SUITE_P(Families, DatabaseRecordOf, testing::ValuesIn(TestFamilies), LabelOf);

TEST_P(DatabaseRecordOf, FieldsAreThoseOfTheBytes) {
    const DatabaseRecord record = Record();
    const auto fields = RecordFields(record);
    ASSERT_TRUE(fields);
    EXPECT_EQ(fields->name, "Bell");
    EXPECT_EQ(fields->source, "Bank.syx");
    EXPECT_EQ(fields->position, 7u);
    EXPECT_EQ(fields->date, 0x89ABCDEF);
}

TEST_P(DatabaseRecordOf, ATextWithoutItsEndHas64Characters) {
    DatabaseRecord record = Record();
    std::fill(record.bytes.begin() + 28, record.bytes.begin() + 158, std::uint8_t{'x'});
    EXPECT_EQ(RecordFields(record)->name, std::string(64, 'x'));
    EXPECT_EQ(RecordFields(record)->source, std::string(64, 'x'));
}

TEST_P(DatabaseRecordOf, AWrongMagicAndACutRecordGiveNothing) {
    for (const std::size_t at : {0, 1, 2, 3}) {
        DatabaseRecord record = Record();
        record.bytes[at] ^= 0x80;
        EXPECT_FALSE(RecordFields(record));
        EXPECT_TRUE(RecordToVoice(record).bytes.empty());
        EXPECT_FALSE(AreDuplicates(record, record));
    }
    DatabaseRecord cut = Record();
    cut.bytes.resize(289);
    EXPECT_FALSE(RecordFields(cut));
    EXPECT_FALSE(RecordFields(DatabaseRecord{}));
}

TEST_P(DatabaseRecordOf, BecomesTheVoiceThatItWasMadeOf) {
    EXPECT_EQ(RecordToVoice(Record(3)), TestVoiceOf(family, 3));
}

TEST_P(DatabaseRecordOf, TheVoiceHasTheDriverAndTheSizesOfTheRecord) {
    DatabaseRecord record = Record();
    record.bytes[4] = '?';
    record.bytes[16] = 0;
    record.bytes[17] = 1; // payload at 256
    record.bytes[20] = 2;
    record.bytes[24] = 3;
    const VoiceObject voice = RecordToVoice(record);
    ASSERT_EQ(voice.bytes.size(), 57u);
    EXPECT_EQ(voice.bytes[8], 2);
    EXPECT_EQ(voice.bytes[12], 3);
    EXPECT_EQ(voice.bytes[16], '?');
    EXPECT_TRUE(
        std::equal(voice.bytes.begin() + 52, voice.bytes.end(), record.bytes.begin() + 256));
}

TEST_P(DatabaseRecordOf, AVoiceThatDoesNotLieWithinItIsNoneAndMatchesNothing) {
    for (const std::size_t at : {18, 21, 23, 25, 27}) { // offset, sizes
        DatabaseRecord record = Record();
        record.bytes[at] = 0xFF;
        EXPECT_TRUE(RecordToVoice(record).bytes.empty()) << at;
        EXPECT_TRUE(RecordFields(record));
        EXPECT_FALSE(AreDuplicates(Record(), record)) << at;
    }
    DatabaseRecord byOne = Record();
    ++byOne.bytes[24];
    EXPECT_TRUE(RecordToVoice(byOne).bytes.empty());
    EXPECT_FALSE(AreDuplicates(Record(), byOne));
}

TEST_P(DatabaseRecordOf, DuplicatesAreComparedAtTheUsualPlaceAndWithoutDateAndPosition) {
    DatabaseRecord other = Record();
    other.bytes[8] ^= 1;   // date
    other.bytes[158] ^= 1; // position
    other.bytes[17] = 0;   // offset
    other.bytes[4] = '?';  // driver
    EXPECT_TRUE(AreDuplicates(Record(), other));
    other.bytes[290] ^= 1;
    EXPECT_FALSE(AreDuplicates(Record(), other));
}

TEST_P(DatabaseRecordOf, LettersOfAsciiAloneHaveTwoCases) {
    DatabaseRecord one{TestRecord(family, 0, {"B\xC4[", "a", 0, 0})};
    DatabaseRecord sameLetters{TestRecord(family, 0, {"b\xC4[", "A", 0, 0})};
    DatabaseRecord otherLetter{TestRecord(family, 0, {"B\xE4[", "a", 0, 0})};
    DatabaseRecord otherSign{TestRecord(family, 0, {"B\xC4{", "a", 0, 0})};
    EXPECT_TRUE(AreDuplicates(one, sameLetters));
    EXPECT_FALSE(AreDuplicates(one, otherLetter));
    EXPECT_FALSE(AreDuplicates(one, otherSign));
}

struct Pretty {
    std::string text, pretty;
};

class PrettyName : public testing::TestWithParam<Pretty> {};

TEST_P(PrettyName, HasSingleBlanksSmallLettersAndOneCapital) {
    EXPECT_EQ(MakePrettyName(GetParam().text), GetParam().pretty);
}

INSTANTIATE_TEST_SUITE_P(Texts, PrettyName,
                         testing::Values(Pretty{"", ""}, Pretty{"e", "E"},
                                         Pretty{"THE BIG ONE", "The big one"},
                                         Pretty{"  THE  BIG   ONE", " the big one"},
                                         Pretty{"END   ", "End "}, Pretty{"   ", " "},
                                         Pretty{"1ST", "1st"}, Pretty{"z[@", "Z[@"},
                                         Pretty{"\t\tA", "\t\ta"}, Pretty{"\xC4\xD6", "\xC4\xD6"},
                                         Pretty{"\xE4X", "\xE4x"},
                                         Pretty{std::string(70, 'A'), "A" + std::string(63, 'a')},
                                         Pretty{"A" + std::string(63, ' ') + "B", "A "}));

TEST(FieldsHold, ATextInNameOrSourceWhateverTheCaseOfItsLetters) {
    const DatabaseFields fields{.name = "Grand \xC9t\xE0", .source = "b.SYX"};
    for (const char *text : {"", "grand", "GRAND", "nd \xE9", "T\xC0", ".sy", "b.syx"}) {
        EXPECT_TRUE(FieldsHold(fields, text)) << text;
    }
    for (const char *text : {"grandd", "\xE0 ", "b.syx1", "x.", "z"}) {
        EXPECT_FALSE(FieldsHold(fields, text)) << text;
    }
}

TEST(FieldsHold, OnlyLettersHaveACase) {
    const auto isFound = [](const char *name, const char *text) {
        return FieldsHold({.name = name, .source = ""}, text);
    };
    EXPECT_TRUE(isFound("\xC0\xD6\xD8\xDE", "\xE0\xF6\xF8\xFE"));
    EXPECT_FALSE(isFound("\xD7", "\xF7")); // times and divided by
    EXPECT_FALSE(isFound("\xDF", "\xFF"));
    EXPECT_FALSE(isFound("\xBF", "\xDF"));
    EXPECT_FALSE(isFound("@[", "`{"));
    EXPECT_TRUE(isFound("AZ", "az"));
}

} // namespace
} // namespace tonewright
