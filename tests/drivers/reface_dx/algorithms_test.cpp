// Tests of the geometry of the twelve algorithms, against points that were worked out by hand.
#include "drivers/reface_dx/algorithms.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Points = std::vector<PicturePoint>;
using Lines = std::vector<Points>;

// A drawing area of 400 by 100 with the number shown: boxes of 37, half 18, 100 apart, so that the
// middles of the boxes lie at 18, 118, 218 and 318, the boxes from 18 to 55, the lines above them
// at 0 and those below at 73.
RefaceAlgorithmPicture PictureOf(int algorithm) {
    return MakeRefaceAlgorithmPicture(algorithm, MakeRefaceAlgorithmUnits(400, 100, true));
}

Points Straight(int from, int to) {
    return {{100 * (from - 1) + 37, 36}, {100 * (to - 1), 36}};
}
Points Over(int from, int to) {
    const int a = 100 * (from - 1) + 18, b = 100 * (to - 1) + 18;
    return {{a, 18}, {a, 0}, {b, 0}, {b, 18}};
}
Points Under(int from, int to) {
    const int a = 100 * (from - 1) + 18, b = 100 * (to - 1) + 18;
    return {{a, 55}, {a, 73}, {b, 73}, {b, 55}};
}
Points Drop(int box) {
    return {{100 * (box - 1) + 18, 55}, {100 * (box - 1) + 18, 73}};
}
Points Rise(int box) {
    return {{100 * (box - 1) + 18, 18}, {100 * (box - 1) + 18, 0}};
}

TEST(RefaceAlgorithmUnits, FollowFromTheDrawingAreaCutTowardsZero) {
    const RefaceAlgorithmUnits numbered = MakeRefaceAlgorithmUnits(400, 100, true);
    EXPECT_EQ(numbered.box, 37);
    EXPECT_EQ(numbered.half, 18);
    EXPECT_EQ(numbered.step, 100);
    EXPECT_EQ(numbered.font, 29); // 37 * 80 / 100 = 29.6
    const RefaceAlgorithmUnits plain = MakeRefaceAlgorithmUnits(403, 101, false);
    EXPECT_EQ(plain.box, 50);
    EXPECT_EQ(plain.half, 25);
    EXPECT_EQ(plain.step, 100);
    EXPECT_EQ(plain.font, 40);
}

TEST(RefaceAlgorithmUnits, OfAListItemFourTimesAsLargeHaveBoxesOf47) {
    // 40 high with lines of 2, four times: 160 less 4 times 8.
    const RefaceAlgorithmUnits units = MakeRefaceAlgorithmUnits(1984 - 32, 160 - 32, true);
    EXPECT_EQ(units.box, 47);
    EXPECT_EQ(units.half, 23);
    EXPECT_EQ(units.step, 488);
    EXPECT_EQ(units.font, 37);
}

TEST(RefaceAlgorithmPicture, BoxesStandInARowHalfABoxBelowTheTop) {
    for (int algorithm = 0; algorithm < RefaceAlgorithmCount; ++algorithm) {
        const RefaceAlgorithmPicture picture = PictureOf(algorithm);
        ASSERT_EQ(picture.boxes.size(), 4u);
        for (int box = 0; box < 4; ++box) {
            EXPECT_EQ(picture.boxes[box].number, box + 1);
            EXPECT_TRUE(picture.boxes[box].area == (Rectangle{100 * box, 18, 100 * box + 37, 55}));
        }
    }
}

struct ExpectedAlgorithm {
    const char *carriers; // the numbers of the rectangles
    Lines lines;
    int numberFrom, numberTo; // left and right of the place of the number
};

const ExpectedAlgorithm ExpectedAlgorithms[] = {
    {"1", {Straight(1, 2), Straight(2, 3), Straight(3, 4)}, 0, 37},
    {"1", {Straight(1, 2), Straight(2, 3), Over(2, 4)}, 0, 37},
    {"1", {Straight(1, 2), Straight(2, 3), Under(1, 4)}, 0, 37},
    {"1", {Straight(1, 2), Straight(3, 4), Under(1, 3), Over(2, 4)}, 0, 37},
    {"1", {Straight(1, 2), Under(1, 4), Over(1, 3)}, 0, 37},
    {"12", {Straight(2, 3), Straight(3, 4), Under(1, 2)}, 0, 137},
    {"12", {Straight(2, 3), Straight(3, 4), Under(1, 2), Over(1, 3)}, 0, 137},
    {"13", {Straight(1, 2), Straight(3, 4), Under(1, 3)}, 100, 137},
    {"13", {Under(1, 3), Drop(2), Over(1, 4), Rise(2), Rise(3)}, 100, 137},
    {"123", {Under(1, 3), Drop(2), Over(2, 4), Rise(3)}, 0, 237},
    {"123", {Straight(3, 4), Under(1, 3), Drop(2)}, 0, 237},
    {"1234", {Under(1, 4), Drop(2), Drop(3)}, 0, 237},
};

TEST(RefaceAlgorithmPicture, EveryAlgorithmHasItsCarriersLinesAndPlaceOfTheNumber) {
    ASSERT_EQ(std::size(ExpectedAlgorithms), static_cast<std::size_t>(RefaceAlgorithmCount));
    for (int algorithm = 0; algorithm < RefaceAlgorithmCount; ++algorithm) {
        const ExpectedAlgorithm &expected = ExpectedAlgorithms[algorithm];
        const RefaceAlgorithmPicture picture = PictureOf(algorithm);
        std::string carriers;
        for (const RefaceAlgorithmBox &box : picture.boxes) {
            if (box.isCarrier) {
                carriers += static_cast<char>('0' + box.number);
            }
        }
        EXPECT_EQ(carriers, expected.carriers) << algorithm;
        EXPECT_TRUE(picture.lines == expected.lines) << algorithm;
        EXPECT_TRUE(picture.number == (Rectangle{expected.numberFrom, 73, expected.numberTo, 110}))
            << algorithm;
    }
}

TEST(RefaceAlgorithmPicture, Box2OfAlgorithm8StaysAModulatorThoughItIsJoinedToTheLineBelow) {
    const RefaceAlgorithmPicture picture = PictureOf(8);
    EXPECT_FALSE(picture.boxes[1].isCarrier);
    EXPECT_NE(std::ranges::find(picture.lines, Drop(2)), picture.lines.end());
}

TEST(RefaceAlgorithmPicture, NumbersOutsideTheTableHaveNoPicture) {
    for (const int algorithm : {-1, 12, 13, 255, 1 << 30}) {
        const RefaceAlgorithmPicture picture = PictureOf(algorithm);
        EXPECT_TRUE(picture.boxes.empty()) << algorithm;
        EXPECT_TRUE(picture.lines.empty()) << algorithm;
    }
}

TEST(RefaceAlgorithmPicture, NoTwoAlgorithmsLookTheSame) {
    std::set<std::vector<int>> seen;
    for (int algorithm = 0; algorithm < RefaceAlgorithmCount; ++algorithm) {
        const RefaceAlgorithmPicture picture = PictureOf(algorithm);
        std::vector<int> flat;
        for (const RefaceAlgorithmBox &box : picture.boxes) {
            flat.push_back(box.isCarrier);
        }
        for (const Points &line : picture.lines) {
            for (const PicturePoint point : line) {
                flat.insert(flat.end(), {point.x, point.y});
            }
        }
        EXPECT_TRUE(seen.insert(flat).second) << algorithm;
    }
}

TEST(RefaceAlgorithmPicture, EveryOperatorIsJoinedToAnother) {
    for (int algorithm = 0; algorithm < RefaceAlgorithmCount; ++algorithm) {
        const RefaceAlgorithmPicture picture = PictureOf(algorithm);
        for (const RefaceAlgorithmBox &box : picture.boxes) {
            const auto touches = [&box](const PicturePoint &point) {
                return point.x >= box.area.left && point.x <= box.area.right &&
                       point.y >= box.area.top && point.y <= box.area.bottom;
            };
            EXPECT_TRUE(std::ranges::any_of(
                picture.lines,
                [&](const Points &line) { return std::ranges::any_of(line, touches); }))
                << algorithm << " box " << box.number;
        }
    }
}

} // namespace
} // namespace tonewright
