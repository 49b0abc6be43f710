// The tips of the day: which line is told next, hostile files, the day, and the tips themselves.
#include "shell/tips.h"

#include "common/folders.h"
#include "common/setting_rows.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/command_table.h"
#include "shell/shell_window.h"
#include "support/paths.h"
#include "support/temp_folder.h"
#include "support/time_zone.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <filesystem>
#include <limits>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

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
    constexpr std::time_t now = 1'795'345'200; // 2026-11-22, 11:00 UTC
    for (const auto &[zone, date] :
         {std::pair{"UTC0", TipDate(11, 22, 2026)}, std::pair{"<+14>-14", TipDate(11, 23, 2026)},
          std::pair{"<-12>12", TipDate(11, 21, 2026)}}) {
        const TimeZone local(zone);
        for (const std::uint32_t former : {0u, date - 0x10000, date - 1, 0xFFFFFFFFu}) {
            LastTipDate = former;
            EXPECT_TRUE(TipDateChanged(now)) << zone;
            EXPECT_EQ(LastTipDate, date) << zone;
            EXPECT_FALSE(TipDateChanged(now)) << zone;
            EXPECT_EQ(LastTipDate, date) << zone;
        }
    }
}

TEST(TipDates, TheDayIsThatOfTheClock) {
    LastTipDate = 0;
    const std::time_t before = std::time(nullptr);
    EXPECT_TRUE(TipDateChanged());
    const std::time_t after = std::time(nullptr);
    // The day may have changed in between.
    EXPECT_TRUE(!TipDateChanged(before) || !TipDateChanged(after));
}

TEST(TipDates, ATimeWithoutADateLeavesTheDay) {
    LastTipDate = 7;
    EXPECT_FALSE(TipDateChanged(std::numeric_limits<std::time_t>::max()));
    EXPECT_EQ(LastTipDate, 7u);
}

// ---- the tips of the program, which quote what they name

std::vector<std::string> TipsOfTheProgram() {
    std::istringstream lines(ReadTestText(SourceFile("resources/TNWRGT.TIP")));
    std::vector<std::string> tips;
    for (std::string line; std::getline(lines, line);) {
        tips.push_back(line);
    }
    return tips;
}

std::string WithoutMarks(std::string label) {
    std::erase(label, '&');
    return label;
}

// The entries of a menu by the words that a tip has for it, "Edit" or "right-click".
std::map<std::string, std::set<std::string>> Menus() {
    std::map<std::string, std::set<std::string>> menus;
    for (const MenuRow &menu : MenuBar()) {
        std::set<std::string> &entries = menus[WithoutMarks(menu.label)];
        for (const int id : menu.items) {
            if (id != 0) {
                entries.insert(CommandName(*CommandOf(id)));
            }
        }
    }
    for (const CommandRow &row : Commands()) {
        if (row.contextLabel) {
            menus["right-click"].insert(row.contextLabel);
        }
    }
    return menus;
}

// The captions of a box or a page, without the colon and the asterisk that they may end in.
std::set<std::string> CaptionsOf(const std::string &path) {
    const std::string form = ReadTestText(path);
    const std::regex text("<string>([^<]*)</string>");
    std::set<std::string> captions;
    for (auto at = std::sregex_iterator(form.begin(), form.end(), text);
         at != std::sregex_iterator(); ++at) {
        std::string caption =
            WithoutMarks(std::regex_replace((*at)[1].str(), std::regex("&amp;"), "&"));
        captions.insert(caption.substr(0, caption.find_last_not_of(" :*") + 1));
    }
    return captions;
}

std::set<std::string> CaptionsOfSettings() {
    std::set<std::string> captions =
        CaptionsOf(SourceFile("resources/dialogs/SetupPropertyOne.ui"));
    captions.merge(CaptionsOf(SourceFile("resources/dialogs/SetupPropertyTwo.ui")));
    return captions;
}

// Whatever a tip may quote but commands of tonewright-cli, which are held against that program.
std::set<std::string> Quotable() {
    PlatformFolders.pictures = "/";
    std::set<std::string> names = {"Notify.wav", FileNameOfPath(PicturesFile())};
    names.insert(BackupPathOf("").substr(0, BackupPathOf("").size() - 1));
    for (const auto &[menu, entries] : Menus()) {
        names.insert(entries.begin(), entries.end());
    }
    for (const auto &file : std::filesystem::directory_iterator(SourceFile("resources/dialogs"))) {
        names.merge(CaptionsOf(file.path().string()));
    }
    for (const ConfigKey &row : ProgramSettings.rows) {
        names.insert(row.name);
    }
    return names;
}

std::vector<std::smatch> Matches(const std::string &text, const std::regex &wanted) {
    return {std::sregex_iterator(text.begin(), text.end(), wanted), std::sregex_iterator()};
}

TEST(TipsOfTheProgram, AreAtLeast40DifferentOnesThatFitInALine) {
    EXPECT_TRUE(ReadTestText(SourceFile("resources/TNWRGT.TIP")).ends_with('\n'));
    std::set<std::string> seen;
    for (const std::string &tip : TipsOfTheProgram()) {
        EXPECT_FALSE(tip.empty()) << seen.size();
        EXPECT_LT(tip.size(), 1023u) << tip;
        EXPECT_TRUE(seen.insert(tip).second) << "twice: " << tip;
        for (const char character : tip) {
            EXPECT_TRUE(character >= ' ' && character <= '~') << tip;
        }
    }
    EXPECT_GE(seen.size(), 40u);
}

TEST(TipsOfTheProgram, QuoteNothingThatTheProgramLacks) {
    const std::set<std::string> names = Quotable();
    int quoted = 0;
    for (const std::string &tip : TipsOfTheProgram()) {
        EXPECT_EQ(std::ranges::count(tip, '"') % 2, 0) << tip;
        for (const std::smatch &match : Matches(tip, std::regex("\"([^\"]*)\""))) {
            ++quoted;
            EXPECT_TRUE(names.contains(match[1]) || match[1].str().starts_with("tonewright-cli "))
                << match[1] << " in: " << tip;
        }
    }
    EXPECT_GT(quoted, 30);
}

TEST(TipsOfTheProgram, NameTheMenuOfAnEntryAndTheSettingsOfASetting) {
    const auto menus = Menus();
    const std::set<std::string> settings = CaptionsOfSettings();
    for (const std::string &tip : TipsOfTheProgram()) {
        for (const std::smatch &match : Matches(tip, std::regex("([A-Z]\\w+|right-click) menu"))) {
            EXPECT_TRUE(menus.contains(match[1])) << tip;
        }
        for (const std::smatch &match :
             Matches(tip, std::regex("\"([^\"]*)\" in the ([\\w-]+) menu"))) {
            const auto menu = menus.find(match[2]);
            EXPECT_TRUE(menu != menus.end() && menu->second.contains(match[1])) << tip;
        }
        for (const std::smatch &match :
             Matches(tip, std::regex("\"([^\"]*)\" in the settings(?! file)"))) {
            EXPECT_TRUE(settings.contains(match[1])) << tip;
        }
    }
}

// So that none escapes the tests above.
TEST(TipsOfTheProgram, QuoteEachLabelOfSeveralWords) {
    const std::set<std::string> names = Quotable();
    for (const std::string &tip : TipsOfTheProgram()) {
        const std::string unquoted = std::regex_replace(tip, std::regex("\"[^\"]*\""), "");
        for (const std::string &name : names) {
            if (name.find(' ') != name.npos) {
                EXPECT_EQ(unquoted.find(name), unquoted.npos) << name << " in: " << tip;
            }
        }
    }
}

// TipOfTheDay is 0 at first and then 1: both tell the first tip, so it must bear being read twice.
TEST(TipsOfTheProgram, TheFirstOneSaysNothingOfTheNextAndTheSecondTellsOfShift) {
    const std::vector<std::string> tips = TipsOfTheProgram();
    ASSERT_GE(tips.size(), 2u);
    EXPECT_EQ(tips[0].find("Shift"), tips[0].npos);
    EXPECT_NE(tips[1].find("Hold Shift while you click on \"Done\""), tips[1].npos);
}

} // namespace
} // namespace tonewright
