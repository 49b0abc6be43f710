// The loops over lanes: the sine that they compute, and that each lane is one of its own.
#include "synth/lanes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

namespace tonewright {
namespace {

// Every lane with a pitch and a loudness of its own.
Lanes DifferentLanes(bool glides = true) {
    Lanes lanes;
    lanes.glides = glides;
    for (int lane = 0; lane < LaneCount; ++lane) {
        const auto number = static_cast<std::uint32_t>(lane);
        lanes.phase[lane] = 0x10000000u * number + 12345u;
        lanes.increment[lane] = 0x01234567u * (number + 1);
        lanes.incrementStep[lane] = glides ? 0x1000u * number : 0u;
        lanes.gain[lane] = WaveScale * (1.0f - 0.05f * static_cast<float>(lane));
        lanes.gainStep[lane] = 0.0005f * WaveScale * static_cast<float>(lane);
    }
    return lanes;
}

// A phase and a gain along the straight lines of a block.
double PhaseAt(const Lanes &begin, int lane, int frame) {
    std::uint32_t increment = begin.increment[lane];
    std::uint32_t phase = begin.phase[lane];
    for (int i = 0; i < frame; ++i) {
        increment += begin.incrementStep[lane];
        phase += increment;
    }
    return phase * 0x1p-32;
}

double GainAt(const Lanes &begin, int lane, int frame) {
    return (begin.gain[lane] + begin.gainStep[lane] * frame) / WaveScale;
}

double Sine(double cycles) {
    return std::sin(2.0 * std::numbers::pi * cycles);
}

// -102 dB of the sine, and what a gain loses on its way through a block.
constexpr double Tolerance = 1.2e-5;

TEST(LanesOfAnOperator, AreSinesOfTheirOwnPitchAndLoudness) {
    for (const bool glides : {false, true}) {
        const Lanes begin = DifferentLanes(glides);
        Lanes lanes = begin;
        const Bus none = {};
        Bus out;
        RenderOperator(lanes, 0.0f, FeedbackKind::Output, none, out);
        ASSERT_TRUE(out.filled);
        for (int frame = 0; frame < BlockFrames; ++frame) {
            for (int lane = 0; lane < LaneCount; ++lane) {
                const double gain = GainAt(begin, lane, frame);
                EXPECT_NEAR(out.rows[frame][lane], gain * Sine(PhaseAt(begin, lane, frame)),
                            gain * Tolerance)
                    << frame << ", " << lane;
            }
        }
    }
}

TEST(LanesOfAnOperator, AddToWhatIsThereAndFollowTheirModulation) {
    const Lanes begin = DifferentLanes();
    Bus in;
    Bus out;
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            in.rows[frame][lane] = 0.4f * static_cast<float>(frame - 32);
            out.rows[frame][lane] = 0.25f;
        }
    }
    in.filled = out.filled = true;
    Lanes lanes = begin;
    RenderOperator(lanes, 0.0f, FeedbackKind::Output, in, out);
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            const double gain = GainAt(begin, lane, frame);
            const double cycles = PhaseAt(begin, lane, frame) + in.rows[frame][lane];
            EXPECT_NEAR(out.rows[frame][lane], 0.25 + gain * Sine(cycles), 2.0 * gain * Tolerance)
                << frame << ", " << lane;
        }
    }
}

TEST(LanesOfAnOperator, FeedTheMeanOfTheLastTwoOutputsBack) {
    const Lanes begin = DifferentLanes();
    const float feedback = 0.1f;
    for (const FeedbackKind kind :
         {FeedbackKind::Output, FeedbackKind::Sawtooth, FeedbackKind::Square}) {
        Lanes lanes = begin;
        const Bus none = {};
        Bus out;
        RenderOperator(lanes, feedback, kind, none, out);
        for (int lane = 0; lane < LaneCount; ++lane) {
            double last = 0.0;
            double beforeLast = 0.0;
            for (int frame = 0; frame < BlockFrames; ++frame) {
                const double mean = (last + beforeLast) / 2.0;
                const double gain = GainAt(begin, lane, frame);
                const double wave =
                    Sine(PhaseAt(begin, lane, frame) +
                         feedback * (kind == FeedbackKind::Square ? mean * mean : mean));
                EXPECT_NEAR(out.rows[frame][lane], gain * wave, 20.0 * gain * Tolerance)
                    << static_cast<int>(kind) << ": " << frame << ", " << lane;
                beforeLast = last;
                last = kind == FeedbackKind::Output ? gain * wave : wave;
            }
        }
    }
}

TEST(LanesOfAnOperator, MoveOnAlikeWhetherTheyAreHeardOrNot) {
    Lanes heard = DifferentLanes();
    Lanes passed = heard;
    const Bus none = {};
    Bus out;
    RenderOperator(heard, 0.0f, FeedbackKind::Output, none, out);
    PassBlock(passed);
    for (int lane = 0; lane < LaneCount; ++lane) {
        EXPECT_EQ(passed.phase[lane], heard.phase[lane]) << lane;
    }
}

TEST(LanesOfALoop, FeedTheEndOfTheChainBackToItsBegin) {
    const Lanes begin = DifferentLanes();
    const float feedback = 0.1f;
    for (const int count : {2, 3}) {
        // Each with another phase, and soft, so that small differences stay small.
        Lanes operators[3] = {begin, begin, begin};
        for (int i = 0; i < 3; ++i) {
            for (int lane = 0; lane < LaneCount; ++lane) {
                operators[i].phase[lane] += 0x20000000u * static_cast<std::uint32_t>(i);
                operators[i].gain[lane] *= 0.2f;
                operators[i].gainStep[lane] *= 0.2f;
            }
        }
        const std::vector<Lanes> first(operators, operators + 3);
        Bus out;
        RenderLoop(operators, count, feedback, out);
        for (int lane = 0; lane < LaneCount; ++lane) {
            double last = 0.0;
            double beforeLast = 0.0;
            for (int frame = 0; frame < BlockFrames; ++frame) {
                double carried = feedback * (last + beforeLast) / 2.0;
                for (int i = count - 1; i >= 0; --i) {
                    const Lanes &lanes = first[static_cast<std::size_t>(i)];
                    carried =
                        GainAt(lanes, lane, frame) * Sine(PhaseAt(lanes, lane, frame) + carried);
                }
                EXPECT_NEAR(out.rows[frame][lane], carried, 5.0 * Tolerance)
                    << count << ": " << frame << ", " << lane;
                beforeLast = last;
                last = carried;
            }
        }
    }
}

TEST(LanesOfABus, AreHeardTogether) {
    Bus bus;
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            bus.rows[frame][lane] = static_cast<float>(frame * (lane + 1));
        }
    }
    float out[BlockFrames];
    out[0] = 1.0f;
    out[1] = 2.0f;
    std::fill(out + 2, out + BlockFrames, 0.0f);
    AddLanes(bus, out);
    // The lanes are 1 to 16 times the frame: half of their sum is 68 times the frame.
    EXPECT_EQ(out[0], 1.0f);
    EXPECT_EQ(out[1], 2.0f + 68.0f);
    EXPECT_EQ(out[63], 63.0f * 68.0f);
}

} // namespace
} // namespace tonewright
