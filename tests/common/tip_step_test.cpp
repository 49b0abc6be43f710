// When a tool tip comes and goes.
#include "common/tip_step.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

TipStep StepAt(PicturePoint cursor, bool leftButtonDown = false, bool tipShows = false) {
    return TipStepOf({.isMove = true, .leftButtonDown = leftButtonDown, .cursor = cursor}, 48, 30,
                     tipShows);
}

TEST(ToolTipStep, TheMouseRestsForAQuarterOfASecond) {
    EXPECT_EQ(ToolTipDelay, 250);
}

TEST(ToolTipStep, AMoveInsideStartsTheTimerUnlessTheTipShows) {
    for (const PicturePoint cursor :
         {PicturePoint{0, 0}, PicturePoint{47, 0}, PicturePoint{0, 29}, PicturePoint{47, 29}}) {
        EXPECT_EQ(StepAt(cursor), TipStep::StartTimer) << cursor.x << ", " << cursor.y;
        EXPECT_EQ(StepAt(cursor, false, true), TipStep::None) << cursor.x << ", " << cursor.y;
    }
}

TEST(ToolTipStep, AMoveThatLeavesHides) {
    for (const PicturePoint cursor :
         {PicturePoint{-1, 5}, PicturePoint{5, -1}, PicturePoint{48, 5}, PicturePoint{5, 30}}) {
        EXPECT_EQ(StepAt(cursor), TipStep::Hide) << cursor.x << ", " << cursor.y;
        EXPECT_EQ(StepAt(cursor, false, true), TipStep::Hide) << cursor.x << ", " << cursor.y;
    }
}

TEST(ToolTipStep, AnyOtherMessageHides) {
    for (const bool tipShows : {false, true}) {
        EXPECT_EQ(StepAt({5, 5}, true, tipShows), TipStep::Hide);
        EXPECT_EQ(TipStepOf({.cursor = {5, 5}}, 48, 30, tipShows), TipStep::Hide);
    }
}

TEST(ToolTipStep, OnAnEdgeIsNotStrictlyInside) {
    for (const PicturePoint inside : {PicturePoint{1, 1}, PicturePoint{46, 28}}) {
        EXPECT_TRUE(IsStrictlyInside(inside, 48, 30)) << inside.x << ", " << inside.y;
    }
    for (const PicturePoint outside :
         {PicturePoint{0, 5}, PicturePoint{5, 0}, PicturePoint{47, 5}, PicturePoint{5, 29},
          PicturePoint{-3, 5}, PicturePoint{5, 300}}) {
        EXPECT_FALSE(IsStrictlyInside(outside, 48, 30)) << outside.x << ", " << outside.y;
    }
    EXPECT_FALSE(IsStrictlyInside({0, 0}, 1, 1));
}

} // namespace
} // namespace tonewright
