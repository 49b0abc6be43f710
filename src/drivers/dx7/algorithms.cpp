// The table of the 32 algorithms, and the arithmetic that gives it a size.
//
// A row reads like the list that a musician would draw from: the boxes with their numbers and top
// left corners, then the lines as the points that they pass through. Distances are sums of a few
// lengths, each of which has one letter here:
//
//   H  half a box, so that 2*H is the side of a box
//   P  pitch from one row or column of boxes to the next
//   T  stub of a line
//   Q  half the gap between the rows
//   G  half the gap as an odd number
//   R  offset of a feedback loop to the right of a box
//   U  offset of the by-pass line below a box (algorithms 10 and 11)
//
// In a picture 48 pixels high with lines of 2, a box is 14 wide, H 7, P 24, T 5, Q 5, G 5, R 4 and
// U 8, so {2*H+P, H} is the point 38 to the right of the origin and 7 below it.
#include "drivers/dx7/algorithms.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>

namespace tonewright {

namespace {

// A length as a sum: how many times each unit is taken, and how many single pixels are added.
struct Length {
    std::int8_t half = 0, pitch = 0, stub = 0, gap = 0, oddGap = 0, loop = 0, bypass = 0;
    std::int8_t pixels = 0;

    constexpr Length() = default;
    constexpr Length(int pixelCount) : pixels(static_cast<std::int8_t>(pixelCount)) {}
};

constexpr Length Unit(std::int8_t Length::*unit) {
    Length length;
    length.*unit = 1;
    return length;
}

// The sum of `a` and `factor` times `b`.
constexpr Length Sum(const Length &a, int factor, const Length &b) {
    Length sum;
    for (std::int8_t Length::*unit :
         {&Length::half, &Length::pitch, &Length::stub, &Length::gap, &Length::oddGap,
          &Length::loop, &Length::bypass, &Length::pixels}) {
        sum.*unit = static_cast<std::int8_t>(a.*unit + factor * b.*unit);
    }
    return sum;
}

constexpr Length operator*(int factor, const Length &length) {
    return Sum({}, factor, length);
}
constexpr Length operator+(const Length &a, const Length &b) {
    return Sum(a, 1, b);
}
constexpr Length operator-(const Length &a, const Length &b) {
    return Sum(a, -1, b);
}
constexpr Length operator-(const Length &length) {
    return Sum({}, -1, length);
}

struct Point {
    Length x, y;
};

struct Box {
    int number;
    Point corner; // top left
};

// A polyline of up to six points; one without points ends the list of a row.
struct Line {
    std::array<Point, 6> points{};
    std::size_t count = 0;

    constexpr Line() = default;
    constexpr Line(std::initializer_list<Point> list) {
        for (const Point &point : list) {
            points[count++] = point; // a seventh point does not compile
        }
    }
};

struct Algorithm {
    Box boxes[6];
    Line lines[8];
};

constexpr Length H = Unit(&Length::half);
constexpr Length P = Unit(&Length::pitch);
constexpr Length T = Unit(&Length::stub);
constexpr Length Q = Unit(&Length::gap);
constexpr Length G = Unit(&Length::oddGap);
constexpr Length R = Unit(&Length::loop);
constexpr Length U = Unit(&Length::bypass);

// In algorithm 19 the first line ends one pixel inside the edge of its box.
//
// clang-format off
constexpr Algorithm Algorithms[] = {
    // 1
    {{{1, {H, 0}}, {2, {2*H+P, 0}}, {3, {H, P}}, {4, {2*H+P, P}}, {5, {3*H+2*P, P}},
      {6, {4*H+3*P, P}}},
     {{{H, H}, {H-T, H}, {H-T, H+P}, {H, H+P}},
      {{3*H, H}, {2*H+P, H}},
      {{3*H, H+P}, {2*H+P, H+P}},
      {{4*H+P, H+P}, {3*H+2*P, H+P}},
      {{5*H+2*P, H+P}, {4*H+3*P, H+P}},
      {{6*H+3*P, H+P}, {6*H+3*P+T, H+P}, {6*H+3*P+T, 2*H+P+T}, {4*H+3*P-T, 2*H+P+T},
       {4*H+3*P-T, H+P}}}},
    // 2
    {{{1, {H, 0}}, {2, {2*H+P, 0}}, {3, {H, P}}, {4, {2*H+P, P}}, {5, {3*H+2*P, P}},
      {6, {4*H+3*P, P}}},
     {{{H, H}, {H-T, H}, {H-T, H+P}, {H, H+P}},
      {{3*H, H}, {2*H+P, H}},
      {{3*H, H+P}, {2*H+P, H+P}},
      {{4*H+P, H+P}, {3*H+2*P, H+P}},
      {{5*H+2*P, H+P}, {4*H+3*P, H+P}},
      {{4*H+P, H}, {4*H+P+T, H}, {4*H+P+T, 2*H+T}, {2*H+P-T, 2*H+T}, {2*H+P-T, H}}}},
    // 3
    {{{1, {H, 0}}, {2, {2*H+P, 0}}, {3, {3*H+2*P, 0}}, {4, {H, P}}, {5, {2*H+P, P}},
      {6, {3*H+2*P, P}}},
     {{{H, H}, {H-T, H}, {H-T, H+P}, {H, H+P}},
      {{3*H, H}, {2*H+P, H}},
      {{4*H+P, H}, {3*H+2*P, H}},
      {{3*H, H+P}, {2*H+P, H+P}},
      {{4*H+P, H+P}, {3*H+2*P, H+P}},
      {{5*H+2*P, H+P}, {5*H+2*P+T, H+P}, {5*H+2*P+T, 2*H+P+T}, {3*H+2*P-T, 2*H+P+T},
       {3*H+2*P-T, H+P}}}},
    // 4
    {{{1, {H, 0}}, {2, {2*H+P, 0}}, {3, {3*H+2*P, 0}}, {4, {H, P}}, {5, {2*H+P, P}},
      {6, {3*H+2*P, P}}},
     {{{H, H}, {H-T, H}, {H-T, H+P}, {H, H+P}},
      {{3*H, H}, {2*H+P, H}},
      {{4*H+P, H}, {3*H+2*P, H}},
      {{3*H, H+P}, {2*H+P, H+P}},
      {{4*H+P, H+P}, {3*H+2*P, H+P}},
      {{5*H+2*P, H+P}, {5*H+2*P+T, H+P}, {5*H+2*P+T, P-T}, {H-T, P-T}, {H-T, H+P}}}},
    // 5
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}},
      {{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 0}, {H+2*P, -T}, {2*H+2*P+R, -T}, {2*H+2*P+R, 2*H+Q}, {H+2*P, 2*H+Q},
       {H+2*P, 2*H}}}},
    // 6
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}},
      {{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}, {2*H+2*P+T, 2*H+P+Q}, {2*H+2*P+T, -T}, {H+2*P, -T},
       {H+2*P, 0}}}},
    // 7
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H+2*P, 0}, {H+2*P, -T}, {2*H+2*P+R, -T}, {2*H+2*P+R, 2*H+Q}, {H+2*P, 2*H+Q}, {H+2*P, 2*H}},
      {{H+P, P}, {H+P, P-G}, {2*H+P+Q, P-G}, {2*P-Q, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}}}},
    // 8
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H+P, 0}, {H+P, -T}, {P-R, -T}, {P-R, 2*H+Q}, {H+P, 2*H+Q}},
      {{H+P, P}, {H+P, P-G}, {2*H+P+Q, P-G}, {2*P-Q, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}}}},
    // 9
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H, 0}, {H, -T}, {2*H+R, -T}, {2*H+R, 2*H+Q}, {H, 2*H+Q}, {H, 2*H}},
      {{H+P, P}, {H+P, P-G}, {2*H+P+Q, P-G}, {2*P-Q, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}}}},
    // 10
    {{{1, {H, 0}}, {2, {2*H+P, 0}}, {3, {3*H+2*P, 0}}, {4, {H, P}}, {5, {3*H+2*P, P}},
      {6, {2*H+P, P}}},
     {{{3*H, H}, {2*H+P, H}},
      {{4*H+P, H}, {3*H+2*P, H}},
      {{3*H, H+P}, {2*H+P, H+P}},
      {{3*H, H+P}, {3*H+U, H+P}, {3*H+U, 2*H+P+U}, {3*H+2*P-U, 2*H+P+U}, {3*H+2*P-U, H+P},
       {3*H+2*P, H+P}},
      {{H, H}, {H-T, H}, {H-T, H+P}, {H, H+P}},
      {{4*H+2*P, 0}, {4*H+2*P, -T}, {5*H+2*P+R, -T}, {5*H+2*P+R, 2*H+Q}, {4*H+2*P, 2*H+Q},
       {4*H+2*P, 2*H}}}},
    // 11
    {{{1, {H, 0}}, {2, {2*H+P, 0}}, {3, {3*H+2*P, 0}}, {4, {H, P}}, {5, {3*H+2*P, P}},
      {6, {2*H+P, P}}},
     {{{3*H, H}, {2*H+P, H}},
      {{4*H+P, H}, {3*H+2*P, H}},
      {{3*H, H+P}, {2*H+P, H+P}},
      {{3*H, H+P}, {3*H+U, H+P}, {3*H+U, 2*H+P+U}, {3*H+2*P-U, 2*H+P+U}, {3*H+2*P-U, H+P},
       {3*H+2*P, H+P}},
      {{H, H}, {H-T, H}, {H-T, H+P}, {H, H+P}},
      {{3*H+P, P}, {3*H+P, P-T}, {4*H+P+R, P-T}, {4*H+P+R, 2*H+P+Q}, {3*H+P, 2*H+P+Q},
       {3*H+P, 2*H+P}}}},
    // 12
    {{{1, {0, P}}, {2, {0, 0}}, {3, {2*P, P}}, {4, {P, 0}}, {5, {2*P, 0}}, {6, {3*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}},
      {{H+P, 2*H}, {H+P, 2*H+Q}, {H+3*P, 2*H+Q}, {H+3*P, 2*H}},
      {{H, 0}, {H, -T}, {2*H+R, -T}, {2*H+R, 2*H+Q}, {H, 2*H+Q}, {H, 2*H}}}},
    // 13
    {{{1, {0, P}}, {2, {0, 0}}, {3, {2*P, P}}, {4, {P, 0}}, {5, {2*P, 0}}, {6, {3*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}},
      {{H+P, 2*H}, {H+P, 2*H+Q}, {H+3*P, 2*H+Q}, {H+3*P, 2*H}},
      {{H+3*P, 0}, {H+3*P, -T}, {2*H+3*P+R, -T}, {2*H+3*P+R, 2*H+Q}, {H+3*P, 2*H+Q},
       {H+3*P, 2*H}}}},
    // 14
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+P, P-G}, {H+2*P, P-G}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H+2*P, 0}, {H+2*P, -T}, {2*H+2*P+R, -T}, {2*H+2*P+R, 2*H+Q}, {H+2*P, 2*H+Q},
       {H+2*P, 2*H}}}},
    // 15
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+P, 0}, {H+P, -G}, {2*H+P+Q, -G}, {2*P-Q, 2*H+Q}, {H+2*P, 2*H+Q}, {H+2*P, 2*H}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H, 0}, {H, -T}, {2*H+R, -T}, {2*H+R, 2*H+Q}, {H, 2*H+Q}, {H, 2*H}}}},
    // 16
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {2*P, 0}}, {5, {3*P, P}}, {6, {3*P, 0}}},
     {{{H, P}, {H, P-G}, {2*H+Q, P-G}, {P-Q, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H+3*P, 0}, {H+3*P, -T}, {2*H+3*P+R, -T}, {2*H+3*P+R, 2*H+Q}, {H+3*P, 2*H+Q},
       {H+3*P, 2*H}}}},
    // 17
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {2*P, 0}}, {5, {3*P, P}}, {6, {3*P, 0}}},
     {{{H, P}, {H, P-G}, {2*H+Q, P-G}, {P-Q, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H+P, P}, {H+P, P-T}, {2*H+P+R, P-T}, {2*H+P+R, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}}}},
    // 18
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {3*P, P}}, {5, {4*P, P}}, {6, {4*P, 0}}},
     {{{H, P}, {H, P-G}, {2*H+Q, P-G}, {P-Q, 2*H+P+Q}, {H+P, 2*H+P+Q}, {H+P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+3*P, P}, {H+3*P, P-G}, {2*H+3*P+Q, P-G}, {4*P-Q, 2*H+P+Q}, {H+4*P, 2*H+P+Q},
       {H+4*P, 2*H+P}},
      {{H+4*P, 2*H}, {H+4*P, P}},
      {{H+2*P, P}, {H+2*P, P-T}, {2*H+2*P+R, P-T}, {2*H+2*P+R, 2*H+P+Q}, {H+2*P, 2*H+P+Q},
       {H+2*P, 2*H+P}}}},
    // 19
    {{{1, {P, P}}, {2, {P, 0}}, {3, {0, 0}}, {4, {2*P, P}}, {5, {3*P, P}}, {6, {2*P, 0}}},
     {{{H+P, 0}, {H+P, -T}, {P-Q, -T}, {P-Q, 2*H+Q}, {H, 2*H+Q}, {H, 2*H-1}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+2*P, P-G}, {H+3*P, P-G}, {H+3*P, P}},
      {{H+2*P, 0}, {H+2*P, -T}, {2*H+2*P+R, -T}, {2*H+2*P+R, 2*H+Q}, {H+2*P, 2*H+Q},
       {H+2*P, 2*H}}}},
    // 20
    {{{1, {0, P}}, {2, {P, P}}, {3, {0, 0}}, {4, {3*P, P}}, {5, {2*P, 0}}, {6, {3*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H, P-G}, {H+P, P-G}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, 2*H+Q}, {H+3*P, 2*H+Q}, {H+3*P, 2*H}},
      {{H, 0}, {H, -T}, {2*H+R, -T}, {2*H+R, 2*H+Q}, {H, 2*H+Q}, {H, 2*H}}}},
    // 21
    {{{1, {0, P}}, {2, {P, P}}, {3, {0, 0}}, {4, {2*P, P}}, {5, {3*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H}, {H, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H, P-G}, {H+P, P-G}, {H+P, P}},
      {{H+2*P, P-G}, {H+3*P, P-G}, {H+3*P, P}},
      {{H, 0}, {H, -T}, {2*H+R, -T}, {2*H+R, 2*H+Q}, {H, 2*H+Q}, {H, 2*H}}}},
    // 22
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {2*P, P}}, {5, {3*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H, 2*H}, {H, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+P, P}, {H+P, P-G}, {H+3*P, P-G}, {H+3*P, P}},
      {{H+2*P, 0}, {H+2*P, -T}, {2*H+2*P+R, -T}, {2*H+2*P+R, 2*H+Q}, {H+2*P, 2*H+Q},
       {H+2*P, 2*H}}}},
    // 23
    {{{1, {0, P}}, {2, {P, P}}, {3, {P, 0}}, {4, {2*P, P}}, {5, {3*P, P}}, {6, {2*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+2*P, P}, {H+2*P, P-G}, {H+3*P, P-G}, {H+3*P, P}},
      {{H+2*P, 0}, {H+2*P, -T}, {2*H+2*P+R, -T}, {2*H+2*P+R, 2*H+Q}, {H+2*P, 2*H+Q},
       {H+2*P, 2*H}}}},
    // 24
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {3*P, P}}, {5, {4*P, P}}, {6, {3*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+4*P, 2*H+P+Q}, {H+4*P, 2*H+P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+3*P, 2*H+P}, {H+3*P, 2*H+P+Q}},
      {{H+2*P, P}, {H+2*P, P-G}, {H+4*P, P-G}, {H+4*P, P}},
      {{H+3*P, 0}, {H+3*P, -T}, {2*H+3*P+R, -T}, {2*H+3*P+R, 2*H+Q}, {H+3*P, 2*H+Q},
       {H+3*P, 2*H}}}},
    // 25
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {3*P, P}}, {5, {4*P, P}}, {6, {3*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+4*P, 2*H+P+Q}, {H+4*P, 2*H+P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+3*P, 2*H+P}, {H+3*P, 2*H+P+Q}},
      {{H+3*P, P}, {H+3*P, P-G}, {H+4*P, P-G}, {H+4*P, P}},
      {{H+3*P, 0}, {H+3*P, -T}, {2*H+3*P+R, -T}, {2*H+3*P+R, 2*H+Q}, {H+3*P, 2*H+Q},
       {H+3*P, 2*H}}}},
    // 26
    {{{1, {0, P}}, {2, {P, P}}, {3, {P, 0}}, {4, {3*P, P}}, {5, {2*P, 0}}, {6, {3*P, 0}}},
     {{{H+P, 2*H}, {H+P, P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H}, {H+2*P, 2*H+Q}, {H+3*P, 2*H+Q}, {H+3*P, 2*H}},
      {{H+3*P, 0}, {H+3*P, -T}, {2*H+3*P+R, -T}, {2*H+3*P+R, 2*H+Q}, {H+3*P, 2*H+Q},
       {H+3*P, 2*H}}}},
    // 27
    {{{1, {0, P}}, {2, {P, P}}, {3, {P, 0}}, {4, {3*P, P}}, {5, {2*P, 0}}, {6, {3*P, 0}}},
     {{{H+P, 2*H}, {H+P, P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H}, {H+2*P, 2*H+Q}, {H+3*P, 2*H+Q}, {H+3*P, 2*H}},
      {{H+P, 0}, {H+P, -T}, {2*H+P+R, -T}, {2*H+P+R, 2*H+Q}, {H+P, 2*H+Q}, {H+P, 2*H}}}},
    // 28
    {{{1, {0, P}}, {2, {0, 0}}, {3, {P, P}}, {4, {P, 0}}, {5, {2*P, 0}}, {6, {2*P, P}}},
     {{{H, 2*H}, {H, P}},
      {{H+P, 2*H}, {H+P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+2*P, 2*H+P+Q}, {H+2*P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+P, 0}, {H+P, -G}, {2*H+P+Q, -G}, {2*P-Q, 2*H+Q}, {H+2*P, 2*H+Q}, {H+2*P, 2*H}},
      {{H+2*P, 0}, {H+2*P, -T}, {2*H+2*P+R, -T}, {2*H+2*P+R, 2*H+Q}, {H+2*P, 2*H+Q},
       {H+2*P, 2*H}}}},
    // 29
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {2*P, 0}}, {5, {3*P, P}}, {6, {3*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+2*P, 2*H}, {H+2*P, P}},
      {{H+3*P, 2*H}, {H+3*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+3*P, 0}, {H+3*P, -T}, {2*H+3*P+R, -T}, {2*H+3*P+R, 2*H+Q}, {H+3*P, 2*H+Q},
       {H+3*P, 2*H}}}},
    // 30
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {2*P, 0}}, {5, {3*P, 0}}, {6, {3*P, P}}},
     {{{H+2*P, 2*H}, {H+2*P, P}},
      {{H, 2*H+P}, {H, 2*H+P+Q}, {H+3*P, 2*H+P+Q}, {H+3*P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+2*P, 0}, {H+2*P, -G}, {2*H+2*P+Q, -G}, {3*P-Q, 2*H+Q}, {H+3*P, 2*H+Q}, {H+3*P, 2*H}},
      {{H+3*P, 0}, {H+3*P, -T}, {2*H+3*P+R, -T}, {2*H+3*P+R, 2*H+Q}, {H+3*P, 2*H+Q},
       {H+3*P, 2*H}}}},
    // 31
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {3*P, P}}, {5, {4*P, P}}, {6, {4*P, 0}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+4*P, 2*H+P+Q}, {H+4*P, 2*H+P}},
      {{H+4*P, 2*H}, {H+4*P, P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+3*P, 2*H+P}, {H+3*P, 2*H+P+Q}},
      {{H+4*P, 0}, {H+4*P, -T}, {2*H+4*P+R, -T}, {2*H+4*P+R, 2*H+Q}, {H+4*P, 2*H+Q},
       {H+4*P, 2*H}}}},
    // 32
    {{{1, {0, P}}, {2, {P, P}}, {3, {2*P, P}}, {4, {3*P, P}}, {5, {4*P, P}}, {6, {5*P, P}}},
     {{{H, 2*H+P}, {H, 2*H+P+Q}, {H+5*P, 2*H+P+Q}, {H+5*P, 2*H+P}},
      {{H+P, 2*H+P}, {H+P, 2*H+P+Q}},
      {{H+2*P, 2*H+P}, {H+2*P, 2*H+P+Q}},
      {{H+3*P, 2*H+P}, {H+3*P, 2*H+P+Q}},
      {{H+4*P, 2*H+P}, {H+4*P, 2*H+P+Q}},
      {{H+5*P, P}, {H+5*P, P-T}, {2*H+5*P+R, P-T}, {2*H+5*P+R, 2*H+P+Q}, {H+5*P, 2*H+P+Q},
       {H+5*P, 2*H+P}}}},
};
// clang-format on
static_assert(std::size(Algorithms) == Dx7AlgorithmCount);

int Measure(const Length &length, const Dx7AlgorithmUnits &units) {
    return length.half * units.half + length.pitch * units.pitch + length.stub * units.stub +
           length.gap * units.gap + length.oddGap * units.oddGap + length.loop * units.loop +
           length.bypass * units.bypass + length.pixels;
}

PicturePoint Place(const Point &point, const Dx7AlgorithmUnits &units) {
    return {.x = Measure(point.x, units), .y = Measure(point.y, units)};
}

} // namespace

Dx7AlgorithmUnits MakeDx7AlgorithmUnits(int height, int lineWeight) {
    Dx7AlgorithmUnits units;
    units.innerHeight = (height - 4 * lineWeight) & ~1;
    units.box = (units.innerHeight * 36 / 100) & ~1;
    units.half = units.box / 2;
    units.pitch = units.innerHeight * 60 / 100;
    units.stub = units.box * 40 / 100;
    units.font = units.box * 80 / 100;
    units.gap = (units.pitch - units.box) / 2;
    units.loop = units.box * 30 / 100;
    units.oddGap = units.gap % 2 != 0 ? units.gap : units.gap + 1;
    units.bypass = units.pitch / 2 - units.box / 3;
    return units;
}

Dx7AlgorithmPicture MakeDx7AlgorithmPicture(int algorithm, const Dx7AlgorithmUnits &units) {
    Dx7AlgorithmPicture picture;
    if (algorithm < 0 || algorithm >= Dx7AlgorithmCount) {
        return picture;
    }
    const Algorithm &row = Algorithms[algorithm];
    for (const Box &box : row.boxes) {
        picture.boxes.push_back({.number = box.number, .corner = Place(box.corner, units)});
    }
    for (const Line &line : row.lines) {
        if (line.count == 0) {
            break;
        }
        std::vector<PicturePoint> &points = picture.lines.emplace_back();
        for (std::size_t i = 0; i < line.count; ++i) {
            points.push_back(Place(line.points[i], units));
        }
    }
    return picture;
}

} // namespace tonewright
