// Tests of the geometry of the 32 algorithms: its units at several heights, and every point of
// every picture against numbers that were worked out apart from the program.
#include "drivers/dx7/algorithms.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

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

// A picture as a list of places: "x,y" of each box's top left corner, and of the points that each
// line passes through.
struct WrittenPicture {
    const char *boxes;
    std::vector<const char *> lines;
};

// All pictures at a height of 122 with lines of 2. There H is 20, P 68, T 16, Q 14, G 15, R 12 and
// U 21, so that no length can be taken for another. The numbers were worked out apart from the
// program.
//
// clang-format off
const WrittenPicture PicturesOfHeight122[] = {
    // 1
    {"20,0 108,0 20,68 108,68 196,68 284,68",
     {"20,20 4,20 4,88 20,88",
      "60,20 108,20",
      "60,88 108,88",
      "148,88 196,88",
      "236,88 284,88",
      "324,88 340,88 340,124 268,124 268,88"}},
    // 2
    {"20,0 108,0 20,68 108,68 196,68 284,68",
     {"20,20 4,20 4,88 20,88",
      "60,20 108,20",
      "60,88 108,88",
      "148,88 196,88",
      "236,88 284,88",
      "148,20 164,20 164,56 92,56 92,20"}},
    // 3
    {"20,0 108,0 196,0 20,68 108,68 196,68",
     {"20,20 4,20 4,88 20,88",
      "60,20 108,20",
      "148,20 196,20",
      "60,88 108,88",
      "148,88 196,88",
      "236,88 252,88 252,124 180,124 180,88"}},
    // 4
    {"20,0 108,0 196,0 20,68 108,68 196,68",
     {"20,20 4,20 4,88 20,88",
      "60,20 108,20",
      "148,20 196,20",
      "60,88 108,88",
      "148,88 196,88",
      "236,88 252,88 252,52 4,52 4,88"}},
    // 5
    {"0,68 0,0 68,68 68,0 136,68 136,0",
     {"20,108 20,122 156,122 156,108",
      "20,40 20,68",
      "88,40 88,68",
      "156,40 156,68",
      "88,108 88,122",
      "156,0 156,-16 188,-16 188,54 156,54 156,40"}},
    // 6
    {"0,68 0,0 68,68 68,0 136,68 136,0",
     {"20,108 20,122 156,122 156,108",
      "20,40 20,68",
      "88,40 88,68",
      "156,40 156,68",
      "88,108 88,122",
      "156,108 156,122 192,122 192,-16 156,-16 156,0"}},
    // 7
    {"0,68 0,0 68,68 68,0 136,68 136,0",
     {"20,40 20,68",
      "88,40 88,68",
      "156,40 156,68",
      "20,108 20,122 88,122 88,108",
      "156,0 156,-16 188,-16 188,54 156,54 156,40",
      "88,68 88,53 122,53 122,122 156,122 156,108"}},
    // 8
    {"0,68 0,0 68,68 68,0 136,68 136,0",
     {"20,40 20,68",
      "88,40 88,68",
      "156,40 156,68",
      "20,108 20,122 88,122 88,108",
      "88,0 88,-16 56,-16 56,54 88,54",
      "88,68 88,53 122,53 122,122 156,122 156,108"}},
    // 9
    {"0,68 0,0 68,68 68,0 136,68 136,0",
     {"20,40 20,68",
      "88,40 88,68",
      "156,40 156,68",
      "20,108 20,122 88,122 88,108",
      "20,0 20,-16 52,-16 52,54 20,54 20,40",
      "88,68 88,53 122,53 122,122 156,122 156,108"}},
    // 10
    {"20,0 108,0 196,0 20,68 196,68 108,68",
     {"60,20 108,20",
      "148,20 196,20",
      "60,88 108,88",
      "60,88 81,88 81,129 175,129 175,88 196,88",
      "20,20 4,20 4,88 20,88",
      "216,0 216,-16 248,-16 248,54 216,54 216,40"}},
    // 11
    {"20,0 108,0 196,0 20,68 196,68 108,68",
     {"60,20 108,20",
      "148,20 196,20",
      "60,88 108,88",
      "60,88 81,88 81,129 175,129 175,88 196,88",
      "20,20 4,20 4,88 20,88",
      "128,68 128,52 160,52 160,122 128,122 128,108"}},
    // 12
    {"0,68 0,0 136,68 68,0 136,0 204,0",
     {"20,40 20,68",
      "156,40 156,68",
      "20,108 20,122 156,122 156,108",
      "88,40 88,54 224,54 224,40",
      "20,0 20,-16 52,-16 52,54 20,54 20,40"}},
    // 13
    {"0,68 0,0 136,68 68,0 136,0 204,0",
     {"20,40 20,68",
      "156,40 156,68",
      "20,108 20,122 156,122 156,108",
      "88,40 88,54 224,54 224,40",
      "224,0 224,-16 256,-16 256,54 224,54 224,40"}},
    // 14
    {"0,68 0,0 68,68 68,0 136,68 136,0",
     {"20,40 20,68",
      "88,40 88,68",
      "156,40 156,68",
      "88,53 156,53",
      "20,108 20,122 88,122 88,108",
      "156,0 156,-16 188,-16 188,54 156,54 156,40"}},
    // 15
    {"0,68 0,0 68,68 68,0 136,68 136,0",
     {"20,40 20,68",
      "88,40 88,68",
      "156,40 156,68",
      "88,0 88,-15 122,-15 122,54 156,54 156,40",
      "20,108 20,122 88,122 88,108",
      "20,0 20,-16 52,-16 52,54 20,54 20,40"}},
    // 16
    {"0,68 68,68 136,68 136,0 204,68 204,0",
     {"20,68 20,53 54,53 54,122 88,122 88,108",
      "88,108 88,122 224,122 224,108",
      "156,108 156,122",
      "156,40 156,68",
      "224,40 224,68",
      "224,0 224,-16 256,-16 256,54 224,54 224,40"}},
    // 17
    {"0,68 68,68 136,68 136,0 204,68 204,0",
     {"20,68 20,53 54,53 54,122 88,122 88,108",
      "88,108 88,122 224,122 224,108",
      "156,108 156,122",
      "156,40 156,68",
      "224,40 224,68",
      "88,68 88,52 120,52 120,122 88,122 88,108"}},
    // 18
    {"0,68 68,68 136,68 204,68 272,68 272,0",
     {"20,68 20,53 54,53 54,122 88,122 88,108",
      "88,108 88,122 224,122 224,108",
      "156,108 156,122",
      "224,68 224,53 258,53 258,122 292,122 292,108",
      "292,40 292,68",
      "156,68 156,52 188,52 188,122 156,122 156,108"}},
    // 19
    {"68,68 68,0 0,0 136,68 204,68 136,0",
     {"88,0 88,-16 54,-16 54,54 20,54 20,39",
      "88,40 88,68",
      "156,40 156,68",
      "88,108 88,122 224,122 224,108",
      "156,108 156,122",
      "156,53 224,53 224,68",
      "156,0 156,-16 188,-16 188,54 156,54 156,40"}},
    // 20
    {"0,68 68,68 0,0 204,68 136,0 204,0",
     {"20,40 20,68",
      "224,40 224,68",
      "20,108 20,122 224,122 224,108",
      "88,108 88,122",
      "20,53 88,53 88,68",
      "156,40 156,54 224,54 224,40",
      "20,0 20,-16 52,-16 52,54 20,54 20,40"}},
    // 21
    {"0,68 68,68 0,0 136,68 204,68 136,0",
     {"20,40 20,68",
      "156,40 156,68",
      "20,108 20,122 224,122 224,108",
      "88,108 88,122",
      "156,108 156,122",
      "20,53 88,53 88,68",
      "156,53 224,53 224,68",
      "20,0 20,-16 52,-16 52,54 20,54 20,40"}},
    // 22
    {"0,68 0,0 68,68 136,68 204,68 136,0",
     {"20,108 20,122 224,122 224,108",
      "20,40 20,68",
      "156,40 156,68",
      "88,108 88,122",
      "156,108 156,122",
      "88,68 88,53 224,53 224,68",
      "156,0 156,-16 188,-16 188,54 156,54 156,40"}},
    // 23
    {"0,68 68,68 68,0 136,68 204,68 136,0",
     {"20,108 20,122 224,122 224,108",
      "88,40 88,68",
      "156,40 156,68",
      "88,108 88,122",
      "156,108 156,122",
      "156,68 156,53 224,53 224,68",
      "156,0 156,-16 188,-16 188,54 156,54 156,40"}},
    // 24
    {"0,68 68,68 136,68 204,68 272,68 204,0",
     {"20,108 20,122 292,122 292,108",
      "224,40 224,68",
      "88,108 88,122",
      "156,108 156,122",
      "224,108 224,122",
      "156,68 156,53 292,53 292,68",
      "224,0 224,-16 256,-16 256,54 224,54 224,40"}},
    // 25
    {"0,68 68,68 136,68 204,68 272,68 204,0",
     {"20,108 20,122 292,122 292,108",
      "224,40 224,68",
      "88,108 88,122",
      "156,108 156,122",
      "224,108 224,122",
      "224,68 224,53 292,53 292,68",
      "224,0 224,-16 256,-16 256,54 224,54 224,40"}},
    // 26
    {"0,68 68,68 68,0 204,68 136,0 204,0",
     {"88,40 88,68",
      "224,40 224,68",
      "20,108 20,122 224,122 224,108",
      "88,108 88,122",
      "156,40 156,54 224,54 224,40",
      "224,0 224,-16 256,-16 256,54 224,54 224,40"}},
    // 27
    {"0,68 68,68 68,0 204,68 136,0 204,0",
     {"88,40 88,68",
      "224,40 224,68",
      "20,108 20,122 224,122 224,108",
      "88,108 88,122",
      "156,40 156,54 224,54 224,40",
      "88,0 88,-16 120,-16 120,54 88,54 88,40"}},
    // 28
    {"0,68 0,0 68,68 68,0 136,0 136,68",
     {"20,40 20,68",
      "88,40 88,68",
      "20,108 20,122 156,122 156,108",
      "88,108 88,122",
      "88,0 88,-15 122,-15 122,54 156,54 156,40",
      "156,0 156,-16 188,-16 188,54 156,54 156,40"}},
    // 29
    {"0,68 68,68 136,68 136,0 204,68 204,0",
     {"20,108 20,122 224,122 224,108",
      "156,40 156,68",
      "224,40 224,68",
      "88,108 88,122",
      "156,108 156,122",
      "224,0 224,-16 256,-16 256,54 224,54 224,40"}},
    // 30
    {"0,68 68,68 136,68 136,0 204,0 204,68",
     {"156,40 156,68",
      "20,108 20,122 224,122 224,108",
      "88,108 88,122",
      "156,108 156,122",
      "156,0 156,-15 190,-15 190,54 224,54 224,40",
      "224,0 224,-16 256,-16 256,54 224,54 224,40"}},
    // 31
    {"0,68 68,68 136,68 204,68 272,68 272,0",
     {"20,108 20,122 292,122 292,108",
      "292,40 292,68",
      "88,108 88,122",
      "156,108 156,122",
      "224,108 224,122",
      "292,0 292,-16 324,-16 324,54 292,54 292,40"}},
    // 32
    {"0,68 68,68 136,68 204,68 272,68 340,68",
     {"20,108 20,122 360,122 360,108",
      "88,108 88,122",
      "156,108 156,122",
      "224,108 224,122",
      "292,108 292,122",
      "360,68 360,52 392,52 392,122 360,122 360,108"}},
};
// clang-format on
static_assert(std::size(PicturesOfHeight122) == Dx7AlgorithmCount);

std::string TextOf(const Points &points) {
    std::string text;
    for (const PicturePoint &point : points) {
        text += (text.empty() ? "" : " ") + std::to_string(point.x) + "," + std::to_string(point.y);
    }
    return text;
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

TEST(Dx7AlgorithmUnits, InAPicture122HighEveryLengthDiffers) {
    const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(122, 2);
    EXPECT_EQ(units.innerHeight, 114);
    EXPECT_EQ(units.box, 40); // 41 made even
    EXPECT_EQ(units.half, 20);
    EXPECT_EQ(units.pitch, 68);
    EXPECT_EQ(units.stub, 16);
    EXPECT_EQ(units.font, 32);
    EXPECT_EQ(units.gap, 14);
    EXPECT_EQ(units.loop, 12);
    EXPECT_EQ(units.oddGap, 15);
    EXPECT_EQ(units.bypass, 21);
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

TEST(Dx7AlgorithmPicture, EveryPointOfEveryAlgorithmLiesWhereItWasWorkedOut) {
    for (int number = 1; number <= Dx7AlgorithmCount; ++number) {
        SCOPED_TRACE("algorithm " + std::to_string(number));
        const Dx7AlgorithmPicture picture =
            MakeDx7AlgorithmPicture(number - 1, MakeDx7AlgorithmUnits(122, 2));
        const WrittenPicture &written = PicturesOfHeight122[number - 1];
        Points corners;
        for (const Dx7AlgorithmBox &box : picture.boxes) {
            corners.push_back(box.corner);
            EXPECT_EQ(box.number, static_cast<int>(corners.size()));
        }
        EXPECT_EQ(TextOf(corners), written.boxes);
        ASSERT_EQ(picture.lines.size(), written.lines.size());
        for (std::size_t i = 0; i < written.lines.size(); ++i) {
            EXPECT_EQ(TextOf(picture.lines[i]), written.lines[i]) << "line " << i + 1;
        }
    }
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
