// The algorithms by measuring: switching an operator on or off changes what is heard exactly where
// a way leads from it to an operator that is heard, in every choice of the others.
#include "panel.h"
#include "synth/algorithms.h"
#include "synth/synth.h"
#include "voices.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace tonewright {
namespace {

// As printed on the panel.
const std::vector<PrintedAlgorithm> Panel = {
    {"13", "65 54 43 21", "6"},   {"13", "65 54 43 21", "2"},   {"14", "65 54 32 21", "6"},
    {"14", "65 54 32 21", "46"},  {"135", "65 43 21", "6"},     {"135", "65 43 21", "56"},
    {"13", "65 53 43 21", "6"},   {"13", "65 53 43 21", "4"},   {"13", "65 53 43 21", "2"},
    {"14", "64 54 32 21", "3"},   {"14", "64 54 32 21", "6"},   {"13", "63 53 43 21", "2"},
    {"13", "63 53 43 21", "6"},   {"13", "64 54 43 21", "6"},   {"13", "64 54 43 21", "2"},
    {"1", "65 51 43 31 21", "6"}, {"1", "65 51 43 31 21", "2"}, {"1", "65 54 41 31 21", "3"},
    {"145", "65 64 32 21", "6"},  {"124", "64 54 32 31", "3"},  {"1245", "65 64 32 31", "3"},
    {"1345", "65 64 63 21", "6"}, {"1245", "65 64 32", "6"},    {"12345", "65 64 63", "6"},
    {"12345", "65 64", "6"},      {"124", "64 54 32", "6"},     {"124", "64 54 32", "3"},
    {"136", "54 43 21", "5"},     {"1235", "65 43", "6"},       {"1236", "54 43", "5"},
    {"12345", "65", "6"},         {"123456", "", "6"}};

// Every operator at full level and at a ratio of its own.
SixVoice LoudVoice(int algorithm, int feedback) {
    SixVoice voice = InitialVoice();
    for (int number = 1; number <= 6; ++number) {
        voice.Operator(number, OutputLevel) = 80;
        voice.Operator(number, Coarse) = static_cast<std::uint8_t>(number);
    }
    voice.bytes[AlgorithmByte] = static_cast<std::uint8_t>(algorithm);
    voice.bytes[FeedbackByte] = static_cast<std::uint8_t>(feedback);
    return voice;
}

std::vector<float> Heard(const SixVoice &voice, unsigned enabled) {
    const PreparedVoice prepared = PrepareSixOperatorVoice(voice.bytes, enabled);
    Synth synth = MakeSynth(48000.0, 1);
    SetVoice(synth, &prepared, false);
    NoteOn(synth, 60, 100);
    std::vector<float> samples;
    for (int block = 0; block < 3; ++block) {
        float out[BlockFrames];
        float right[BlockFrames];
        Render(synth, out, right);
        samples.insert(samples.end(), out, out + BlockFrames);
    }
    return samples;
}

TEST(Algorithms, ConnectTheSixOperatorsAsThePanelShows) {
    ASSERT_EQ(Panel.size(), 32u);
    for (int algorithm = 0; algorithm < 32; ++algorithm) {
        const SixVoice voice = LoudVoice(algorithm, 0);
        for (unsigned enabled = 1; enabled < 64; ++enabled) {
            const std::vector<float> with = Heard(voice, enabled);
            for (char number = '1'; number <= '6'; ++number) {
                if ((enabled & OperatorBit(number)) == 0) {
                    continue;
                }
                const bool changes = Heard(voice, enabled & ~OperatorBit(number)) != with;
                EXPECT_EQ(changes, IsHeard(Panel[algorithm], number, enabled))
                    << "algorithm " << algorithm + 1 << ", operator " << number << " of "
                    << enabled;
            }
        }
    }
}

TEST(Algorithms, AddTheCarriersAndNothingElse) {
    for (int algorithm = 0; algorithm < 32; ++algorithm) {
        const SixVoice voice = LoudVoice(algorithm, 0);
        for (char number = '1'; number <= '6'; ++number) {
            const std::vector<float> alone = Heard(voice, OperatorBit(number));
            const bool silent = alone == std::vector<float>(alone.size(), 0.0f);
            EXPECT_EQ(!silent, Panel[algorithm].carriers.find(number) != std::string::npos)
                << "algorithm " << algorithm + 1 << ", operator " << number;
        }
    }
}

TEST(Algorithms, FeedBackWhereThePanelShowsIt) {
    for (int algorithm = 0; algorithm < 32; ++algorithm) {
        const SixVoice without = LoudVoice(algorithm, 0);
        const SixVoice with = LoudVoice(algorithm, 7);
        const std::string &feedback = Panel[algorithm].feedback;
        unsigned loop = 0;
        for (char number = feedback.front(); number <= feedback.back(); ++number) {
            loop |= OperatorBit(number);
        }
        for (unsigned enabled = 1; enabled < 64; ++enabled) {
            const bool heard = IsHeard(Panel[algorithm], feedback.front(), enabled);
            EXPECT_EQ(Heard(with, enabled) != Heard(without, enabled),
                      heard && (enabled & loop) == loop)
                << "algorithm " << algorithm + 1 << ", operators " << enabled;
        }
    }
}

TEST(Algorithms, HaveModulatorsOfHigherNumbersOnly) {
    for (int number = 0; number < SixOperatorAlgorithms; ++number) {
        const Algorithm &algorithm = SixOperatorAlgorithm(number);
        for (int i = 0; i < MaxOperators; ++i) {
            EXPECT_EQ(algorithm.modulators[i] & ((2u << i) - 1), 0u) << number << ", " << i;
        }
    }
    for (int number = 0; number < FourOperatorAlgorithms; ++number) {
        const Algorithm &algorithm = FourOperatorAlgorithm(number);
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(algorithm.modulators[i] & ((2u << i) - 1), 0u) << number << ", " << i;
        }
    }
}

// What adds to the bus of an operator is what modulates it, and the carriers are what is heard.
void ExpectBuses(const Algorithm &algorithm, int operators) {
    unsigned heard = 0;
    for (int i = 0; i < operators; ++i) {
        heard |= algorithm.outputBus[i] == HeardBus ? 1u << i : 0u;
        unsigned modulators = 0;
        for (int j = 0; j < operators; ++j) {
            modulators |= algorithm.outputBus[j] == algorithm.inputBus[i] ? 1u << j : 0u;
        }
        EXPECT_EQ(modulators, algorithm.modulators[i]) << "operator " << i + 1;
    }
    EXPECT_EQ(heard, algorithm.carriers);
}

TEST(Algorithms, HaveABusForWhatModulatesTheSameOperators) {
    for (int number = 0; number < SixOperatorAlgorithms; ++number) {
        SCOPED_TRACE(number);
        ExpectBuses(SixOperatorAlgorithm(number), 6);
    }
    for (int number = 0; number < FourOperatorAlgorithms; ++number) {
        SCOPED_TRACE(number);
        ExpectBuses(FourOperatorAlgorithm(number), 4);
    }
}

} // namespace
} // namespace tonewright
