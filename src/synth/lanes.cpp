// Plain loops with as many turns as there are lanes. They become vectors because the compiler sees
// that nothing written is read from elsewhere, which is what __restrict promises.
#include "synth/lanes.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace tonewright {

namespace {

// The sine of a phase of -0.5 to 0.5 cycles, divided by WaveScale, within 102 dB: a polynomial of
// the parabola of each half cycle, so that its zeros are exact. Its coefficients are the ones of
// least error for p * (12.56886874 + 50.02489617 * |p| + 77.93929442 * p^2), the leading one taken
// out and the square completed.
inline float Wave(float cycles) {
    constexpr float Shift = 50.02489617f / (2.0f * WaveScale);
    constexpr float Rest = 12.56886874f / WaveScale - Shift * Shift;
    const float height = std::fabs(cycles);
    const float parabola = 0.5f - height;
    const float shifted = height * parabola + Shift;
    return cycles * parabola * (shifted * shifted + Rest);
}

constexpr float Nearest = 12582912.0f; // 1.5 * 2^23: adding it rounds to whole numbers

// The cycles that are left of a phase without the whole ones; for up to some thousand.
inline float WithoutWholeCycles(float cycles) {
    return cycles - ((cycles + Nearest) - Nearest);
}

inline float Cycles(std::uint32_t phase) {
    return static_cast<float>(static_cast<std::int32_t>(phase)) * 0x1p-32f;
}

// An operator, with feedback of a kind or none.
template <bool FeedsBack, FeedbackKind Kind, bool Modulated, bool Adds>
void Render(Lanes &__restrict lanes, float feedback, const Bus &__restrict in,
            Bus &__restrict out) {
    const float half = 0.5f * feedback;
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            float cycles = Cycles(lanes.phase[lane]);
            if (Modulated) {
                cycles += in.rows[frame][lane];
            }
            if (FeedsBack && Kind == FeedbackKind::Square) {
                const float sum = lanes.last[lane] + lanes.beforeLast[lane];
                cycles += sum * sum * (0.5f * half);
            } else if (FeedsBack) {
                // The last one comes last: what needs it waits for it.
                cycles += lanes.beforeLast[lane] * half;
                cycles += lanes.last[lane] * half;
            }
            const float wave = Wave(Modulated || FeedsBack ? WithoutWholeCycles(cycles) : cycles);
            const float output = wave * lanes.gain[lane];
            out.rows[frame][lane] = Adds ? out.rows[frame][lane] + output : output;
            if (FeedsBack) {
                lanes.beforeLast[lane] = lanes.last[lane];
                lanes.last[lane] = Kind == FeedbackKind::Output ? output : wave * WaveScale;
            }
            lanes.increment[lane] += lanes.incrementStep[lane];
            lanes.phase[lane] += lanes.increment[lane];
            lanes.gain[lane] += lanes.gainStep[lane];
        }
    }
}

template <bool FeedsBack, FeedbackKind Kind>
void Render(Lanes &lanes, float feedback, const Bus &in, Bus &out) {
    if (in.filled) {
        out.filled ? Render<FeedsBack, Kind, true, true>(lanes, feedback, in, out)
                   : Render<FeedsBack, Kind, true, false>(lanes, feedback, in, out);
    } else {
        out.filled ? Render<FeedsBack, Kind, false, true>(lanes, feedback, in, out)
                   : Render<FeedsBack, Kind, false, false>(lanes, feedback, in, out);
    }
    out.filled = true;
}

void Begin(Bus &bus) {
    if (!bus.filled) {
        std::fill_n(&bus.rows[0][0], BlockFrames * LaneCount, 0.0f);
        bus.filled = true;
    }
}

} // namespace

void GainsOf(const float (&levels)[LaneCount], float (&__restrict gains)[LaneCount]) {
    for (int lane = 0; lane < LaneCount; ++lane) {
        const float octaves = levels[lane] * (1.0f / 256.0f) - 14.0f;
        const float whole = (octaves + Nearest) - Nearest;
        const float x = octaves - whole;
        // 2^x, within four millionths of it.
        const float high = 0.24020711f + x * (0.05597688f + x * 0.00978291f);
        const float part = 1.0f + x * (0.69311360f + x * high);
        const auto power = static_cast<std::uint32_t>(static_cast<std::int32_t>(whole) + 127) << 23;
        gains[lane] = part * std::bit_cast<float>(power);
    }
}

void RenderOperator(Lanes &lanes, float feedback, FeedbackKind kind, const Bus &in, Bus &out) {
    if (feedback == 0.0f) {
        Render<false, FeedbackKind::Output>(lanes, feedback, in, out);
    } else if (kind == FeedbackKind::Output) {
        Render<true, FeedbackKind::Output>(lanes, feedback, in, out);
    } else if (kind == FeedbackKind::Sawtooth) {
        Render<true, FeedbackKind::Sawtooth>(lanes, feedback, in, out);
    } else {
        Render<true, FeedbackKind::Square>(lanes, feedback, in, out);
    }
}

void RenderLoop(Lanes *operators, int count, float feedback, Bus &out) {
    Begin(out);
    const float half = feedback * 0.5f;
    Lanes &end = operators[0];
    for (int frame = 0; frame < BlockFrames; ++frame) {
        alignas(64) float carried[LaneCount];
        for (int lane = 0; lane < LaneCount; ++lane) {
            carried[lane] = (end.last[lane] + end.beforeLast[lane]) * half;
        }
        for (int i = count - 1; i >= 0; --i) {
            Lanes &lanes = operators[i];
            for (int lane = 0; lane < LaneCount; ++lane) {
                const float cycles = Cycles(lanes.phase[lane]) + carried[lane];
                carried[lane] = Wave(WithoutWholeCycles(cycles)) * lanes.gain[lane];
                lanes.increment[lane] += lanes.incrementStep[lane];
                lanes.phase[lane] += lanes.increment[lane];
                lanes.gain[lane] += lanes.gainStep[lane];
            }
        }
        for (int lane = 0; lane < LaneCount; ++lane) {
            out.rows[frame][lane] += carried[lane];
            end.beforeLast[lane] = end.last[lane];
            end.last[lane] = carried[lane];
        }
    }
}

void PassBlock(Lanes &lanes) {
    for (int lane = 0; lane < LaneCount; ++lane) {
        // The increments of a block form a straight line: BlockFrames of them, and their sum.
        lanes.phase[lane] += BlockFrames * lanes.increment[lane] +
                             BlockFrames * (BlockFrames + 1) / 2 * lanes.incrementStep[lane];
        lanes.last[lane] = lanes.beforeLast[lane] = 0.0f;
    }
}

void AddLanes(const Bus &bus, float (&out)[BlockFrames]) {
    constexpr int Quarter = LaneCount / 4;
    for (int frame = 0; frame < BlockFrames; ++frame) {
        const float *row = bus.rows[frame];
        float sums[Quarter];
        for (int lane = 0; lane < Quarter; ++lane) {
            sums[lane] = (row[lane] + row[lane + Quarter]) +
                         (row[lane + 2 * Quarter] + row[lane + 3 * Quarter]);
        }
        float sum = 0.0f;
        for (const float part : sums) {
            sum += part;
        }
        out[frame] += 0.5f * sum;
    }
}

} // namespace tonewright
