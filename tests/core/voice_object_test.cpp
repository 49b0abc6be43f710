// The block that holds a voice: its fixed layout, and blocks that lie about their sizes.
#include "core/voice_object.h"

#include "driver_rows.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

VoiceObject BlockWith(std::uint32_t payloadOffset, std::uint32_t payloadSize,
                      std::uint32_t extraSize, std::size_t realSize) {
    VoiceObject voice;
    voice.bytes.resize(std::max<std::size_t>(realSize, VoiceObjectHeaderSize));
    WriteLittle32(voice.bytes, 0, VoiceObjectMagic);
    WriteLittle32(voice.bytes, 4, payloadOffset);
    WriteLittle32(voice.bytes, 8, payloadSize);
    WriteLittle32(voice.bytes, 12, extraSize);
    voice.bytes.resize(realSize);
    return voice;
}

TEST(VoiceObject, LayoutIsTheFixedOne) {
    const std::uint8_t payload[] = {0xA1, 0xA2, 0xA3};
    const std::uint8_t extra[] = {0xB1, 0xB2};
    const VoiceObject voice = MakeVoiceObject(FirstDriverId, payload, extra);
    std::vector<std::uint8_t> expected = {
        0x6F, 0x57, 0x4E, 0x54, // "TNWo", T in the high byte
        52,   0,    0,    0,    // payloadOffset
        3,    0,    0,    0,    // payloadSize
        2,    0,    0,    0,    // extraSize
        'y',  '7',  'X',  'D',
    };
    expected.resize(52);
    expected.insert(expected.end(), {0xA1, 0xA2, 0xA3, 0xB1, 0xB2});
    EXPECT_EQ(voice.bytes, expected);
    EXPECT_EQ(RecordSizeOf(voice), 57u);
    ASSERT_TRUE(PayloadOf(voice));
    EXPECT_EQ(PayloadOf(voice)->payload[2], 0xA3);
    EXPECT_EQ(PayloadOf(voice)->extra[1], 0xB2);
}

TEST(VoiceObject, DriverIdsReadAsTextInAFile) {
    EXPECT_EQ(SecondDriverId, 0x52466478u);
    EXPECT_EQ(NoDriverId, 0x3F3F3F3Fu);
}

TEST(VoiceObject, ABlockThatPromisesMoreThanItHoldsHasNoPayload) {
    EXPECT_TRUE(PayloadOf(BlockWith(52, 10, 0, 62)));
    EXPECT_FALSE(PayloadOf(BlockWith(52, 10, 0, 61)));
    EXPECT_FALSE(PayloadOf(BlockWith(52, 8, 3, 62)));
    EXPECT_FALSE(PayloadOf(BlockWith(63, 0, 0, 62)));
    EXPECT_FALSE(PayloadOf(BlockWith(52, 0xFFFFFFFF, 0xFFFFFFFF, 62)));
    EXPECT_FALSE(PayloadOf(BlockWith(0xFFFFFFFF, 1, 52, 62)));
    EXPECT_FALSE(PayloadOf(BlockWith(52, 0, 0, 51)));
    EXPECT_FALSE(PayloadOf(VoiceObject{}));
    EXPECT_EQ(RecordSizeOf(BlockWith(52, 10, 0, 61)), 0u);
}

TEST(VoiceObject, AWrongMagicHasNoPayload) {
    VoiceObject voice = BlockWith(52, 10, 0, 62);
    voice.bytes[0] ^= 1;
    EXPECT_FALSE(PayloadOf(voice));
    EXPECT_TRUE(MutablePayloadOf(voice).empty());
}

TEST(VoiceObject, ThePayloadIsReachedThroughItsOffset) {
    VoiceObject voice = BlockWith(60, 2, 0, 62);
    voice.bytes[60] = 7;
    EXPECT_EQ(PayloadOf(voice)->payload[0], 7);
    MutablePayloadOf(voice)[1] = 9;
    EXPECT_EQ(voice.bytes[61], 9);
}

TEST(VoiceName, LosesTrailingBytesOf0x20OrBelowButNeverItsFirst) {
    const auto text = [](const char(&tenBytes)[11]) {
        return std::string(
            MakeVoiceNameText({reinterpret_cast<const std::uint8_t *>(tenBytes), 10}));
    };
    EXPECT_EQ(text("ABC       "), "ABC");
    EXPECT_EQ(text("          "), " ");
    EXPECT_EQ(text("\0BCDEFGHIJ"), "");
    EXPECT_EQ(text("AB\0DEFGHIJ"), "AB");
    EXPECT_EQ(text("ABCDEFGHI\x7F"), "ABCDEFGHI\x7F");
    EXPECT_EQ(text("A\x01\x02\x03\x04\x05\x06\x07\x1F "), "A");
}

} // namespace
} // namespace tonewright
