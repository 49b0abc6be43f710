// What a user does in the editor of a voice in random order, over random voices, against a model
// of it. The seed is the one that the test program prints.
#include "sheet_model.h"

#include <gtest/gtest.h>

#include <random>

namespace tonewright {
namespace {

TEST(VoiceSheetSequences, HoldWhatTheModelHolds) {
    constexpr int Sequences = 100, BytesOfSequence = 600;
    const int seed = testing::UnitTest::GetInstance()->random_seed();
    int steps = 0;
    for (int number = 0; number < Sequences && !testing::Test::HasFailure(); ++number) {
        std::mt19937 random(static_cast<unsigned>(seed * 1000 + number));
        std::vector<std::uint8_t> input(BytesOfSequence);
        for (std::uint8_t &byte : input) {
            byte = static_cast<std::uint8_t>(random());
        }
        sheet_model::Sequence sequence(input, [&](bool holds, const char *what) {
            ASSERT_TRUE(holds) << what << ", sequence " << number << " of seed " << seed;
        });
        steps += sequence.Run();
    }
    EXPECT_GT(steps, Sequences * 60);
}

} // namespace
} // namespace tonewright
