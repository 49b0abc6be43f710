// The engine's algorithms against the pictures of them that the editors show: what a picture says
// of carriers, modulations and feedback is read from its boxes and lines alone.
#include "drivers/dx7/algorithms.h"
#include "drivers/reface_dx/algorithms.h"
#include "synth/algorithms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <set>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

enum class Side { Top, Bottom, Left, Right };

struct Box {
    int number = 0;
    Rectangle area;
    bool isModulator = false; // drawn as one; a DX7's boxes are all alike
};
using Line = std::vector<PicturePoint>;
struct Picture {
    std::vector<Box> boxes;
    std::vector<Line> lines;
};

// A line's end at the middle of a side of a box.
struct Terminal {
    int box = 0; // its number
    Side side = Side::Top;
    auto operator<=>(const Terminal &) const = default;
};
using Terminals = std::set<Terminal>;
using Numbers = std::set<int>;
using Pairs = std::set<std::pair<int, int>>; // from, to

// What a picture says.
struct Reading {
    Numbers carriers; // no modulation leaves them
    Pairs modulations;
    Pairs feedback;
    Numbers joined; // to the sum, by a line between their outer sides

    // Several operators that are heard are joined to a sum; one alone needs no line.
    bool IsClear() const { return carriers.size() == 1 ? joined.empty() : carriers == joined; }
};

PicturePoint MiddleOf(const Rectangle &area, Side side) {
    const int x = area.left + (area.right - area.left) / 2;
    const int y = area.top + (area.bottom - area.top) / 2;
    switch (side) {
    case Side::Top:
        return {x, area.top};
    case Side::Bottom:
        return {x, area.bottom};
    case Side::Left:
        return {area.left, y};
    case Side::Right:
        return {area.right, y};
    }
    return {};
}

// Which side of `c` the way from `a` to `b` leaves; 0 when it hits it.
long Turn(PicturePoint a, PicturePoint b, PicturePoint c) {
    return static_cast<long>(b.x - a.x) * (c.y - a.y) - static_cast<long>(b.y - a.y) * (c.x - a.x);
}

bool IsBetween(PicturePoint a, PicturePoint b, PicturePoint c) {
    return Turn(a, b, c) == 0 && std::min(a.x, b.x) <= c.x && c.x <= std::max(a.x, b.x) &&
           std::min(a.y, b.y) <= c.y && c.y <= std::max(a.y, b.y);
}

bool Meet(PicturePoint a, PicturePoint b, PicturePoint c, PicturePoint d) {
    if (IsBetween(a, b, c) || IsBetween(a, b, d) || IsBetween(c, d, a) || IsBetween(c, d, b)) {
        return true;
    }
    return (Turn(a, b, c) > 0) != (Turn(a, b, d) > 0) && (Turn(c, d, a) > 0) != (Turn(c, d, b) > 0);
}

// Lines that touch or cross are one.
bool Meet(const Line &first, const Line &second) {
    for (std::size_t i = 0; i + 1 < first.size(); ++i) {
        for (std::size_t j = 0; j + 1 < second.size(); ++j) {
            if (Meet(first[i], first[i + 1], second[j], second[j + 1])) {
                return true;
            }
        }
    }
    return false;
}

// The side that a point lies at: a pixel beside its middle is near enough, for boxes of odd width.
Terminals TerminalsAt(PicturePoint point, const Picture &picture) {
    Terminals terminals;
    for (const Box &box : picture.boxes) {
        for (const Side side : {Side::Top, Side::Bottom, Side::Left, Side::Right}) {
            const PicturePoint middle = MiddleOf(box.area, side);
            if (std::abs(middle.x - point.x) <= 1 && std::abs(middle.y - point.y) <= 1) {
                terminals.insert({box.number, side});
            }
        }
    }
    return terminals;
}

Terminals EndsOf(const Line &line, const Picture &picture) {
    Terminals terminals = TerminalsAt(line.front(), picture);
    terminals.merge(TerminalsAt(line.back(), picture));
    return terminals;
}

// Where an end of a line leads: to the side of a box, or to another line's first or last straight
// part and so to the box there.
Terminals ReachedFrom(PicturePoint end, const Line &line, const Picture &picture) {
    Terminals reached = TerminalsAt(end, picture);
    if (!reached.empty()) {
        return reached;
    }
    for (const Line &other : picture.lines) {
        if (&other == &line) {
            continue;
        }
        if (IsBetween(other[0], other[1], end)) {
            reached.merge(TerminalsAt(other.front(), picture));
        }
        if (IsBetween(other[other.size() - 2], other.back(), end)) {
            reached.merge(TerminalsAt(other.back(), picture));
        }
    }
    return reached;
}

// The ends of all lines that are one, for each such group.
std::vector<Terminals> Nets(const std::vector<const Line *> &lines, const Picture &picture) {
    std::vector<Terminals> nets;
    std::vector<bool> isTaken(lines.size());
    std::function<void(std::size_t)> take = [&](std::size_t i) {
        isTaken[i] = true;
        nets.back().merge(EndsOf(*lines[i], picture));
        for (std::size_t j = 0; j < lines.size(); ++j) {
            if (!isTaken[j] && Meet(*lines[i], *lines[j])) {
                take(j);
            }
        }
    };
    for (std::size_t i = 0; i < lines.size(); ++i) {
        if (!isTaken[i]) {
            nets.emplace_back();
            take(i);
        }
    }
    return nets;
}

// The operators whose output a net takes, and those that it goes to; none when it is the sum.
struct Flow {
    Numbers from, to;
};
using FlowOf = std::function<Flow(const Terminals &net)>;

bool IsOutput(Side side) {
    return side == Side::Bottom || side == Side::Left;
}

// A DX7's boxes give on their lower or left side and take on the others.
Flow FlowBySides(const Terminals &net) {
    Flow flow;
    for (const Terminal &terminal : net) {
        (IsOutput(terminal.side) ? flow.from : flow.to).insert(terminal.box);
    }
    return flow;
}

// A reface DX's boxes stand in a row, and what is heard on the left. Lines above and below them
// come from the last box that they join, unless that is a carrier: then they are the sum.
Flow FlowToTheLeft(const Terminals &net, const Picture &picture) {
    if (std::ranges::any_of(net, [](const Terminal &terminal) {
            return terminal.side == Side::Left || terminal.side == Side::Right;
        })) {
        return FlowBySides(net);
    }
    Flow flow;
    for (const Terminal &terminal : net) {
        flow.to.insert(terminal.box);
    }
    const int last = *flow.to.rbegin();
    if (!picture.boxes[last - 1].isModulator) {
        return {.from = flow.to, .to = {}};
    }
    flow.from = {last};
    flow.to.erase(last);
    return flow;
}

Pairs ModulationsOf(const std::vector<const Line *> &lines, const Picture &picture,
                    const FlowOf &flowOf) {
    Pairs modulations;
    for (const Terminals &net : Nets(lines, picture)) {
        const Flow flow = flowOf(net);
        for (const int from : flow.from) {
            for (const int to : flow.to) {
                modulations.emplace(from, to);
            }
        }
    }
    return modulations;
}

bool LeadsTo(int from, int to, const Pairs &modulations) {
    return from == to || std::ranges::any_of(modulations, [&](const auto &pair) {
               return pair.first == from && pair.second < from &&
                      LeadsTo(pair.second, to, modulations);
           });
}

// The feedback that a line is: around boxes, from one side of a box to another one of it, or from
// the last operator of a chain back to its first one.
Pairs FeedbackOf(const Line &line, const Picture &picture, const FlowOf &flowOf) {
    if (line.size() <= 2) {
        return {};
    }
    const Terminals begin = ReachedFrom(line.front(), line, picture);
    const Terminals end = ReachedFrom(line.back(), line, picture);
    std::vector<const Line *> others;
    for (const Line &other : picture.lines) {
        if (&other != &line) {
            others.push_back(&other);
        }
    }
    Pairs feedback;
    for (const Terminal &a : begin) {
        for (const Terminal &b : end) {
            if (a.box == b.box) {
                return {{a.box, a.box}};
            }
            if (IsOutput(a.side) == IsOutput(b.side)) {
                continue;
            }
            const int from = IsOutput(a.side) ? a.box : b.box;
            const int to = IsOutput(a.side) ? b.box : a.box;
            if (LeadsTo(to, from, ModulationsOf(others, picture, flowOf))) {
                feedback.emplace(from, to);
            }
        }
    }
    return feedback;
}

Reading Read(const Picture &picture, const FlowOf &flowOf) {
    Reading reading;
    std::vector<const Line *> lines;
    for (const Line &line : picture.lines) {
        Pairs feedback = FeedbackOf(line, picture, flowOf);
        if (feedback.empty()) {
            lines.push_back(&line);
        }
        reading.feedback.merge(feedback);
    }
    reading.modulations = ModulationsOf(lines, picture, flowOf);
    for (const Terminals &net : Nets(lines, picture)) {
        Flow flow = flowOf(net);
        if (flow.to.empty()) {
            reading.joined.merge(flow.from);
        }
    }
    for (const Box &box : picture.boxes) {
        if (std::ranges::none_of(reading.modulations,
                                 [&](const auto &pair) { return pair.first == box.number; })) {
            reading.carriers.insert(box.number);
        }
    }
    return reading;
}

Reading ReadDx7(int algorithm, int height, int lineWeight) {
    const Dx7AlgorithmUnits units = MakeDx7AlgorithmUnits(height, lineWeight);
    const Dx7AlgorithmPicture drawn = MakeDx7AlgorithmPicture(algorithm, units);
    Picture picture{.boxes = {}, .lines = drawn.lines};
    for (const Dx7AlgorithmBox &box : drawn.boxes) {
        const auto [x, y] = box.corner;
        picture.boxes.push_back(
            {.number = box.number,
             .area = {.left = x, .top = y, .right = x + units.box, .bottom = y + units.box}});
    }
    return Read(picture, FlowBySides);
}

Picture RefacePicture(int algorithm, int width, int height) {
    const RefaceAlgorithmPicture drawn =
        MakeRefaceAlgorithmPicture(algorithm, MakeRefaceAlgorithmUnits(width, height, true));
    Picture picture{.boxes = {}, .lines = drawn.lines};
    for (const RefaceAlgorithmBox &box : drawn.boxes) {
        picture.boxes.push_back(
            {.number = box.number, .area = box.area, .isModulator = !box.isCarrier});
    }
    return picture;
}

Reading ReadReface(const Picture &picture) {
    return Read(picture, [&](const Terminals &net) { return FlowToTheLeft(net, picture); });
}

Numbers CarriersOf(const Algorithm &algorithm) {
    Numbers carriers;
    for (int i = 0; i < MaxOperators; ++i) {
        if (algorithm.carriers & (1 << i)) {
            carriers.insert(i + 1);
        }
    }
    return carriers;
}

Pairs ModulationsOf(const Algorithm &algorithm) {
    Pairs modulations;
    for (int to = 0; to < MaxOperators; ++to) {
        for (int from = 0; from < MaxOperators; ++from) {
            if (algorithm.modulators[to] & (1 << from)) {
                modulations.emplace(from + 1, to + 1);
            }
        }
    }
    return modulations;
}

Pairs FeedbackOf(const Algorithm &algorithm) {
    return {{algorithm.feedbackFrom + 1, algorithm.feedbackTo + 1}};
}

struct Size {
    int height, lineWeight;
};

TEST(AlgorithmPictures, OfADx7ShowWhatTheEnginePlays) {
    // Of a list item, of the editor, and one in which no length can be taken for another.
    for (const auto &[height, lineWeight] : {Size{32, 1}, Size{48, 2}, Size{122, 2}}) {
        Numbers unclear;
        for (int number = 0; number < Dx7AlgorithmCount; ++number) {
            SCOPED_TRACE(testing::Message()
                         << "algorithm " << number + 1 << ", " << height << " pixels high");
            const Algorithm &algorithm = SixOperatorAlgorithm(number);
            const Reading reading = ReadDx7(number, height, lineWeight);
            EXPECT_EQ(reading.feedback, FeedbackOf(algorithm));
            if (!reading.IsClear()) {
                unclear.insert(number + 1);
                EXPECT_EQ(reading.joined, CarriersOf(algorithm));
                continue;
            }
            EXPECT_EQ(reading.carriers, CarriersOf(algorithm));
            EXPECT_EQ(reading.modulations, ModulationsOf(algorithm));
        }
        // In both box 5 stands below box 6, is joined to it by its upper side, and nothing leaves
        // it: its output cannot be told from an input.
        EXPECT_EQ(unclear, (Numbers{14, 15})) << height;
    }
}

TEST(AlgorithmPictures, OfARefaceDxShowWhatTheEnginePlays) {
    for (const auto &[width, height] : {std::pair{488, 32}, std::pair{800, 200}}) {
        std::vector<std::pair<int, int>> drawnOtherwise; // algorithm, operator
        for (int number = 0; number < RefaceAlgorithmCount; ++number) {
            SCOPED_TRACE(testing::Message()
                         << "algorithm " << number + 1 << ", " << height << " pixels high");
            const Algorithm &algorithm = FourOperatorAlgorithm(number);
            const Picture picture = RefacePicture(number, width, height);
            const Reading reading = ReadReface(picture);
            EXPECT_TRUE(reading.IsClear());
            EXPECT_EQ(reading.feedback, Pairs{});
            EXPECT_EQ(reading.carriers, CarriersOf(algorithm));
            EXPECT_EQ(reading.modulations, ModulationsOf(algorithm));
            for (const Box &box : picture.boxes) {
                if (box.isModulator == reading.carriers.contains(box.number)) {
                    drawnOtherwise.emplace_back(number + 1, box.number);
                }
            }
        }
        // A circle that the line of the carriers joins.
        EXPECT_EQ(drawnOtherwise, (std::vector<std::pair<int, int>>{{9, 2}})) << height;
    }
}

} // namespace
} // namespace tonewright
