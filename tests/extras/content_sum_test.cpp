#include "extras/content_sum.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace tonewright {
namespace {

std::uint64_t SumOf(const std::string &text, std::size_t piece = std::string::npos) {
    ContentSum sum;
    for (std::size_t at = 0; at < text.size(); at += std::min(piece, text.size())) {
        const std::string part = text.substr(at, piece);
        sum.Add(std::span(reinterpret_cast<const std::uint8_t *>(part.data()), part.size()));
    }
    return sum.Value();
}

// Values that other implementations of the sum give.
TEST(ContentSum, IsThePublishedOne) {
    EXPECT_EQ(SumOf(""), 0xEF46DB3751D8E999);
    EXPECT_EQ(SumOf("a"), 0xD24EC4F1A98C6E5B);
    EXPECT_EQ(SumOf("abc"), 0x44BC2CF5AD770999);
    EXPECT_EQ(SumOf("Nobody inspects the spammish repetition"), 0xFBCEA83C8A378BF1);
}

TEST(ContentSum, DoesNotDependOnThePieces) {
    std::string text;
    for (int number = 0; number < 300; ++number) {
        text += std::to_string(number * 7919);
    }
    for (std::size_t size = 0; size < 200; ++size) {
        const std::string start = text.substr(0, size);
        for (const std::size_t piece : {1, 3, 8, 31, 32, 33, 64}) {
            EXPECT_EQ(SumOf(start, piece), SumOf(start)) << size << " bytes by " << piece;
        }
    }
    EXPECT_NE(SumOf(text), SumOf(text + '0'));
    EXPECT_NE(SumOf(std::string(10, '\0')), SumOf(std::string(11, '\0')));
}

} // namespace
} // namespace tonewright
