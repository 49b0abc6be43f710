// Frames that are computed at once, and the time of a fade.
#pragma once

namespace tonewright {

// Gains and pitches move in straight lines within them; everything that happens does so between
// them.
constexpr int BlockFrames = 64;

// The time in which what is heard comes or goes where it may not do so at once, in seconds: a step
// that would be heard as a click is then one of many small ones.
constexpr double FadeTime = 0.005;

} // namespace tonewright
