// Tests of the geometry of the 32 algorithms: its units at several heights, and pictures whose
// points were worked out by hand.
#include "drivers/dx7/algorithms.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Points = std::vector<PicturePoint>;

// Pictures of a height of 48 with lines of 2 are the ones to work out by hand: a box is 14.
Dx7AlgorithmPicture PictureOf(int shownNumber) {
    return MakeDx7AlgorithmPicture(shownNumber - 1, MakeDx7AlgorithmUnits(48, 2));
}

void ExpectBoxes(const Dx7AlgorithmPicture &picture, const Points &corners) {
    ASSERT_EQ(picture.boxes.size(), corners.size());
    for (std::size_t i = 0; i < corners.size(); ++i) {
        EXPECT_EQ(picture.boxes[i].number, static_cast<int>(i) + 1);
        EXPECT_EQ(picture.boxes[i].corner.x, corners[i].x) << "box " << i + 1;
        EXPECT_EQ(picture.boxes[i].corner.y, corners[i].y) << "box " << i + 1;
    }
}

bool LiesOnSegment(PicturePoint p, PicturePoint a, PicturePoint b) {
    return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
           p.y <= std::max(a.y, b.y);
}

// Whether an end of the line at `own` meets a box or another line.
bool MeetsSomething(const Dx7AlgorithmPicture &picture, std::size_t own, PicturePoint p, int side) {
    for (const Dx7AlgorithmBox &box : picture.boxes) {
        if (LiesOnSegment(p, box.corner, {box.corner.x + side, box.corner.y + side})) {
            return true;
        }
    }
    for (std::size_t i = 0; i < picture.lines.size(); ++i) {
        for (std::size_t k = 1; i != own && k < picture.lines[i].size(); ++k) {
            if (LiesOnSegment(p, picture.lines[i][k - 1], picture.lines[i][k])) {
                return true;
            }
        }
    }
    return false;
}

TEST(Dx7AlgorithmUnits, APicture48HighWithLinesOf2HasBoxesOf14) {
    const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(48, 2);
    EXPECT_EQ(units.innerHeight, 40);
    EXPECT_EQ(units.box, 14);
    EXPECT_EQ(units.half, 7);
    EXPECT_EQ(units.pitch, 24);
    EXPECT_EQ(units.stub, 5);
    EXPECT_EQ(units.font, 11);
    EXPECT_EQ(units.gap, 5);
    EXPECT_EQ(units.loop, 4);
    EXPECT_EQ(units.oddGap, 5);
    EXPECT_EQ(units.bypass, 8);
}

TEST(Dx7AlgorithmUnits, ThePictureOfAListItemHasBoxesOf10) {
    const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(40, 2);
    EXPECT_EQ(units.innerHeight, 32);
    EXPECT_EQ(units.box, 10); // 11 made even
    EXPECT_EQ(units.half, 5);
    EXPECT_EQ(units.pitch, 19);
    EXPECT_EQ(units.stub, 4);
    EXPECT_EQ(units.font, 8);
    EXPECT_EQ(units.gap, 4);
    EXPECT_EQ(units.loop, 3);
    EXPECT_EQ(units.oddGap, 5); // the even gap plus one
    EXPECT_EQ(units.bypass, 6);
}

TEST(Dx7AlgorithmUnits, APrintedPictureScalesWithItsLines) {
    const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(300, 8);
    EXPECT_EQ(units.innerHeight, 268);
    EXPECT_EQ(units.box, 96);
    EXPECT_EQ(units.half, 48);
    EXPECT_EQ(units.pitch, 160);
    EXPECT_EQ(units.stub, 38);
    EXPECT_EQ(units.font, 76);
    EXPECT_EQ(units.gap, 32);
    EXPECT_EQ(units.loop, 28);
    EXPECT_EQ(units.oddGap, 33);
    EXPECT_EQ(units.bypass, 48);
}

TEST(Dx7AlgorithmUnits, AnOddInnerHeightCountsAsTheEvenHeightOneLower) {
    for (int height = 9; height < 400; height += 2) {
        const Dx7AlgorithmUnits odd = MakeDx7AlgorithmUnits(height, 2);
        const Dx7AlgorithmUnits even = MakeDx7AlgorithmUnits(height - 1, 2);
        EXPECT_EQ(odd.innerHeight, height - 9);
        EXPECT_EQ(odd.innerHeight, even.innerHeight);
        EXPECT_EQ(odd.box, even.box);
        EXPECT_EQ(odd.pitch, even.pitch);
        EXPECT_EQ(odd.font, even.font);
    }
}

TEST(Dx7AlgorithmUnits, ABoxIsAlwaysEvenSoThatItsMiddleIsAPixel) {
    for (int height = 0; height < 1000; ++height) {
        for (int weight : {-1, 0, 1, 2, 3, 8}) {
            const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(height, weight);
            EXPECT_EQ(units.box % 2, 0) << height << " " << weight;
            EXPECT_EQ(units.half * 2, units.box) << height << " " << weight;
        }
    }
}

TEST(Dx7AlgorithmUnits, TheOddGapIsTheGapOrOneMore) {
    for (int height = 8; height < 1000; ++height) {
        const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(height, 1);
        EXPECT_EQ(units.oddGap % 2, 1) << height;
        EXPECT_TRUE(units.oddGap == units.gap || units.oddGap == units.gap + 1) << height;
    }
}

TEST(Dx7AlgorithmUnits, ANegativeLineWeightMakesThePictureHigher) {
    EXPECT_EQ(MakeDx7AlgorithmUnits(36, -1).innerHeight, 40);
    EXPECT_EQ(MakeDx7AlgorithmUnits(40, 0).innerHeight, 40);
}

TEST(Dx7AlgorithmPicture, NumbersOutsideTheTableHaveNoPicture) {
    for (int algorithm : {-1, 32, 33, 255, 1 << 30}) {
        const Dx7AlgorithmPicture picture =
            MakeDx7AlgorithmPicture(algorithm, MakeDx7AlgorithmUnits(48, 2));
        EXPECT_TRUE(picture.boxes.empty()) << algorithm;
        EXPECT_TRUE(picture.lines.empty()) << algorithm;
    }
}

TEST(Dx7AlgorithmPicture, EveryAlgorithmHasSixBoxesInTheirOrder) {
    for (int number = 1; number <= Dx7AlgorithmCount; ++number) {
        const Dx7AlgorithmPicture picture = PictureOf(number);
        ASSERT_EQ(picture.boxes.size(), 6u) << number;
        for (std::size_t i = 0; i < 6; ++i) {
            EXPECT_EQ(picture.boxes[i].number, static_cast<int>(i) + 1) << number;
        }
    }
}

TEST(Dx7AlgorithmPicture, NoTwoBoxesOverlap) {
    for (int number = 1; number <= Dx7AlgorithmCount; ++number) {
        const Dx7AlgorithmPicture picture = PictureOf(number);
        for (const Dx7AlgorithmBox &a : picture.boxes) {
            for (const Dx7AlgorithmBox &b : picture.boxes) {
                EXPECT_TRUE(a.number == b.number || std::abs(a.corner.x - b.corner.x) > 14 ||
                            std::abs(a.corner.y - b.corner.y) > 14)
                    << number << ": " << a.number << " and " << b.number;
            }
        }
    }
}

TEST(Dx7AlgorithmPicture, EveryLineRunsFromABoxOrLineToABoxOrLine) {
    for (int number = 1; number <= Dx7AlgorithmCount; ++number) {
        const Dx7AlgorithmPicture picture = PictureOf(number);
        EXPECT_GE(picture.lines.size(), 5u) << number;
        for (std::size_t i = 0; i < picture.lines.size(); ++i) {
            ASSERT_GE(picture.lines[i].size(), 2u) << number;
            EXPECT_TRUE(MeetsSomething(picture, i, picture.lines[i].front(), 14))
                << number << " line " << i;
            EXPECT_TRUE(MeetsSomething(picture, i, picture.lines[i].back(), 14))
                << number << " line " << i;
        }
    }
}

TEST(Dx7AlgorithmPicture, NoTwoAlgorithmsLookTheSame) {
    std::set<std::vector<int>> seen;
    for (int number = 1; number <= Dx7AlgorithmCount; ++number) {
        const Dx7AlgorithmPicture picture = PictureOf(number);
        std::vector<int> flat;
        for (const Dx7AlgorithmBox &box : picture.boxes) {
            flat.insert(flat.end(), {box.corner.x, box.corner.y});
        }
        for (const Points &line : picture.lines) {
            flat.push_back(-1000);
            for (PicturePoint point : line) {
                flat.insert(flat.end(), {point.x, point.y});
            }
        }
        EXPECT_TRUE(seen.insert(flat).second) << number;
    }
}

TEST(Dx7AlgorithmPicture, Algorithm1IsTwoChainsWithALoopAtTheEnd) {
    const Dx7AlgorithmPicture picture = PictureOf(1);
    ExpectBoxes(picture, {{7, 0}, {38, 0}, {7, 24}, {38, 24}, {69, 24}, {100, 24}});
    const std::vector<Points> lines = {
        {{7, 7}, {2, 7}, {2, 31}, {7, 31}},
        {{21, 7}, {38, 7}},
        {{21, 31}, {38, 31}},
        {{52, 31}, {69, 31}},
        {{83, 31}, {100, 31}},
        {{114, 31}, {119, 31}, {119, 43}, {95, 43}, {95, 31}},
    };
    EXPECT_TRUE(picture.lines == lines);
}

TEST(Dx7AlgorithmPicture, Algorithm4LoopsBetweenTheRows) {
    const Dx7AlgorithmPicture picture = PictureOf(4);
    ExpectBoxes(picture, {{7, 0}, {38, 0}, {69, 0}, {7, 24}, {38, 24}, {69, 24}});
    const std::vector<Points> lines = {
        {{7, 7}, {2, 7}, {2, 31}, {7, 31}},
        {{21, 7}, {38, 7}},
        {{52, 7}, {69, 7}},
        {{21, 31}, {38, 31}},
        {{52, 31}, {69, 31}},
        {{83, 31}, {88, 31}, {88, 19}, {2, 19}, {2, 31}},
    };
    EXPECT_TRUE(picture.lines == lines);
}

TEST(Dx7AlgorithmPicture, Algorithm10PassesBelowABox) {
    const Dx7AlgorithmPicture picture = PictureOf(10);
    ExpectBoxes(picture, {{7, 0}, {38, 0}, {69, 0}, {7, 24}, {69, 24}, {38, 24}});
    const std::vector<Points> lines = {
        {{21, 7}, {38, 7}},
        {{52, 7}, {69, 7}},
        {{21, 31}, {38, 31}},
        {{21, 31}, {29, 31}, {29, 46}, {61, 46}, {61, 31}, {69, 31}},
        {{7, 7}, {2, 7}, {2, 31}, {7, 31}},
        {{76, 0}, {76, -5}, {87, -5}, {87, 19}, {76, 19}, {76, 14}},
    };
    EXPECT_TRUE(picture.lines == lines);
}

TEST(Dx7AlgorithmPicture, TheFirstLineOfAlgorithm19EndsOnePixelInsideItsBox) {
    const Dx7AlgorithmPicture picture = PictureOf(19);
    ExpectBoxes(picture, {{24, 24}, {24, 0}, {0, 0}, {48, 24}, {72, 24}, {48, 0}});
    const std::vector<Points> lines = {
        {{31, 0}, {31, -5}, {19, -5}, {19, 19}, {7, 19}, {7, 13}},
        {{31, 14}, {31, 24}},
        {{55, 14}, {55, 24}},
        {{31, 38}, {31, 43}, {79, 43}, {79, 38}},
        {{55, 38}, {55, 43}},
        {{55, 19}, {79, 19}, {79, 24}},
        {{55, 0}, {55, -5}, {66, -5}, {66, 19}, {55, 19}, {55, 14}},
    };
    EXPECT_TRUE(picture.lines == lines);
}

TEST(Dx7AlgorithmPicture, Algorithm32HasSixBoxesOnOneBus) {
    const Dx7AlgorithmPicture picture = PictureOf(32);
    ExpectBoxes(picture, {{0, 24}, {24, 24}, {48, 24}, {72, 24}, {96, 24}, {120, 24}});
    const std::vector<Points> lines = {
        {{7, 38}, {7, 43}, {127, 43}, {127, 38}},
        {{31, 38}, {31, 43}},
        {{55, 38}, {55, 43}},
        {{79, 38}, {79, 43}},
        {{103, 38}, {103, 43}},
        {{127, 24}, {127, 19}, {138, 19}, {138, 43}, {127, 43}, {127, 38}},
    };
    EXPECT_TRUE(picture.lines == lines);
}

TEST(Dx7AlgorithmPicture, WithAnOddPitchACrossingLineStepsAsideByOnePixel) {
    const Dx7AlgorithmPicture picture = MakeDx7AlgorithmPicture(6, MakeDx7AlgorithmUnits(40, 2));
    ExpectBoxes(picture, {{0, 19}, {0, 0}, {19, 19}, {19, 0}, {38, 19}, {38, 0}});
    const Points crossing = {{24, 19}, {24, 14}, {33, 14}, {34, 33}, {43, 33}, {43, 29}};
    ASSERT_EQ(picture.lines.size(), 6u);
    EXPECT_TRUE(picture.lines.back() == crossing);
}

} // namespace
} // namespace tonewright
