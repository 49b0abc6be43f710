// Plain loops with as many turns as there are lanes. They become vectors because the compiler sees
// that nothing written is read from elsewhere, which is what __restrict promises.
#include "synth/lanes.h"

#include <algorithm>
#include <bit>
#include <cmath>

namespace tonewright {

namespace {

// The sine of a phase of -0.5 to 0.5 cycles, times `gain` / WaveScale, within 102 dB: a polynomial
// of the parabola of each half cycle, so that its zeros are exact. Its coefficients are the ones of
// least error for p * (12.56886874 + 50.02489617 * |p| + 77.93929442 * p^2), the leading one taken
// out and the square completed.
inline float Wave(float cycles, float gain) {
    constexpr float Shift = 50.02489617f / (2.0f * WaveScale);
    constexpr float Rest = 12.56886874f / WaveScale - Shift * Shift;
    const float height = std::fabs(cycles);
    const float parabola = 0.5f - height;
    const float shifted = height * parabola + Shift;
    return cycles * parabola * gain * (shifted * shifted + Rest);
}

constexpr float Nearest = 12582912.0f; // 1.5 * 2^23: adding it rounds to whole numbers

// The cycles that are left of a phase without the whole ones; for up to some thousand.
inline float WithoutWholeCycles(float cycles) {
    return cycles - ((cycles + Nearest) - Nearest);
}

inline float Cycles(std::uint32_t phase) {
    return static_cast<float>(static_cast<std::int32_t>(phase)) * 0x1p-32f;
}

// How an operator is rendered: with feedback of a kind or none; whether its pitch moves within the
// block, something modulates it and something is on its bus before.
enum class Feedback { None, Output, Sawtooth, Square };

template <Feedback Kind, bool Glides, bool Modulated, bool Adds>
void Render(Lanes &__restrict lanes, float feedback, const Bus &__restrict in,
            Bus &__restrict out) {
    // Each sample that is fed back waits for the one before it, so as little as possible happens
    // between them: they are kept as what they add to the phase (its root, for the square).
    const float weight = Kind == Feedback::Square ? 0.5f * std::sqrt(feedback) : 0.5f * feedback;
    for (int lane = 0; Kind != Feedback::None && lane < LaneCount; ++lane) {
        lanes.last[lane] *= weight;
        lanes.beforeLast[lane] *= weight;
    }
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            const float gain = lanes.gain[lane];
            float cycles = Cycles(lanes.phase[lane]);
            if (Modulated) {
                cycles += in.rows[frame][lane];
            }
            float output = 0.0f;
            if (Kind == Feedback::None) {
                output = Wave(Modulated ? WithoutWholeCycles(cycles) : cycles, gain);
            } else {
                if (Kind == Feedback::Square) {
                    const float sum = lanes.beforeLast[lane] + lanes.last[lane];
                    cycles += sum * sum;
                } else {
                    cycles = cycles + lanes.beforeLast[lane] + lanes.last[lane];
                }
                const bool ofOutput = Kind == Feedback::Output;
                const float kept =
                    Wave(WithoutWholeCycles(cycles), ofOutput ? gain * weight : WaveScale * weight);
                output = ofOutput ? kept * (1.0f / weight)
                                  : kept * (gain * (1.0f / (WaveScale * weight)));
                lanes.beforeLast[lane] = lanes.last[lane];
                lanes.last[lane] = kept;
            }
            out.rows[frame][lane] = Adds ? out.rows[frame][lane] + output : output;
            if (Glides) {
                lanes.increment[lane] += lanes.incrementStep[lane];
            }
            lanes.phase[lane] += lanes.increment[lane];
            lanes.gain[lane] = gain + lanes.gainStep[lane];
        }
    }
    for (int lane = 0; Kind != Feedback::None && lane < LaneCount; ++lane) {
        lanes.last[lane] /= weight;
        lanes.beforeLast[lane] /= weight;
    }
}

template <Feedback Kind> void Render(Lanes &lanes, float feedback, const Bus &in, Bus &out) {
    using Loop = void (*)(Lanes &, float, const Bus &, Bus &);
    static constexpr Loop Loops[2][2][2] = {
        {{Render<Kind, false, false, false>, Render<Kind, false, false, true>},
         {Render<Kind, false, true, false>, Render<Kind, false, true, true>}},
        {{Render<Kind, true, false, false>, Render<Kind, true, false, true>},
         {Render<Kind, true, true, false>, Render<Kind, true, true, true>}}};
    Loops[lanes.glides][in.filled][out.filled](lanes, feedback, in, out);
    out.filled = true;
}

// A chain of operators whose end feeds back to its begin.
template <int Count>
void RenderChain(Lanes *__restrict operators, float feedback, Bus &__restrict out) {
    const float half = 0.5f * feedback;
    for (int frame = 0; frame < BlockFrames; ++frame) {
        for (int lane = 0; lane < LaneCount; ++lane) {
            float carried = (operators[0].last[lane] + operators[0].beforeLast[lane]) * half;
            for (int i = Count - 1; i >= 0; --i) {
                const float cycles = Cycles(operators[i].phase[lane]) + carried;
                carried = Wave(WithoutWholeCycles(cycles), operators[i].gain[lane]);
                operators[i].increment[lane] += operators[i].incrementStep[lane];
                operators[i].phase[lane] += operators[i].increment[lane];
                operators[i].gain[lane] += operators[i].gainStep[lane];
            }
            out.rows[frame][lane] += carried;
            operators[0].beforeLast[lane] = operators[0].last[lane];
            operators[0].last[lane] = carried;
        }
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
        Render<Feedback::None>(lanes, feedback, in, out);
    } else if (kind == FeedbackKind::Output) {
        Render<Feedback::Output>(lanes, feedback, in, out);
    } else if (kind == FeedbackKind::Sawtooth) {
        Render<Feedback::Sawtooth>(lanes, feedback, in, out);
    } else {
        Render<Feedback::Square>(lanes, feedback, in, out);
    }
}

void RenderLoop(Lanes *operators, int count, float feedback, Bus &out) {
    if (!out.filled) {
        std::fill_n(&out.rows[0][0], BlockFrames * LaneCount, 0.0f);
        out.filled = true;
    }
    count == 2 ? RenderChain<2>(operators, feedback, out)
               : RenderChain<3>(operators, feedback, out);
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
