// Effects: what each does to a sound, and that its tail ends.
#include "synth/effects.h"

#include "measure.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace tonewright {
namespace {

constexpr double Rate = 48000.0;

struct Stereo {
    Samples left;
    Samples right;
};

// `seconds` of a sine (0 Hz is silence) through the effect.
Stereo Through(Effect &effect, double hz, double seconds, double amplitude = 1.0) {
    Stereo out;
    std::size_t frame = 0;
    while (static_cast<double>(out.left.size()) < seconds * effect.rate) {
        float left[BlockFrames];
        float right[BlockFrames];
        for (int i = 0; i < BlockFrames; ++i, ++frame) {
            const double x = 2.0 * std::numbers::pi * hz * static_cast<double>(frame) / effect.rate;
            left[i] = right[i] = static_cast<float>(amplitude * std::sin(x));
        }
        ApplyEffect(effect, left, right);
        out.left.insert(out.left.end(), left, left + BlockFrames);
        out.right.insert(out.right.end(), right, right + BlockFrames);
    }
    return out;
}

double Loudest(const Samples &samples, double from = 0.0, double to = 1e9) {
    double loudest = 0.0;
    const auto begin = static_cast<std::size_t>(from * Rate);
    const auto end = std::min(samples.size(), static_cast<std::size_t>(to * Rate));
    for (std::size_t i = begin; i < end; ++i) {
        loudest = std::max(loudest, std::fabs(samples[i]));
    }
    return loudest;
}

Effect Stage(EffectKind kind, double first, double second, double rate = Rate) {
    Effect effect = MakeEffect(rate);
    SetEffect(effect, {.kind = kind, .first = first, .second = second});
    return effect;
}

TEST(Effects, ChangeNothingWhenThrough) {
    Effect effect = Stage(EffectKind::Through, 1.0, 1.0);
    const Stereo out = Through(effect, 441.0, 0.1);
    for (std::size_t i = 0; i < out.left.size(); ++i) {
        const double x = 2.0 * std::numbers::pi * 441.0 * static_cast<double>(i) / Rate;
        ASSERT_EQ(out.left[i], static_cast<float>(std::sin(x))) << i;
        ASSERT_EQ(out.right[i], out.left[i]) << i;
    }
    EXPECT_TRUE(IsQuiet(effect));
}

class EveryEffect : public testing::TestWithParam<int> {
protected:
    EffectKind kind_ = static_cast<EffectKind>(GetParam());
};

TEST_P(EveryEffect, EndsInExactSilence) {
    for (const double second : {0.0, 0.5, 1.0}) {
        Effect effect = Stage(kind_, 1.0, second);
        Through(effect, 300.0, 0.5);
        EXPECT_FALSE(IsQuiet(effect));
        double waited = 0.0;
        while (!IsQuiet(effect) && waited < 120.0) {
            Through(effect, 0.0, 0.5);
            waited += 0.5;
        }
        EXPECT_LT(waited, 90.0) << second;
        const Stereo silence = Through(effect, 0.0, 0.1);
        EXPECT_EQ(Loudest(silence.left), 0.0);
        EXPECT_EQ(Loudest(silence.right), 0.0);
    }
}

TEST_P(EveryEffect, StaysFiniteAndBoundedForNoiseAtAnyRate) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> noise(-8.0f, 8.0f);
    for (const double rate : {8000.0, 48000.0, 192000.0}) {
        for (const double first : {0.0, 0.3, 1.0}) {
            for (const double second : {0.0, 0.7, 1.0}) {
                Effect effect = Stage(kind_, first, second, rate);
                for (int block = 0; block < 200; ++block) {
                    float left[BlockFrames];
                    float right[BlockFrames];
                    for (int i = 0; i < BlockFrames; ++i) {
                        left[i] = noise(random);
                        right[i] = noise(random);
                    }
                    ApplyEffect(effect, left, right);
                    for (int i = 0; i < BlockFrames; ++i) {
                        ASSERT_TRUE(std::isfinite(left[i]) && std::fabs(left[i]) < 100.0f) << rate;
                        ASSERT_TRUE(std::isfinite(right[i]) && std::fabs(right[i]) < 100.0f)
                            << rate;
                    }
                }
            }
        }
    }
}

TEST_P(EveryEffect, ComesAndGoesWithoutAClick) {
    constexpr double Hz = 62.5; // whole cycles in 0.4 s: the sine goes on
    const double steady = 2.0 * std::numbers::pi * Hz / Rate;
    Effect effect = MakeEffect(Rate);
    Samples all;
    const auto play = [&](double seconds) {
        const Stereo out = Through(effect, Hz, seconds);
        all.insert(all.end(), out.left.begin(), out.left.end());
    };
    play(0.4);
    SetEffect(effect, {.kind = kind_, .first = 0.5, .second = 0.5});
    play(0.4);
    double widest = 0.0;
    for (std::size_t i = 1; i < all.size(); ++i) {
        widest = std::max(widest, std::fabs(all[i] - all[i - 1]));
    }
    // A distorted sine is steeper than the one that comes in, and so is one with echoes.
    const double steeper = kind_ == EffectKind::Distortion ? 20.0 : 4.0;
    EXPECT_LT(widest, steeper * steady);
}

// The power of what an effect adds to `seconds` of what `source` gives, in parts of that, after
// `settling` of it.
template <typename Source>
double AddedPower(Effect &effect, double settling, double seconds, Source source) {
    double dry = 0.0;
    double wet = 0.0;
    for (double time = 0.0; time < settling + seconds; time += BlockFrames / effect.rate) {
        float left[BlockFrames];
        float right[BlockFrames];
        float given[BlockFrames];
        for (int i = 0; i < BlockFrames; ++i) {
            left[i] = right[i] = given[i] = static_cast<float>(source(time + i / effect.rate));
        }
        ApplyEffect(effect, left, right);
        for (int i = 0; i < BlockFrames && time >= settling; ++i) {
            dry += given[i] * given[i];
            wet += 0.5 * ((left[i] - given[i]) * (left[i] - given[i]) +
                          (right[i] - given[i]) * (right[i] - given[i]));
        }
    }
    return wet / dry;
}

// But for the two that replace it.
class EveryAddition : public EveryEffect {};

TEST_P(EveryAddition, IsNoMoreThanThereIs) {
    for (const double second : {0.0, 0.5, 1.0}) {
        std::mt19937 random(7);
        std::uniform_real_distribution<double> noise(-1.0, 1.0);
        Effect effect = Stage(kind_, 1.0, second);
        EXPECT_LE(AddedPower(effect, 5.0, 1.0, [&](double) { return noise(random); }), 1.0)
            << second;
    }
    // Tones, some of which meet a mode of it: together.
    double sum = 0.0;
    for (int tone = 0; tone < 32; ++tone) {
        const double hz = 60.0 * std::pow(1000.0 / 60.0, tone / 31.0);
        Effect effect = Stage(kind_, 1.0, 1.0);
        sum += AddedPower(effect, 4.0, 0.5, [hz](double time) {
            return std::sin(2.0 * std::numbers::pi * hz * time);
        });
    }
    EXPECT_LE(sum / 32.0, 1.0);
}

std::string KindName(const testing::TestParamInfo<int> &information) {
    const char *const names[] = {"",        "Distortion", "TouchWah", "Chorus",
                                 "Flanger", "Phaser",     "Delay",    "Reverb"};
    return names[information.param];
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryEffect, testing::Range(1, 8), KindName);
INSTANTIATE_TEST_SUITE_P(Kinds, EveryAddition, testing::Range(3, 8), KindName);

TEST(Effects, OfAnEchoRepeatAfterItsTime) {
    Effect effect = Stage(EffectKind::Delay, 1.0, 0.5); // 12 ms to 1.2 s: 606 ms in the middle
    Through(effect, 0.0, 1.4);                          // its parameters have arrived
    effect.quiet = 0;
    float left[BlockFrames] = {1.0f};
    float right[BlockFrames] = {1.0f};
    ApplyEffect(effect, left, right);
    const Stereo out = Through(effect, 0.0, 1.5);
    const auto at = static_cast<std::size_t>(0.606 * Rate) - BlockFrames;
    EXPECT_GT(Loudest(Samples(out.left.begin() + at - 4, out.left.begin() + at + 4)), 0.3);
    EXPECT_EQ(Loudest(Samples(out.left.begin(), out.left.begin() + at - 4)), 0.0);
    EXPECT_GT(Loudest(out.left, 1.19), 0.2); // and once more
}

TEST(Effects, OfADistortionAddOddPartials) {
    Effect effect = Stage(EffectKind::Distortion, 0.6, 1.0);
    const Stereo out = Through(effect, 440.0, 1.0);
    const std::vector<double> partials = Partials(out.left, Rate, 440.0, 0.5, 5);
    EXPECT_GT(partials[2], partials[0] - 20.0);
    EXPECT_LT(partials[1], partials[0] - 60.0);
    EXPECT_GT(partials[4], partials[0] - 30.0);
}

TEST(Effects, OfAChorusMoveThePitchOnBothSidesApart) {
    Effect effect = Stage(EffectKind::Chorus, 1.0, 0.5);
    const Stereo out = Through(effect, 440.0, 2.0);
    double apart = 0.0;
    for (std::size_t i = 48000; i < out.left.size(); ++i) {
        apart = std::max(apart, std::fabs(out.left[i] - out.right[i]));
    }
    EXPECT_GT(apart, 0.5);
    EXPECT_LT(Loudest(out.left), 1.75);
}

TEST(Effects, OfAWahOpenWithTheLoudness) {
    const auto level = [](double amplitude) {
        Effect effect = Stage(EffectKind::TouchWah, 1.0, 0.5);
        const Stereo out = Through(effect, 2000.0, 0.5, amplitude);
        return Loudest(out.left, 0.3) / amplitude;
    };
    EXPECT_GT(level(1.0), 3.0 * level(0.02));
}

TEST(Effects, OfAReverbLastAsLongAsTheirTime) {
    const auto left = [](double time) {
        Effect effect = Stage(EffectKind::Reverb, 1.0, time);
        Through(effect, 500.0, 0.5);
        const Stereo out = Through(effect, 0.0, 2.0);
        return Loudest(out.left, 1.0);
    };
    EXPECT_LT(left(0.0), 1e-4); // 0.3 s to -60 dB
    EXPECT_GT(left(1.0), 1e-2); // 5 s
}

TEST(Effects, OfAReverbFeedBackLessThanNineteenTwentieths) {
    Effect effect = Stage(EffectKind::Reverb, 1.0, 1.0);
    Through(effect, 500.0, 0.5);
    for (int line = 0; line < 4; ++line) {
        EXPECT_LT(effect.settings[line], 0.95f) << line;
        EXPECT_GT(effect.settings[line], 0.9f) << line;
    }
}

TEST(Effects, OfAReverbAreAsDullAtAnyRate) {
    // Of a high tone, between 0.5 and 0.7 s after its end, in dB.
    const auto tail = [](double rate) {
        Effect effect = Stage(EffectKind::Reverb, 1.0, 1.0, rate);
        Through(effect, 4000.0, 0.5);
        Through(effect, 0.0, 0.5);
        double sum = 0.0;
        const Stereo out = Through(effect, 0.0, 0.2);
        for (std::size_t i = 0; i < out.left.size(); ++i) {
            sum += out.left[i] * out.left[i] + out.right[i] * out.right[i];
        }
        return 10.0 * std::log10(sum / rate);
    };
    EXPECT_NEAR(tail(192000.0), tail(48000.0), 5.0);
}

} // namespace
} // namespace tonewright
