// The voices of the example bank as they are heard.
#include "voices.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace tonewright {
namespace {

TEST(ExampleVoices, AreLoudEnoughAndEndWithTheirKey) {
    for (int place = 1; place <= 32; ++place) {
        constexpr int WindAndWaves = 31; // take 20 seconds to fall silent
        const std::vector<double> samples = RenderedKey(ExampleVoice(place).Prepared(), 60, 100,
                                                        2.0, place == WindAndWaves ? 24.0 : 12.0);
        double loudest = 0.0;
        for (const double sample : samples) {
            ASSERT_TRUE(std::isfinite(sample)) << place;
            loudest = std::max(loudest, std::fabs(sample));
        }
        EXPECT_GT(loudest, 0.7) << place;
        EXPECT_LT(loudest, 4.0) << place;
        EXPECT_EQ(std::count(samples.end() - 48000, samples.end(), 0.0), 48000) << place;
    }
}

} // namespace
} // namespace tonewright
