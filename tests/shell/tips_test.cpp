// The tips of the day: which line is told next, hostile files, the day, and the tips themselves.
#include "shell/tips.h"

#include "common/settings.h"
#include "shell/command_table.h"
#include "shell/shell_window.h"
#include "support/paths.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <set>
#include <sstream>

namespace tonewright {
namespace {

constexpr const char *NoTip = "There has been an error accessing the tip of the day.";

class Tips : public testing::Test {
protected:
    void SetUp() override { ApplicationPath = folder.Folder(); }

    void WriteTips(const std::string &text) const { folder.WriteText("TNWRGT.TIP", text); }
    // The tip that is told when this line is to come, and the line that comes after it.
    static void ExpectTip(std::uint32_t line, const std::string &text, std::uint32_t next) {
        TipOfTheDay = line;
        EXPECT_EQ(NextTip(), text) << line;
        EXPECT_EQ(TipOfTheDay, next) << line;
    }

    TempFolder folder;
};

TEST_F(Tips, EachCallTellsTheNextLineAndBehindTheLastOneTheFirst) {
    WriteTips("one\ntwo\nthree\n");
    TipOfTheDay = 1;
    EXPECT_EQ(NextTip(), "one");
    EXPECT_EQ(NextTip(), "two");
    EXPECT_EQ(NextTip(), "three");
    EXPECT_EQ(NextTip(), "one");
    EXPECT_EQ(NextTip(), "two");
}

TEST_F(Tips, Line0IsTheFirstOneAsWell) {
    WriteTips("one\ntwo\n");
    ExpectTip(0, "one", 1);
    ExpectTip(1, "one", 2);
}

TEST_F(Tips, BeyondTheLastLineTheFirstIsShownAndTheSecondIsNext) {
    WriteTips("one\ntwo\nthree\n");
    for (const std::uint32_t line : {4u, 5u, 1000u, 0xFFFFFFFFu}) {
        ExpectTip(line, "one", 2);
    }
}

TEST_F(Tips, AnEmptyLineInTheMiddleSendsBackToTheFirst) {
    for (const char *text : {"one\ntwo\n\nfour\n", "one\r\ntwo\r\n\r\nfour\r\n"}) {
        WriteTips(text);
        ExpectTip(2, "two", 3);
        ExpectTip(3, "one", 2);
        ExpectTip(4, "four", 5); // the number still counts the empty line
    }
}

TEST_F(Tips, WithoutAFileTheErrorIsToldAndTheNumberStays) {
    for (const std::uint32_t line : {0u, 1u, 7u, 4'000'000'000u}) {
        ExpectTip(line, NoTip, line);
    }
}

TEST_F(Tips, AFolderInTheFilesPlaceIsNoFile) {
    std::filesystem::create_directory(folder.File("TNWRGT.TIP"));
    ExpectTip(7, NoTip, 7);
}

TEST_F(Tips, AFileWithoutAFirstTipTellsTheErrorAndTheSecondLineIsNext) {
    for (const char *text : {"", "\n", "\r\n", "\ntwo\n"}) {
        WriteTips(text);
        ExpectTip(1, NoTip, 2);
    }
    ExpectTip(2, "two", 3);
}

TEST_F(Tips, BackslashAndNBreakTheLineAndOtherBackslashesStay) {
    WriteTips("a\\nb\\n\\nc\nC:\\banks\\\n\\\\n\n");
    ExpectTip(1, "a\nb\n\nc", 2);
    ExpectTip(2, "C:\\banks\\", 3);
    ExpectTip(3, "\\\n", 4);
}

TEST_F(Tips, TheLastLineNeedsNoLineEnd) {
    WriteTips("one\ntwo");
    ExpectTip(2, "two", 3);
    ExpectTip(3, "one", 2);
}

TEST_F(Tips, ALineCountsUpTo1023CharactersAndItsRestIsALineOfItsOwn) {
    const std::string longest(1022, 'x');
    WriteTips(longest + "\n" + longest + "yz\nthree\n");
    ExpectTip(1, longest, 2);
    ExpectTip(2, longest + "y", 3);
    ExpectTip(3, "z", 4);
    ExpectTip(4, "three", 5);
    // A line feed that no longer fits is an empty line.
    WriteTips("one\n" + longest + "y\nfour\n");
    ExpectTip(2, longest + "y", 3);
    ExpectTip(3, "one", 2);
}

TEST_F(Tips, TenMegabytesInOneLineAreTakenInPieces) {
    WriteTips(std::string(10'000'000, 'x'));
    ExpectTip(1, std::string(1023, 'x'), 2);
    ExpectTip(9776, std::string(175, 'x'), 9777); // 9775 pieces of 1,023 are before it
    const auto start = std::chrono::steady_clock::now();
    ExpectTip(4'000'000'000, std::string(1023, 'x'), 2);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(Tips, ANulEndsItsLine) {
    using namespace std::string_literals;
    WriteTips("one\0more\ntwo\n\0three\nfour\n"s);
    ExpectTip(1, "one", 2);
    ExpectTip(2, "two", 3);
    ExpectTip(3, "one", 2);
    ExpectTip(4, "four", 5);
    WriteTips(std::string(10'000'000, '\0'));
    ExpectTip(1, NoTip, 2);
}

TEST_F(Tips, LookingAtATipLeavesTheNumber) {
    WriteTips("one\ntwo\n");
    TipOfTheDay = 2;
    EXPECT_EQ(TipOfLine(2).text, "two");
    EXPECT_EQ(TipOfTheDay, 2u);
}

TEST_F(Tips, TheCommandShowsTheBoxOfTheWindow) {
    EXPECT_EQ(RunCommand(CommandTip), 1);
    int shown = 0;
    TheShellWindow.ShowTipBox = [&] { ++shown; };
    EXPECT_EQ(RunUserCommand(CommandTip), 1);
    EXPECT_EQ(shown, 1);
}

TEST(TipDates, TheDateHoldsMonthDayAndYear) {
    EXPECT_EQ(TipDate(11, 21, 2026), 0x0B1507EAu);
    EXPECT_EQ(TipDate(1, 2, 1999), 0x010207CFu);
}

TEST(TipDates, ADayChangesOnceAndIsTheLocalOne) {
    const std::time_t now = std::time(nullptr);
    const std::tm today = *std::localtime(&now);
    const std::uint32_t date = TipDate(today.tm_mon + 1, today.tm_mday, today.tm_year + 1900);
    for (const std::uint32_t former : {0u, date - 0x10000, date - 1, 0xFFFFFFFFu}) {
        LastTipDate = former;
        EXPECT_TRUE(TipDateChanged());
        EXPECT_EQ(LastTipDate, date);
        EXPECT_FALSE(TipDateChanged());
        EXPECT_EQ(LastTipDate, date);
    }
}

TEST(TipsOfTheProgram, AreAtLeast40DifferentOnesThatFitInALine) {
    const std::string text = ReadTestText(SourceFile("resources/TNWRGT.TIP"));
    EXPECT_TRUE(text.ends_with('\n'));
    std::istringstream lines(text);
    std::set<std::string> tips;
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_FALSE(line.empty()) << count;
        EXPECT_LT(line.size(), 1023u) << line;
        EXPECT_TRUE(tips.insert(line).second) << "twice: " << line;
        for (const char character : line) {
            EXPECT_TRUE(character >= ' ' && character <= '~') << line;
        }
    }
    EXPECT_GE(count, 40);
}

} // namespace
} // namespace tonewright
