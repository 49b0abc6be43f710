// The bounded text helpers.
#include "common/text.h"

#include "common/folders.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <thread>
#include <utility>

using namespace tonewright;

TEST(CopyBounded, KeepsATextOfExactlyTheLimitAndEndsIt) {
    char target[6] = {'?', '?', '?', '?', '?', '?'};
    CopyBounded(target, "HELLO", 5);
    EXPECT_STREQ(target, "HELLO");
}

TEST(CopyBounded, CutsALongerTextAndWritesTheEndAtTheLimit) {
    char target[7] = {'?', '?', '?', '?', '?', '?', '?'};
    CopyBounded(target, "HELLO WORLD", 5);
    EXPECT_STREQ(target, "HELLO");
    EXPECT_EQ(target[6], '?');
}

TEST(CopyBounded, OfNothingIsEmpty) {
    char target[2] = {'?', '?'};
    CopyBounded(target, "HELLO", 0);
    EXPECT_STREQ(target, "");
    EXPECT_EQ(target[1], '?');
}

TEST(CopyBounded, DoesNotSplitACharacter) {
    char target[8];
    CopyBounded(target, "a\xE2\x82\xAC", 3);
    EXPECT_STREQ(target, "a");
    std::string text = "former";
    CopyBounded(text, "a\xE2\x82\xAC", 4);
    EXPECT_EQ(text, "a\xE2\x82\xAC");
    CopyBounded(text, "a\xE2\x82\xAC", 2);
    EXPECT_EQ(text, "a");
}

TEST(CopyBounded, OfAStringOntoItselfKeepsIt) {
    std::string text = "HELLO";
    CopyBounded(text, text, 3);
    EXPECT_EQ(text, "HEL");
}

TEST(AppendBounded, AppendsWhatFits) {
    char target[9] = "AB";
    AppendBounded(target, "CDEFGHIJ", 5);
    EXPECT_STREQ(target, "ABCDE");
    std::string text = "AB";
    AppendBounded(text, "CDEFGHIJ", 5);
    EXPECT_EQ(text, "ABCDE");
}

TEST(AppendBounded, AppendsNothingToAFullText) {
    char target[9] = "ABCDE";
    AppendBounded(target, "F", 5);
    EXPECT_STREQ(target, "ABCDE");
    AppendBounded(target, "F", 3);
    EXPECT_STREQ(target, "ABCDE");
    std::string text = "ABCDE";
    AppendBounded(text, "F", 3);
    EXPECT_EQ(text, "ABCDE");
}

TEST(CutText, CutsInFrontOfACharacterThatWouldBeSplit) {
    const std::string text = "x\xF0\x9F\x8E\xB9y"; // one byte, four bytes, one byte
    EXPECT_EQ(CutText(text, 0), "");
    EXPECT_EQ(CutText(text, 1), "x");
    EXPECT_EQ(CutText(text, 2), "x");
    EXPECT_EQ(CutText(text, 3), "x");
    EXPECT_EQ(CutText(text, 4), "x");
    EXPECT_EQ(CutText(text, 5), "x\xF0\x9F\x8E\xB9");
    EXPECT_EQ(CutText(text, 6), text);
    EXPECT_EQ(CutText(text, 100), text);
}

TEST(CutText, CountsBytesOfATextThatIsNotUtf8) {
    EXPECT_EQ(CutText("\x80\x80\x80\x80\x80\x80", 5), "\x80\x80\x80\x80\x80");
    EXPECT_EQ(CutText("\xC3\xA9\xA9\xA9", 3), "\xC3\xA9\xA9");
}

TEST(FormatText, FormatsAsPrintDoes) {
    EXPECT_EQ(FormatText("%s: %d of %02X", "row", 3, 10), "row: 3 of 0A");
    EXPECT_EQ(FormatText("%s", ""), "");
    const std::string longText(5000, 'x');
    EXPECT_EQ(FormatText("%s!", longText.c_str()), longText + "!");
}

TEST(FormatThousands, PutsACommaBetweenGroupsOfThree) {
    EXPECT_STREQ(FormatThousands(1234567), "1,234,567");
    EXPECT_STREQ(FormatThousands(999), "999");
    EXPECT_STREQ(FormatThousands(0), "0");
    EXPECT_STREQ(FormatThousands(1000), "1,000");
    EXPECT_STREQ(FormatThousands(4294967295u), "4,294,967,295");
}

TEST(FormatThousands, GivesOneSharedBuffer) {
    const char *first = FormatThousands(1);
    EXPECT_EQ(FormatThousands(2), first);
    EXPECT_STREQ(first, "2");
}

TEST(StripQuotes, LeavesDoubleQuotesOut) {
    EXPECT_STREQ(StripQuotes("\"/tmp/my bank.syx\""), "/tmp/my bank.syx");
    EXPECT_STREQ(StripQuotes("it's"), "it's");
    EXPECT_STREQ(StripQuotes("\"\""), "");
}

TEST(StripQuotes, TakesItsOwnResult) {
    EXPECT_STREQ(StripQuotes(StripQuotes("\"a\"")), "a");
}

TEST(FileNameOfPath, IsNameAndExtension) {
    EXPECT_STREQ(FileNameOfPath("/home/me/bank.one.syx"), "bank.one.syx");
    EXPECT_STREQ(FileNameOfPath("bank.syx"), "bank.syx");
    EXPECT_STREQ(FileNameOfPath("/home/me/"), "");
    EXPECT_STREQ(FileNameOfPath(""), "");
}

TEST(FileNameOfPath, TakesItsOwnResult) {
    EXPECT_STREQ(FileNameOfPath(FileNameOfPath("/a/b.syx")), "b.syx");
}

TEST(FileNameOfPath, IsCutAt260Bytes) {
    EXPECT_EQ(FileNameOfPath(("/x/" + std::string(400, 'n')).c_str()), std::string(260, 'n'));
}

TEST(PathParts, AreFolderAndExtension) {
    EXPECT_EQ(FolderOfPath("/home/me/bank.syx"), "/home/me/");
    EXPECT_EQ(FolderOfPath("bank.syx"), "");
    EXPECT_EQ(FolderOfPath("/bank.syx"), "/");
    EXPECT_EQ(ExtensionOfPath("/home/me/bank.one.SYX"), "SYX");
    EXPECT_EQ(ExtensionOfPath("/home/me.d/bank"), "");
    EXPECT_EQ(ExtensionOfPath("bank."), "");
}

TEST(ReplaceExtension, ReplacesWhatStandsBehindTheLastDotOfTheName) {
    EXPECT_EQ(ReplaceExtension("/a/bank.one.syx", "srx"), "/a/bank.one.srx");
    EXPECT_EQ(ReplaceExtension("/a.d/bank", "srx"), "/a.d/bank.srx");
    EXPECT_EQ(ReplaceExtension("bank.", "srx"), "bank.srx");
}

TEST(BackupPathOf, PutsItsWordsInFrontOfTheName) {
    EXPECT_EQ(BackupPathOf("/a/bank.syx"), "/a/Backup of bank.syx");
    EXPECT_EQ(BackupPathOf("bank.syx"), "Backup of bank.syx");
}

TEST(CompareText, GoesByTheBytesWithCapitalsTakenForSmallLetters) {
    EXPECT_EQ(CompareText("Aa", "aA"), 0);
    EXPECT_EQ(CompareText("", ""), 0);
    for (const auto &[one, other] :
         {std::pair("a", "B"), {"A", "b"}, {"a", "aa"}, {"", " "}, {"[", "a"}, {"z", "\xC3"}}) {
        EXPECT_LT(CompareText(one, other), 0) << one << other;
        EXPECT_GT(CompareText(other, one), 0) << one << other;
        EXPECT_TRUE(NameStandsBefore(one, other)) << one << other;
        EXPECT_FALSE(NameStandsBefore(other, one)) << one << other;
    }
    EXPECT_TRUE(NameStandsBefore("A", "a"));
    EXPECT_FALSE(NameStandsBefore("a", "A"));
    EXPECT_FALSE(NameStandsBefore("a", "a"));
}

TEST(EqualNoCase, LooksAtAsciiLettersOnly) {
    EXPECT_TRUE(EqualNoCase("Reface DX", "rEFACE dx"));
    EXPECT_FALSE(EqualNoCase("reface", "reface "));
    EXPECT_FALSE(EqualNoCase("\xC4", "\xE4"));
    EXPECT_FALSE(EqualNoCase("@", "`"));
    EXPECT_TRUE(EqualNoCase("", ""));
}

TEST(SplitList, DropsEmptyItems) {
    EXPECT_EQ(SplitList("None;Soft;Flex;Wedge"),
              (std::vector<std::string>{"None", "Soft", "Flex", "Wedge"}));
    EXPECT_EQ(SplitList(";;a;;b;"), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(SplitList("").empty());
    EXPECT_TRUE(SplitList(";").empty());
    EXPECT_EQ(SplitList("a,b", ','), (std::vector<std::string>{"a", "b"}));
}

TEST(SplitList, CutsAnItemAt260Bytes) {
    const auto items = SplitList(std::string(300, 'x') + ";y");
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0], std::string(260, 'x'));
    EXPECT_EQ(items[1], "y");
}

TEST(ReadNumber, ReadsTheNumberAtTheStartAsTheCLocaleHasIt) {
    EXPECT_EQ(ReadNumber("440.1"), 440.1);
    EXPECT_EQ(ReadNumber(" \t+1.5 Hz"), 1.5);
    EXPECT_EQ(ReadNumber("-2.25"), -2.25);
    EXPECT_EQ(ReadNumber("1,05"), 1);
    EXPECT_EQ(ReadNumber("4.4e2"), 440);
    EXPECT_EQ(ReadNumber(".5"), 0.5);
    EXPECT_EQ(ReadNumber("0x10"), 16);
    EXPECT_EQ(ReadNumber("-0X1.8p1"), -3);
}

TEST(ReadNumber, IsZeroWhereThereIsNoNumber) {
    for (const char *text : {"", " ", "-", "+", "+-5", "--5", "Hz", ".", "0x", "-0x-1"}) {
        EXPECT_EQ(ReadNumber(text), 0) << text;
    }
}

TEST(ReadNumber, MayBeInfiniteOrNoNumberAtAll) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ReadNumber("inf"), infinite);
    EXPECT_EQ(ReadNumber("1e999"), infinite);
    EXPECT_EQ(ReadNumber("-1e999"), -infinite);
    EXPECT_EQ(ReadNumber("0x1p9999"), infinite);
    EXPECT_EQ(ReadNumber("1e-999"), 0);
    EXPECT_EQ(ReadNumber("0x1p-9999"), 0);
    EXPECT_TRUE(std::isnan(ReadNumber("nan")));
}

TEST(ReadInteger, ReadsDigitsBehindBlanksAndASign) {
    EXPECT_EQ(ReadInteger("7"), 7u);
    EXPECT_EQ(ReadInteger("  +12 apples"), 12u);
    EXPECT_EQ(ReadInteger("\t\n12"), 12u);
    EXPECT_EQ(ReadInteger("yes"), 0u);
    EXPECT_EQ(ReadInteger(""), 0u);
    EXPECT_EQ(ReadInteger("-"), 0u);
    EXPECT_EQ(ReadInteger("- 5"), 0u);
    EXPECT_EQ(ReadInteger("0x10"), 0u);
}

TEST(ReadInteger, KeepsTheNumberModulo2To32) {
    EXPECT_EQ(ReadInteger("-5"), 4294967291u);
    EXPECT_EQ(ReadInteger("4294967295"), 4294967295u);
    EXPECT_EQ(ReadInteger("4294967296"), 0u);
    EXPECT_EQ(ReadInteger("4294967303"), 7u);
    EXPECT_EQ(ReadInteger("2147483648"), 2147483648u);
    EXPECT_EQ(ReadInteger("-2147483648"), 2147483648u);
    // 2^64 + 3
    EXPECT_EQ(ReadInteger("18446744073709551619"), 3u);
    EXPECT_EQ(ReadInteger(std::string(100000, '0') + "9"), 9u);
}

TEST(ScanSpinRange, TakesTheNumbersThatAreThereAndCountsThem) {
    const auto scan = [](const char *text) {
        SpinRange range{.minimum = -7, .maximum = -8, .start = -9};
        const int found = ScanSpinRange(text, range);
        return std::vector{found, range.minimum, range.maximum, range.start};
    };
    EXPECT_EQ(scan("1,16,10"), (std::vector{3, 1, 16, 10}));
    EXPECT_EQ(scan("-12,12,0"), (std::vector{3, -12, 12, 0}));
    EXPECT_EQ(scan(" 1, 32, 3 and more"), (std::vector{3, 1, 32, 3}));
    EXPECT_EQ(scan("1,16"), (std::vector{2, 1, 16, -9}));
    EXPECT_EQ(scan("1,16,"), (std::vector{2, 1, 16, -9}));
    EXPECT_EQ(scan("1;16,10"), (std::vector{1, 1, -8, -9}));
    EXPECT_EQ(scan("1,x,3"), (std::vector{1, 1, -8, -9}));
    EXPECT_EQ(scan(",1,2"), (std::vector{0, -7, -8, -9}));
    EXPECT_EQ(scan("-,1,2"), (std::vector{0, -7, -8, -9}));
    EXPECT_EQ(scan("range 1,16,10"), (std::vector{0, -7, -8, -9}));
    EXPECT_EQ(scan(""), (std::vector{0, -7, -8, -9}));
}

TEST(ScanSpinRange, LimitsNumbersThatAreTooLong) {
    SpinRange range;
    ASSERT_EQ(ScanSpinRange("-99999999999999999999,99999999999999999999,0", range), 3);
    EXPECT_LT(range.minimum, -2000000000);
    EXPECT_GT(range.maximum, 2000000000);
}

TEST(ClampedInteger, LimitsToTheRange) {
    const SpinRange range{.minimum = 1, .maximum = 32, .start = 3};
    EXPECT_EQ(ClampedInteger("7", range), 7);
    EXPECT_EQ(ClampedInteger(" 7 ", range), 7);
    EXPECT_EQ(ClampedInteger("0", range), 1);
    EXPECT_EQ(ClampedInteger("33", range), 32);
    EXPECT_EQ(ClampedInteger("99999999999999999999", range), 32);
    EXPECT_EQ(ClampedInteger("", range), 1);
    EXPECT_EQ(ClampedInteger("abc", range), 1);
}

TEST(ClampedInteger, ReadsASignOnlyWhenTheMinimumIsBelowZero) {
    const SpinRange both{.minimum = -12, .maximum = 12, .start = 0};
    EXPECT_EQ(ClampedInteger("-7", both), -7);
    EXPECT_EQ(ClampedInteger("-99999999999999999999", both), -12);
    const SpinRange unsignedRange{.minimum = 0, .maximum = 99, .start = 0};
    EXPECT_EQ(ClampedInteger("-7", unsignedRange), 0);
}

TEST(Latin1ToUtf8, GivesBytesAbove7FTwoBytes) {
    EXPECT_EQ(Latin1ToUtf8("A\xE9\x80\xFF"), "A\xC3\xA9\xC2\x80\xC3\xBF");
    EXPECT_EQ(Latin1ToUtf8(""), "");
}

TEST(Utf8ToLatin1, GivesOneByteForEachCharacter) {
    EXPECT_EQ(Utf8ToLatin1("A\xC3\xA9\xC2\x80\xC3\xBF"), "A\xE9\x80\xFF");
    EXPECT_EQ(Utf8ToLatin1(""), "");
    for (int byte = 1; byte < 256; ++byte) {
        const std::string bytes(1, static_cast<char>(byte));
        EXPECT_EQ(Utf8ToLatin1(Latin1ToUtf8(bytes)), bytes);
    }
}

TEST(Utf8ToLatin1, HasAQuestionMarkForEachCharacterThatLatin1Lacks) {
    EXPECT_EQ(Utf8ToLatin1("\xC4\x80|\xE2\x82\xAC|\xF0\x9F\x8E\xB9|"), "?|?|?|");
}

TEST(Utf8ToLatin1, HasAQuestionMarkForEachByteThatBelongsToNone) {
    EXPECT_EQ(Utf8ToLatin1("\xE9t\xE9"), "?t?");               // Latin-1 already
    EXPECT_EQ(Utf8ToLatin1("\xC3"), "?");                      // cut
    EXPECT_EQ(Utf8ToLatin1("\x80\x80"), "??");                 // without a first one
    EXPECT_EQ(Utf8ToLatin1("\xE2\x82|\xF0\x9F\x8E|"), "?|?|"); // cut in between
}

TEST(FileNameOfVoice, ReplacesWhatAFileNameCannotHold) {
    EXPECT_EQ(FileNameOfVoice("A/B\\C:D*E?F\"G<H>I|J"), "A_B_C_D_E_F_G_H_I_J");
    EXPECT_EQ(FileNameOfVoice(std::string_view("A\0B\x1F\x7F", 5)), "A_B__");
    EXPECT_EQ(FileNameOfVoice("PIANO  1."), "PIANO  1.");
    EXPECT_EQ(FileNameOfVoice("CAF\xC9"), "CAF\xC3\x89");
    EXPECT_EQ(FileNameOfVoice("\x9F\xA5"), "_\xC2\xA5");
}

TEST(FileNameOfVoice, ADotInFrontDoesNotHideTheFile) {
    EXPECT_EQ(FileNameOfVoice(".BASS"), "_BASS");
    EXPECT_EQ(FileNameOfVoice("."), "_");
    EXPECT_EQ(FileNameOfVoice("...A.B."), "_..A.B.");
    EXPECT_EQ(FileNameOfVoice(" .A"), " .A");
}

TEST(ScanText, ReadsFieldsAndTellsTheirNumber) {
    char path[20] = "";
    int time = 0;
    EXPECT_EQ(ScanText("/a b.syx,17", "%19[^,],%d", path, &time), 2);
    EXPECT_STREQ(path, "/a b.syx");
    EXPECT_EQ(time, 17);
    EXPECT_EQ(ScanText("/a,b.syx,17", "%19[^,],%d", path, &time), 1);
}

TEST(FormatThousands, AThreadThatFormatsANumberLeavesThatOfAnotherOne) {
    const std::string_view number = FormatThousands(1234567);
    std::thread other([] { FormatThousands(89); });
    other.join();
    EXPECT_EQ(number, "1,234,567");
}
