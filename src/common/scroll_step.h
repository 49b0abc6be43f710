// How far one action on a scroll bar moves it.
#pragma once

namespace tonewright {

enum class ScrollAction { LineBack, LineForward, PageBack, PageForward, Thumb, Top, Bottom };

constexpr int PagesInARange = 8;

// Moves `position` of a bar with the range up to `maximum`: by 1 for a line, by an eighth of the
// maximum (cut towards zero, so that a short range has no pages) for a page, to `thumb` for the
// thumb, and to 0 or the maximum for the ends. The result lies in 0 to `maximum`. True when the
// position has changed.
bool ScrollStep(ScrollAction action, int thumb, int maximum, int &position);

} // namespace tonewright
