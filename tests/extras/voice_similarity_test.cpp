// What is alike and what is not, and that a slightly edited voice finds the unedited one.
#include "extras/voice_similarity.h"

#include "drivers/reface_dx/voice_codec.h"
#include "extras/voice_identity.h"
#include "midi/instruments/reface_dx_factory.h"
#include "support/paths.h"
#include "synth/algorithms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <random>
#include <set>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

// A parameter byte of an unpacked DX7 voice or of a reface DX voice.
struct Parameter {
    std::size_t offset;
    int largest;
    bool quantity; // small steps of it are small edits
};

struct Family {
    VoiceForm form;
    std::vector<Parameter> parameters;
    std::size_t commonStart, commonEnd, operatorStart, operatorSize, operators;
    std::vector<Bytes> seeds;
};

Family Dx7() {
    Family family{VoiceForm::Dx7Stored,
                  {},
                  Dx7Voice::pitchEgRate1,
                  Dx7Voice::name,
                  0,
                  Dx7OperatorSize,
                  6,
                  {}};
    const std::pair<std::size_t, Parameter> listed[] = {
        {Dx7Operator::scaleLeftCurve, {0, 3, false}},
        {Dx7Operator::scaleRightCurve, {0, 3, false}},
        {Dx7Operator::rateScaling, {0, 7, true}},
        {Dx7Operator::ampModSensitivity, {0, 3, true}},
        {Dx7Operator::velocitySensitivity, {0, 7, true}},
        {Dx7Operator::oscillatorMode, {0, 1, false}},
        {Dx7Operator::frequencyCoarse, {0, 31, false}},
        {Dx7Operator::detune, {0, 14, true}},
    };
    for (std::size_t one = 0; one < 6; ++one) {
        for (std::size_t offset = 0; offset < Dx7OperatorSize; ++offset) {
            const auto *row =
                std::ranges::find(listed, offset, [](auto &pair) { return pair.first; });
            Parameter parameter = row == std::end(listed) ? Parameter{0, 99, true} : row->second;
            parameter.offset = one * Dx7OperatorSize + offset;
            family.parameters.push_back(parameter);
        }
    }
    for (std::size_t offset = Dx7Voice::pitchEgRate1; offset < Dx7Voice::name; ++offset) {
        Parameter parameter{offset, 99, true};
        switch (offset) {
        case Dx7Voice::algorithm:
            parameter = {offset, 31, false};
            break;
        case Dx7Voice::feedback:
        case Dx7Voice::pitchModSensitivity:
            parameter = {offset, 7, true};
            break;
        case Dx7Voice::oscillatorKeySync:
        case Dx7Voice::lfoKeySync:
            parameter = {offset, 1, false};
            break;
        case Dx7Voice::lfoWave:
            parameter = {offset, 5, false};
            break;
        case Dx7Voice::transpose:
            parameter = {offset, 48, false};
            break;
        default:
            break;
        }
        family.parameters.push_back(parameter);
    }
    std::ifstream file(ExampleFile("tonewright.syx"), std::ios::binary);
    const Bytes bank((std::istreambuf_iterator<char>(file)), {});
    for (std::size_t voice = 0; voice < 32 && bank.size() == 4104; ++voice) {
        Bytes seed(Dx7VoiceSize);
        UnpackDx7Voice(Dx7Unpacked(seed.data(), Dx7VoiceSize),
                       Dx7PackedConst(&bank[6 + 128 * voice], 128));
        seed[Dx7Voice::operatorEnable] = 0x3F;
        family.seeds.push_back(seed);
    }
    return family;
}

Family Reface() {
    Family family{VoiceForm::Reface,
                  {},
                  RefaceVoice::transpose,
                  RefaceVoice::reserved2,
                  RefaceCommonSize,
                  RefaceOperatorSize,
                  4,
                  {}};
    for (std::size_t offset = RefaceVoice::partMode; offset < RefaceVoice::reserved2; ++offset) {
        switch (offset) {
        case RefaceVoice::partMode:
            family.parameters.push_back({offset, 2, false});
            break;
        case RefaceVoice::algorithm:
            family.parameters.push_back({offset, 11, false});
            break;
        case RefaceVoice::lfoWave:
            family.parameters.push_back({offset, 6, false});
            break;
        case RefaceVoice::effect1Type:
        case RefaceVoice::effect2Type:
            family.parameters.push_back({offset, 7, false});
            break;
        default:
            family.parameters.push_back({offset, 127, true});
            break;
        }
    }
    for (std::size_t one = 0; one < 4; ++one) {
        for (std::size_t offset = 0; offset < RefaceOperator::reserved3; ++offset) {
            Parameter parameter{RefaceCommonSize + one * RefaceOperatorSize + offset, 127, true};
            if (offset == RefaceOperator::frequencyCoarse) {
                parameter.largest = 31;
                parameter.quantity = false;
            } else if (offset == RefaceOperator::frequencyFine) {
                parameter.largest = 99;
            } else if (offset == RefaceOperator::enable || offset == RefaceOperator::lfoPmd ||
                       offset == RefaceOperator::pitchEg ||
                       offset == RefaceOperator::frequencyMode ||
                       offset == RefaceOperator::feedbackType) {
                parameter.largest = 1;
                parameter.quantity = false;
            } else if (offset == RefaceOperator::kbdLeftCurve ||
                       offset == RefaceOperator::kbdRightCurve) {
                parameter.largest = 3;
                parameter.quantity = false;
            }
            family.parameters.push_back(parameter);
        }
    }
    Bytes memory(32 * RefaceVoiceBytes);
    FillRefaceFactoryVoices(memory);
    for (std::size_t voice = 0; voice < 32; ++voice) {
        const auto start = memory.begin() + static_cast<std::ptrdiff_t>(voice * RefaceVoiceBytes);
        family.seeds.emplace_back(start, start + RefaceVoiceBytes);
    }
    return family;
}

// Operators and the rest of one voice, each of either of two.
Bytes Crossing(const Family &family, std::mt19937 &random) {
    Bytes voice = family.seeds[random() % family.seeds.size()];
    const Bytes &other = family.seeds[random() % family.seeds.size()];
    const auto take = [&](std::size_t start, std::size_t size) {
        if (random() % 2 == 0) {
            std::copy_n(&other[start], size, &voice[start]);
        }
    };
    for (std::size_t one = 0; one < family.operators; ++one) {
        take(family.operatorStart + one * family.operatorSize, family.operatorSize);
    }
    take(family.commonStart, family.commonEnd - family.commonStart);
    return voice;
}

Bytes RandomVoice(const Family &family, std::mt19937 &random) {
    Bytes voice = family.seeds[0];
    for (const Parameter &parameter : family.parameters) {
        voice[parameter.offset] =
            static_cast<std::uint8_t>(random() % static_cast<unsigned>(parameter.largest + 1));
    }
    return voice;
}

// One to four parameters moved by a step, those of a wide range by up to three.
Bytes Edited(const Family &family, Bytes voice, std::mt19937 &random) {
    for (auto edits = 1 + random() % 4; edits > 0;) {
        const Parameter &parameter = family.parameters[random() % family.parameters.size()];
        if (!parameter.quantity) {
            continue;
        }
        const int step = parameter.largest > 31 ? 1 + static_cast<int>(random() % 3) : 1;
        const int value = voice[parameter.offset] + (random() % 2 == 0 ? step : -step);
        voice[parameter.offset] =
            static_cast<std::uint8_t>(std::clamp(value, 0, parameter.largest));
        --edits;
    }
    return voice;
}

// How many of `trials` edited voices have the unedited one alone as the nearest.
template <class Make> int FoundAgain(const Family &family, int trials, Make make) {
    std::mt19937 random(5);
    std::vector<Bytes> voices;
    std::vector<VoiceFeatures> features;
    std::set<VoiceIdentity> identities;
    while (voices.size() < 10'000) {
        const Bytes voice = make(family, random);
        if (!identities.insert(IdentityOf({family.form, voice})).second) {
            continue;
        }
        voices.push_back(voice);
        features.push_back(FeaturesOf({family.form, voices.back()}));
    }
    int found = 0;
    for (int trial = 0; trial < trials; ++trial) {
        const std::size_t source = random() % voices.size();
        const Bytes edited = Edited(family, voices[source], random);
        const VoiceComparison comparison = CompareWith(FeaturesOf({family.form, edited}));
        float least = std::numeric_limits<float>::max();
        bool alone = false;
        for (std::size_t voice = 0; voice < voices.size(); ++voice) {
            const float distance = DistanceWithin(comparison, features[voice], least);
            if (distance < least) {
                least = distance;
                alone = voice == source;
            } else if (distance == least) {
                alone = false;
            }
        }
        found += alone ? 1 : 0;
    }
    return found;
}

constexpr int Trials = 500;
constexpr int AtLeast = Trials * 99 / 100;

TEST(VoiceSimilarity, AnEditedDx7VoiceFindsTheUneditedOneAmongCrossings) {
    ASSERT_EQ(Dx7().seeds.size(), 32u);
    EXPECT_GE(FoundAgain(Dx7(), Trials, Crossing), AtLeast);
}

TEST(VoiceSimilarity, AnEditedDx7VoiceFindsTheUneditedOneAmongRandomOnes) {
    EXPECT_GE(FoundAgain(Dx7(), Trials, RandomVoice), AtLeast);
}

TEST(VoiceSimilarity, AnEditedRefaceVoiceFindsTheUneditedOneAmongCrossings) {
    EXPECT_GE(FoundAgain(Reface(), Trials, Crossing), AtLeast);
}

TEST(VoiceSimilarity, AnEditedRefaceVoiceFindsTheUneditedOneAmongRandomOnes) {
    EXPECT_GE(FoundAgain(Reface(), Trials, RandomVoice), AtLeast);
}

float Distance(const Family &family, const Bytes &one, const Bytes &other) {
    return DistanceOf(FeaturesOf({family.form, one}), FeaturesOf({family.form, other}));
}

TEST(VoiceSimilarity, DistancesAreTheSameBothWaysAndNoneToTheVoiceItself) {
    std::mt19937 random(1);
    for (const Family &family : {Dx7(), Reface()}) {
        for (int trial = 0; trial < 200; ++trial) {
            const Bytes one = RandomVoice(family, random);
            const Bytes other = Crossing(family, random);
            EXPECT_EQ(Distance(family, one, one), 0);
            EXPECT_EQ(Distance(family, one, other), Distance(family, other, one));
            EXPECT_GT(Distance(family, one, other), 0);
        }
    }
}

TEST(VoiceSimilarity, BytesThatNoInstrumentHasAreComparedAsWell) {
    std::mt19937 random(9);
    for (const VoiceForm form :
         {VoiceForm::Dx7Packed, VoiceForm::Dx7Single, VoiceForm::Dx7Stored, VoiceForm::Reface}) {
        VoiceFeatures former = FeaturesOf({form, Bytes(SizeOfForm(form), 0xFF)});
        for (int trial = 0; trial < 500; ++trial) {
            Bytes voice(SizeOfForm(form));
            std::ranges::generate(voice, [&] { return static_cast<std::uint8_t>(random()); });
            const VoiceFeatures features = FeaturesOf({form, voice});
            EXPECT_TRUE(std::isfinite(DistanceOf(features, former)));
            EXPECT_EQ(DistanceOf(features, former), DistanceOf(former, features));
            former = features;
        }
    }
}

TEST(VoiceSimilarity, VoicesOfTwoFamiliesAreNeverAlike) {
    EXPECT_TRUE(std::isinf(DistanceOf(FeaturesOf({VoiceForm::Dx7Stored, Dx7().seeds[0]}),
                                      FeaturesOf({VoiceForm::Reface, Reface().seeds[0]}))));
}

TEST(VoiceSimilarity, NeitherNameNorFormCounts) {
    Bytes voice = Dx7().seeds[3];
    const VoiceFeatures features = FeaturesOf({VoiceForm::Dx7Stored, voice});
    EXPECT_EQ(FeaturesOf({VoiceForm::Dx7Single, std::span(voice).first(155)}), features);
    EXPECT_EQ(FeaturesOf({VoiceForm::Dx7Packed, PackedBytesOf({VoiceForm::Dx7Stored, voice})}),
              features);
    voice[Dx7Voice::name] = 'X';
    EXPECT_EQ(FeaturesOf({VoiceForm::Dx7Stored, voice}), features);
    // An operator that is switched off is one of level 0.
    Bytes silent = voice;
    voice[Dx7Voice::operatorEnable] = 0x1F;
    silent[Dx7Operator::outputLevel] = 0;
    EXPECT_EQ(FeaturesOf({VoiceForm::Dx7Stored, voice}),
              FeaturesOf({VoiceForm::Dx7Stored, silent}));
}

// The first strength byte of an operator is 128 when nothing of it is heard.
constexpr std::size_t StrengthOfOperator(std::size_t one, std::size_t featuresOfOperator) {
    return 2 + one * featuresOfOperator;
}

// A carrier counts upward; a modulator downward, while anything that it modulates is heard.
void ExpectHeard(const VoiceFeatures &features, std::size_t featuresOfOperator,
                 std::size_t operators, unsigned silent, const Algorithm &algorithm) {
    unsigned heard = 0;
    for (std::size_t one = 0; one < operators; ++one) {
        if (silent >> one & 1) {
            EXPECT_EQ(features[StrengthOfOperator(one, featuresOfOperator)], 128) << one;
            continue;
        }
        bool modulates = false;
        for (std::size_t to = 0; to < one; ++to) {
            modulates |= (algorithm.modulators[to] >> one & 1) && (heard >> to & 1);
        }
        const bool carrier = algorithm.carriers >> one & 1;
        heard |= (carrier || modulates ? 1u : 0u) << one;
        const int expected = carrier ? 1 : modulates ? -1 : 0;
        const int strength = features[StrengthOfOperator(one, featuresOfOperator)] - 128;
        EXPECT_EQ((strength > 0) - (strength < 0), expected) << one;
    }
}

TEST(VoiceSimilarity, SixOperatorsAreWiredAsTheInstrumentSoundsThem) {
    for (int number = 0; number < SixOperatorAlgorithms; ++number) {
        for (unsigned silent = 0; silent < 64; ++silent) {
            SCOPED_TRACE(testing::Message() << "algorithm " << number + 1 << " silent " << silent);
            Bytes voice = Dx7().seeds.empty() ? Bytes(Dx7VoiceSize) : Bytes(Dx7VoiceSize, 0);
            voice[Dx7Voice::algorithm] = static_cast<std::uint8_t>(number);
            voice[Dx7Voice::operatorEnable] = 0x3F;
            for (std::size_t one = 0; one < 6; ++one) {
                std::uint8_t *block = &voice[(5 - one) * Dx7OperatorSize];
                block[Dx7Operator::egLevel1] = 99;
                block[Dx7Operator::outputLevel] = silent >> one & 1 ? 0 : 99;
            }
            ExpectHeard(FeaturesOf({VoiceForm::Dx7Stored, voice}), 8, 6, silent,
                        SixOperatorAlgorithm(number));
        }
    }
}

TEST(VoiceSimilarity, FourOperatorsAreWiredAsTheInstrumentSoundsThem) {
    for (int number = 0; number < FourOperatorAlgorithms; ++number) {
        for (unsigned silent = 0; silent < 16; ++silent) {
            SCOPED_TRACE(testing::Message() << "algorithm " << number + 1 << " silent " << silent);
            Bytes voice(RefaceVoiceBytes);
            voice[RefaceVoice::algorithm] = static_cast<std::uint8_t>(number);
            for (std::size_t one = 0; one < 4; ++one) {
                std::uint8_t *block = &voice[RefaceCommonSize + one * RefaceOperatorSize];
                block[RefaceOperator::enable] = silent >> one & 1 ? 0 : 1;
                block[RefaceOperator::egLevel1] = 127;
                block[RefaceOperator::outputLevel] = 127;
            }
            ExpectHeard(FeaturesOf({VoiceForm::Reface, voice}), 9, 4, silent,
                        FourOperatorAlgorithm(number));
        }
    }
}

// Three stacks that differ, in algorithm 5.
Bytes ThreeStacks() {
    Bytes voice(Dx7VoiceSize);
    voice[Dx7Voice::algorithm] = 4;
    voice[Dx7Voice::operatorEnable] = 0x3F;
    voice[Dx7Voice::transpose] = 24;
    for (std::size_t one = 0; one < 6; ++one) {
        std::uint8_t *block = &voice[(5 - one) * Dx7OperatorSize];
        const auto number = static_cast<std::uint8_t>(one);
        block[Dx7Operator::egRate1] = 90 - 10 * number;
        block[Dx7Operator::egLevel1] = 99;
        block[Dx7Operator::outputLevel] = 99 - number;
        block[Dx7Operator::frequencyCoarse] = 1 + 2 * number;
        block[Dx7Operator::detune] = 7;
    }
    return voice;
}

void SwapOperators(Bytes &voice, std::size_t one, std::size_t other) {
    std::swap_ranges(&voice[(6 - one) * Dx7OperatorSize], &voice[(7 - one) * Dx7OperatorSize],
                     &voice[(6 - other) * Dx7OperatorSize]);
}

TEST(VoiceSimilarity, StacksThatHaveChangedPlacesAreHeardAlike) {
    const Family family = Dx7();
    const Bytes voice = ThreeStacks();
    Bytes swapped = voice;
    SwapOperators(swapped, 1, 5);
    SwapOperators(swapped, 2, 6);
    EXPECT_EQ(Distance(family, voice, swapped), 0);
    // But not half a stack, nor a carrier and its modulator.
    Bytes torn = voice;
    SwapOperators(torn, 1, 5);
    EXPECT_GT(Distance(family, voice, torn), 50);
    torn = voice;
    SwapOperators(torn, 1, 2);
    EXPECT_GT(Distance(family, voice, torn), 50);
}

TEST(VoiceSimilarity, AlgorithmsThatDifferInFeedbackAloneAreOneFamily) {
    const Family family = Dx7();
    const Bytes voice = ThreeStacks();
    const auto withAlgorithm = [&](int number) {
        Bytes other = voice;
        other[Dx7Voice::algorithm] = static_cast<std::uint8_t>(number - 1);
        return Distance(family, voice, other);
    };
    EXPECT_EQ(withAlgorithm(5), 0);
    EXPECT_EQ(withAlgorithm(6), 0); // there is no feedback
    EXPECT_GT(withAlgorithm(29), 20);
    EXPECT_GT(withAlgorithm(1), 20);
    EXPECT_GT(withAlgorithm(32), withAlgorithm(29));
}

TEST(VoiceSimilarity, WhatIsNotHeardHardlyCounts) {
    const Family family = Dx7();
    Bytes one = ThreeStacks();
    Bytes other = one;
    const std::size_t sixth = 0;
    for (Bytes *voice : {&one, &other}) {
        (*voice)[sixth + Dx7Operator::outputLevel] = 0;
    }
    other[sixth + Dx7Operator::frequencyCoarse] = 31;
    EXPECT_LE(Distance(family, one, other), 5);
    EXPECT_GT(Distance(family, one, other), 0);
    one[sixth + Dx7Operator::outputLevel] = other[sixth + Dx7Operator::outputLevel] = 99;
    EXPECT_GT(Distance(family, one, other), 25);
}

TEST(VoiceSimilarity, StepsThatAnEarHearsAlikeAreAlikeInSize) {
    const Family family = Dx7();
    const Bytes voice = ThreeStacks();
    const auto changed = [&](std::size_t offset, int value) {
        Bytes other = voice;
        other[5 * Dx7OperatorSize + offset] = static_cast<std::uint8_t>(value); // operator 1
        return Distance(family, voice, other);
    };
    // An octave up, from 1 to 2, is a quarter of four octaves.
    EXPECT_NEAR(changed(Dx7Operator::frequencyCoarse, 16) / 4,
                changed(Dx7Operator::frequencyCoarse, 2), 1.5);
    // The loudness of a carrier falls more between 99 and 89 than between 39 and 29.
    EXPECT_GT(changed(Dx7Operator::outputLevel, 89), 30);
    // Attacks quicker than 5 milliseconds are all at once.
    EXPECT_LE(changed(Dx7Operator::egRate1, 99), 1);
    EXPECT_GT(changed(Dx7Operator::egRate1, 60), 10);
}

// What the header tells, by hand. Whoever changes a byte counts VoiceFeatureVersion up, so that an
// archive makes its own anew.
TEST(VoiceSimilarity, SixOperatorsBecomeTheBytesThatAreWrittenDown) {
    ASSERT_EQ(VoiceFeatureVersion, 1);
    Bytes voice(Dx7VoiceSize);
    voice[Dx7Voice::operatorEnable] = 0x3F;
    std::uint8_t *first = &voice[5 * Dx7OperatorSize];
    const std::uint8_t block[] = {60, 50, 30, 40, 99, 50, 50, 0, 0, 0, 0,
                                  0,  0,  0,  0,  7,  99, 0,  2, 0, 7};
    std::ranges::copy(block, first);
    voice[Dx7Voice::algorithm] = 31;
    const auto operatorAt = [&](std::size_t number) {
        const VoiceFeatures features = FeaturesOf({VoiceForm::Dx7Stored, voice});
        const auto *start = &features[2 + 8 * (number - 1)];
        return Bytes(start, start + 7);
    };
    // Full strength; sustained 49 steps lower, which is 36.9 dB; an octave up; 20 of 80 rates below
    // at once; 49 * 50 of 99 * 99; 40 of 99; velocity 7.
    EXPECT_EQ(operatorAt(1), (Bytes{228, 132, 152, 15, 15, 12, 156}));
    EXPECT_EQ(operatorAt(2), (Bytes{128, 128, 128, 0, 0, 0, 128})); // silent
    first[Dx7Operator::oscillatorMode] = 1; // 100 Hz: 1.387 octaves below middle C
    first[Dx7Operator::egLevel4] = 99;      // sounds on
    first[Dx7Operator::scaleRightDepth] = 99;
    first[Dx7Operator::scaleRightCurve] = 3;
    EXPECT_EQ(operatorAt(1), (Bytes{228, 132, 95, 15, 15, 0, 228}));

    // A modulator of half the index of the largest, 6.283 radians: log(7.283) of log(13.566).
    voice[Dx7Voice::algorithm] = 4;
    std::copy_n(block, Dx7OperatorSize, &voice[4 * Dx7OperatorSize]);
    voice[4 * Dx7OperatorSize + Dx7Operator::outputLevel] = 91;
    EXPECT_EQ(operatorAt(2)[0], 52);
    EXPECT_EQ(operatorAt(2)[2], 146); // 24, of which 0.76 are heard

    voice[Dx7Voice::feedback] = 7; // of operator 6, which is silent
    voice[Dx7Voice::pitchEgLevel1] = voice[Dx7Voice::pitchEgLevel2] =
        voice[Dx7Voice::pitchEgLevel3] = voice[Dx7Voice::pitchEgLevel4] = 50;
    voice[Dx7Voice::pitchEgLevel2] = 75;
    voice[Dx7Voice::lfoPitchModDepth] = 99;
    voice[Dx7Voice::pitchModSensitivity] = 7;
    voice[Dx7Voice::transpose] = 36;
    VoiceFeatures features = FeaturesOf({VoiceForm::Dx7Stored, voice});
    EXPECT_EQ(Bytes(&features[50], &features[54]), (Bytes{0, 30, 28, 164}));
    std::copy_n(block, Dx7OperatorSize, &voice[0]);
    std::copy_n(block, Dx7OperatorSize, &voice[Dx7OperatorSize]);
    voice[Dx7Voice::lfoSpeed] = 99;
    features = FeaturesOf({VoiceForm::Dx7Stored, voice});
    EXPECT_EQ(Bytes(&features[50], &features[52]), (Bytes{50, 60}));
}

TEST(VoiceSimilarity, FourOperatorsBecomeTheBytesThatAreWrittenDown) {
    Bytes voice(RefaceVoiceBytes);
    std::uint8_t *first = &voice[RefaceCommonSize];
    const std::uint8_t block[] = {1, 127, 0, 0, 127, 127, 127, 127, 0, 0, 0, 0, 0,
                                  0, 0,   0, 0, 127, 127, 127, 0,   0, 4, 0, 64};
    std::ranges::copy(block, first);
    voice[RefaceVoice::algorithm] = 11;
    voice[RefaceVoice::partMode] = 2;
    voice[RefaceVoice::portamentoTime] = 127;
    voice[RefaceVoice::transpose] = 52;
    std::fill_n(&voice[RefaceVoice::pitchEgLevel1], 4, std::uint8_t{64});
    voice[RefaceVoice::effect1Type] = 3; // chorus
    voice[RefaceVoice::effect1Param1] = 127;
    voice[RefaceVoice::effect2Type] = 7; // reverb
    VoiceFeatures features = FeaturesOf({VoiceForm::Reface, voice});
    const auto withoutRest = [&] {
        Bytes bytes(&features[2], &features[9]);
        bytes.push_back(features[10]);
        return bytes;
    };
    EXPECT_EQ(withoutRest(), (Bytes{228, 178, 176, 0, 0, 30, 156, 178}));
    EXPECT_EQ(Bytes(&features[38], &features[50]),
              (Bytes{0, 0, 92, 0, 0, 40, 0, 0, 0, 10, 20, 10}));
    first[RefaceOperator::feedbackType] = 1;
    features = FeaturesOf({VoiceForm::Reface, voice});
    EXPECT_EQ(withoutRest().back(), 78);
    for (const int mode : {0, 1}) {
        voice[RefaceVoice::partMode] = static_cast<std::uint8_t>(mode);
        EXPECT_EQ(FeaturesOf({VoiceForm::Reface, voice})[49], 10 * mode);
    }
    first[RefaceOperator::outputLevel] = 28; // 99 steps below 127
    EXPECT_EQ(FeaturesOf({VoiceForm::Reface, voice})[2], 128);
    first[RefaceOperator::outputLevel] = 127;
    first[RefaceOperator::enable] = 0;
    features = FeaturesOf({VoiceForm::Reface, voice});
    EXPECT_EQ(withoutRest(), (Bytes{128, 128, 128, 0, 0, 0, 128, 128}));
}

} // namespace
} // namespace tonewright
