// What a user sees while a transfer blocks the window: the real program on an X server of its own,
// looked at from another process. The program is halted in the middle of the transfer, so that
// there is all the time in the world to look and to press keys that must do nothing.
#include "midi/instruments/builtin_instruments.h"
#include "support/bank_bytes.h"
#include "support/family_names.h"
#include "support/reface_bytes.h"
#include "support/x_display.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;
using namespace std::chrono_literals;

// Measures of the status bar, in pixels: a black line on top, a text pane and a meter pane of 300
// pixels side by side.
constexpr int Gap = 2;
constexpr int PaneWidth = 300;
constexpr int HighestBar = 100; // with what stands below the window
constexpr std::uint32_t Black = 0;
constexpr std::uint32_t White = 0xFFFFFF;
constexpr int TextPixels = 100; // the least that a line of text has

// Regular expressions of the box's title.
constexpr const char *DownloadBox = "^Downloading voices$";
constexpr const char *UploadBox = "^Uploading voices$";
constexpr auto TransferTime = 20s; // three seconds at most when nobody else needs the machine

bool IsDark(std::uint32_t colour) {
    return (colour & 0xFF) < 0x60 && (colour >> 8 & 0xFF) < 0x60 && colour >> 16 < 0x60;
}

int CountOther(const ScreenPicture &picture, std::uint32_t colour) {
    return static_cast<int>(picture.pixels.size()) -
           static_cast<int>(std::ranges::count(picture.pixels, colour));
}

class SeenTransfer : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(display.Start()) << "no X server"; }

    // The pointer is painted too; the window manager puts it in the middle when it starts.
    bool MovePointerAway() { return display.Tool({"mousemove", "1279", "1023"}).has_value(); }

    // The program with the built-in instruments. It waits for an answer as long as it takes.
    void StartProgram(const std::string &synth, Strings settings, const Strings &arguments) {
        settings.push_back("SelectKeyboardName = " + synth);
        settings.push_back("SysexWait = 60000");
        program.Start(arguments, settings, {"TONEWRIGHT_INSTRUMENTS=1"});
    }
    // Waits until the window stands with its document, and keeps how it looks with nothing to do.
    void AwaitDocument(const std::string &name) {
        ASSERT_TRUE(program.Stands(name));
        ASSERT_TRUE(Becomes([&] { return FindPanes(); }, 10s));
        ASSERT_TRUE(Becomes([&] { return RowsShown() >= 12; }, 10s));
        face = display.Screen(meterPane).At(0, 0);
        ASSERT_EQ(FilledColumns(), 0);
        idleText = TextShown();
        ASSERT_GT(CountOther(idleText, face), TextPixels);
    }
    // A click inside of the window.
    bool Click(int x, int y) const {
        return display
            .Tool({"mousemove", std::to_string(inside.x + x), std::to_string(inside.y + y), "click",
                   "1"})
            .has_value();
    }

    // Finds the window and its panes by the black line of the window's width above the status bar.
    // False while there is none.
    bool FindPanes() {
        const auto size = display.SizeOf(program.window);
        if (!size || !MovePointerAway()) {
            return false;
        }
        const ScreenPicture screen = display.Screen();
        for (int y = screen.height - HighestBar; y < screen.height - 2 * Gap; ++y) {
            const int x = BlackRun(screen, y, size->width);
            if (x >= 0 && screen.At(x, y + 1) == White) {
                PlacePanes(screen, x, y);
                inside = {x, bottomOfBar - size->height, size->width, size->height};
                return true;
            }
        }
        return false;
    }
    // Where in a row a run of black pixels of just this length begins; -1 for none.
    static int BlackRun(const ScreenPicture &screen, int y, int length) {
        int run = 0;
        for (int x = 0; x <= screen.width; ++x) {
            if (x < screen.width && screen.At(x, y) == Black) {
                ++run;
            } else if (std::exchange(run, 0) == length) {
                return x - length;
            }
        }
        return -1;
    }
    // `x`, `y`: where the line begins.
    void PlacePanes(const ScreenPicture &screen, int x, int y) {
        const int left = x + 2 * Gap; // of the first pane's outline
        const int top = y + 1 + Gap;
        int bottom = top;
        while (bottom < screen.height && screen.At(left, bottom) == screen.At(left, top)) {
            ++bottom;
        }
        const int height = bottom - top;
        const int meter = x + Gap + PaneWidth + 2 * Gap;
        textPane = {left + 1, top + 1, PaneWidth - Gap - 2, height - 2};
        meterPane = {meter + Gap, top + Gap, PaneWidth - 2 * Gap, height - 2 * Gap};
        bottomOfBar = bottom + Gap + 1;
    }

    // How many columns of the meter are filled, from the left and from top to bottom; -1 when it
    // is painted in any other way.
    int FilledColumns() const {
        const ScreenPicture meter = display.Screen(meterPane);
        const std::uint32_t filling = meter.At(0, 0);
        int filled = 0;
        while (filling != face && filled < meter.width && meter.At(filled, 0) == filling) {
            ++filled;
        }
        for (int y = 0; y < meter.height; ++y) {
            for (int x = 0; x < meter.width; ++x) {
                if (meter.At(x, y) != (x < filled ? filling : face)) {
                    return -1;
                }
            }
        }
        return filled;
    }
    ScreenPicture TextShown() const { return display.Screen(textPane); }
    bool MeterIsPartlyFull() const {
        const int filled = FilledColumns();
        return filled > 0 && filled < meterPane.width;
    }

    // Halts the program within `time` where the meter has begun to fill. False when it does not,
    // or is empty again by the time that the program stands still; then the program goes on.
    bool HaltInTransfer(TestClock::duration time) {
        if (!Becomes([&] { return MeterIsPartlyFull(); }, time)) {
            return false;
        }
        program.process->Halt();
        if (MeterIsPartlyFull()) {
            return true;
        }
        program.process->GoOn();
        return false;
    }
    // The same for a transfer that `start` begins by keys or the mouse; begun again when it has
    // gone by unseen, or when the window was not ready for its keys.
    bool HaltInTransferOf(const std::function<bool()> &start) {
        return Becomes([&] { return start() && HaltInTransfer(3s); }, 60s);
    }

    // The box in the middle of the screen: a border, the colour of the bars, a line of text in the
    // middle.
    void ExpectBox(const char *title) const {
        const std::string box = display.FindWindow(title);
        ASSERT_FALSE(box.empty());
        const auto size = display.SizeOf(box);
        ASSERT_TRUE(size);
        ASSERT_GT(size->width, 200);
        ASSERT_GT(size->height, 20);
        const ScreenPicture whole = display.Screen();
        const ScreenPicture screen = display.Screen(ScreenPlace{(whole.width - size->width) / 2,
                                                                (whole.height - size->height) / 2,
                                                                size->width, size->height});
        const int right = screen.width - 1;
        const int bottom = screen.height - 1;
        const std::uint32_t border = screen.At(0, 0);
        EXPECT_NE(border, face);
        int left = right, last = 0, top = bottom, low = 0, written = 0;
        for (int y = 0; y <= bottom; ++y) {
            for (int x = 0; x <= right; ++x) {
                const bool onEdge = x == 0 || y == 0 || x == right || y == bottom;
                if (onEdge) {
                    ASSERT_EQ(screen.At(x, y), border) << x << ", " << y;
                } else if (screen.At(x, y) != face) {
                    ++written;
                    left = std::min(left, x);
                    last = std::max(last, x);
                    top = std::min(top, y);
                    low = std::max(low, y);
                }
            }
        }
        EXPECT_GT(written, TextPixels);
        EXPECT_NEAR(left, right - last, 6);
        EXPECT_NEAR(top, bottom - low, 10);
    }

    // Lets the program go on until the transfer is over: the meter grows and is empty at last, the
    // text goes from voice to voice.
    void WatchToTheEnd() {
        int filled = FilledColumns();
        ScreenPicture text = TextShown();
        int growths = 0;
        int otherTexts = 0;
        program.process->GoOn();
        EXPECT_TRUE(Becomes(
            [&] {
                const int now = FilledColumns();
                if (now > filled) {
                    ++growths;
                    filled = now;
                }
                const ScreenPicture shown = TextShown();
                if (shown != text && shown != idleText) {
                    ++otherTexts;
                    text = shown;
                }
                return now == 0 && shown == idleText;
            },
            TransferTime));
        EXPECT_GE(growths, 3);
        EXPECT_GE(otherTexts, 3);
        EXPECT_TRUE(Becomes([&] { return display.FindWindow(DownloadBox).empty(); }, 5s));
    }

    // The part of the list where the names stand.
    ScreenPlace NamesPlace() const {
        constexpr int bars = 130;
        return {inside.x + 20, inside.y + bars, 220, inside.height - bars - 90};
    }
    // How many rows of 48 pixels have something written in them, the white ones on blue included.
    int RowsShown() const {
        constexpr int rowHeight = 48;
        const ScreenPicture names = display.Screen(NamesPlace());
        int shown = 0;
        for (int top = 0; top + rowHeight <= names.height; top += rowHeight) {
            const auto begin =
                names.pixels.begin() + static_cast<std::ptrdiff_t>(top) * names.width;
            const auto end = begin + static_cast<std::ptrdiff_t>(rowHeight) * names.width;
            shown += std::count_if(begin, end, IsDark) > TextPixels;
        }
        return shown;
    }

    // The names once they stand still.
    ScreenPicture RowsAtRest() const {
        ScreenPicture rows, before;
        EXPECT_TRUE(Becomes(
            [&] {
                before = std::exchange(rows, display.Screen(NamesPlace()));
                return rows == before;
            },
            5s));
        return rows;
    }

    XDisplay display;
    ProgramOnDisplay program{display};
    ScreenPlace inside; // of the main window
    ScreenPlace textPane, meterPane;
    int bottomOfBar = 0;
    std::uint32_t face = 0; // the colour of the bars
    ScreenPicture idleText;
};

// A bank file's voices without their headers: common block and operators of each.
Bytes VoicesOf(const Bytes &bank) {
    Bytes voices;
    for (std::size_t at = TestRefaceHeaderSize; at + TestRefaceBlockSize <= bank.size();
         at += TestRefaceBlockSize) {
        constexpr std::size_t payload = 52;
        voices.insert(voices.end(), bank.begin() + static_cast<std::ptrdiff_t>(at + payload),
                      bank.begin() + static_cast<std::ptrdiff_t>(at + TestRefaceBlockSize));
    }
    return voices;
}

TEST_F(SeenTransfer, BoxTextAndMeterStandWhileItRunsAndWhatTheUserDoesMeanwhileIsDropped) {
    const std::string bank = program.home.Write("bank.srx", TestRefaceBank());
    const Bytes instrument = MemoryOf(BuiltinInstrument::Reface);
    StartProgram(RefaceName, {"SelectKeyboardAutodetect = 1"}, {bank});
    ASSERT_NO_FATAL_FAILURE(AwaitDocument("bank.srx"));
    const ScreenPicture rowsBefore = display.Screen(NamesPlace());

    // The menu "Edit", entry "Download current voices". Saved before, so that no question comes
    // should another download have gone by.
    const auto download = [&] {
        return program.Press({"Escape", "Escape", "ctrl+s", "alt+e", "d"});
    };
    ASSERT_TRUE(HaltInTransferOf(download));
    ASSERT_NO_FATAL_FAILURE(ExpectBox(DownloadBox));
    EXPECT_TRUE(MeterIsPartlyFull());
    EXPECT_GT(CountOther(TextShown(), face), TextPixels);
    EXPECT_NE(TextShown(), idleText);
    WatchToTheEnd();
    EXPECT_TRUE(Becomes([&] { return RowsShown() >= 12; }, 10s));
    EXPECT_NE(display.Screen(NamesPlace()), rowsBefore);
    EXPECT_TRUE(program.Press({"ctrl+s"}));
    EXPECT_TRUE(Becomes([&] { return VoicesOf(ReadTestFile(bank)) == instrument; }, 10s));
    const ScreenPicture rows = RowsAtRest();

    ASSERT_TRUE(HaltInTransferOf(download));
    std::filesystem::remove(bank);
    // A click into the list and one on the tool bar's first button, keys of the list and of
    // commands, one of which would open a dialog and one would write the file.
    const std::string column = std::to_string(inside.x + 100);
    const std::string toolColumn = std::to_string(inside.x + 30);
    const std::string toolRow = std::to_string(inside.y + 50);
    EXPECT_TRUE(display.Tool({"mousemove",
                              column,
                              std::to_string(inside.y + 400),
                              "click",
                              "1",
                              "key",
                              "End",
                              "key",
                              "ctrl+s",
                              "mousemove",
                              toolColumn,
                              toolRow,
                              "click",
                              "1",
                              "key",
                              "ctrl+o",
                              "mousemove",
                              column,
                              std::to_string(inside.y + 500),
                              "mousedown",
                              "1",
                              "mousemove",
                              column,
                              std::to_string(inside.y + 300),
                              "mouseup",
                              "1"}));
    EXPECT_TRUE(MovePointerAway());
    WatchToTheEnd();
    EXPECT_TRUE(Becomes([&] { return display.Screen(NamesPlace()) == rows; }, 10s));
    EXPECT_FALSE(program.home.Holds("bank.srx"));
    // All that was done has been looked at by the time that a new key has its effect.
    EXPECT_TRUE(program.Press({"ctrl+s"}));
    EXPECT_TRUE(Becomes(
        [&] {
            return program.home.Holds("bank.srx") && VoicesOf(ReadTestFile(bank)) == instrument;
        },
        10s));
    EXPECT_EQ(display.Screen(NamesPlace()), rows);
}

TEST_F(SeenTransfer, TheDownloadOfAStartIsSeenInAWindowThatIsPaintedAlready) {
    // Started again when the download was over before the window was found.
    const auto startAndHalt = [&] {
        program.process.reset();
        if (!Becomes([&] { return display.FindWindow("Tonewright").empty(); }, 5s)) {
            return false;
        }
        StartProgram(RefaceName, {"SelectKeyboardAutodetect = 1", "DownloadOnOpen = 1"}, {});
        if (!program.Stands("Untitled.Twl") || !Becomes([&] { return FindPanes(); }, 10s)) {
            return false;
        }
        face = display.Screen(ScreenPlace{textPane.x, textPane.y, 1, 1}).At(0, 0);
        return HaltInTransfer(10s);
    };
    ASSERT_TRUE(Becomes(startAndHalt, 60s));
    ASSERT_NO_FATAL_FAILURE(ExpectBox(DownloadBox));
    EXPECT_GT(CountOther(TextShown(), face), TextPixels);
    program.process->GoOn();
    EXPECT_TRUE(Becomes([&] { return RowsShown() >= 12; }, TransferTime));
    EXPECT_EQ(FilledColumns(), 0);
}

TEST_F(SeenTransfer, AnUploadIsSeenAsLongAsTheBankIsOnItsWay) {
    constexpr int uploadTool = 136; // its middle, from the left
    constexpr int toolBar = 50;     // its middle, from above
    const std::string bank = program.home.Write("bank.syx", TestBank());
    StartProgram(Dx7Name, {"SelectKeyboardMidiIn = DX7", "SelectKeyboardMidiOut = DX7"}, {bank});
    ASSERT_NO_FATAL_FAILURE(AwaitDocument("bank.syx"));
    const ScreenPicture rows = RowsAtRest();
    ASSERT_TRUE(HaltInTransferOf([&] { return Click(uploadTool, toolBar); }));
    EXPECT_TRUE(MovePointerAway());
    ASSERT_NO_FATAL_FAILURE(ExpectBox(UploadBox));
    EXPECT_TRUE(MeterIsPartlyFull());
    EXPECT_GT(CountOther(TextShown(), face), TextPixels);
    EXPECT_NE(TextShown(), idleText);
    EXPECT_TRUE(Click(100, 400));
    EXPECT_TRUE(MovePointerAway());
    program.process->GoOn();
    EXPECT_TRUE(
        Becomes([&] { return FilledColumns() == 0 && TextShown() == idleText; }, TransferTime));
    EXPECT_TRUE(Becomes([&] { return display.FindWindow(UploadBox).empty(); }, 5s));
    EXPECT_TRUE(Becomes([&] { return display.Screen(NamesPlace()) == rows; }, 10s));
}

} // namespace
} // namespace tonewright
