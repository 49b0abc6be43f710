// The built-in reface DX on the simulated clock: every reply as a whole, what it takes and what it
// refuses.
#include "cable.h"

#include <algorithm>
#include <set>
#include <span>

namespace tonewright {
namespace {

constexpr auto Reface = BuiltinInstrument::Reface;

// 38 and 28 bytes that are all different from block to block.
Bytes TestCommon() {
    Bytes data = Text("TEST VOICE");
    for (std::uint8_t byte = 10; byte < 38; ++byte) {
        data.push_back(byte);
    }
    return data;
}
Bytes TestOperator(std::uint8_t op) {
    Bytes data;
    for (std::uint8_t byte = 0; byte < 28; ++byte) {
        data.push_back(static_cast<std::uint8_t>(0x20 * op + byte));
    }
    return data;
}
Bytes TestVoice() {
    return TestCommon() + TestOperator(0) + TestOperator(1) + TestOperator(2) + TestOperator(3);
}

TEST(RefaceInstrument, SaysWhatItIs) {
    Cable cable(Reface);
    EXPECT_EQ(cable.Send(IdentityRequest), 0);
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{IdentityReply});
    cable.Send({0xF0, 0x7E, 0x7F, 0x06, 0x01, 0xF7});
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{IdentityReply});
}

TEST(RefaceInstrument, PacksASysexMessageFourBytesToAnEventWithF7InTheLast) {
    Cable cable(Reface);
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Words(),
              (std::vector<std::uint32_t>{0x067F7EF0, 0x41004302, 0x00020653, 0x00F77F00}));
    cable.Send(VoiceRequest);
    const auto words = cable.Words();
    ASSERT_EQ(words.size(), 4u + 13 + 4 * 11 + 4);
    EXPECT_EQ(words[0], 0x7F0043F0u);
    EXPECT_EQ(words[3], 0x000000F7u); // the 13th byte of the header alone
    EXPECT_EQ(words[4], 0x7F0043F0u); // the next message begins an event of its own
}

TEST(RefaceInstrument, IgnoresIdentityRequestsOfOtherFormsAndDevices) {
    Cable cable(Reface);
    cable.Send({0xF0, 0x7E, 0x01, 0x06, 0x01, 0xF7});
    cable.Send({0xF0, 0x7E, 0x00, 0x06, 0x02, 0xF7});
    cable.Send({0xF0, 0x7E, 0x00, 0x06, 0x01, 0x00, 0xF7});
    cable.Send({0xF0, 0x7E, 0x00, 0x06, 0xF7});
    cable.Send({0xF0, 0xF7});
    EXPECT_TRUE(cable.Words().empty());
}

TEST(RefaceInstrument, GivesItsSettingsWithCountAndChecksum) {
    Cable cable(Reface);
    cable.Send(SystemRequest);
    const Bytes expected = {
        0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x24, 0x05, 0x00, 0x00, 0x00, //
        0x00,                                                             // transmit channel 1
        0x10,                                                             // receives all
        0x00, 0x04, 0x00, 0x00,                                           // 440 Hz
        0x01,                                                             // local control
        0x40,                                                             // transpose 0
        0x00, 0x78,                                                       // tempo 120
        0x20,                                                             // contrast 32
        0x00, 0x01, 0x01, 0x01, // pedal, auto power off, speaker, MIDI control
        0,    0,    0,    0,    0,    0,    0,    0,    0,    0,    0,
        0,    0,    0,    0,    0,    0, // 17 more
        0x0B, 0xF7,
    };
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{expected});
}

TEST(RefaceInstrument, GivesTheVoiceOfItsEditBufferInSevenMessages) {
    Cable cable(Reface);
    EditBufferOf(Reface) = TestVoice();
    cable.Send(VoiceRequest);
    // The blocks as they stand, byte for byte. Sums by hand: the name 726, 10 to 37 658, with 05
    // and 30 that is 1437 = 11 * 128 + 29, so 99.
    const Bytes common = {0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x2A, 0x05, 0x30, 0x00, 0x00,
                          'T',  'E',  'S',  'T',  ' ',  'V',  'O',  'I',  'C',  'E',  10,
                          11,   12,   13,   14,   15,   16,   17,   18,   19,   20,   21,
                          22,   23,   24,   25,   26,   27,   28,   29,   30,   31,   32,
                          33,   34,   35,   36,   37,   99,   0xF7};
    // Operator n: 0 to 27 sum to 378, 28 times 20 hexadecimal * n is a multiple of 128, with 05, 31
    // and n that is 432 + n = 3 * 128 + 48 + n, so 80 - n.
    std::vector<Bytes> expected = {VoiceHeader, common};
    for (std::uint8_t op = 0; op < 4; ++op) {
        expected.push_back(Bytes{0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x20, 0x05, 0x31, op, 0x00} +
                           TestOperator(op) + Bytes{static_cast<std::uint8_t>(80 - op), 0xF7});
    }
    expected.push_back(VoiceFooter);
    const auto messages = cable.Messages();
    EXPECT_EQ(messages, expected);
    ASSERT_EQ(messages.size(), 7u);
    EXPECT_EQ(messages[1].size(), 51u);
    EXPECT_EQ(messages[2].size(), 41u);
}

TEST(RefaceInstrument, GivesTheFirstVoiceOfTheFactoryByteForByte) {
    Cable cable(Reface);
    cable.Send(VoiceRequest);
    const Bytes common = {'R', 'o', 's', 'e', ' ', 'T', 'i', 'n', 'e', ' ', 0,   0,   64,
                          0,   0,   66,  7,   0,   86,  0,   0,   127, 127, 127, 127, 64,
                          64,  64,  64,  3,   48,  40,  7,   30,  36,  0,   0,   0};
    const auto op = [](Bytes envelope, std::uint8_t velocity, std::uint8_t level,
                       std::uint8_t feedback, std::uint8_t coarse, std::uint8_t detune) {
        return Bytes{1} + envelope + Bytes{16,       0, 0, 0,      0, 0,      1, 0, velocity, level,
                                           feedback, 0, 0, coarse, 0, detune, 0, 0, 0};
    };
    const Bytes struck = {127, 46, 38, 82, 127, 110, 0, 0};
    const Bytes click = {127, 76, 70, 90, 127, 80, 0, 0};
    EXPECT_EQ(cable.Messages(), (std::vector<Bytes>{
                                    VoiceHeader,
                                    CommonDump(common),
                                    OperatorDump(0, op(struck, 48, 122, 0, 1, 64)),
                                    OperatorDump(1, op(click, 80, 101, 0, 14, 67)),
                                    OperatorDump(2, op(struck, 40, 119, 0, 1, 60)),
                                    OperatorDump(3, op(struck, 64, 93, 20, 1, 68)),
                                    VoiceFooter,
                                }));
}

TEST(RefaceInstrument, HasThirtyTwoFactoryVoicesWithEveryValueInItsRange) {
    const Bytes &memory = MemoryOf(Reface);
    ASSERT_EQ(memory.size(), 32u * 150);
    std::set<Bytes> names;
    std::set<Bytes> voices;
    for (std::size_t voice = 0; voice < 32; ++voice) {
        const auto start = memory.begin() + static_cast<std::ptrdiff_t>(150 * voice);
        const Bytes bytes(start, start + 150);
        names.emplace(bytes.begin(), bytes.begin() + 10);
        voices.insert(bytes);
        SCOPED_TRACE(std::string(bytes.begin(), bytes.begin() + 10));
        EXPECT_GT(bytes[0], ' ');
        for (std::size_t i = 0; i < 10; ++i) {
            EXPECT_TRUE(bytes[i] >= ' ' && bytes[i] < 0x7F);
        }
        EXPECT_EQ(bytes[12], 64);
        EXPECT_LE(bytes[13], 2);
        EXPECT_EQ(bytes[15], 66);
        EXPECT_LE(bytes[16], 11);
        EXPECT_LE(bytes[17], 6);
        EXPECT_LE(bytes[29], 7);
        EXPECT_LE(bytes[32], 7);
        EXPECT_EQ(std::ranges::count_if(bytes, [](int byte) { return byte > 127; }), 0);
        bool isAudible = false;
        for (std::size_t op = 38; op < 150; op += 28) {
            EXPECT_EQ(bytes[op], 1);
            EXPECT_LE(bytes[op + 12], 3);
            EXPECT_LE(bytes[op + 13], 3);
            EXPECT_LE(bytes[op + 15], 1);
            EXPECT_LE(bytes[op + 16], 1);
            EXPECT_LE(bytes[op + 20], 1);
            EXPECT_LE(bytes[op + 21], 1);
            EXPECT_LE(bytes[op + 22], 31);
            EXPECT_LE(bytes[op + 23], 99);
            EXPECT_GE(bytes[op + 24], 64 - 12);
            EXPECT_LE(bytes[op + 24], 64 + 12);
            isAudible = isAudible || bytes[op + 18] > 80;
        }
        EXPECT_TRUE(isAudible);
    }
    EXPECT_EQ(names.size(), 32u);
    EXPECT_EQ(voices.size(), 32u);
}

TEST(RefaceInstrument, AProgramChangeSelectsTheVoiceThatIsGiven) {
    Cable cable(Reface);
    cable.SendShort(0x1FC0); // program 31
    EXPECT_EQ(SelectedProgramOf(Reface), 31);
    cable.Send(VoiceRequest);
    const auto messages = cable.Messages();
    ASSERT_EQ(messages.size(), 7u);
    EXPECT_EQ(Bytes(messages[1].begin() + 11, messages[1].begin() + 21), Text("Star Noise"));
    cable.SendShort(0x20C0); // there is no program 32
    EXPECT_EQ(SelectedProgramOf(Reface), 31);
    cable.SendShort(0x00C0);
    EXPECT_EQ(SelectedProgramOf(Reface), 0);
}

TEST(RefaceInstrument, FollowsProgramChangesOnlyOnItsReceiveChannel) {
    Cable cable(Reface);
    cable.SendShort(0x03C9); // channel 10, while it receives all
    EXPECT_EQ(SelectedProgramOf(Reface), 3);
    cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x00, 0xF7});
    cable.SendShort(0x04C9);
    EXPECT_EQ(SelectedProgramOf(Reface), 3);
    cable.SendShort(0x04C0);
    EXPECT_EQ(SelectedProgramOf(Reface), 4);
}

TEST(RefaceInstrument, FollowsNoProgramChangeWithMidiControlOffButStillSounds) {
    Cable cable(Reface);
    cable.Send({0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x0E, 0x00, 0xF7});
    cable.SendShort(0x04C0);
    EXPECT_EQ(SelectedProgramOf(Reface), 0);
    cable.SendShort(0x643C90);
    EXPECT_EQ(SoundingNotesOf(Reface), std::vector<int>{0x3C});
}

TEST(RefaceInstrument, SoundsNotesUntilTheyEnd) {
    Cable cable(Reface);
    cable.SendShort(0x644390);
    cable.SendShort(0x643C90);
    cable.SendShort(0x404780 | 0x10); // 90 47 40
    EXPECT_EQ(SoundingNotesOf(Reface), (std::vector<int>{0x3C, 0x43, 0x47}));
    cable.SendShort(0x404380); // note-off
    cable.SendShort(0x003C90); // note-on with velocity 0
    EXPECT_EQ(SoundingNotesOf(Reface), std::vector<int>{0x47});
    cable.SendShort(0x0078B0); // all sound off
    EXPECT_TRUE(SoundingNotesOf(Reface).empty());
}

TEST(RefaceInstrument, TakesEverySettingAtItsAddress) {
    Cable cable(Reface);
    const auto set = [&](std::uint8_t address, const Bytes &data) {
        cable.Send(Bytes{0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, address} + data +
                   Bytes{0xF7});
    };
    set(0x00, {0x7F});
    set(0x01, {0x05});
    set(0x02, {0x01, 0x02, 0x03, 0x04});
    set(0x06, {0x00});
    set(0x07, {0x44});
    set(0x08, {0x01, 0x48});
    set(0x0A, {0x3F});
    set(0x0B, {0x01});
    set(0x0C, {0x00});
    set(0x0D, {0x00});
    set(0x0E, {0x00});
    const Bytes expected = {0x7F, 0x05, 0x01, 0x02, 0x03, 0x04, 0x00, 0x44, 0x01, 0x48, 0x3F, 0x01};
    EXPECT_EQ(SystemSettingsOf(Reface), expected + Bytes(20, 0));
}

TEST(RefaceInstrument, TakesTheEndsOfTheRangeOfASettingAndNothingBeyond) {
    Cable cable(Reface);
    const auto set = [&](std::uint8_t address, const Bytes &data) {
        cable.Send(Bytes{0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, address} + data +
                   Bytes{0xF7});
        const Bytes settings = SystemSettingsOf(Reface);
        return std::ranges::equal(data, std::span(settings).subspan(address, data.size()));
    };
    struct Range {
        std::uint8_t address;
        std::vector<Bytes> taken, refused;
    };
    const std::vector<Bytes> yesOrNo = {{0x00}, {0x01}}, neither = {{0x02}, {0x55}, {0x7F}};
    const Range ranges[] = {
        {0x00, {{0x00}, {0x0F}, {0x7F}}, {{0x10}, {0x7E}}}, // transmit channel, 7F: off
        {0x01, {{0x00}, {0x0F}, {0x10}}, {{0x11}, {0x7F}}}, // receive channel, 10: all
        {0x02,
         {{0x00, 0x00, 0x00, 0x00}, {0x00, 0x07, 0x0F, 0x0F}, {0x0F, 0x0F, 0x0F, 0x0F}},
         {{0x10, 0x00, 0x00, 0x00}, {0x00, 0x04, 0x00, 0x10}, {0x00, 0x7F, 0x00, 0x00}}},
        {0x06, yesOrNo, neither},
        {0x07, {{0x34}, {0x40}, {0x4C}}, {{0x33}, {0x4D}, {0x00}, {0x7F}}}, // -12 to 12
        {0x08,
         {{0x00, 0x1E}, {0x01, 0x00}, {0x02, 0x2C}}, // 30, 128, 300
         {{0x00, 0x1D}, {0x02, 0x2D}, {0x00, 0x00}, {0x7F, 0x7F}}},
        {0x0A, {{0x00}, {0x3F}}, {{0x40}, {0x7F}}},
        {0x0B, yesOrNo, neither},
        {0x0C, yesOrNo, neither},
        {0x0D, yesOrNo, neither},
        {0x0E, yesOrNo, neither},
    };
    for (const Range &range : ranges) {
        for (const Bytes &data : range.taken) {
            EXPECT_TRUE(set(range.address, data))
                << int{range.address} << ' ' << testing::PrintToString(data);
        }
        const Bytes before = SystemSettingsOf(Reface);
        for (const Bytes &data : range.refused) {
            EXPECT_FALSE(set(range.address, data))
                << int{range.address} << ' ' << testing::PrintToString(data);
            EXPECT_EQ(SystemSettingsOf(Reface), before);
        }
    }
}

TEST(RefaceInstrument, RefusesSettingsThatARealOneRefuses) {
    Cable cable(Reface);
    const Bytes before = SystemSettingsOf(Reface);
    const std::vector<Bytes> refused = {
        {0xF0, 0x43, 0x11, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x05, 0xF7},       // device 1
        {0xF0, 0x44, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x05, 0xF7},       // maker
        {0xF0, 0x43, 0x10, 0x7E, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x05, 0xF7},       // group
        {0xF0, 0x43, 0x10, 0x7F, 0x1D, 0x05, 0x00, 0x00, 0x01, 0x05, 0xF7},       // group
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x04, 0x00, 0x00, 0x01, 0x05, 0xF7},       // model
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x01, 0x00, 0x01, 0x05, 0xF7},       // address
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x01, 0x01, 0x05, 0xF7},       // address
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x03, 0x05, 0xF7},       // inside the tune
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x0F, 0x05, 0xF7},       // unknown
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x7F, 0x05, 0xF7},       // unknown
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0xF7},             // no data
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x05, 0x05, 0xF7}, // too much data
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x02, 0x05, 0xF7},       // too little
        {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x85, 0xF7},       // above 7F
        {0xF0, 0x43, 0x30, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0x05, 0xF7},       // kind
    };
    for (const Bytes &message : refused) {
        EXPECT_EQ(cable.Send(message), 0);
        EXPECT_EQ(SystemSettingsOf(Reface), before) << testing::PrintToString(message);
    }
    EXPECT_TRUE(cable.Words().empty());
}

Bytes ParameterChange(std::uint8_t high, std::uint8_t middle, std::uint8_t low, const Bytes &data) {
    return Bytes{0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, high, middle, low} + data + Bytes{0xF7};
}

TEST(RefaceInstrument, TakesEachParameterOfItsEditBufferByItsAddress) {
    Cable cable(Reface);
    const Bytes memory = MemoryOf(Reface);
    Bytes expected = EditBufferOf(Reface);
    const auto takes = [&](std::uint8_t high, std::uint8_t middle, std::uint8_t low,
                           std::size_t place) {
        for (const std::uint8_t value : {0x7F, 0x00, 0x15}) {
            cable.Send(ParameterChange(high, middle, low, {value}));
            expected[place] = value;
            ASSERT_EQ(EditBufferOf(Reface), expected) << place;
        }
    };
    for (std::uint8_t low = 0; low < 38; ++low) {
        takes(0x30, 0x00, low, low);
    }
    for (std::uint8_t op = 0; op < 4; ++op) {
        for (std::uint8_t low = 0; low < 28; ++low) {
            takes(0x31, op, low, 38u + 28u * op + low);
        }
    }
    EXPECT_EQ(MemoryOf(Reface), memory);
    EXPECT_EQ(SystemSettingsOf(Reface)[1], 0x10) << "no setting";
    EXPECT_TRUE(cable.Words().empty());
}

TEST(RefaceInstrument, TakesSeveralParametersAtOnceAndNoneWhenTheyGoBeyondTheBlock) {
    Cable cable(Reface);
    Bytes expected = EditBufferOf(Reface);
    cable.Send(ParameterChange(0x30, 0x00, 0x24, {1, 2}));
    expected[36] = 1;
    expected[37] = 2;
    EXPECT_EQ(EditBufferOf(Reface), expected);
    const Bytes whole = TestOperator(2);
    cable.Send(ParameterChange(0x31, 0x02, 0x00, whole));
    std::ranges::copy(whole, expected.begin() + 38 + 2 * 28);
    EXPECT_EQ(EditBufferOf(Reface), expected);
    const auto refuse = [&](const char *what, const Bytes &message) {
        cable.Send(message);
        EXPECT_EQ(EditBufferOf(Reface), expected) << what;
    };
    refuse("beyond the common block", ParameterChange(0x30, 0x00, 0x24, {3, 4, 5}));
    refuse("beyond an operator", ParameterChange(0x31, 0x00, 0x1B, {3, 4}));
    refuse("a byte too long", ParameterChange(0x31, 0x02, 0x00, whole + Bytes{0}));
    refuse("behind the common block", ParameterChange(0x30, 0x00, 0x26, {3}));
    refuse("behind the last operator", ParameterChange(0x31, 0x03, 0x1C, {3}));
    refuse("the last address", ParameterChange(0x31, 0x03, 0x7F, {3}));
    refuse("a fifth operator", ParameterChange(0x31, 0x04, 0x00, {3}));
    refuse("another common block", ParameterChange(0x30, 0x01, 0x00, {3}));
    refuse("another address", ParameterChange(0x32, 0x00, 0x00, {3}));
    refuse("no data", ParameterChange(0x30, 0x00, 0x0C, {}));
    refuse("another device", {0xF0, 0x43, 0x11, 0x7F, 0x1C, 0x05, 0x30, 0x00, 0x0C, 3, 0xF7});
    refuse("another model", {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x04, 0x30, 0x00, 0x0C, 3, 0xF7});
    refuse("too short", {0xF0, 0x43, 0x10, 0x7F, 0x1C, 0x05, 0x30, 0x00, 0xF7});
}

TEST(RefaceInstrument, GivesTheVoiceAsItsParametersWereChanged) {
    Cable cable(Reface);
    const Bytes voice = EditBufferOf(Reface);
    Bytes common(voice.begin(), voice.begin() + 38);
    Bytes third(voice.begin() + 38 + 2 * 28, voice.begin() + 38 + 3 * 28);
    cable.Send(ParameterChange(0x30, 0x00, 0x10, {0x0B}));
    cable.Send(ParameterChange(0x31, 0x02, 0x12, {0x2A}));
    common[0x10] = 0x0B;
    third[0x12] = 0x2A;
    cable.Send(VoiceRequest);
    const auto blocks = cable.Messages();
    ASSERT_EQ(blocks.size(), 7u);
    EXPECT_EQ(blocks[1], CommonDump(common));
    EXPECT_EQ(blocks[4], OperatorDump(2, third));
    cable.SendShort(0x00C0);
    EXPECT_EQ(EditBufferOf(Reface), voice) << "the stored voice has not changed";
}

TEST(RefaceInstrument, AnswersNoRequestForAnotherDeviceModelOrAddress) {
    Cable cable(Reface);
    cable.Send({0xF0, 0x43, 0x21, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x00, 0xF7});
    cable.Send({0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x04, 0x00, 0x00, 0x00, 0xF7});
    cable.Send({0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x00, 0x00, 0x01, 0xF7});
    cable.Send({0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x0F, 0x0F, 0x00, 0xF7});
    cable.Send({0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x0E, 0x0F, 0x00, 0x00, 0xF7});
    cable.Send({0xF0, 0x43, 0x20, 0x7F, 0x1C, 0x05, 0x0E, 0x0F, 0xF7});
    EXPECT_TRUE(cable.Words().empty());
}

TEST(RefaceInstrument, TakesAVoiceBetweenHeaderAndFooterIntoItsEditBuffer) {
    Cable cable(Reface);
    const Bytes memory = MemoryOf(Reface);
    const Bytes before = EditBufferOf(Reface);
    cable.Send(VoiceHeader);
    cable.Send(CommonDump(TestCommon()));
    for (std::uint8_t op = 0; op < 4; ++op) {
        cable.Send(OperatorDump(op, TestOperator(op)));
    }
    EXPECT_EQ(EditBufferOf(Reface), before) << "before the footer";
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), TestVoice());
    EXPECT_EQ(MemoryOf(Reface), memory);
    EXPECT_TRUE(cable.Words().empty());
}

TEST(RefaceInstrument, TakesNoBlocksOutsideHeaderAndFooter) {
    Cable cable(Reface);
    const Bytes before = EditBufferOf(Reface);
    cable.Send(CommonDump(TestCommon()));
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), before);
    cable.Send(VoiceHeader);
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), before);
    cable.Send(OperatorDump(0, TestOperator(2)));
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), before);
}

TEST(RefaceInstrument, AFailedBlockLeavesThatPartOfTheVoice) {
    Cable cable(Reface);
    const Bytes before = EditBufferOf(Reface);
    Bytes wrongSum = CommonDump(TestCommon());
    wrongSum[49] ^= 1;
    Bytes wrongCount = OperatorDump(0, TestOperator(0));
    wrongCount[6] = 0x21;
    Bytes wrongDevice = OperatorDump(1, TestOperator(1));
    wrongDevice[2] = 0x01;
    Bytes wrongOperator = OperatorDump(4, TestOperator(2));
    cable.Send(VoiceHeader);
    cable.Send(wrongSum);
    cable.Send(wrongCount);
    cable.Send(wrongDevice);
    cable.Send(wrongOperator);
    cable.Send(OperatorDump(3, TestOperator(3)));
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), Bytes(before.begin(), before.begin() + 122) + TestOperator(3));
}

TEST(RefaceInstrument, RefusesBlocksOfTheWrongLength) {
    Cable cable(Reface);
    const Bytes before = EditBufferOf(Reface);
    Bytes shortCommon = TestCommon();
    shortCommon.pop_back();
    Bytes summed = Bytes{0x05, 0x30, 0x00, 0x00} + shortCommon;
    cable.Send(VoiceHeader);
    cable.Send(Bytes{0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x29} + summed +
               Bytes{SumByte(summed), 0xF7});
    cable.Send({0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, 0x00, 0x05, 0x7B, 0xF7});
    cable.Send({0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x7F, 0x7F, 0x05, 0x0F, 0x0F, 0x00, 0x5D, 0xF7});
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), before);
}

// A block at any address with a right count and a right sum.
Bytes BlockAt(std::uint8_t model, const Bytes &address, const Bytes &data) {
    const Bytes summed = Bytes{model} + address + data;
    return Bytes{0xF0, 0x43, 0x00, 0x7F, 0x1C, 0x00, static_cast<std::uint8_t>(summed.size())} +
           summed + Bytes{SumByte(summed), 0xF7};
}

TEST(RefaceInstrument, RefusesBlocksOfAnotherModelOrLowAddress) {
    Cable cable(Reface);
    const Bytes before = EditBufferOf(Reface);
    ASSERT_EQ(BlockAt(0x05, {0x31, 0x01, 0x00}, TestOperator(1)), OperatorDump(1, TestOperator(1)));
    cable.Send(VoiceHeader);
    cable.Send(BlockAt(0x04, {0x30, 0x00, 0x00}, TestCommon()));
    cable.Send(BlockAt(0x06, {0x31, 0x00, 0x00}, TestOperator(1)));
    cable.Send(BlockAt(0x05, {0x30, 0x00, 0x01}, TestCommon()));
    cable.Send(BlockAt(0x05, {0x30, 0x01, 0x00}, TestCommon()));
    cable.Send(BlockAt(0x05, {0x31, 0x01, 0x01}, TestOperator(1)));
    cable.Send(BlockAt(0x05, {0x32, 0x01, 0x00}, TestOperator(1)));
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), before);
}

TEST(RefaceInstrument, AHeaderWithDataBeginsNoVoice) {
    Cable cable(Reface);
    const Bytes before = EditBufferOf(Reface);
    cable.Send(BlockAt(0x05, {0x0E, 0x0F, 0x00}, {0x00}));
    cable.Send(CommonDump(TestCommon()));
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), before);
}

TEST(RefaceInstrument, AFooterWithDataEndsNoVoice) {
    Cable cable(Reface);
    const Bytes before = EditBufferOf(Reface);
    cable.Send(VoiceHeader);
    cable.Send(CommonDump(TestCommon()));
    cable.Send(BlockAt(0x05, {0x0F, 0x0F, 0x00}, {0x00}));
    EXPECT_EQ(EditBufferOf(Reface), before);
    cable.Send(VoiceFooter);
    EXPECT_EQ(EditBufferOf(Reface), TestCommon() + Bytes(before.begin() + 38, before.end()));
}

TEST(RefaceInstrument, AWrongFooterDoesNotEndAVoice) {
    Cable cable(Reface);
    const Bytes before = EditBufferOf(Reface);
    Bytes wrongFooter = VoiceFooter;
    wrongFooter[11] = 0x5E;
    cable.Send(VoiceHeader);
    cable.Send(CommonDump(TestCommon()));
    cable.Send(wrongFooter);
    EXPECT_EQ(EditBufferOf(Reface), before);
    cable.Send(VoiceFooter);
    EXPECT_EQ(Bytes(EditBufferOf(Reface).begin(), EditBufferOf(Reface).begin() + 38), TestCommon());
}

TEST(RefaceInstrument, KeepsBytesThatMeanNothing) {
    Cable cable(Reface);
    Bytes common = TestCommon();
    common[10] = 0x55;
    common[37] = 0x2A;
    cable.Send(VoiceHeader);
    cable.Send(CommonDump(common));
    cable.Send(VoiceFooter);
    cable.Send(VoiceRequest);
    const auto messages = cable.Messages();
    ASSERT_EQ(messages.size(), 7u);
    EXPECT_EQ(messages[1], CommonDump(common));
}

TEST(RefaceInstrument, RealTimeBytesInsideAMessageDoNotDisturbIt) {
    Cable cable(Reface);
    cable.Send({0xF0, 0x7E, 0xF8, 0x00, 0x06, 0xFE, 0x01, 0xF7});
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{IdentityReply});
}

TEST(RefaceInstrument, AChannelMessageBreaksASysexMessageOff) {
    Cable cable(Reface);
    cable.midi.Pm_Write(cable.output, {0x06007EF0, 0});
    cable.SendShort(0x05C0);
    cable.midi.Pm_Write(cable.output, {0x0000F701, 0});
    EXPECT_TRUE(cable.Words().empty()) << "the two words together are an identity request";
    EXPECT_EQ(SelectedProgramOf(Reface), 5);
}

TEST(RefaceInstrument, TakesASysexMessageInWordsOfFourBytes) {
    Cable cable(Reface);
    cable.midi.Pm_Write(cable.output, {0x06007EF0, 0});
    cable.midi.Pm_Write(cable.output, {0x000000F8, 0}); // a clock tick between
    cable.midi.Pm_Write(cable.output, {0x0000F701, 0});
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{IdentityReply});
}

TEST(RefaceInstrument, ShortMessagesWithDataAboveSevenBitsAreDropped) {
    Cable cable(Reface);
    cable.SendShort(0x81C0);
    cable.SendShort(0x80BC90);
    EXPECT_EQ(SelectedProgramOf(Reface), 0);
    EXPECT_TRUE(SoundingNotesOf(Reface).empty());
}

TEST(RefaceInstrument, AnEndlessMessageIsDroppedAndTheNextOneHeard) {
    Cable cable(Reface);
    cable.midi.Pm_Write(cable.output, {0x010101F0, 0});
    for (int i = 0; i < 100000; ++i) {
        cable.midi.Pm_Write(cable.output, {0x01010101, 0});
    }
    cable.midi.Pm_Write(cable.output, {0x000000F7, 0});
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{IdentityReply});
}

} // namespace
} // namespace tonewright
