// Size and place of the tip of a list.
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

} // namespace
} // namespace tonewright
