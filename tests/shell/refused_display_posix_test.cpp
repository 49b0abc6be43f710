// The real program on a screen that is too small for it: it says so and ends, and that is all.
#include "support/bank_bytes.h"
#include "support/x_display.h"

#include <gtest/gtest.h>

#include <map>

namespace tonewright {
namespace {

using namespace std::chrono_literals;

// Every file below a folder, with what is in it.
std::map<std::string, std::string> FilesBelow(const std::filesystem::path &folder) {
    std::map<std::string, std::string> files;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files[entry.path().string()] = ReadTestText(entry.path().string());
        }
    }
    return files;
}

TEST(RefusedDisplay, TheProgramEndsWellWithNothingWrittenOpenedOrAskedFor) {
    XDisplay display;
    ASSERT_TRUE(display.Start("799x600x24")) << "no X server";
    ProgramOnDisplay program(display);
    // If it were opened, it would be asked about.
    auto damaged = TestBank();
    damaged[4102] ^= 1;
    program.Start({program.home.Write("bank.syx", damaged)}, {"DownloadOnOpen = 1"},
                  {"TONEWRIGHT_INSTRUMENTS=1"});
    const auto before = FilesBelow(program.home.path);
    std::string box;
    ASSERT_TRUE(Becomes(
        [&] {
            box = display.FindWindow("^Tonewright$");
            return !box.empty();
        },
        15s));
    EXPECT_TRUE(Becomes(
        [&] {
            display.Tool({"windowfocus", "--sync", box});
            display.Tool({"key", "Return"});
            return program.process->Ends(1s);
        },
        15s));
    EXPECT_EQ(program.process->ExitStatus(), 0);
    EXPECT_EQ(FilesBelow(program.home.path), before);
}

TEST(RefusedDisplay, AScreenOfTheSmallestWidthIsTaken) {
    XDisplay display;
    ASSERT_TRUE(display.Start("800x600x24")) << "no X server";
    ProgramOnDisplay program(display);
    program.Start({program.home.Write("bank.syx", TestBank())});
    EXPECT_TRUE(program.Stands("bank.syx"));
}

} // namespace
} // namespace tonewright
