// Sizes and places of tips.
#include "common/tip_area.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

TEST(TipArea, IsTheTextAndATenthAndEightByFour) {
    EXPECT_EQ(TipAreaOf(100, 56, {0, 0}, 600, 300), (Rectangle{2, 16, 2 + 118, 16 + 65}));
    EXPECT_EQ(TipAreaOf(109, 14, {0, 0}, 600, 300), (Rectangle{2, 16, 2 + 127, 16 + 19}));
    EXPECT_EQ(TipAreaOf(0, 0, {7, 9}, 600, 300), (Rectangle{9, 25, 17, 29}));
}

TEST(TipArea, StaysWithinTheList) {
    EXPECT_EQ(TipAreaOf(100, 50, {480, 225}, 600, 300), (Rectangle{482, 241, 600, 300}));
    EXPECT_EQ(TipAreaOf(100, 50, {481, 226}, 600, 300), (Rectangle{482, 241, 600, 300}));
    EXPECT_EQ(TipAreaOf(100, 50, {599, 299}, 600, 300), (Rectangle{482, 241, 600, 300}));
    EXPECT_EQ(TipAreaOf(100, 50, {-20, -20}, 600, 300), (Rectangle{0, 0, 118, 59}));
}

TEST(TipArea, ShowsItsTopLeftCornerInASmallList) {
    EXPECT_EQ(TipAreaOf(100, 50, {30, 20}, 60, 40), (Rectangle{0, 0, 118, 59}));
    EXPECT_EQ(TipAreaOf(100, 50, {30, 20}, 0, 0), (Rectangle{0, 0, 118, 59}));
}

constexpr Rectangle Screen = {.left = 0, .top = 0, .right = 800, .bottom = 600};

PicturePoint ToolTipAt(int x, int y, TipSize tip = {200, 20}, Rectangle screen = Screen) {
    const Rectangle area = ToolTipAreaOf(tip, {x, y}, screen);
    EXPECT_EQ(area.right - area.left, tip.width);
    EXPECT_EQ(area.bottom - area.top, tip.height);
    return {area.left, area.top};
}

TEST(ToolTipArea, TheTipHasEightMoreAcrossAndThreeDown) {
    EXPECT_EQ(ToolTipSizeOf(100, 16), (TipSize{108, 19}));
    EXPECT_EQ(ToolTipSizeOf(0, 0), (TipSize{8, 3}));
}

TEST(ToolTipArea, WithAPictureTheTipIsAsWideAndHigherByIt) {
    EXPECT_EQ(ToolTipSizeWith({108, 19}, {32, 24}), (TipSize{108, 19 + 24 + 8}));
    EXPECT_EQ(ToolTipSizeWith({108, 19}, {101, 1}), (TipSize{108, 28}));
    EXPECT_EQ(ToolTipSizeWith({108, 19}, {102, 64}), (TipSize{109, 91}));
}

TEST(ToolTipArea, StandsTwelvePixelsToTheRightWhereThereIsRoom) {
    EXPECT_EQ(ToolTipAt(100, 57), (PicturePoint{112, 57}));
    EXPECT_EQ(ToolTipAt(588, 580), (PicturePoint{600, 580})); // up to the edges
}

TEST(ToolTipArea, MovesBackInStepsOfEightUntilItFits) {
    EXPECT_EQ(ToolTipAt(589, 57), (PicturePoint{593, 57}));
    EXPECT_EQ(ToolTipAt(596, 57), (PicturePoint{600, 57}));
    EXPECT_EQ(ToolTipAt(597, 57), (PicturePoint{593, 57}));
    EXPECT_EQ(ToolTipAt(752, 57), (PicturePoint{596, 57})); // 764 is 21 steps too far
    EXPECT_EQ(ToolTipAt(100, 581), (PicturePoint{112, 573}));
    EXPECT_EQ(ToolTipAt(100, 588), (PicturePoint{112, 580}));
    EXPECT_EQ(ToolTipAt(752, 599), (PicturePoint{596, 575})); // both for themselves
}

TEST(ToolTipArea, ANegativePlaceIsRoundedUpToTheNextStep) {
    EXPECT_EQ(ToolTipAt(-12, -8), (PicturePoint{0, 0}));
    EXPECT_EQ(ToolTipAt(-13, -9), (PicturePoint{7, 7}));
    EXPECT_EQ(ToolTipAt(-40, -40), (PicturePoint{4, 0}));
    // Wider than the screen: 112 goes back to -304 and rests on 0.
    EXPECT_EQ(ToolTipAt(100, 57, {1100, 20}), (PicturePoint{0, 57}));
    EXPECT_EQ(ToolTipAt(103, 57, {1100, 20}), (PicturePoint{3, 57}));
    EXPECT_EQ(ToolTipAt(100, 57, {200, 700}), (PicturePoint{112, 1}));
}

TEST(ToolTipArea, ASecondScreenHasAnEdgeOfItsOwn) {
    const Rectangle second = {.left = 800, .top = -100, .right = 1600, .bottom = 500};
    EXPECT_EQ(ToolTipAt(1552, 495, {200, 20}, second), (PicturePoint{1396, 479}));
    EXPECT_EQ(ToolTipAt(700, -150, {200, 20}, second), (PicturePoint{800, -94}));
}

TEST(ToolTipFont, AHeightThatNoTipCanBeWrittenInIsThePlainOne) {
    for (const std::uint32_t height : {1u, 16u, 64u, 128u}) {
        EXPECT_EQ(ToolTipFontHeight(height), static_cast<int>(height));
    }
    EXPECT_EQ(ToolTipFontHeight(static_cast<std::uint32_t>(-12)), -12);
    for (const std::uint32_t garbage : {0u, 129u, 4'000'000'000u, 0x80000000u, 0x7FFFFFFFu}) {
        EXPECT_EQ(ToolTipFontHeight(garbage), 16) << garbage;
    }
}

} // namespace
} // namespace tonewright
