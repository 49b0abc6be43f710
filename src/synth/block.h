// Frames that are computed at once.
#pragma once

namespace tonewright {

// Gains and pitches move in straight lines within them; everything that happens does so between
// them.
constexpr int BlockFrames = 64;

} // namespace tonewright
