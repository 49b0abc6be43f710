// The two byte forms of a DX7 voice and its name.
#include "drivers/dx7/voice_codec.h"

#include "common/settings.h"
#include "support/bank_bytes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Unpack(const Bytes &packed) {
    Bytes voice(156, 0xAA); // so that a byte that is not written shows
    UnpackDx7Voice(Dx7Unpacked(voice.data(), 156), Dx7PackedConst(packed.data(), 128));
    return voice;
}

Bytes Pack(const Bytes &voice) {
    Bytes packed(128, 0xAA);
    PackDx7Voice(Dx7Packed(packed.data(), 128), Dx7UnpackedConst(voice.data(), 156));
    return packed;
}

std::string NameOf(const std::array<std::uint8_t, 10> &name) {
    return Dx7NameText(name.data());
}

TEST(Dx7VoiceCodec, UnpackPutsEveryFieldInItsPlace) {
    Bytes expected = {95, 29, 20, 50, 99, 95, 0, 0, 41, 0, 19, 1, 3, 3, 2, 5, 79, 1, 14, 88, 7};
    const Bytes other = {99, 98, 97, 96, 90, 80, 70, 0, 39, 11, 12, 2, 0, 0, 0, 7, 99, 0, 1, 5, 5};
    for (int block = 1; block < 6; ++block) {
        expected.insert(expected.end(), other.begin(), other.end());
    }
    const Bytes common = {84, 95, 95, 60, 50,  50,  50,  50,  3,   6,   1,   6,   33,  44,  55,
                          1,  4,  3,  3,  'V', 'O', 'I', 'C', 'E', ' ', '0', '4', ' ', ' ', 0x3F};
    expected.insert(expected.end(), common.begin(), common.end());
    EXPECT_EQ(Unpack(TestPackedVoice(3)), expected);
}

TEST(Dx7VoiceCodec, PackPutsEveryFieldInItsPlaceAndDropsTheLevelOfADisabledOperator) {
    const Bytes expected = {
        96,  25,  25,  67,  99,  75,  0,   0,   0,   0,  0,  0,    0x73, 0x18, 79,   2,    0, //
        95,  50,  35,  78,  99,  75,  0,   0,   0,   0,  0,  0,    0x3B, 0,    0,    28,   0, //
        95,  20,  20,  50,  99,  95,  0,   0,   0,   0,  0,  0,    0x3B, 8,    99,   2,    0, //
        95,  29,  20,  50,  99,  95,  0,   0,   0,   0,  0,  0,    0x3B, 0x18, 89,   2,    0, //
        95,  20,  20,  50,  99,  95,  0,   0,   0,   0,  0,  0,    0x73, 8,    99,   2,    0, //
        95,  29,  20,  50,  99,  95,  0,   0,   41,  0,  19, 0x0C, 0x03, 0x18, 79,   0x3F, 9, //
        94,  67,  95,  60,  50,  50,  50,  50,  4,   6,  34, 33,   0,    0,    0x38, 24,      //
        'E', '.', 'P', 'I', 'A', 'N', 'O', ' ', '1', 'x'};
    EXPECT_EQ(Pack(TestUnpackedVoice()), expected);
}

TEST(Dx7VoiceCodec, UnpackThenPackOfAudibleVoicesWithSmallDetuneGivesTheSameBytes) {
    for (int number = 0; number < 32; ++number) {
        EXPECT_EQ(Pack(Unpack(TestPackedVoice(number))), TestPackedVoice(number)) << number;
    }
}

TEST(Dx7VoiceCodec, BitsThatNoFieldHoldsAreDropped) {
    Bytes voice = TestPackedVoice(0);
    voice[11] |= 0xF0;
    voice[12] |= 0x80;
    voice[13] |= 0xE0;
    voice[15] |= 0xC0;
    voice[111] |= 0xF0;
    voice[116] |= 0x80;
    EXPECT_EQ(Pack(Unpack(voice)), TestPackedVoice(0));
}

TEST(Dx7VoiceCodec, ADetuneAboveSevenLosesItsHighestBitOnUnpacking) {
    for (std::size_t block = 0; block < 6; ++block) {
        for (unsigned detune = 0; detune < 16; ++detune) {
            Bytes packed = TestPackedVoice(0);
            packed[17 * block + 12] = static_cast<std::uint8_t>(detune << 3 | 2);
            const Bytes voice = Unpack(packed);
            EXPECT_EQ(voice[21 * block + 20], detune % 8) << block << " " << detune;
            EXPECT_EQ(voice[21 * block + 13], 2) << block << " " << detune;
        }
    }
}

TEST(Dx7VoiceCodec, ADetuneOfFourteenUnpacksToSix) {
    Bytes packed = TestPackedVoice(0);
    packed[12] = 14 << 3;
    EXPECT_EQ(Unpack(packed)[20], 6);
}

TEST(Dx7VoiceCodec, WithWholeDetuneAllFourBitsAreRead) {
    WholeDetune = 1;
    for (std::size_t block = 0; block < 6; ++block) {
        for (unsigned detune = 0; detune < 16; ++detune) {
            Bytes packed = TestPackedVoice(0);
            packed[17 * block + 12] = static_cast<std::uint8_t>(0x80 | detune << 3 | 5);
            const Bytes voice = Unpack(packed);
            EXPECT_EQ(voice[21 * block + 20], detune) << block;
            EXPECT_EQ(voice[21 * block + 13], 5) << block << " " << detune;
            EXPECT_EQ(Pack(voice)[17 * block + 12], detune << 3 | 5) << block;
        }
    }
}

TEST(Dx7VoiceCodec, DetuneIsPackedFourBitsWide) {
    Bytes voice = TestUnpackedVoice();
    voice[20] = 14;
    voice[13] = 0;
    EXPECT_EQ(Pack(voice)[12], 0x70);
}

TEST(Dx7VoiceCodec, AnOperatorIsEnabledWhenItsLevelIsNotZero) {
    const std::uint8_t bits[] = {0x20, 0x10, 0x08, 0x04, 0x02, 0x01};
    for (std::size_t block = 0; block < 6; ++block) {
        Bytes silent = TestPackedVoice(0);
        silent[17 * block + 14] = 0;
        EXPECT_EQ(Unpack(silent)[155], 0x3F & ~bits[block]) << block;

        Bytes alone = TestPackedVoice(0);
        for (std::size_t other = 0; other < 6; ++other) {
            alone[17 * other + 14] = other == block ? 1 : 0;
        }
        EXPECT_EQ(Unpack(alone)[155], bits[block]) << block;
    }
}

TEST(Dx7VoiceCodec, ALevelWithItsHighestBitAloneEnablesItsOperator) {
    Bytes packed = TestPackedVoice(0);
    packed[17 * 2 + 14] = 0x80;
    const Bytes voice = Unpack(packed);
    EXPECT_EQ(voice[21 * 2 + 16], 0x80);
    EXPECT_EQ(voice[155], 0x3F);
    EXPECT_EQ(Pack(voice)[17 * 2 + 14], 0x80);
}

TEST(Dx7VoiceCodec, TheTwoHighestEnableBitsBelongToNoOperator) {
    Bytes voice = TestUnpackedVoice();
    voice[155] = 0xC0;
    EXPECT_EQ(Pack(voice)[17 * 0 + 14], 0);
    voice[155] = 0x2F;
    const Bytes packed = Pack(voice);
    voice[155] = 0xEF;
    EXPECT_EQ(Pack(voice), packed);
}

TEST(Dx7VoiceCodec, AllOperatorsEnabledPackWithTheirLevels) {
    Bytes voice = TestUnpackedVoice();
    voice[155] = 0x3F;
    const Bytes packed = Pack(voice);
    const std::uint8_t levels[] = {79, 58, 99, 89, 99, 79};
    for (std::size_t block = 0; block < 6; ++block) {
        EXPECT_EQ(packed[17 * block + 14], levels[block]) << block;
    }
}

TEST(Dx7VoiceCodec, EachEnableBitKeepsTheLevelOfItsOwnOperator) {
    const std::uint8_t bits[] = {0x20, 0x10, 0x08, 0x04, 0x02, 0x01};
    const std::uint8_t levels[] = {79, 58, 99, 89, 99, 79};
    for (std::size_t enabled = 0; enabled < 6; ++enabled) {
        Bytes voice = TestUnpackedVoice();
        voice[155] = bits[enabled];
        const Bytes packed = Pack(voice);
        for (std::size_t block = 0; block < 6; ++block) {
            EXPECT_EQ(packed[17 * block + 14], block == enabled ? levels[block] : 0);
        }
    }
}

TEST(Dx7VoiceCodec, NoOperatorEnabledPacksSixZeroLevelsAndUnpacksAsNoneEnabled) {
    Bytes voice = TestUnpackedVoice();
    voice[155] = 0;
    const Bytes packed = Pack(voice);
    for (std::size_t block = 0; block < 6; ++block) {
        EXPECT_EQ(packed[17 * block + 14], 0) << block;
    }
    EXPECT_EQ(Unpack(packed)[155], 0);
}

TEST(Dx7VoiceCodec, ADisabledOperatorKeepsItsLevelWhileUnpacked) {
    const Bytes voice = TestUnpackedVoice();
    const VoiceObject object = MakeDx7VoiceObject(Dx7UnpackedConst(voice.data(), 156));
    EXPECT_EQ(object.bytes[52 + 21 + 16], 58);
    EXPECT_EQ(object.bytes[52 + 155], 0x2F);
}

TEST(Dx7VoiceCodec, CopiedFieldsPassOnAnyByteUnchanged) {
    const Bytes voice = Unpack(Bytes(128, 0xFF));
    Bytes expected;
    for (int block = 0; block < 6; ++block) {
        const Bytes one = {255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255,
                           3,   3,   7,   3,   7,   255, 1,   31,  255, 7};
        expected.insert(expected.end(), one.begin(), one.end());
    }
    const Bytes common = {255, 255, 255, 255, 255, 255, 255, 255, 255, 7,
                          1,   255, 255, 255, 255, 1,   7,   7,   255, 255,
                          255, 255, 255, 255, 255, 255, 255, 255, 255, 0x3F};
    expected.insert(expected.end(), common.begin(), common.end());
    EXPECT_EQ(voice, expected);
}

TEST(Dx7VoiceCodec, PackingCutsBitFieldsToTheirWidth) {
    const Bytes packed = Pack(Bytes(156, 0xFF));
    Bytes expected;
    for (int block = 0; block < 6; ++block) {
        const Bytes one = {255, 255, 255,  255,  255,  255, 255,  255, 255,
                           255, 255, 0x0F, 0x7F, 0x1F, 255, 0x3F, 255};
        expected.insert(expected.end(), one.begin(), one.end());
    }
    const Bytes common = {255, 255,  255, 255, 255, 255, 255, 255, 255, 0x0F, 255, 255, 255,
                          255, 0x7F, 255, 255, 255, 255, 255, 255, 255, 255,  255, 255, 255};
    expected.insert(expected.end(), common.begin(), common.end());
    EXPECT_EQ(packed, expected);
}

TEST(Dx7VoiceCodec, EachPackedBitReachesOneField) {
    struct Row {
        std::size_t byte, bit, field;
        std::uint8_t value;
    };
    const Row rows[] = {
        {11, 0, 11, 1},   {11, 1, 11, 2},   {11, 2, 12, 1},   {11, 3, 12, 2},   {12, 0, 13, 1},
        {12, 1, 13, 2},   {12, 2, 13, 4},   {12, 3, 20, 1},   {12, 4, 20, 2},   {12, 5, 20, 4},
        {13, 0, 14, 1},   {13, 1, 14, 2},   {13, 2, 15, 1},   {13, 3, 15, 2},   {13, 4, 15, 4},
        {15, 0, 17, 1},   {15, 1, 18, 1},   {15, 2, 18, 2},   {15, 3, 18, 4},   {15, 4, 18, 8},
        {15, 5, 18, 16},  {111, 0, 135, 1}, {111, 1, 135, 2}, {111, 2, 135, 4}, {111, 3, 136, 1},
        {116, 0, 141, 1}, {116, 1, 142, 1}, {116, 2, 142, 2}, {116, 3, 142, 4}, {116, 4, 143, 1},
        {116, 5, 143, 2}, {116, 6, 143, 4},
    };
    for (const Row &row : rows) {
        Bytes packed(128, 0);
        packed[row.byte] = static_cast<std::uint8_t>(1u << row.bit);
        Bytes voice(156, 0);
        voice[row.field] = row.value;
        EXPECT_EQ(Unpack(packed), voice) << "byte " << row.byte << " bit " << row.bit;
        EXPECT_EQ(Pack(voice), packed) << "byte " << row.byte << " bit " << row.bit;
    }
}

TEST(Dx7VoiceCodec, AVoiceOfZeroBytesUnpacksToZerosWithNoOperatorEnabled) {
    EXPECT_EQ(Unpack(Bytes(128, 0)), Bytes(156, 0));
}

TEST(Dx7VoiceCodec, AVoiceObjectIsABlockOf208BytesWithTheDriversId) {
    const Bytes voice = TestUnpackedVoice();
    const VoiceObject object = MakeDx7VoiceObject(Dx7UnpackedConst(voice.data(), 156));
    Bytes expected = {'o', 'W', 'N', 'T', 52, 0, 0,   0,   156, 0,
                      0,   0,   0,   0,   0,  0, 'y', '7', 'X', 'D'};
    expected.resize(52, 0);
    expected.insert(expected.end(), voice.begin(), voice.end());
    EXPECT_EQ(object.bytes, expected);
}

TEST(Dx7VoiceName, TenBlanksReadAsOneBlank) {
    EXPECT_EQ(NameOf({' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '}), " ");
}

TEST(Dx7VoiceName, TrailingBlanksAreTakenOff) {
    EXPECT_EQ(NameOf({'A', 'B', 'C', ' ', ' ', ' ', ' ', ' ', ' ', ' '}), "ABC");
}

TEST(Dx7VoiceName, TrailingBytesUpToABlankAreTakenOff) {
    for (int byte = 0; byte <= 0x20; ++byte) {
        const auto last = static_cast<std::uint8_t>(byte);
        EXPECT_EQ(NameOf({'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', last}), "ABCDEFGHI") << byte;
    }
    EXPECT_EQ(NameOf({'A', 'B', 'C', 'D', 'E', 'F', 'G', 'H', 'I', 0x21}), "ABCDEFGHI!");
}

TEST(Dx7VoiceName, BytesAbove7FAreTextAtTheEndToo) {
    EXPECT_EQ(NameOf({'A', 0x80, ' ', 0xFF, ' ', 0, 9, 31, 32, ' '}), "A\x80 \xFF");
}

TEST(Dx7VoiceName, TheFirstByteAlwaysStays) {
    EXPECT_EQ(NameOf({5, ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' ', ' '}), "\x05");
}

TEST(Dx7VoiceName, AZeroByteInsideEndsTheName) {
    EXPECT_EQ(NameOf({'A', 'B', 0, 'D', ' ', ' ', ' ', ' ', ' ', ' '}), "AB");
    EXPECT_EQ(NameOf({0, 0, 0, 0, 0, 0, 0, 0, 0, 0}), "");
}

TEST(Dx7VoiceName, InnerAndLeadingBlanksStay) {
    EXPECT_EQ(NameOf({' ', 'A', ' ', ' ', 'B', ' ', ' ', ' ', ' ', ' '}), " A  B");
}

TEST(Dx7VoiceName, TenFullBytesAreTheWholeName) {
    EXPECT_EQ(NameOf({'0', '1', '2', '3', '4', '5', '6', '7', '8', '9'}), "0123456789");
}

TEST(Dx7VoiceName, OfAVoiceIsItsTextAndLength) {
    const Bytes voice = TestUnpackedVoice();
    std::string name = "before";
    EXPECT_EQ(Dx7VoiceName(name, MakeDx7VoiceObject(Dx7UnpackedConst(voice.data(), 156))), 10);
    EXPECT_EQ(name, "E.PIANO 1x");
}

TEST(Dx7VoiceName, OfABlockTooShortForItIsRefusedAndLeavesTheText) {
    std::string name = "before";
    EXPECT_EQ(Dx7VoiceName(name, VoiceObject{}), 0);
    EXPECT_EQ(Dx7VoiceName(name, MakeVoiceObject(Dx7DriverId, Bytes(155, 'A'))), 0);
    VoiceObject cut = MakeVoiceObject(Dx7DriverId, Bytes(156, 'A'));
    cut.bytes.pop_back();
    EXPECT_EQ(Dx7VoiceName(name, cut), 0);
    EXPECT_EQ(name, "before");
}

} // namespace
} // namespace tonewright
