// The byte form of a reface DX voice: its layout, name, lists and place.
#include "drivers/reface_dx/voice_codec.h"

#include "common/text.h"
#include "support/reface_bytes.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

VoiceObject TestVoice(int number = 0) {
    return VoiceObject{TestRefaceBlock(number)};
}

// The name of a voice with these ten name bytes.
std::string NameOf(const std::string &tenBytes) {
    VoiceObject voice = TestVoice();
    std::copy(tenBytes.begin(), tenBytes.end(), voice.bytes.begin() + 52);
    std::string name = "former";
    const int length = RefaceVoiceName(name, voice);
    EXPECT_EQ(length, static_cast<int>(name.size()));
    return name;
}

std::string TenBytes(std::string start, char filler) {
    start.resize(10, filler);
    return start;
}

TEST(RefaceVoiceObject, ANewOneIsZeroBehindItsHeader) {
    Bytes expected = {0x6F, 0x57, 0x4E, 0x54, 52, 0, 0,   0,   38,  0,
                      0,    0,    112,  0,    0,  0, 'x', 'd', 'F', 'R'};
    expected.resize(202, 0);
    EXPECT_EQ(MakeRefaceVoiceObject().bytes, expected);
}

TEST(RefaceVoiceObject, AZeroFilledOneHasAnEmptyNameAlgorithm0AndATransposeOfMinus40) {
    const VoiceObject voice = MakeRefaceVoiceObject();
    std::string name = "former";
    EXPECT_EQ(RefaceVoiceName(name, voice), 0);
    EXPECT_EQ(name, "");
    const auto parts = RefaceVoiceOf(voice);
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->common[RefaceVoice::algorithm], 0);
    EXPECT_EQ(parts->common[RefaceVoice::transpose] - RefaceTransposeBias, -40);
}

TEST(RefaceVoiceObject, EveryFieldOfTheCommonBlockLiesAtItsOffset) {
    namespace V = RefaceVoice;
    const VoiceObject voice = TestVoice(5);
    const auto parts = RefaceVoiceOf(voice);
    ASSERT_TRUE(parts);
    const auto &common = parts->common;
    EXPECT_EQ(common[V::name], 'R');
    EXPECT_EQ(common[V::reserved1], 0x51);
    EXPECT_EQ(common[V::transpose], 52);
    EXPECT_EQ(common[V::partMode], 1);
    EXPECT_EQ(common[V::portamentoTime], 17);
    EXPECT_EQ(common[V::pitchBend], 42);
    EXPECT_EQ(common[V::algorithm], 5);
    EXPECT_EQ(common[V::lfoWave], 6);
    EXPECT_EQ(common[V::lfoSpeed], 10);
    EXPECT_EQ(common[V::lfoDelay], 21);
    EXPECT_EQ(common[V::lfoModDepth], 22);
    EXPECT_EQ(common[V::pitchEgRate1], 101);
    EXPECT_EQ(common[V::pitchEgRate4], 104);
    EXPECT_EQ(common[V::pitchEgLevel1], 64);
    EXPECT_EQ(common[V::pitchEgLevel4], 67);
    EXPECT_EQ(common[V::effect1Type], 7);
    EXPECT_EQ(common[V::effect1Param1], 31);
    EXPECT_EQ(common[V::effect1Param2], 32);
    EXPECT_EQ(common[V::effect2Type], 1);
    EXPECT_EQ(common[V::effect2Param1], 33);
    EXPECT_EQ(common[V::effect2Param2], 34);
    EXPECT_EQ(common[V::reserved2], 0x61);
    EXPECT_EQ(common[V::reserved2 + 2], 0x63);
}

TEST(RefaceVoiceObject, EveryFieldOfAnOperatorLiesAtItsOffset) {
    namespace O = RefaceOperator;
    const VoiceObject voice = TestVoice();
    const auto parts = RefaceVoiceOf(voice);
    ASSERT_TRUE(parts);
    for (std::size_t index = 0; index < RefaceOperatorCount; ++index) {
        const auto block = parts->operators.subspan(28 * index, 28);
        EXPECT_EQ(block.data() - voice.bytes.data(), 52 + 38 + 28 * static_cast<int>(index));
        EXPECT_EQ(block[O::enable], 1);
        EXPECT_EQ(block[O::egRate1], 120);
        EXPECT_EQ(block[O::egRate4], 90);
        EXPECT_EQ(block[O::egLevel1], 127);
        EXPECT_EQ(block[O::egLevel4], 0);
        EXPECT_EQ(block[O::kbdRateScaling], 15);
        EXPECT_EQ(block[O::kbdLeftDepth], 5);
        EXPECT_EQ(block[O::kbdRightDepth], 6);
        EXPECT_EQ(block[O::kbdLeftCurve], 2);
        EXPECT_EQ(block[O::kbdRightCurve], 3);
        EXPECT_EQ(block[O::lfoAmdDepth], 9);
        EXPECT_EQ(block[O::lfoPmd], 1);
        EXPECT_EQ(block[O::pitchEg], 0);
        EXPECT_EQ(block[O::levelVelocitySense], 33);
        EXPECT_EQ(block[O::outputLevel], 90 + index);
        EXPECT_EQ(block[O::feedbackLevel], 45);
        EXPECT_EQ(block[O::feedbackType], 1);
        EXPECT_EQ(block[O::frequencyMode], 0);
        EXPECT_EQ(block[O::frequencyCoarse], 3);
        EXPECT_EQ(block[O::frequencyFine], 50);
        EXPECT_EQ(block[O::frequencyDetune], 64);
        EXPECT_EQ(block[O::reserved3], 0x71);
        EXPECT_EQ(block[O::reserved3 + 2], 0x73 + index);
    }
}

TEST(RefaceVoiceObject, IsWrittenInPlaceThroughItsParts) {
    VoiceObject voice = TestVoice();
    const auto parts = MutableRefaceVoiceOf(voice);
    ASSERT_TRUE(parts);
    parts->common[0] = 0xA1;
    parts->common[37] = 0xA2;
    parts->operators[0] = 0xB1;
    parts->operators[111] = 0xB2;
    Bytes expected = TestRefaceBlock(0);
    expected[52] = 0xA1;
    expected[89] = 0xA2;
    expected[90] = 0xB1;
    expected[201] = 0xB2;
    EXPECT_EQ(voice.bytes, expected);
}

TEST(RefaceVoiceObject, IsReachedThroughThePayloadOffset) {
    VoiceObject voice = TestVoice(3);
    voice.bytes.insert(voice.bytes.begin() + 52, 4, 0xEE);
    voice.bytes[4] = 56;
    std::string name;
    EXPECT_EQ(RefaceVoiceName(name, voice), 9);
    EXPECT_EQ(name, "REFACE 04");
    const auto parts = MutableRefaceVoiceOf(voice);
    ASSERT_TRUE(parts);
    EXPECT_EQ(parts->common.data(), voice.bytes.data() + 56);
    EXPECT_EQ(parts->operators.data(), voice.bytes.data() + 94);
}

TEST(RefaceVoiceObject, WithoutAllItsBytesItHasNoPartsAndNoName) {
    Bytes lies[] = {
        {},
        Bytes(51, 1),
        TestRefaceBlock(0), // its magic is spoilt below
        TestRefaceBlock(0), // its payload size is
        TestRefaceBlock(0), // its extra size
        TestRefaceBlock(0), // its payload offset
    };
    lies[2][0] ^= 1;
    PutTestNumber(lies[3], 8, 0xFFFFFFFF);
    PutTestNumber(lies[4], 12, 113);
    PutTestNumber(lies[5], 4, 0xFFFFFFF0);
    Bytes cut = TestRefaceBlock(0);
    cut.resize(100);
    for (const Bytes &bytes : {lies[0], lies[1], lies[2], lies[3], lies[4], lies[5], cut}) {
        VoiceObject voice{bytes};
        EXPECT_FALSE(RefaceVoiceOf(voice));
        EXPECT_FALSE(MutableRefaceVoiceOf(voice));
        EXPECT_FALSE(RefaceCommonOf(voice));
        std::string name = "former";
        EXPECT_EQ(RefaceVoiceName(name, voice), 0);
        EXPECT_EQ(name, "former");
    }
}

TEST(RefaceVoiceObject, WithoutOperatorsItHasANameAllTheSame) {
    VoiceObject voice = TestVoice(6);
    PutTestNumber(voice.bytes, 12, 111);
    EXPECT_FALSE(RefaceVoiceOf(voice));
    EXPECT_TRUE(RefaceCommonOf(voice));
    std::string name;
    EXPECT_EQ(RefaceVoiceName(name, voice), 9);
    EXPECT_EQ(name, "REFACE 07");
    PutTestNumber(voice.bytes, 8, 37); // one byte less than a common block
    EXPECT_FALSE(RefaceCommonOf(voice));
    EXPECT_EQ(RefaceVoiceName(name, voice), 0);
}

TEST(RefaceName, LosesItsTrailingBlanks) {
    EXPECT_EQ(NameOf(TenBytes("ABC", ' ')), "ABC");
}

TEST(RefaceName, OfTenBlanksIsOneBlank) {
    EXPECT_EQ(NameOf(TenBytes("", ' ')), " ");
}

TEST(RefaceName, Keeps0x7FAtItsEnd) {
    EXPECT_EQ(NameOf("ABCDEFGHI\x7F"), "ABCDEFGHI\x7F");
}

TEST(RefaceName, OfZeroBytesIsEmpty) {
    EXPECT_EQ(NameOf(TenBytes("", '\0')), "");
    EXPECT_EQ(NameOf(std::string("\0BCDEFGHIJ", 10)), "");
}

TEST(RefaceName, EndsAtAZeroByteInside) {
    EXPECT_EQ(NameOf(std::string("AB\0DEFGHIJ", 10)), "AB");
    EXPECT_EQ(NameOf(std::string("AB \0\0\0\0\0\0Z", 10)), "AB ");
}

TEST(RefaceName, KeepsBytesFrom0x80UpAndAllTenOfThem) {
    EXPECT_EQ(NameOf(TenBytes("", '\x80')), TenBytes("", '\x80'));
    EXPECT_EQ(NameOf(TenBytes("A", '\xFF')), TenBytes("A", '\xFF'));
    EXPECT_EQ(NameOf("ABCDEFGHIJ"), "ABCDEFGHIJ");
}

TEST(RefaceName, LosesAnyControlByteAtItsEndAndKeepsItsFirstWhateverItIs) {
    EXPECT_EQ(NameOf(TenBytes("A!\x1F\x01", ' ')), "A!");
    EXPECT_EQ(NameOf(TenBytes("\x05", '\x01')), "\x05");
}

TEST(RefaceName, TextIsOverwrittenByTheNextCall) {
    const char *text = RefaceNameText(reinterpret_cast<const std::uint8_t *>("FIRST     "));
    EXPECT_STREQ(text, "FIRST");
    EXPECT_EQ(RefaceNameText(reinterpret_cast<const std::uint8_t *>("SECOND    ")), text);
    EXPECT_STREQ(text, "SECOND");
}

TEST(RefaceValues, EveryListHasAsManyItemsAsItsParameterHasValues) {
    EXPECT_EQ(SplitList(RefacePartModes).size(), 3u);
    EXPECT_EQ(SplitList(RefaceLfoWaves).size(), 7u);
    EXPECT_EQ(SplitList(RefaceEffectTypes).size(), 8u);
    EXPECT_EQ(SplitList(RefaceKbdCurves).size(), 4u);
    EXPECT_EQ(SplitList(RefaceFeedbackTypes).size(), 2u);
    EXPECT_EQ(SplitList(RefaceFrequencyModes).size(), 2u);
    EXPECT_EQ(SplitList(RefaceLfoWaves)[6], "Sample and hold (SH)");
    EXPECT_EQ(SplitList(RefaceEffectTypes)[7], "Reverb (REV)");
    EXPECT_EQ(SplitList(RefaceKbdCurves)[0], "-linear (-LIN)");
    EXPECT_EQ(SplitList(RefaceFrequencyModes)[1], "Fixed freq/Hz (Fixed)");
}

TEST(RefacePlace, CountsFourBanksOfEightPrograms) {
    EXPECT_EQ(RefacePlaceText(0), "1 (Bank 1 - 1)");
    EXPECT_EQ(RefacePlaceText(7), "8 (Bank 1 - 8)");
    EXPECT_EQ(RefacePlaceText(8), "9 (Bank 2 - 1)");
    EXPECT_EQ(RefacePlaceText(31), "32 (Bank 4 - 8)");
}

TEST(RefacePlace, GoesOnBeyondTheInstrumentsBanks) {
    EXPECT_EQ(RefacePlaceText(32), "33 (Bank 5 - 1)");
    EXPECT_EQ(RefacePlaceText(999), "1000 (Bank 125 - 8)");
}

} // namespace
} // namespace tonewright
