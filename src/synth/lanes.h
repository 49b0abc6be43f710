// Operators of keys side by side, a lane each: the loops in which the engine spends its time. The
// compiler makes vectors of the lanes, also where a sample needs the one before it, in feedback.
#pragma once

#include "synth/block.h"
#include "synth/prepared_voice.h"

#include <cstdint>

namespace tonewright {

// Keys that are rendered together: as many as hide, in feedback, the time that a sample waits for
// the one before it, behind those of the other keys.
constexpr int LaneCount = 16;

// The sine of the lanes comes out divided by this, which gains make good.
constexpr float WaveScale = 77.9392944f;

// One operator of the keys of a group, in straight lines through a block.
struct alignas(64) Lanes {
    std::uint32_t phase[LaneCount] = {}; // of 2^32
    std::uint32_t increment[LaneCount] = {};
    std::uint32_t incrementStep[LaneCount] = {};
    float gain[LaneCount] = {}; // with WaveScale in it
    float gainStep[LaneCount] = {};
    // Of an operator that feeds back: its last two outputs, or those of its wave.
    float last[LaneCount] = {};
    float beforeLast[LaneCount] = {};
    bool glides = false; // one of the steps of its increments is not 0
};

// What operators add up to: the modulation of others, in cycles, or what is heard.
struct alignas(64) Bus {
    float rows[BlockFrames][LaneCount];
    bool filled = false; // or else nothing has been written to it
};

// Gains of levels of some thousand steps to either side: 2^(level / 256 - 14).
void GainsOf(const float (&levels)[LaneCount], float (&gains)[LaneCount]);

// Adds an operator to `out` and moves it on by a block; `in`, another bus, modulates it when it is
// filled. Feedback as in a voice: cycles for an output of amplitude 1, and of what; 0 for none.
void RenderOperator(Lanes &lanes, float feedback, FeedbackKind kind, const Bus &in, Bus &out);
// The same for a chain of 2 or 3 operators from its end to its begin, each modulated by the next
// one and the last one by the output of the first.
void RenderLoop(Lanes *operators, int count, float feedback, Bus &out);
// Moves an operator on by a block in which it is not heard.
void PassBlock(Lanes &lanes);
// Adds half the sum of all lanes: 1 is the amplitude of a carrier at full level, whose gain is 2.
void AddLanes(const Bus &bus, float (&out)[BlockFrames]);

} // namespace tonewright
