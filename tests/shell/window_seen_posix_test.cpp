// The windows of the real program on an X server with a window manager: where they stand, who has
// the keyboard, and what keys do that only a real keyboard has.
#include "support/bank_bytes.h"
#include "support/test_themes.h"
#include "support/x_display.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;

constexpr const char *BoxTitle = "^Tonewright$"; // of the startup window

// The smallest rectangle around what is not black.
ScreenPlace PlaceOfWindows(const ScreenPicture &screen) {
    int left = screen.width, top = screen.height, right = -1, bottom = -1;
    for (int y = 0; y < screen.height; ++y) {
        for (int x = 0; x < screen.width; ++x) {
            if (screen.At(x, y) != 0) {
                left = std::min(left, x);
                right = std::max(right, x);
                top = std::min(top, y);
                bottom = std::max(bottom, y);
            }
        }
    }
    return {left, top, right + 1 - left, bottom + 1 - top};
}

TEST(SeenWindow, StandsInTheMiddleOfTheScreenWithItsFrame) {
    XDisplay display;
    ASSERT_TRUE(display.Start()) << "no X server";
    ASSERT_TRUE(display.Tool({"mousemove", "640", "512"})); // it is painted too
    ProgramOnDisplay program(display);
    program.Start({});
    ASSERT_TRUE(program.Stands("Untitled.Twl"));
    ScreenPlace place;
    const auto isInTheMiddle = [&] {
        const ScreenPicture screen = display.Screen();
        place = PlaceOfWindows(screen);
        return std::abs(screen.width - place.width - 2 * place.x) <= 1 &&
               std::abs(screen.height - place.height - 2 * place.y) <= 1;
    };
    EXPECT_TRUE(Becomes(isInTheMiddle, 10s))
        << place.x << ", " << place.y << ": " << place.width << " by " << place.height;
    const auto inside = display.SizeOf(program.window);
    ASSERT_TRUE(inside);
    EXPECT_GT(place.height, inside->height); // the frame counts
}

TEST(SeenWindow, TheStartupWindowLeavesTheKeyboardToTheList) {
    XDisplay display;
    ASSERT_TRUE(display.Start("1280x1024x24", "sloppy")) << "no X server";
    // In the middle of the screen, where the startup window comes up below it.
    ASSERT_TRUE(display.Tool({"mousemove", "640", "512"}));
    ProgramOnDisplay program(display);
    program.Start({program.home.Write("bank.syx", TestBank())}, {"ShowStartupWindow = 1"});
    ASSERT_TRUE(program.Stands("bank.syx"));
    ASSERT_TRUE(Becomes([&] { return !display.FindWindow(BoxTitle).empty(); }, 10s));
    ASSERT_TRUE(display.Tool({"mousemove", "650", "520"}));
    // The first rows of the list, above the startup window.
    const ScreenPlace rows = {300, 180, 300, 100};
    std::vector<ScreenPicture> seen = {display.Screen(rows)};
    for (int row = 1; row < 3; ++row) {
        EXPECT_TRUE(Becomes(
            [&] {
                display.Tool({"key", "Down"});
                return display.Screen(rows) != seen.back();
            },
            3s))
            << row;
        seen.push_back(display.Screen(rows));
    }
    EXPECT_FALSE(display.FindWindow(BoxTitle).empty()) << "it was there all the time";
    EXPECT_EQ(display.Tool({"getwindowfocus"}), program.window + "\n");
}

TEST(SeenWindow, TheKeysForTheContextMenuActOnTheSelectedRow) {
    XDisplay display;
    ASSERT_TRUE(display.Start()) << "no X server";
    ProgramOnDisplay program(display);
    const std::string bank = program.home.Write("bank.syx", TestBank());
    program.Start({bank});
    ASSERT_TRUE(program.Stands("bank.syx"));
    const auto voice = [&](const Bytes &file, int number) {
        return Bytes(file.begin() + static_cast<std::ptrdiff_t>(TestBankVoiceOffset(number)),
                     file.begin() + static_cast<std::ptrdiff_t>(TestBankVoiceOffset(number + 1)));
    };
    int row = 3;
    for (const char *key : {"Menu", "shift+F10"}) {
        const Bytes before = ReadTestFile(bank);
        // The last entry moves the voice down, and nothing but the clicked row tells which one.
        EXPECT_TRUE(Becomes(
            [&] {
                Strings keys = {"Escape", "Escape", "Home"};
                keys.insert(keys.end(), static_cast<std::size_t>(row), "Down");
                for (const char *next : {key, "Up", "Return", "ctrl+s"}) {
                    keys.push_back(next);
                }
                return program.Press(keys) &&
                       Becomes([&] { return ReadTestFile(bank) != before; }, 1s);
            },
            10s))
            << key;
        const Bytes after = ReadTestFile(bank);
        EXPECT_EQ(voice(after, row), voice(before, row + 1)) << key;
        EXPECT_EQ(voice(after, row + 1), voice(before, row)) << key;
        row += 5;
    }
}

TEST(SeenWindow, OnAnEmptyHomeTheWizardComesWithoutStartupWindowAndTip) {
    XDisplay display;
    ASSERT_TRUE(display.Start()) << "no X server";
    ProgramOnDisplay program(display);
    program.StartAgain({}); // there is no file of settings
    const auto heightOfWelcome = [&] {
        const std::string welcome = display.FindWindow("^Welcome$");
        const auto size = welcome.empty() ? std::nullopt : display.SizeOf(welcome);
        return size ? size->height : 0;
    };
    const auto isNotThere = [&](const char *title) { return display.FindWindow(title).empty(); };
    ASSERT_TRUE(Becomes([&] { return heightOfWelcome() > 0; }, 15s));
    const int question = heightOfWelcome();
    EXPECT_EQ(ReadTestText(program.home.File(".config/Quillbrook/Tonewright 17.ini")),
              "[Tonewright]\nShowWelcomeWizard = 0\n");
    EXPECT_TRUE(isNotThere(BoxTitle));
    ASSERT_TRUE(display.Tool({"key", "Return"})); // presses "Proceed"
    constexpr int Page = 560;                     // pixels
    EXPECT_LT(question, Page);
    ASSERT_TRUE(Becomes([&] { return heightOfWelcome() > Page; }, 10s));
    EXPECT_TRUE(isNotThere(BoxTitle));
    ASSERT_TRUE(display.Tool({"key", "Escape"}));
    ASSERT_TRUE(Becomes([&] { return heightOfWelcome() == 0; }, 10s));
    EXPECT_FALSE(Becomes([&] { return !isNotThere("^Tip of the day$"); }, 1s));
    EXPECT_TRUE(isNotThere(BoxTitle));
    EXPECT_TRUE(program.Stands("Untitled.Twl"));
}

TEST(SeenWindow, ABrokenThemeIsToldOnceAndTheProgramRunsOn) {
    XDisplay display;
    ASSERT_TRUE(display.Start()) << "no X server";
    const ThemeHouse house;
    house.Put("without_draw_tool", "THEME_A.dll");
    ProgramOnDisplay program(display);
    program.file = PutProgram(house.program);
    program.Start({}, {"ThemeCurrent = THEME_A.dll"});
    const auto tells = [&] { return !display.FindWindow("^Message$").empty(); };
    ASSERT_TRUE(Becomes(tells, 15s));
    EXPECT_TRUE(display.FindWindow("Untitled.Twl").empty()) << "the message comes first";
    program.window = display.FindWindow("^Message$");
    ASSERT_TRUE(program.Press({"Return"}));
    ASSERT_TRUE(program.Stands("Untitled.Twl"));
    EXPECT_FALSE(tells());
    ASSERT_FALSE(program.process->HasEnded());
    kill(program.process->id, SIGTERM);
    ASSERT_TRUE(program.process->Ends(10s));
    EXPECT_EQ(program.process->ExitStatus(), 0);
    EXPECT_EQ(house.Calls(), (Strings{"THEMEGetSupport 18", "THEMEInit 18 17 0 1", "THEMEDeInit"}));
    const std::string settings =
        ReadTestText(program.home.File(".config/Quillbrook/Tonewright 17.ini"));
    EXPECT_NE(settings.find("\nThemeCurrent = THEME_A.dll\n"), std::string::npos);
}

// Whoever kills the program at the question of its first start is never asked again.
TEST(SeenWindow, KilledAtTheQuestionOfItsFirstStartItNeverComesBack) {
    XDisplay display;
    ASSERT_TRUE(display.Start()) << "no X server";
    ProgramOnDisplay program(display);
    program.Start({}, {"ShowWelcomeWizard = 1", "ShowTipOfTheDay = 1", "ShowStartupWindow = 1"});
    const auto asks = [&] { return !display.FindWindow("^Welcome$").empty(); };
    ASSERT_TRUE(Becomes(asks, 15s));
    EXPECT_TRUE(display.FindWindow(BoxTitle).empty()) << "no startup window";
    program.process->Kill();
    const std::string settings =
        ReadTestText(program.home.File(".config/Quillbrook/Tonewright 17.ini"));
    EXPECT_NE(settings.find("\nShowWelcomeWizard = 0\n"), std::string::npos) << settings;
    // The next start goes on behind where the question stood: to the tip, behind the startup
    // window.
    program.StartAgain({});
    ASSERT_TRUE(program.Stands("Untitled.Twl"));
    ASSERT_TRUE(Becomes([&] { return !display.FindWindow(BoxTitle).empty(); }, 10s));
    ASSERT_TRUE(display.Tool({"mousemove", "640", "512", "click", "1"}));
    ASSERT_TRUE(Becomes([&] { return !display.FindWindow("^Tip of the day$").empty(); }, 10s));
    EXPECT_FALSE(asks());
}

} // namespace
} // namespace tonewright
