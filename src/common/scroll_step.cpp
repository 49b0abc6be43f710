// The arithmetic of scroll bars.
#include "common/scroll_step.h"

#include <algorithm>
#include <cstdint>

namespace tonewright {
namespace {

std::int64_t Target(ScrollAction action, int thumb, int maximum, int position) {
    const std::int64_t from = position;
    switch (action) {
    case ScrollAction::LineBack:
        return from - 1;
    case ScrollAction::LineForward:
        return from + 1;
    case ScrollAction::PageBack:
        return from - maximum / PagesInARange;
    case ScrollAction::PageForward:
        return from + maximum / PagesInARange;
    case ScrollAction::Thumb:
        return thumb;
    case ScrollAction::Top:
        return 0;
    case ScrollAction::Bottom:
        return maximum;
    }
    return from;
}

} // namespace

bool ScrollStep(ScrollAction action, int thumb, int maximum, int &position) {
    const int former = position;
    const std::int64_t last = std::max(0, maximum);
    position = static_cast<int>(
        std::clamp<std::int64_t>(Target(action, thumb, maximum, position), 0, last));
    return position != former;
}

} // namespace tonewright
