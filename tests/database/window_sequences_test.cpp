// Operations of the catalogue window in random order, against a model of it. The seed is the one
// that the test program prints.
#include "window_model.h"

#include "support/put_back.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <random>

namespace tonewright {
namespace {

TEST(DatabaseWindowSequences, HoldWhatTheModelHolds) {
    constexpr int Sequences = 40, BytesOfSequence = 400;
    const TempFolder home;
    PlatformFolders.documents = home.Folder();
    const std::string folder = home.File("My Tonewright 17 Documents");
    std::filesystem::create_directory(folder);
    const int seed = testing::UnitTest::GetInstance()->random_seed();
    int operations = 0;
    for (int number = 0; number < Sequences && !testing::Test::HasFailure(); ++number) {
        std::mt19937 random(static_cast<unsigned>(seed * 1000 + number));
        std::vector<std::uint8_t> input(BytesOfSequence);
        for (std::uint8_t &byte : input) {
            byte = static_cast<std::uint8_t>(random());
        }
        window_model::Sequence sequence(input, folder, [&](bool holds, const char *what) {
            ASSERT_TRUE(holds) << what << ", sequence " << number << " of seed " << seed;
        });
        operations += sequence.Run();
    }
    EXPECT_GT(operations, Sequences * BytesOfSequence / 4);
}

} // namespace
} // namespace tonewright
