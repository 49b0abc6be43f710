// Places and areas in pixels or device units, for code that computes a picture and for code that
// paints it.
#pragma once

namespace tonewright {

struct Rectangle {
    int left = 0, top = 0, right = 0, bottom = 0; // right and bottom are outside
    bool operator==(const Rectangle &) const = default;
};

struct PicturePoint {
    int x = 0, y = 0;
    bool operator==(const PicturePoint &) const = default;
};

} // namespace tonewright
