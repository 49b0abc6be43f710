// The 32 algorithms of the DX7 as pictures: boxes and polylines in units that follow from the
// height of the picture. Only geometry; drivers/dx7/view paints it.
#pragma once

#include "common/geometry.h"

#include <vector>

namespace tonewright {

constexpr int Dx7AlgorithmCount = 32;

// The lengths that make up a picture, in pixels; integer arithmetic, cut towards zero.
struct Dx7AlgorithmUnits {
    int innerHeight = 0; // Hs, even
    int box = 0;         // B: side of a box, even
    int half = 0;        // H: half a box
    int pitch = 0;       // P: from one row or column to the next
    int stub = 0;        // T: length of a stub of a line
    int font = 0;        // F: height of the font of the box labels
    int gap = 0;         // Q: half the gap between the rows
    int loop = 0;        // R: offset of a feedback loop to the right of a box
    int oddGap = 0;      // G: half the gap as an odd number
    int bypass = 0;      // U: offset of the by-pass line of algorithms 10 and 11
};
// `height`: of the whole picture; `lineWeight`: of its lines, both in pixels.
Dx7AlgorithmUnits MakeDx7AlgorithmUnits(int height, int lineWeight);

struct Dx7AlgorithmBox {
    int number = 0;      // as written in the box, 1 to 6
    PicturePoint corner; // top left
};
struct Dx7AlgorithmPicture {
    std::vector<Dx7AlgorithmBox> boxes;           // in drawing order
    std::vector<std::vector<PicturePoint>> lines; // polylines, in drawing order
};
// Boxes and lines of an algorithm, 0 to 31, relative to the origin of the picture; empty for any
// other number.
Dx7AlgorithmPicture MakeDx7AlgorithmPicture(int algorithm, const Dx7AlgorithmUnits &units);

} // namespace tonewright
