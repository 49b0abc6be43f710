// Files that are libraries, but not for here, or not whole.
#include "common/settings.h"
#include "common/view/theme.h"
#include "common/view/theme_library.h"
#include "support/scripted_desktop.h"
#include "support/test_themes.h"

#include <gtest/gtest.h>

#include <utility>

namespace tonewright {
namespace {

TEST(ThemeOfAnotherMachine, IsToldAndTheDefaultThemeIsUsed) {
    ThemeHouse house;
    ScriptedDesktop desktop;
    const std::string path = house.Put("whole", "THEME_A.dll");
    std::vector<std::uint8_t> bytes = ReadTestFile(path);
    ASSERT_EQ(std::vector<std::uint8_t>(bytes.begin(), bytes.begin() + 4),
              (std::vector<std::uint8_t>{0x7F, 'E', 'L', 'F'}));
    bytes[18] = 0x16; // the machine: one of IBM's
    bytes[19] = 0;
    WriteTestFile(path, bytes);
    ThemeCurrent = "THEME_A.dll";
    desktop.ExpectMessage("There has been an error initializing the current theme for this "
                          "application. The default theme will be used.");
    EXPECT_FALSE(ThemeLoad());
    desktop.ExpectNothingLeft();
    EXPECT_EQ(house.Calls(), std::vector<std::string>());
    EXPECT_EQ(ThemeGetMetric(THEME_METRIC_TOOLBAR_HEIGHT), 56);
}

// A whole library is not called cut.
TEST(ThemeOfAnotherMachine, WhichHasTheHighestByteFirstIsToldInTheWordsOfTheSystem) {
    ThemeHouse house;
    const std::string path = house.Put("whole", "THEME_A.dll");
    std::vector<std::uint8_t> bytes = ReadTestFile(path);
    bytes[5] = 2; // the byte order
    // The number of segments, 16 bits, the other way around: read in this machine's order it tells
    // of more than there are.
    std::swap(bytes[56], bytes[57]);
    WriteTestFile(path, bytes);
    const std::string fault = StartTheme(path).fault;
    EXPECT_NE(fault, "");
    EXPECT_NE(fault, "the file is cut");
}

TEST(ThemeFileThatIsCut, IsToldAndTheDefaultThemeIsUsed) {
    ThemeHouse house;
    ScriptedDesktop desktop;
    const std::string path = house.Put("whole", "THEME_A.dll");
    const std::vector<std::uint8_t> bytes = ReadTestFile(path);
    const std::size_t step = bytes.size() / 16;
    ThemeCurrent = "THEME_A.dll";
    for (std::size_t size = 4; size < bytes.size() / 2; size += step) {
        WriteTestFile(path, std::span(bytes).first(size));
        desktop.ExpectMessage("There has been an error initializing the current theme for this "
                              "application. The default theme will be used.");
        EXPECT_FALSE(ThemeLoad()) << size;
        desktop.ExpectNothingLeft();
        if (size >= 64) { // there is a header
            EXPECT_EQ(StartTheme(path).fault, "the file is cut") << size;
        }
    }
    EXPECT_EQ(house.Calls(), std::vector<std::string>());
}

} // namespace
} // namespace tonewright
