// Voices of every form: their names, algorithms, bytes and blocks.
#include "extras/dump_voice.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/bank_bytes.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Single() {
    Bytes voice = TestUnpackedVoice();
    voice.pop_back();
    return voice;
}

Bytes RefaceVoice() {
    Bytes voice(150);
    for (std::size_t at = 0; at < voice.size(); ++at) {
        voice[at] = static_cast<std::uint8_t>(at % 100);
    }
    const std::string name = "Glass\0\0\0\0\0";
    std::copy(name.begin(), name.end(), voice.begin());
    std::fill(voice.begin() + 5, voice.begin() + 10, std::uint8_t{0});
    voice[16] = 11;
    return voice;
}

TEST(DumpVoice, EveryFormHasItsSizeAndFamily) {
    EXPECT_EQ(SizeOfForm(VoiceForm::Dx7Packed), 128u);
    EXPECT_EQ(SizeOfForm(VoiceForm::Dx7Single), 155u);
    EXPECT_EQ(SizeOfForm(VoiceForm::Dx7Stored), 156u);
    EXPECT_EQ(SizeOfForm(VoiceForm::Reface), 150u);
    EXPECT_EQ(FamilyOfForm(VoiceForm::Dx7Packed), Dx7DriverId);
    EXPECT_EQ(FamilyOfForm(VoiceForm::Dx7Single), Dx7DriverId);
    EXPECT_EQ(FamilyOfForm(VoiceForm::Dx7Stored), Dx7DriverId);
    EXPECT_EQ(FamilyOfForm(VoiceForm::Reface), RefaceDriverId);
}

TEST(DumpVoice, NameAndAlgorithmAreReadFromTheirPlaceInEachForm) {
    Bytes packed = TestPackedVoice(6);
    EXPECT_EQ(NameOfVoice({VoiceForm::Dx7Packed, packed}), "VOICE 07");
    EXPECT_EQ(AlgorithmOfVoice({VoiceForm::Dx7Packed, packed}), 7);
    EXPECT_EQ(NameBytesOf({VoiceForm::Dx7Packed, packed})[9], ' ');
    packed[110] = 0x66; // its upper bits belong to no parameter
    EXPECT_EQ(AlgorithmOfVoice({VoiceForm::Dx7Packed, packed}), 7);

    const Bytes single = Single(), stored = TestUnpackedVoice(), reface = RefaceVoice();
    EXPECT_EQ(NameOfVoice({VoiceForm::Dx7Single, single}), "E.PIANO 1x");
    EXPECT_EQ(AlgorithmOfVoice({VoiceForm::Dx7Single, single}), 5);
    EXPECT_EQ(NameOfVoice({VoiceForm::Dx7Stored, stored}), "E.PIANO 1x");
    EXPECT_EQ(AlgorithmOfVoice({VoiceForm::Dx7Stored, stored}), 5);
    EXPECT_EQ(NameOfVoice({VoiceForm::Reface, reface}), "Glass");
    EXPECT_EQ(AlgorithmOfVoice({VoiceForm::Reface, reface}), 12);
}

TEST(DumpVoice, HighBytesAreCounted) {
    Bytes packed = TestPackedVoice(0);
    EXPECT_EQ(HighBytesOf({VoiceForm::Dx7Packed, packed}), 0u);
    packed[0] = 0x7F;
    packed[1] = 0x80;
    packed[127] = 0xFF;
    EXPECT_EQ(HighBytesOf({VoiceForm::Dx7Packed, packed}), 2u);
}

TEST(DumpVoice, AllBitsOfADetuneAreReadWhateverTheSettingSays) {
    Bytes packed = TestPackedVoice(0);
    packed[12] = 14 << 3 | 5;
    for (const int setting : {0, 1}) {
        WholeDetune = setting;
        const VoiceObject voice = VoiceObjectOf({VoiceForm::Dx7Packed, packed});
        const auto unpacked = Dx7VoiceOf(&voice);
        ASSERT_TRUE(unpacked);
        EXPECT_EQ((*unpacked)[20], 14) << setting;
        EXPECT_EQ((*unpacked)[13], 5) << setting;
        EXPECT_EQ((*unpacked)[41], 5) << setting;
        // The plain codec is as it was.
        std::array<std::uint8_t, 156> plain;
        UnpackDx7Voice(plain, Dx7PackedConst(packed.data(), 128));
        EXPECT_EQ(plain[20], setting ? 14 : 6);
    }
}

TEST(DumpVoice, AVoiceOfAMessageHasAllOperatorsOnAndAStoredOneThoseThatItSays) {
    const Bytes single = Single(), stored = TestUnpackedVoice();
    Bytes expected = single;
    expected.push_back(0x3F);
    const VoiceObject on = VoiceObjectOf({VoiceForm::Dx7Single, single});
    EXPECT_EQ(Bytes(on.bytes.begin() + 52, on.bytes.end()), expected);
    const VoiceObject some = VoiceObjectOf({VoiceForm::Dx7Stored, stored});
    EXPECT_EQ(Bytes(some.bytes.begin() + 52, some.bytes.end()), stored);
}

TEST(DumpVoice, PackedBytesKeepTheLevelOfAnOperatorThatIsOnAlone) {
    const Bytes single = Single(), stored = TestUnpackedVoice();
    EXPECT_EQ(PackedBytesOf({VoiceForm::Dx7Single, single})[17 + 14], 58);
    EXPECT_EQ(PackedBytesOf({VoiceForm::Dx7Stored, stored})[17 + 14], 0);
    EXPECT_EQ(PackedBytesOf({VoiceForm::Dx7Single, single})[12], 14 << 3 | 3);
    Bytes packed = TestPackedVoice(3);
    packed[11] = 0xF3; // bits that no parameter has stay
    const auto same = PackedBytesOf({VoiceForm::Dx7Packed, packed});
    EXPECT_EQ(Bytes(same.begin(), same.end()), packed);
}

TEST(DumpVoice, ABlockOfTheRefaceDxHoldsTheBytesAsTheyAre) {
    const Bytes bytes = RefaceVoice();
    const VoiceObject voice = VoiceObjectOf({VoiceForm::Reface, bytes});
    EXPECT_EQ(HeaderOf(voice)->driverId, RefaceDriverId);
    EXPECT_EQ(HeaderOf(voice)->payloadSize, 38u);
    EXPECT_EQ(HeaderOf(voice)->extraSize, 112u);
    EXPECT_EQ(Bytes(voice.bytes.begin() + 52, voice.bytes.end()), bytes);
}

TEST(DumpVoice, AKeptVoiceHasBytesOfItsOwn) {
    Bytes packed = TestPackedVoice(3);
    const KeptVoice kept = KeepVoice({VoiceForm::Dx7Packed, packed});
    packed[0] = 1;
    EXPECT_EQ(kept.bytes, TestPackedVoice(3));
    EXPECT_EQ(kept.Voice().form, VoiceForm::Dx7Packed);
    EXPECT_EQ(kept.Voice().bytes.data(), kept.bytes.data());
}

} // namespace
} // namespace tonewright
