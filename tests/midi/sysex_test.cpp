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
}

} // namespace
} // namespace tonewright
