// The tool bar in a theme that is loaded.
#include "common/settings.h"
#include "common/view/theme.h"
#include "shell/view/tool_bar.h"
#include "support/scripted_desktop.h"
#include "support/test_themes.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

class ToolBarTheme : public testing::Test {
protected:
    ToolBarTheme() {
        house.Put("whole", "THEME_A.dll");
        ThemeCurrent = "THEME_A.dll";
        EXPECT_TRUE(ThemeLoad());
    }

    ThemeHouse house;
    ScriptedDesktop desktop;
};

TEST_F(ToolBarTheme, EachToolIsDrawnWithTheNumberOfItsPicture) {
    const std::pair<int, int> tools[] = {{50, 8}, {51, 7},  {54, 2},  {55, 4},
                                         {56, 5}, {58, 34}, {59, 33}, {60, 30}};
    ToolBar bar(nullptr);
    for (const auto &[tool, picture] : tools) {
        auto *button = bar.findChild<QWidget *>(QString("control_%1").arg(tool));
        ASSERT_NE(button, nullptr) << tool;
        button->setEnabled(true);
        house.Calls();
        button->grab();
        EXPECT_EQ(house.Calls().back(), "THEMEDrawButton window painter 0 0 32 33 picture " +
                                            std::to_string(picture) + " state 0");
        button->setEnabled(false);
        button->grab();
        EXPECT_EQ(house.Calls().back(), "THEMEDrawButton window painter 0 0 32 33 picture " +
                                            std::to_string(picture) + " state 4");
    }
}

TEST_F(ToolBarTheme, ButtonsStandAsTheMeasuresOfTheThemeSay) {
    ToolBar bar(nullptr);
    EXPECT_EQ(bar.height(), 31);
    const auto left = [&](int tool) {
        const QRect place = bar.findChild<QWidget *>(QString("control_%1").arg(tool))->geometry();
        EXPECT_EQ(place.top(), 128); // as far as a senseless measure goes
        EXPECT_EQ(place.size(), QSize(32, 33));
        return place.left();
    };
    // 32 wide, 38 between two buttons and 35 more behind a group, from a left edge of 0 on.
    EXPECT_EQ(left(50), 0);
    EXPECT_EQ(left(51), 70);
    EXPECT_EQ(left(59), 140);
    EXPECT_EQ(left(58), 210);
    EXPECT_EQ(left(60), 280);
    EXPECT_EQ(left(54), 385);
    EXPECT_EQ(left(55), 455);
    EXPECT_EQ(left(56), 525);
}

TEST_F(ToolBarTheme, TheBackgroundIsTheThemes) {
    ToolBar bar(nullptr);
    house.Calls();
    bar.grab();
    const auto calls = house.Calls();
    EXPECT_EQ(
        std::count(calls.begin(), calls.end(), "THEMEDrawToolbarBackground window painter 0 0"), 1);
}

} // namespace
} // namespace tonewright
