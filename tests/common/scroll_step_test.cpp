// How far each action moves a scroll bar.
#include "common/scroll_step.h"

#include <gtest/gtest.h>

#include <limits>

namespace tonewright {
namespace {

// Where a bar at `position` stands after the action, and whether it says that it moved.
struct Step {
    int position;
    bool changed;
    bool operator==(const Step &) const = default;
};
Step StepFrom(int position, ScrollAction action, int maximum, int thumb = 0) {
    const bool changed = ScrollStep(action, thumb, maximum, position);
    return {position, changed};
}

TEST(ScrollStep, ALineIsOne) {
    EXPECT_EQ(StepFrom(50, ScrollAction::LineBack, 99), (Step{49, true}));
    EXPECT_EQ(StepFrom(50, ScrollAction::LineForward, 99), (Step{51, true}));
}

TEST(ScrollStep, APageIsAnEighthOfTheMaximumCut) {
    EXPECT_EQ(StepFrom(50, ScrollAction::PageForward, 99), (Step{62, true})); // 99 / 8 = 12
    EXPECT_EQ(StepFrom(50, ScrollAction::PageBack, 99), (Step{38, true}));
    EXPECT_EQ(StepFrom(50, ScrollAction::PageForward, 127), (Step{65, true})); // 127 / 8 = 15
}

TEST(ScrollStep, ARangeUpToSevenHasNoPages) {
    EXPECT_EQ(StepFrom(3, ScrollAction::PageForward, 7), (Step{3, false}));
    EXPECT_EQ(StepFrom(3, ScrollAction::PageBack, 7), (Step{3, false}));
}

TEST(ScrollStep, TheThumbTakesItsPosition) {
    EXPECT_EQ(StepFrom(50, ScrollAction::Thumb, 99, 7), (Step{7, true}));
    EXPECT_EQ(StepFrom(50, ScrollAction::Thumb, 99, 50), (Step{50, false}));
    EXPECT_EQ(StepFrom(50, ScrollAction::Thumb, 99, 1000), (Step{99, true}));
    EXPECT_EQ(StepFrom(50, ScrollAction::Thumb, 99, -1), (Step{0, true}));
}

TEST(ScrollStep, TopIsZeroAndBottomTheMaximum) {
    EXPECT_EQ(StepFrom(50, ScrollAction::Top, 99), (Step{0, true}));
    EXPECT_EQ(StepFrom(50, ScrollAction::Bottom, 99), (Step{99, true}));
}

TEST(ScrollStep, AtAnEndNothingMoves) {
    EXPECT_EQ(StepFrom(0, ScrollAction::LineBack, 99), (Step{0, false}));
    EXPECT_EQ(StepFrom(99, ScrollAction::LineForward, 99), (Step{99, false}));
    EXPECT_EQ(StepFrom(95, ScrollAction::PageForward, 99), (Step{99, true}));
    EXPECT_EQ(StepFrom(0, ScrollAction::Top, 99), (Step{0, false}));
    EXPECT_EQ(StepFrom(99, ScrollAction::Bottom, 99), (Step{99, false}));
}

TEST(ScrollStep, NumbersAtTheEndsOfTheIntegersStayInTheRange) {
    constexpr int largest = std::numeric_limits<int>::max();
    constexpr int smallest = std::numeric_limits<int>::min();
    EXPECT_EQ(StepFrom(largest, ScrollAction::LineForward, largest), (Step{largest, false}));
    EXPECT_EQ(StepFrom(smallest, ScrollAction::LineBack, 99), (Step{0, true}));
    EXPECT_EQ(StepFrom(5, ScrollAction::Bottom, -3), (Step{0, true}));
}

} // namespace
} // namespace tonewright
