// The built-in DX7 and Volca FM: banks, single voices, programs, Omni, and never an answer.
#include "cable.h"

#include "support/bank_bytes.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr auto Dx7 = BuiltinInstrument::Dx7;
constexpr auto Volca = BuiltinInstrument::VolcaFm;

Bytes BankData() {
    const Bytes bank = TestBank();
    return Bytes(bank.begin() + 6, bank.begin() + 4102);
}

// 155 bytes 0, 1, 2... up to 99, again and again.
Bytes VoiceData() {
    Bytes data;
    for (int i = 0; i < 155; ++i) {
        data.push_back(static_cast<std::uint8_t>(i % 100));
    }
    return data;
}
Bytes VoiceDump() {
    const Bytes data = VoiceData();
    return Bytes{0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B} + data + Bytes{SumByte(data), 0xF7};
}

class Dx7Instruments : public testing::TestWithParam<BuiltinInstrument> {};
INSTANTIATE_TEST_SUITE_P(Family, Dx7Instruments, testing::Values(Dx7, Volca),
                         [](const auto &given) {
                             return given.param == Dx7 ? std::string("Dx7")
                                                       : std::string("VolcaFm");
                         });

TEST_P(Dx7Instruments, LeaveTheFactoryWithInitVoices) {
    const Bytes &memory = MemoryOf(GetParam());
    ASSERT_EQ(memory.size(), 4096u);
    for (std::size_t voice = 0; voice < 32; ++voice) {
        const auto name = memory.begin() + static_cast<std::ptrdiff_t>(128 * voice + 118);
        EXPECT_EQ(Bytes(name, name + 10), Text("INIT VOICE"));
    }
    const Bytes &voice = EditBufferOf(GetParam());
    ASSERT_EQ(voice.size(), 155u);
    const Bytes first = {99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 7};
    EXPECT_EQ(Bytes(voice.begin(), voice.begin() + 21), first);
    const Bytes last = {99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0, 0, 0, 0, 99, 0, 1, 0, 7};
    EXPECT_EQ(Bytes(voice.begin() + 105, voice.begin() + 126), last);
    const Bytes common = {99, 99, 99, 99, 50, 50, 50, 50, 0, 0, 1, 35, 0, 0, 0, 1, 0, 3, 24};
    EXPECT_EQ(Bytes(voice.begin() + 126, voice.end()), common + Text("INIT VOICE"));
}

TEST_P(Dx7Instruments, TakeABankIntoMemoryOnly) {
    Cable cable(GetParam());
    const Bytes before = EditBufferOf(GetParam());
    EXPECT_EQ(cable.Send(TestBank()), 0);
    EXPECT_EQ(MemoryOf(GetParam()), BankData());
    EXPECT_EQ(EditBufferOf(GetParam()), before);
    EXPECT_TRUE(cable.Words().empty());
}

TEST_P(Dx7Instruments, RefuseABankThatIsNotRight) {
    Cable cable(GetParam());
    const Bytes before = MemoryOf(GetParam());
    const auto refuse = [&](const char *what, auto spoil) {
        Bytes bank = TestBank();
        spoil(bank);
        cable.Send(bank);
        EXPECT_EQ(MemoryOf(GetParam()), before) << what;
    };
    refuse("checksum", [](Bytes &bank) { bank[4102] ^= 1; });
    refuse("a byte of a voice", [](Bytes &bank) { bank[100] ^= 1; });
    refuse("maker", [](Bytes &bank) { bank[1] = 0x42; });
    refuse("channel", [](Bytes &bank) { bank[2] = 0x01; });
    refuse("sub-status", [](Bytes &bank) { bank[2] = 0x10; });
    refuse("format", [](Bytes &bank) { bank[3] = 0x08; });
    refuse("count, high", [](Bytes &bank) { bank[4] = 0x10; });
    refuse("count, low", [](Bytes &bank) { bank[5] = 0x01; });
    refuse("one byte short", [](Bytes &bank) { bank.erase(bank.begin() + 3000); });
    refuse("one byte long", [](Bytes &bank) { bank.insert(bank.begin() + 3000, 0); });
    refuse("a value above 7F", [](Bytes &bank) { bank[3000] |= 0x80; });
    cable.Send(TestBank());
    EXPECT_EQ(MemoryOf(GetParam()), BankData()) << "the right one after all of them";
}

TEST_P(Dx7Instruments, TakeAVoiceIntoTheEditBufferOnly) {
    Cable cable(GetParam());
    const Bytes memory = MemoryOf(GetParam());
    cable.Send(VoiceDump());
    EXPECT_EQ(EditBufferOf(GetParam()), VoiceData());
    EXPECT_EQ(MemoryOf(GetParam()), memory);
    EXPECT_TRUE(cable.Words().empty());
}

TEST_P(Dx7Instruments, RefuseAVoiceThatIsNotRight) {
    Cable cable(GetParam());
    const Bytes before = EditBufferOf(GetParam());
    Bytes wrongSum = VoiceDump();
    wrongSum[161] ^= 1;
    Bytes wrongCount = VoiceDump();
    wrongCount[5] = 0x1C;
    const Bytes data = VoiceData() + Bytes{0x3F}; // as in a file, with one byte more
    const Bytes asInAFile =
        Bytes{0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B} + data + Bytes{SumByte(data), 0xF7};
    for (const Bytes &message : {wrongSum, wrongCount, asInAFile}) {
        cable.Send(message);
        EXPECT_EQ(EditBufferOf(GetParam()), before);
    }
}

TEST_P(Dx7Instruments, AProgramChangeUnpacksThatVoiceIntoTheEditBuffer) {
    Cable cable(GetParam());
    cable.Send(TestBank());
    cable.SendShort(0x05C0);
    EXPECT_EQ(SelectedProgramOf(GetParam()), 5);
    const Bytes first = {95, 29, 20, 50, 99, 95, 0, 0, 41, 0, 19, 1, 3, 3, 2, 5, 79, 1, 14, 88, 7};
    const Bytes other = {99, 98, 97, 96, 90, 80, 70, 0, 39, 11, 12, 2, 0, 0, 0, 7, 99, 0, 1, 5, 5};
    const Bytes common = {84, 95, 95, 60, 50, 50, 50, 50, 5, 6, 1, 10, 33, 44, 55, 1, 4, 3, 5};
    EXPECT_EQ(EditBufferOf(GetParam()),
              first + other + other + other + other + other + common + Text("VOICE 06  "));
    cable.SendShort(0x20C0);
    EXPECT_EQ(SelectedProgramOf(GetParam()), 5);
}

TEST_P(Dx7Instruments, ADetuneOfFourteenIsHeardAsFourteen) {
    Cable cable(GetParam());
    Bytes bank = TestBank();
    bank[6 + 12] = 0x75; // detune 14, rate scaling 5
    FixTestChecksum(bank);
    cable.Send(bank);
    cable.SendShort(0x00C0);
    EXPECT_EQ(EditBufferOf(GetParam())[20], 14);
    EXPECT_EQ(EditBufferOf(GetParam())[13], 5);
}

TEST_P(Dx7Instruments, SoundNotesOfTheirChannelOnly) {
    Cable cable(GetParam());
    cable.SendShort(0x643C91); // channel 2
    EXPECT_TRUE(SoundingNotesOf(GetParam()).empty());
    cable.SendShort(0x643C90);
    EXPECT_EQ(SoundingNotesOf(GetParam()), std::vector<int>{60});
    cable.SendShort(0x403C81);
    EXPECT_EQ(SoundingNotesOf(GetParam()), std::vector<int>{60});
    cable.SendShort(0x403C80);
    EXPECT_TRUE(SoundingNotesOf(GetParam()).empty());
}

TEST_P(Dx7Instruments, SoundNotesOfEveryChannelWithOmniOn) {
    Cable cable(GetParam());
    EXPECT_FALSE(OmniOf(GetParam()));
    cable.SendShort(0x007DB0);
    EXPECT_TRUE(OmniOf(GetParam()));
    cable.SendShort(0x643C95);
    EXPECT_EQ(SoundingNotesOf(GetParam()), std::vector<int>{60});
    cable.SendShort(0x03CF);
    EXPECT_EQ(SelectedProgramOf(GetParam()), 3);
    cable.SendShort(0x007CB0);
    EXPECT_FALSE(OmniOf(GetParam()));
    EXPECT_TRUE(SoundingNotesOf(GetParam()).empty()) << "a mode message silences the keys";
    cable.SendShort(0x643C95);
    EXPECT_TRUE(SoundingNotesOf(GetParam()).empty());
}

TEST_P(Dx7Instruments, HearOmniMessagesOnTheirOwnChannelOnly) {
    Cable cable(GetParam());
    cable.SendShort(0x007DB4);
    EXPECT_FALSE(OmniOf(GetParam()));
    ChannelOf(GetParam()) = 5;
    cable.SendShort(0x007DB4);
    EXPECT_TRUE(OmniOf(GetParam()));
    cable.SendShort(0x007CB0);
    EXPECT_TRUE(OmniOf(GetParam()));
    Bytes bank = TestBank();
    const Bytes before = MemoryOf(GetParam());
    cable.Send(bank);
    EXPECT_EQ(MemoryOf(GetParam()), before) << "a bank for channel 1";
    bank[2] = 0x04;
    cable.Send(bank);
    EXPECT_EQ(MemoryOf(GetParam()), BankData());
}

TEST_P(Dx7Instruments, TakeEachParameterIntoTheByteOfItsNumber) {
    Cable cable(GetParam());
    const Bytes memory = MemoryOf(GetParam());
    Bytes expected = EditBufferOf(GetParam());
    for (int parameter = 0; parameter < 155; ++parameter) {
        for (const std::uint8_t value : {0x7F, 0x00, parameter % 99 + 1}) {
            cable.Send({0xF0, 0x43, 0x10, static_cast<std::uint8_t>(parameter >> 7),
                        static_cast<std::uint8_t>(parameter & 0x7F), value, 0xF7});
            expected[static_cast<std::size_t>(parameter)] = value;
            ASSERT_EQ(EditBufferOf(GetParam()), expected) << parameter;
        }
    }
    EXPECT_EQ(MemoryOf(GetParam()), memory);
    EXPECT_TRUE(cable.Words().empty());
}

TEST_P(Dx7Instruments, PutTheSixthOperatorFirstAmongTheParameters) {
    Cable cable(GetParam());
    cable.Send({0xF0, 0x43, 0x10, 0x00, 0x10, 0x63, 0xF7}); // 16, a level
    EXPECT_EQ(PreparedVoiceOf(GetParam()).operators[5].output, 127);
    cable.Send({0xF0, 0x43, 0x10, 0x00, 0x79, 0x00, 0xF7}); // 5 * 21 + 16
    EXPECT_EQ(PreparedVoiceOf(GetParam()).operators[0].output, 0);
    cable.Send({0xF0, 0x43, 0x10, 0x01, 0x10, 0x00, 0xF7}); // 144, transpose
    EXPECT_EQ(PreparedVoiceOf(GetParam()).transpose, -24);
}

TEST_P(Dx7Instruments, RefuseAParameterThatIsNotRight) {
    Cable cable(GetParam());
    const Bytes before = EditBufferOf(GetParam());
    const auto refuse = [&](const char *what, const Bytes &message) {
        cable.Send(message);
        EXPECT_EQ(EditBufferOf(GetParam()), before) << what;
        EXPECT_TRUE(PreparedVoiceOf(GetParam()).operators[0].enabled) << what;
    };
    refuse("another channel", {0xF0, 0x43, 0x11, 0x00, 0x10, 0x05, 0xF7});
    refuse("another maker", {0xF0, 0x42, 0x10, 0x00, 0x10, 0x05, 0xF7});
    refuse("no parameter", {0xF0, 0x43, 0x30, 0x00, 0x10, 0x05, 0xF7});
    refuse("too short", {0xF0, 0x43, 0x10, 0x00, 0x10, 0xF7});
    refuse("too long", {0xF0, 0x43, 0x10, 0x00, 0x10, 0x05, 0x05, 0xF7});
    refuse("group 1", {0xF0, 0x43, 0x10, 0x04, 0x10, 0x05, 0xF7});
    refuse("group 2", {0xF0, 0x43, 0x10, 0x08, 0x40, 0x05, 0xF7});
    refuse("parameter 156", {0xF0, 0x43, 0x10, 0x01, 0x1C, 0x00, 0xF7});
    refuse("parameter 256", {0xF0, 0x43, 0x10, 0x02, 0x00, 0x00, 0xF7});
    refuse("parameter 511", {0xF0, 0x43, 0x10, 0x03, 0x7F, 0x00, 0xF7});
    cable.SendShort(0x007DB0); // Omni lets other channels' notes through, and nothing else
    refuse("another channel with Omni on", {0xF0, 0x43, 0x11, 0x00, 0x10, 0x05, 0xF7});
    ChannelOf(GetParam()) = 16;
    cable.Send({0xF0, 0x43, 0x1F, 0x00, 0x10, 0x05, 0xF7});
    EXPECT_EQ(EditBufferOf(GetParam())[16], 5);
}

TEST_P(Dx7Instruments, SwitchOperatorsOffUntilANewVoiceComes) {
    Cable cable(GetParam());
    const Bytes before = EditBufferOf(GetParam());
    const auto enabled = [&] {
        std::vector<bool> operators;
        for (const PreparedOperator &op : PreparedVoiceOf(GetParam()).operators) {
            operators.push_back(op.enabled);
        }
        return operators;
    };
    const Bytes onlyFirst = {0xF0, 0x43, 0x10, 0x01, 0x1B, 0x20, 0xF7};
    const std::vector<bool> all(6, true);
    EXPECT_EQ(enabled(), all);
    cable.Send(onlyFirst);
    EXPECT_EQ(enabled(), (std::vector<bool>{true, false, false, false, false, false}));
    cable.Send({0xF0, 0x43, 0x10, 0x01, 0x1B, 0x41, 0xF7}); // the bit above them means nothing
    EXPECT_EQ(enabled(), (std::vector<bool>{false, false, false, false, false, true}));
    EXPECT_EQ(EditBufferOf(GetParam()), before) << "no voice keeps it";
    cable.Send(TestBank());
    cable.Send({0xF0, 0x43, 0x10, 0x00, 0x00, 0x01, 0xF7});
    EXPECT_NE(enabled(), all);
    cable.SendShort(0x05C0);
    EXPECT_EQ(enabled(), all);
    cable.Send(onlyFirst);
    cable.Send(VoiceDump());
    EXPECT_EQ(enabled(), all);
}

TEST_P(Dx7Instruments, NeverAnswer) {
    Cable cable(GetParam());
    cable.Send(IdentityRequest);
    cable.Send(SystemRequest);
    cable.Send(VoiceRequest);
    cable.Send({0xF0, 0x43, 0x20, 0x09, 0xF7});
    cable.Send({0xF0, 0x43, 0x20, 0x00, 0xF7});
    EXPECT_TRUE(cable.Words(2000).empty());
}

TEST(BuiltinInstruments, KeepTheirMemoriesApart) {
    Cable cable(Volca);
    const Bytes before = MemoryOf(Dx7);
    cable.Send(TestBank());
    EXPECT_EQ(MemoryOf(Dx7), before);
    EXPECT_EQ(MemoryOf(Volca), BankData());
}

} // namespace
} // namespace tonewright
