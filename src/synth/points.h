// Laws that are given by points with lines between them.
#pragma once

#include <cstddef>

namespace tonewright {

// The place of the point at the upper end of the line that `value` lies on, 1 or more: points are
// in rising order of `member`, and the first one is not above `value`, nor the last one below it.
template <typename Points, typename Point, typename Member>
std::size_t UpperPoint(const Points &points, Member Point::*member, double value) {
    std::size_t upper = 1;
    while (points[upper].*member < value) {
        ++upper;
    }
    return upper;
}

} // namespace tonewright
