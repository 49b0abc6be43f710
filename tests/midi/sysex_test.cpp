// The checksum of bulk dumps.
#include "midi/sysex.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

TEST(SysexChecksum, BringsTheSumToAMultipleOf128) {
    EXPECT_EQ(SysexChecksum({}), 0);
    EXPECT_EQ(SysexChecksum(Bytes{1}), 0x7F);
    EXPECT_EQ(SysexChecksum(Bytes{0x7F}), 1);
    EXPECT_EQ(SysexChecksum(Bytes{0x40, 0x40}), 0);
    EXPECT_EQ(SysexChecksum(Bytes{0x80}), 0);
    EXPECT_EQ(SysexChecksum(Bytes{0xFF, 0xFF}), 2);
    EXPECT_EQ(SysexChecksum(Bytes{1, 2, 3, 4, 5}), 0x71);
    EXPECT_EQ(SysexChecksum(Bytes(4096, 0x7F)), 0);
    EXPECT_EQ(SysexChecksum(Bytes(4095, 0x7F)), 0x7F);
    EXPECT_EQ(SysexChecksum(Bytes(1024, 0xFF)), 0);
    EXPECT_EQ(SysexChecksum(Bytes(1033, 0xFF)), 9);
}

TEST(SysexChecksum, CountsEachByteOfAnyLengthOnce) {
    Bytes bytes;
    unsigned sum = 0;
    for (unsigned size = 0; size < 4200; ++size) {
        ASSERT_EQ(SysexChecksum(bytes), (128 - sum % 128) % 128) << size << " bytes";
        bytes.push_back(static_cast<std::uint8_t>(size % 3 == 0 ? 0xFF : size * 7));
        sum += bytes.back();
    }
}

} // namespace
} // namespace tonewright
