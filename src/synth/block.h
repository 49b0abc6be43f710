// Frames that are computed at once, the time of a fade, and the filter of offsets.
#pragma once

#include <cmath>
#include <numbers>

namespace tonewright {

// Gains and pitches move in straight lines within them; everything that happens does so between
// them.
constexpr int BlockFrames = 64;

// The time in which what is heard comes or goes where it may not do so at once, in seconds: a step
// that would be heard as a click is then one of many small ones.
constexpr double FadeTime = 0.005;
inline int FadeFrames(double rate) {
    return static_cast<int>(std::ceil(FadeTime * rate));
}

// What a filter that takes offsets away, below 5 Hz, keeps from frame to frame.
inline float OffsetFilterKeeps(double rate) {
    return static_cast<float>(std::exp(-2.0 * std::numbers::pi * 5.0 / rate));
}

} // namespace tonewright
