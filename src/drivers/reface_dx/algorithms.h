// The twelve algorithms of the reface DX as pictures: four boxes in a row and the lines between
// them. Only geometry; drivers/reface_dx/view paints it.
#pragma once

#include "common/geometry.h"

#include <vector>

namespace tonewright {

constexpr int RefaceAlgorithmCount = 12;

// The lengths that make up a picture, in pixels; integer arithmetic, cut towards zero.
struct RefaceAlgorithmUnits {
    int box = 0;  // side of a box
    int half = 0; // half a box: from the boxes up to the lines above them, and down to those below
    int step = 0; // from one box to the next
    int font = 0; // height of the font of all texts
};
// `width`, `height`: of the drawing area, which is the picture without twice the weight of a line
// on every side. A picture with its number below has smaller boxes.
RefaceAlgorithmUnits MakeRefaceAlgorithmUnits(int width, int height, bool withNumber);

struct RefaceAlgorithmBox {
    int number = 0;         // as written in the box, 1 to 4
    bool isCarrier = false; // a carrier is a square, a modulator a circle
    Rectangle area;
};
struct RefaceAlgorithmPicture {
    std::vector<RefaceAlgorithmBox> boxes;
    std::vector<std::vector<PicturePoint>> lines; // polylines, in drawing order
    Rectangle number; // where the algorithm's number is centred, when it is shown
};
// Boxes, lines and number of an algorithm, 0 to 11, relative to the origin of the drawing area;
// without boxes and lines for any other number.
RefaceAlgorithmPicture MakeRefaceAlgorithmPicture(int algorithm, const RefaceAlgorithmUnits &units);

} // namespace tonewright
