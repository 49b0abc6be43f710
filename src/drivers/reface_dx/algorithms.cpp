// The table of the twelve algorithms, and the arithmetic that gives it a size.
//
// A row reads as a musician would tell it: what each operator is, which lines join them, and below
// which of them the number stands. In a drawing area 488 by 32 with the number shown, a box is 11
// wide, half a box 5, and the boxes stand 122 apart.
#include "drivers/reface_dx/algorithms.h"

#include <iterator>

namespace tonewright {

namespace {

enum Shape : bool { Modulator, Carrier };

enum class Way {
    None,
    Straight, // from the right of one box to the left of the other
    Over,     // from the top of one box to the top of the other, above the boxes
    Under,    // the same below the boxes
    Drop,     // from the bottom of a box to the line below
    Rise,     // from the top of a box to the line above
};
struct Line {
    Way way = Way::None;
    int from = 0, to = 0; // numbers of boxes
};
constexpr Line Straight(int from, int to) {
    return {Way::Straight, from, to};
}
constexpr Line Over(int from, int to) {
    return {Way::Over, from, to};
}
constexpr Line Under(int from, int to) {
    return {Way::Under, from, to};
}
constexpr Line Drop(int box) {
    return {Way::Drop, box, box};
}
constexpr Line Rise(int box) {
    return {Way::Rise, box, box};
}

struct Algorithm {
    Shape shapes[4];
    Line lines[5];
    int numberFrom, numberTo; // the boxes below which the number stands
};

constexpr Shape C = Carrier;
constexpr Shape M = Modulator;

// Operator 2 of algorithm 9 sounds like a carrier and is drawn as a modulator all the same.
//
// clang-format off
constexpr Algorithm Algorithms[] = {
    /*  1 */ {{C, M, M, M}, {Straight(1, 2), Straight(2, 3), Straight(3, 4)}, 1, 1},
    /*  2 */ {{C, M, M, M}, {Straight(1, 2), Straight(2, 3), Over(2, 4)}, 1, 1},
    /*  3 */ {{C, M, M, M}, {Straight(1, 2), Straight(2, 3), Under(1, 4)}, 1, 1},
    /*  4 */ {{C, M, M, M}, {Straight(1, 2), Straight(3, 4), Under(1, 3), Over(2, 4)}, 1, 1},
    /*  5 */ {{C, M, M, M}, {Straight(1, 2), Under(1, 4), Over(1, 3)}, 1, 1},
    /*  6 */ {{C, C, M, M}, {Straight(2, 3), Straight(3, 4), Under(1, 2)}, 1, 2},
    /*  7 */ {{C, C, M, M}, {Straight(2, 3), Straight(3, 4), Under(1, 2), Over(1, 3)}, 1, 2},
    /*  8 */ {{C, M, C, M}, {Straight(1, 2), Straight(3, 4), Under(1, 3)}, 2, 2},
    /*  9 */ {{C, M, C, M}, {Under(1, 3), Drop(2), Over(1, 4), Rise(2), Rise(3)}, 2, 2},
    /* 10 */ {{C, C, C, M}, {Under(1, 3), Drop(2), Over(2, 4), Rise(3)}, 1, 3},
    /* 11 */ {{C, C, C, M}, {Straight(3, 4), Under(1, 3), Drop(2)}, 1, 3},
    /* 12 */ {{C, C, C, C}, {Under(1, 4), Drop(2), Drop(3)}, 1, 3},
};
// clang-format on
static_assert(std::size(Algorithms) == RefaceAlgorithmCount);

int LeftOf(int box, const RefaceAlgorithmUnits &units) {
    return (box - 1) * units.step;
}

std::vector<PicturePoint> PointsOf(const Line &line, const RefaceAlgorithmUnits &units) {
    const int top = units.half;
    const int bottom = top + units.box;
    const int from = LeftOf(line.from, units) + units.half;
    const int to = LeftOf(line.to, units) + units.half;
    const int above = top - units.half;
    const int below = bottom + units.half;
    switch (line.way) {
    case Way::None:
        break;
    case Way::Straight:
        return {{LeftOf(line.from, units) + units.box, top + units.half},
                {LeftOf(line.to, units), top + units.half}};
    case Way::Over:
        return {{from, top}, {from, above}, {to, above}, {to, top}};
    case Way::Under:
        return {{from, bottom}, {from, below}, {to, below}, {to, bottom}};
    case Way::Drop:
        return {{from, bottom}, {from, below}};
    case Way::Rise:
        return {{from, top}, {from, above}};
    }
    return {};
}

} // namespace

RefaceAlgorithmUnits MakeRefaceAlgorithmUnits(int width, int height, bool withNumber) {
    RefaceAlgorithmUnits units;
    units.box = height * (withNumber ? 37 : 50) / 100;
    units.half = units.box / 2;
    units.step = width * 25 / 100;
    units.font = units.box * 80 / 100;
    return units;
}

RefaceAlgorithmPicture MakeRefaceAlgorithmPicture(int algorithm,
                                                  const RefaceAlgorithmUnits &units) {
    RefaceAlgorithmPicture picture;
    if (algorithm < 0 || algorithm >= RefaceAlgorithmCount) {
        return picture;
    }
    const Algorithm &row = Algorithms[algorithm];
    for (int number = 1; number <= 4; ++number) {
        const int left = LeftOf(number, units);
        picture.boxes.push_back({.number = number,
                                 .isCarrier = row.shapes[number - 1] == Carrier,
                                 .area = {.left = left,
                                          .top = units.half,
                                          .right = left + units.box,
                                          .bottom = units.half + units.box}});
    }
    for (const Line &line : row.lines) {
        if (line.way != Way::None) {
            picture.lines.push_back(PointsOf(line, units));
        }
    }
    const int numberTop = units.half + units.half + units.box;
    picture.number = {.left = LeftOf(row.numberFrom, units),
                      .top = numberTop,
                      .right = LeftOf(row.numberTo, units) + units.box,
                      .bottom = numberTop + units.box};
    return picture;
}

} // namespace tonewright
