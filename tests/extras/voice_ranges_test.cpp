// Voices that stand in a file without a message: what is taken for some, and what is not.
#include "extras/voice_ranges.h"

#include "drivers/reface_dx/voice_codec.h"
#include "extras/initial_voice.h"
#include "support/dump_bytes.h"

#include <gtest/gtest.h>

#include <random>

namespace tonewright {
namespace {

using Bytes = DumpBytes;

Bytes Singles(int count) {
    Bytes voices;
    for (int number = 0; number < count; ++number) {
        const Bytes voice = TestUnpackedVoice();
        voices.insert(voices.end(), voice.begin(), voice.end() - 1);
    }
    return voices;
}

std::size_t VoicesIn(const Bytes &bytes, bool isAll = true) {
    return JudgeHeaderless(bytes, isAll).voices;
}

TEST(HeaderlessVoices, AWholeFileOfVoicesMayHaveAnyNumber) {
    for (const int count : {1, 2, 3, 4, 31, 32, 33, 64, 128, 500}) {
        const HeaderlessVoices packed = JudgeHeaderless(TestPackedVoices(count), true);
        EXPECT_EQ(packed.voices, static_cast<std::size_t>(count));
        EXPECT_EQ(packed.form, VoiceForm::Dx7Packed);
        EXPECT_EQ(packed.confidence, count < 4 ? 90 : 99);
        EXPECT_TRUE(packed.inRange);
        const HeaderlessVoices single = JudgeHeaderless(Singles(count), true);
        EXPECT_EQ(single.voices, static_cast<std::size_t>(count));
        EXPECT_EQ(single.form, VoiceForm::Dx7Single);
    }
}

TEST(HeaderlessVoices, SomethingBehindThemIsNoneOfThemButThreeVoicesMustBeAll) {
    EXPECT_EQ(VoicesIn(Join({TestPackedVoices(4), {0xFF}})), 4u);
    EXPECT_EQ(VoicesIn(Join({TestPackedVoices(4), Bytes(4000, 0xFF)})), 4u);
    EXPECT_EQ(VoicesIn(Join({TestPackedVoices(3), {0xFF}})), 0u);
    EXPECT_EQ(VoicesIn(TestPackedVoices(3), false), 0u);
    EXPECT_EQ(VoicesIn(TestPackedVoices(4), false), 4u);
    EXPECT_EQ(VoicesIn(Join({{0xFF}, TestPackedVoices(32)})), 0u);
}

TEST(HeaderlessVoices, AFewBytesThatNoVoiceHasMakeThemLessLikely) {
    Bytes bank = TestPackedVoices(32);
    for (std::size_t voice = 0; voice < 32; ++voice) {
        bank[voice * 128 + 111] = 0x7E; // unused bits
        bank[voice * 128 + 9] = 120;
        bank[voice * 128 + 127] = 0; // of the name
    }
    HeaderlessVoices judged = JudgeHeaderless(bank, true);
    EXPECT_EQ(judged.voices, 32u);
    EXPECT_EQ(judged.confidence, 75);
    EXPECT_FALSE(judged.inRange);

    // Four voices of zeros, and four that are none at all.
    bank = TestPackedVoices(32);
    std::fill(bank.begin() + 28 * 128, bank.end(), std::uint8_t{0});
    judged = JudgeHeaderless(bank, true);
    EXPECT_EQ(judged.voices, 32u);
    EXPECT_EQ(judged.confidence, (28 * 99 + 4 * 50) / 32);
    std::fill(bank.begin() + 28 * 128, bank.end(), std::uint8_t{0xE5});
    judged = JudgeHeaderless(bank, true);
    EXPECT_EQ(judged.voices, 32u);
    EXPECT_EQ(judged.confidence, 28 * 99 / 32);
    // With a fifth one the bank ends in front of them.
    std::fill(bank.begin() + 27 * 128, bank.end(), std::uint8_t{0xE5});
    EXPECT_EQ(VoicesIn(bank), 27u);
    // Amid others they are part of the bank.
    bank = TestPackedVoices(32);
    std::fill(bank.begin() + 128, bank.begin() + 3 * 128, std::uint8_t{0xE5});
    EXPECT_EQ(VoicesIn(Join({bank, {1}})), 32u);
}

// Where the voices begin, and how many they are: "1+32" pieces.
std::string PlaceOf(const Bytes &bytes, bool isAll = true) {
    const HeaderlessVoices judged = JudgeHeaderless(bytes, isAll);
    EXPECT_EQ(judged.start % 128, 0u);
    return std::to_string(judged.start / 128) + '+' + std::to_string(judged.voices);
}

TEST(HeaderlessVoices, BlocksInFrontOfABankAndBehindItAreNoneOfIt) {
    const Bytes bank = TestPackedVoices(32);
    Bytes header = Join({{0, 4}, TextBytes("BANK"), Bytes(122)});
    Bytes counter;
    for (int at = 0; at < 128; ++at) {
        counter.push_back(static_cast<std::uint8_t>(at));
    }
    for (const Bytes &front : {header, counter, Bytes(128, 0xC8), Bytes(128)}) {
        EXPECT_EQ(PlaceOf(Join({front, bank})), "1+32");
        EXPECT_EQ(PlaceOf(Join({front, bank}), false), "1+32");
        EXPECT_EQ(PlaceOf(Join({front, bank, {1, 2, 3}})), "1+32");
        EXPECT_EQ(PlaceOf(Join({front, bank, bank})), "1+64");
        EXPECT_EQ(PlaceOf(Join({front, TestPackedVoices(20)})), "1+20");
        EXPECT_EQ(PlaceOf(Join({bank, front, front})), "0+32");
    }
    EXPECT_EQ(PlaceOf(Join({Bytes(256), bank})), "2+32");
    EXPECT_EQ(PlaceOf(Join({bank, Bytes(512)})), "0+32");
    EXPECT_EQ(PlaceOf(Join({Bytes(10 * 128, 0xE5), bank})), "10+32");
    EXPECT_EQ(PlaceOf(Join({header, TestPackedVoice(1)})), "0+0");
}

TEST(HeaderlessVoices, ZerosAtTheEndsOfABankArePartOfIt) {
    const Bytes zeros(128);
    EXPECT_EQ(PlaceOf(Join({Bytes(3 * 128), TestPackedVoices(29)})), "0+32");
    EXPECT_EQ(PlaceOf(Join({zeros, TestPackedVoices(30), zeros})), "0+32");
    EXPECT_EQ(PlaceOf(Join({Bytes(2 * 128), TestPackedVoices(28), Bytes(4 * 128)})), "2+32");
    EXPECT_EQ(PlaceOf(Join({TestPackedVoices(28), Bytes(4 * 128), {0x11, 0xF7}})), "0+32");
    EXPECT_EQ(PlaceOf(Join({TestPackedVoices(28), Bytes(4 * 128), TestPackedVoices(32)})), "0+64");
    EXPECT_EQ(PlaceOf(Join({TestPackedVoices(10), Bytes(3 * 128)})), "0+10");
    EXPECT_EQ(PlaceOf(Join({TestPackedVoices(10), Bytes(22 * 128), {1}})), "0+32");
    // Of which too few are voices.
    EXPECT_EQ(PlaceOf(Join({TestPackedVoices(5), Bytes(59 * 128)})), "0+5");
    EXPECT_EQ(PlaceOf(Join({zeros, TestPackedVoice(1)})), "1+1");
}

TEST(HeaderlessVoices, OneVoiceAloneMustBeWithoutFault) {
    Bytes voice = TestPackedVoice(1);
    EXPECT_EQ(VoicesIn(voice), 1u);
    voice[0] = 100;
    EXPECT_EQ(VoicesIn(voice), 0u);
    voice = TestPackedVoice(1);
    voice[120] = 0x1F;
    EXPECT_EQ(VoicesIn(voice), 0u);
}

TEST(HeaderlessVoices, TheyAreNotFoundBesideTheirPlace) {
    const Bytes bank = TestPackedVoices(32);
    for (std::size_t lost = 1; lost < 128; ++lost) {
        const Bytes rest(bank.begin() + static_cast<std::ptrdiff_t>(lost), bank.end());
        EXPECT_LT(JudgeHeaderless(rest, true).confidence, 90) << lost;
        EXPECT_EQ(FindHeaderless(rest), 128 - lost);
        const Bytes behind = Join({Bytes(lost, 1), bank});
        EXPECT_LT(JudgeHeaderless(behind, true).confidence, 90) << lost;
        EXPECT_EQ(FindHeaderless(behind), lost);
    }
    EXPECT_EQ(FindHeaderless(Bytes(4096, 0x30)), 0u);
}

TEST(HeaderlessVoices, NothingElseIsTakenForVoices) {
    std::mt19937 random(7);
    for (int round = 0; round < 1000; ++round) {
        const std::size_t sizes[] = {128, 155, 256, 512, 4096, 4960, 12800};
        Bytes bytes(sizes[random() % 7]);
        const unsigned kind = random() % 6;
        const unsigned limit = 1u << (1 + random() % 7);
        for (std::size_t at = 0; at < bytes.size(); ++at) {
            const std::string letters = "etaoin shrdlu ETAOIN SHRDLU 0123456789.,\n";
            switch (kind) {
            case 0:
                bytes[at] = static_cast<std::uint8_t>(random());
                break;
            case 1:
                bytes[at] = static_cast<std::uint8_t>(random() % limit);
                break;
            case 2:
                bytes[at] = static_cast<std::uint8_t>(letters[random() % letters.size()]);
                break;
            case 3:
                bytes[at] = static_cast<std::uint8_t>(limit);
                break;
            case 4:
                bytes[at] = random() % 20 == 0 ? static_cast<std::uint8_t>(random() % 128) : 0;
                break;
            default:
                bytes[at] = static_cast<std::uint8_t>(at * limit % 128);
                break;
            }
        }
        ASSERT_EQ(VoicesIn(bytes), 0u) << "round " << round << " kind " << kind;
        ASSERT_EQ(FindHeaderless(bytes), 0u) << "round " << round << " kind " << kind;
    }
    EXPECT_EQ(VoicesIn(Bytes(4096)), 0u);
    EXPECT_EQ(VoicesIn(Bytes(128)), 0u);
    EXPECT_EQ(VoicesIn({}), 0u);
}

TEST(HeaderlessVoices, RangesOfEachFormAreThoseOfItsParameters) {
    const Bytes packed = TestPackedVoice(0), reface = TestRefaceVoice(0);
    Bytes single = TestUnpackedVoice();
    single.pop_back();
    const Bytes stored = TestUnpackedVoice();
    const auto largest = [](VoiceForm form, Bytes voice, std::size_t at) {
        int value = 255;
        for (; value >= 0; --value) {
            voice[at] = static_cast<std::uint8_t>(value);
            if (AreInRange(form, voice, 1)) {
                break;
            }
        }
        return value;
    };
    const int ofOperator[] = {99, 99, 99,  99,  99,  99, 99,  99, 99,
                              99, 99, 255, 247, 255, 99, 255, 99};
    for (std::size_t at = 0; at < 6 * 17; ++at) {
        EXPECT_EQ(largest(VoiceForm::Dx7Packed, packed, at), ofOperator[at % 17]) << at;
    }
    const int ofVoice[] = {99, 99,  99, 99,  99,  99,  99,  99,  255, 255, 99,  99,  99,
                           99, 251, 48, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
    for (std::size_t at = 0; at < 26; ++at) {
        EXPECT_EQ(largest(VoiceForm::Dx7Packed, packed, 102 + at), ofVoice[at]) << at;
    }
    const int ofBlock[] = {99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                           3,  3,  7,  3,  7,  99, 1,  31, 99, 14};
    for (std::size_t at = 0; at < 6 * 21; ++at) {
        EXPECT_EQ(largest(VoiceForm::Dx7Single, single, at), ofBlock[at % 21]) << at;
        EXPECT_EQ(largest(VoiceForm::Dx7Stored, stored, at), ofBlock[at % 21]) << at;
    }
    const int ofSingle[] = {99, 99, 99, 99, 99,  99,  99,  99,  31,  7,   1,   99,  99,  99, 99,
                            1,  5,  7,  48, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255};
    for (std::size_t at = 0; at < 29; ++at) {
        EXPECT_EQ(largest(VoiceForm::Dx7Single, single, 126 + at), ofSingle[at]) << at;
    }
    EXPECT_EQ(largest(VoiceForm::Dx7Stored, stored, 155), 63);
    const int ofCommon[] = {255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 255, 88,
                            2,   127, 88,  11,  6,   127, 127, 127, 127, 127, 127, 127, 127,
                            127, 127, 127, 7,   127, 127, 7,   127, 127, 255, 255, 255};
    for (std::size_t at = 0; at < 38; ++at) {
        EXPECT_EQ(largest(VoiceForm::Reface, reface, at), ofCommon[at]) << at;
    }
    const int ofReface[] = {1,   127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 127, 3,   3,
                            127, 1,   1,   127, 127, 127, 1,   1,   31,  99,  127, 255, 255, 255};
    for (std::size_t at = 0; at < 4 * 28; ++at) {
        EXPECT_EQ(largest(VoiceForm::Reface, reface, 38 + at), ofReface[at % 28]) << at;
    }
}

TEST(VoicesInRange, TransposeAndBendOfARefaceVoiceCountFromEitherZero) {
    for (const std::size_t at : {12u, 15u}) {
        Bytes voice = TestRefaceVoice(0);
        for (const auto &[value, isInRange] :
             {std::pair(15, false), std::pair(16, true), std::pair(28, true), std::pair(66, true),
              std::pair(88, true), std::pair(89, false)}) {
            voice[at] = static_cast<std::uint8_t>(value);
            EXPECT_EQ(AreInRange(VoiceForm::Reface, voice, 1), isInRange) << at << ' ' << value;
        }
    }
}

TEST(VoicesInRange, InitialVoicesOfBothFamiliesAre) {
    for (const DriverId family : {Dx7DriverId, RefaceDriverId}) {
        const KeptVoice voice = InitialVoiceOf(family);
        EXPECT_TRUE(AreInRange(voice.form, voice.bytes, 1));
    }
}

} // namespace
} // namespace tonewright
