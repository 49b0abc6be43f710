// The numbers of voices, which are the same for ever.
#include "extras/voice_identity.h"

#include "support/bank_bytes.h"

#include <gtest/gtest.h>

#include <set>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

VoiceIdentity Of(VoiceForm form, const Bytes &bytes) {
    return IdentityOf({form, bytes});
}

VoiceIdentity OfPacked(const Bytes &bytes) {
    return Of(VoiceForm::Dx7Packed, bytes);
}

Bytes RefaceVoice() {
    Bytes voice(150);
    for (std::size_t at = 0; at < voice.size(); ++at) {
        voice[at] = static_cast<std::uint8_t>(at * 7 % 100 + 1);
    }
    return voice;
}

// Made by another implementation of the function, over the bytes that the source tells.
TEST(VoiceIdentity, OfTheseVoicesItNeverChanges) {
    EXPECT_EQ(TextOfIdentity(OfPacked(TestPackedVoice(0))), "2bcfaaaebad7ecea");
    EXPECT_EQ(TextOfIdentity(OfPacked(TestPackedVoice(31))), "fc8df89fb925f10a");
    EXPECT_EQ(TextOfIdentity(Of(VoiceForm::Dx7Stored, TestUnpackedVoice())), "056b14637fdde556");
    EXPECT_EQ(TextOfIdentity(Of(VoiceForm::Reface, RefaceVoice())), "6510e63cd72e9ea2");
    EXPECT_EQ(TextOfIdentity(OfPacked(Bytes(128))), "d7bee694a13ca5e6");
}

TEST(VoiceIdentity, ANameDoesNotCount) {
    Bytes voice = TestPackedVoice(5);
    const VoiceIdentity identity = OfPacked(voice);
    for (std::size_t at = 118; at < 128; ++at) {
        voice[at] = '*';
    }
    EXPECT_EQ(OfPacked(voice), identity);
    Bytes reface = RefaceVoice();
    const VoiceIdentity ofReface = Of(VoiceForm::Reface, reface);
    for (std::size_t at = 0; at < 12; ++at) { // and two bytes that are reserved
        reface[at] = '*';
    }
    for (const std::size_t at : {35, 36, 37, 38 + 25, 38 + 27, 38 + 3 * 28 + 26}) {
        reface[at] = 1;
    }
    EXPECT_EQ(Of(VoiceForm::Reface, reface), ofReface);
}

TEST(VoiceIdentity, BitsThatNoParameterHasDoNotCountAndAllOthersDo) {
    const Bytes voice = TestPackedVoice(9);
    const VoiceIdentity identity = OfPacked(voice);
    for (std::size_t at = 0; at < 118; ++at) {
        unsigned used = 0xFF;
        const std::size_t inBlock = at < 102 ? at % 17 : 0;
        used = inBlock == 11 ? 0x0F : used;
        used = inBlock == 12 ? 0x7F : used;
        used = inBlock == 13 ? 0x1F : used;
        used = inBlock == 15 ? 0x3F : used;
        used = at == 110 ? 0x1F : used;
        used = at == 111 ? 0x0F : used;
        used = at == 116 ? 0x7F : used;
        for (unsigned bit = 1; bit < 0x100; bit <<= 1) {
            Bytes other = voice;
            other[at] ^= static_cast<std::uint8_t>(bit);
            EXPECT_EQ(OfPacked(other) == identity, (used & bit) == 0) << at << " bit " << bit;
        }
    }
}

TEST(VoiceIdentity, EveryParameterOfARefaceDxCounts) {
    const Bytes voice = RefaceVoice();
    std::set<VoiceIdentity> identities = {Of(VoiceForm::Reface, voice)};
    for (std::size_t at = 12; at < 150; ++at) {
        if ((at >= 35 && at < 38) || (at >= 38 && (at - 38) % 28 >= 25)) {
            continue;
        }
        Bytes other = voice;
        other[at] ^= 1;
        identities.insert(Of(VoiceForm::Reface, other));
    }
    EXPECT_EQ(identities.size(), 1u + 23 + 4 * 25);
}

TEST(VoiceIdentity, OneVoiceInThreeFormsHasOneIdentity) {
    Bytes stored = TestUnpackedVoice();
    stored[155] = 0x3F;
    const Bytes single(stored.begin(), stored.end() - 1);
    const auto packed = PackedBytesOf({VoiceForm::Dx7Stored, stored});
    const VoiceIdentity identity = OfPacked({packed.begin(), packed.end()});
    EXPECT_EQ(Of(VoiceForm::Dx7Stored, stored), identity);
    EXPECT_EQ(Of(VoiceForm::Dx7Single, single), identity);
}

TEST(VoiceIdentity, AnOperatorThatIsOffHasLevelZero) {
    Bytes stored = TestUnpackedVoice(); // its second block is off
    const VoiceIdentity identity = Of(VoiceForm::Dx7Stored, stored);
    stored[21 + 16] = 33;
    EXPECT_EQ(Of(VoiceForm::Dx7Stored, stored), identity);
    stored[21 + 16] = 0;
    stored[155] = 0x3F;
    EXPECT_EQ(Of(VoiceForm::Dx7Stored, stored), identity);
    stored[21 + 16] = 33;
    EXPECT_NE(Of(VoiceForm::Dx7Stored, stored), identity);

    Bytes reface = RefaceVoice();
    const std::size_t enable = 38 + 28, level = enable + 18;
    reface[enable] = 0;
    const VoiceIdentity off = Of(VoiceForm::Reface, reface);
    reface[level] = 9;
    EXPECT_EQ(Of(VoiceForm::Reface, reface), off);
    reface[level] = 0;
    reface[enable] = 1;
    EXPECT_EQ(Of(VoiceForm::Reface, reface), off);
    reface[level] = 9;
    EXPECT_NE(Of(VoiceForm::Reface, reface), off);
}

TEST(VoiceIdentity, AllBitsOfADetuneCount) {
    Bytes voice = TestPackedVoice(0);
    voice[12] = 14 << 3;
    Bytes other = voice;
    other[12] = 6 << 3;
    EXPECT_NE(OfPacked(voice), OfPacked(other));
}

TEST(VoiceIdentity, TheTextIsSixteenDigits) {
    EXPECT_EQ(TextOfIdentity(0), "0000000000000000");
    EXPECT_EQ(TextOfIdentity(0x0123456789ABCDEF), "0123456789abcdef");
    EXPECT_EQ(TextOfIdentity(~VoiceIdentity{0}), "ffffffffffffffff");
    EXPECT_EQ(ReadIdentity("0123456789abcdef"), 0x0123456789ABCDEF);
    EXPECT_EQ(ReadIdentity("0123456789ABcdEF"), 0x0123456789ABCDEF);
    EXPECT_EQ(ReadIdentity("ffffffffffffffff"), ~VoiceIdentity{0});
    for (const char *text : {"", "0123456789abcde", "0123456789abcdef0", "0123456789abcdeg",
                             "0x23456789abcdef", " 123456789abcdef", "0123456789abcd-f"}) {
        EXPECT_FALSE(ReadIdentity(text)) << text;
    }
}

} // namespace
} // namespace tonewright
