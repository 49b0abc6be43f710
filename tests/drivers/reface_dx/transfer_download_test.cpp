// How all voices of a reface DX come into the list.
#include "core/dispatch.h"
#include "support/family_names.h"
#include "transfer_fixture.h"

namespace tonewright {
namespace {

const Traffic Prepared = {
    "> B0 7C 00",                         // Omni off
    "> F0 43 10 7F 1C 05 00 00 01 00 F7", // receive channel 1
    "> F0 43 10 7F 1C 05 00 00 0C 00 F7", // automatic power-off 0
    "> F0 43 10 7F 1C 05 00 00 0D 00 F7", // speaker off
    "> F0 43 10 7F 1C 05 00 00 0E 01 F7", // MIDI control on
};

struct RefaceDownloadTest : RefaceTransferTest {
    // Voice `program` is answered with `messages`, every other one as a whole.
    void AnswerWith(int program, const std::vector<Bytes> &messages) {
        voiceMessages = [program, messages](int asked) {
            return asked == program ? messages : WholeVoice(asked);
        };
    }

    // The blocks of a voice as they come, without header and footer.
    static Bytes Common(int program) { return CommonDump(TestRefaceCommon(program)); }
    static Bytes Operator(int n) { return OperatorDump(n, TestRefaceOperator(n)); }

    // All rows hold the voices of the scripted instrument, but for those that are named.
    void ExpectWholeVoicesBut(const std::vector<int> &others) {
        ASSERT_EQ(ListCount(list), 32);
        for (int row = 0; row < 32; ++row) {
            if (std::ranges::find(others, row) == others.end()) {
                EXPECT_EQ(list.items[row], TestRefaceVoice(row)) << row;
            }
        }
    }
    // How long the instrument had the turn with a voice.
    int TimeOfVoice(int program) const {
        return TimeOfProgram(static_cast<std::uint8_t>(program + 1)) -
               TimeOfProgram(static_cast<std::uint8_t>(program));
    }

    // Milliseconds that a whole voice takes when nothing is waited for: an event each, 61 up to the
    // last operator, and the four of the footer of the voice before.
    static constexpr int WholeVoiceTime = 65;
    // From the last event of the footer of the voice before.
    static constexpr int FooterTime = 4;
};

TEST_F(RefaceDownloadTest, SaysTheseBytesInThisOrder) {
    EXPECT_EQ(DownloadBank(), 1);
    Traffic expected = Traffic{"> " + SystemRequest, "< " + SettingsDump} + Prepared;
    for (int program = 0; program < 32; ++program) {
        expected.push_back("> " + HexText({0xC0, static_cast<std::uint8_t>(program), 0x00}));
        expected.push_back("> " + VoiceRequest);
        if (program > 0) {
            expected.push_back("< " + FooterDump); // of the voice before
        }
        expected.push_back("< " + HeaderDump);
        expected.push_back("< " + HexText(Common(program)));
        for (int n = 0; n < 4; ++n) {
            expected.push_back("< " + HexText(Operator(n)));
        }
    }
    expected.push_back("> C0 00 00");
    EXPECT_EQ(traffic, expected + SettingsRestored);
    // The first voice, byte by byte.
    const Traffic first(traffic.begin() + 7, traffic.begin() + 15);
    EXPECT_EQ(
        first,
        (Traffic{
            "> C0 00 00",
            "> F0 43 20 7F 1C 05 0E 0F 00 F7",
            "< F0 43 00 7F 1C 00 04 05 0E 0F 00 5E F7",
            "< F0 43 00 7F 1C 00 2A 05 30 00 00 52 45 46 41 43 45 20 30 31 00 51 52 34 01 11 2A 00 "
            "06 00 15 16 65 66 67 68 40 41 42 43 07 1F 20 01 21 22 61 62 63 10 F7",
            "< F0 43 00 7F 1C 00 20 05 31 00 00 01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 "
            "21 5A 2D 01 00 03 32 40 71 72 73 39 F7",
            "< F0 43 00 7F 1C 00 20 05 31 01 00 01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 "
            "21 5B 2D 01 00 03 32 40 71 72 74 36 F7",
            "< F0 43 00 7F 1C 00 20 05 31 02 00 01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 "
            "21 5C 2D 01 00 03 32 40 71 72 75 33 F7",
            "< F0 43 00 7F 1C 00 20 05 31 03 00 01 78 50 28 5A 7F 64 46 00 0F 05 06 02 03 09 01 00 "
            "21 5D 2D 01 00 03 32 40 71 72 76 30 F7",
        }));
}

TEST_F(RefaceDownloadTest, DoesEverythingInItsOrder) {
    FillList(3);
    list.itemHeight = 20;
    SynthFirmware = 0x00010200;
    RecordListAmongCalls(midi, list);
    EXPECT_EQ(DownloadBank(), 1);
    const auto written = [](const char *bytes) {
        return std::string("Pm_WriteSysEx(1, 0, ") + bytes + ")";
    };
    const auto sentAt = [](int time, const std::string &bytes) {
        return "Pm_WriteShort(1, " + std::to_string(time) + ", " + bytes + ")";
    };
    int now = 12; // milliseconds, an event of the settings each
    Calls expected = {"Pt_Start(1)",
                      "Pm_OpenInput(0, 512)",
                      "Pm_OpenOutput(1, 0, 0)",
                      written("F0 43 20 7F 1C 05 00 00 00 F7"),
                      "ShowBusyBox(Downloading voices)",
                      sentAt(now, "B0 7C 00"),
                      written("F0 43 10 7F 1C 05 00 00 01 00 F7"),
                      written("F0 43 10 7F 1C 05 00 00 0C 00 F7"),
                      written("F0 43 10 7F 1C 05 00 00 0D 00 F7"),
                      written("F0 43 10 7F 1C 05 00 00 0E 01 F7"),
                      "0 rows",
                      "disable",
                      "no redraw",
                      "SetProgress(0, 1)"};
    for (int row = 0; row < 32; ++row) {
        expected.push_back(std::to_string(row + 1) + " rows");
        expected.emplace_back("voice");
        expected.push_back(sentAt(now, HexText({0xC0, static_cast<std::uint8_t>(row), 0x00})));
        expected.push_back(written("F0 43 20 7F 1C 05 0E 0F 00 F7"));
        expected.push_back("SetProgress(" + std::to_string(row) + ", 32)");
        expected.push_back("SetStatusText(Downloading voice " + std::to_string(row + 1) +
                           " of 32 (" + TestRefaceName(row) + "))");
        expected.insert(expected.end(), 5, "voice"); // each block as it is taken
        if (row == 0) {
            expected.emplace_back("height 48");
        }
        expected.emplace_back("select 0");
        now += row == 0 ? WholeVoiceTime - FooterTime : WholeVoiceTime;
    }
    expected.push_back(sentAt(now, "C0 00 00"));
    expected.insert(expected.end(), {"SetProgress(0, 1)",
                                     "SetStatusText()",
                                     "SetStatusText(Yamaha reface DX version 01.20)",
                                     "redraw",
                                     "enable",
                                     "CloseBusyBox()",
                                     written("F0 43 10 7F 1C 05 00 00 00 03 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 01 10 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 02 07 04 0E 08 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 06 01 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 07 43 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 08 00 5A F7"),
                                     written("F0 43 10 7F 1C 05 00 00 0A 21 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 0B 02 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 0C 05 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 0D 06 F7"),
                                     written("F0 43 10 7F 1C 05 00 00 0E 09 F7"),
                                     "Pt_Stop()",
                                     "Pm_Close(1)",
                                     "Pm_Close(0)"});
    EXPECT_EQ(midi.calls, expected);
    EXPECT_EQ(desktop.busyBoxesOpen, 0);
}

TEST_F(RefaceDownloadTest, Gives32VoicesByteForByteAndARepaintedList) {
    FillList(40);
    ListSelect(list, 39);
    ListEnable(list, false);
    ListSetRedraw(list, false);
    MainItemFonts = {};
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
    EXPECT_EQ(list.selection, 0);
    EXPECT_TRUE(list.enabled);
    EXPECT_TRUE(list.redraw);
    EXPECT_EQ(list.itemHeight, 48);
    EXPECT_EQ(MainItemFonts.itemHeight, 48);
}

TEST_F(RefaceDownloadTest, SetsHeightAndSelectionBehindEveryVoice) {
    voiceMessages = [this](int program) {
        if (program == 31) {
            list.itemHeight = 20;
            list.selection = 5;
            MainItemFonts.itemHeight = 20;
        }
        return WholeVoice(program);
    };
    EXPECT_EQ(DownloadBank(), 1);
    EXPECT_EQ(list.itemHeight, 48);
    EXPECT_EQ(MainItemFonts.itemHeight, 48);
    EXPECT_EQ(list.selection, 0);
}

TEST_F(RefaceDownloadTest, EndsWithTheFirstProgramSelected) {
    program = 17;
    EXPECT_EQ(DownloadBank(), 1);
    EXPECT_EQ(program, 0);
}

TEST_F(RefaceDownloadTest, SpeaksOnChannel1WhateverTheSettingSays) {
    CurrentMidiChannel = 16;
    EXPECT_EQ(DownloadBank(), 1);
    EXPECT_EQ(traffic[2], "> B0 7C 00");
    EXPECT_EQ(traffic[7], "> C0 00 00");
    EXPECT_EQ(std::ranges::count(traffic, "> B0 7D 00"), 0) << "Omni stays off";
}

TEST_F(RefaceDownloadTest, NamesTheCurrentInstrumentInTheEnd) {
    CurrentDriverId = NoDriverId;
    EXPECT_EQ(DownloadBank(), 1);
    EXPECT_EQ(desktop.statusTexts[32], "");
    EXPECT_EQ(desktop.statusTexts[33], "Unknown or unrecognized synthesizer");
    EXPECT_EQ(desktop.statusTexts.size(), 34u);
}

// Names.

TEST_F(RefaceDownloadTest, ShowsEachNameAsTheCodecReadsIt) {
    const std::pair<std::string, std::string> names[] = {
        {"41 42 43 20 20 20 20 20 20 20", "ABC"}, // blanks behind it
        {"20 20 20 20 20 20 20 20 20 20", " "},   // nothing but blanks
        {"41 42 00 43 44 00 00 00 00 00", "AB"},  // a zero byte inside
        {"00 42 43 44 45 46 47 48 49 4A", ""},
        {"41 42 43 44 45 46 47 48 49 7F", "ABCDEFGHI\x7F"},
        {"C9 74 E9 20 20 20 20 20 20 1F", "\xC3\x89t\xC3\xA9"}, // Latin-1
    };
    for (const auto &[bytes, shown] : names) {
        Bytes common = TestRefaceCommon(0);
        std::ranges::copy(Hex(bytes), common.begin());
        AnswerWith(0, {CommonDump(common), Operator(0), Operator(1), Operator(2), Operator(3)});
        desktop.statusTexts.clear();
        EXPECT_EQ(DownloadBank(), 1);
        EXPECT_EQ(desktop.statusTexts[0], "Downloading voice 1 of 32 (" + shown + ")");
        EXPECT_EQ(Bytes(list.items[0].bytes.begin() + 52, list.items[0].bytes.begin() + 90),
                  common);
    }
}

// The order of the messages, and messages of other kinds.

TEST_F(RefaceDownloadTest, TakesOperator2CommonOperator0Operator1Operator3) {
    AnswerWith(3, {Hex(HeaderDump), Operator(2), Common(3), Operator(0), Operator(1), Operator(3),
                   Hex(FooterDump)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
    EXPECT_EQ(TimeOfVoice(3), WholeVoiceTime);
}

TEST_F(RefaceDownloadTest, TakesTheBlocksInEveryOrder) {
    std::array<int, 5> order = {0, 1, 2, 3, 4};
    std::vector<std::vector<Bytes>> orders;
    do {
        std::vector<Bytes> messages;
        for (const int block : order) {
            messages.push_back(block == 4 ? Common(0) : Operator(block));
        }
        orders.push_back(messages);
    } while (std::ranges::next_permutation(order).found);
    ASSERT_EQ(orders.size(), 120u);
    for (std::size_t start = 0; start < orders.size(); start += 30) {
        voiceMessages = [&](int program) {
            return orders[(start + static_cast<std::size_t>(program)) % orders.size()];
        };
        EXPECT_EQ(DownloadBank(), 1);
        for (int row = 0; row < 32; ++row) {
            EXPECT_EQ(list.items[row], TestRefaceVoice(0)) << start << " " << row;
        }
        EXPECT_EQ(TimeOfProgram(31) - TimeOfProgram(0), 31 * 57) << "nothing is waited for";
    }
}

TEST_F(RefaceDownloadTest, OverwritesABlockByItsSecondDump) {
    Bytes common = TestRefaceCommon(9), op = TestRefaceOperator(1);
    common[0] = 'X';
    op[5] ^= 1;
    AnswerWith(9, {CommonDump(common), OperatorDump(1, op), Operator(1), Common(9), Operator(0),
                   Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
    EXPECT_EQ(desktop.statusTexts[9], "Downloading voice 10 of 32 (XEFACE 10)");
    EXPECT_EQ(desktop.statusTexts[10], "Downloading voice 10 of 32 (REFACE 10)");
}

TEST_F(RefaceDownloadTest, DoesNotTakeADuplicateForTheBlockThatIsMissing) {
    AnswerWith(9, {Common(9), Operator(0), Operator(0), Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({9});
    VoiceObject expected = TestRefaceVoice(9);
    std::fill_n(expected.bytes.begin() + 52 + 38 + 28, 28, std::uint8_t{0});
    EXPECT_EQ(list.items[9], expected);
    EXPECT_GT(TimeOfVoice(9), 1500);
}

TEST_F(RefaceDownloadTest, IgnoresHeaderAndFooterWhereverTheyCome) {
    const Bytes header = Hex(HeaderDump), footer = Hex(FooterDump);
    AnswerWith(0, {footer, Common(0), header, Operator(0), header, footer, Operator(1), Operator(2),
                   footer, Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
    EXPECT_EQ(TimeOfVoice(0), 13 + 4 * 11 + 5 * 4);
}

TEST_F(RefaceDownloadTest, IgnoresMessagesOfAnyOtherByteCount) {
    std::vector<Bytes> messages;
    for (int count = 0; count < 0x80; ++count) {
        if (count != 0x20 && count != 0x2A) {
            Bytes other = OperatorDump(0, Bytes(28, 0x55));
            other[6] = static_cast<std::uint8_t>(count);
            messages.push_back(other);
        }
    }
    for (const Bytes &message : WholeVoice(5)) {
        messages.push_back(message);
    }
    AnswerWith(5, messages);
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
}

TEST_F(RefaceDownloadTest, IgnoresAReplyWithByteFiveNotZero) {
    Bytes high = Common(2);
    high[5] = 0x01;
    AnswerWith(2, {high, Operator(0), Operator(1), Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({2});
    VoiceObject expected = TestRefaceVoice(2);
    std::fill_n(expected.bytes.begin() + 52, 38, std::uint8_t{0});
    EXPECT_EQ(list.items[2], expected);
    EXPECT_EQ(TimeOfVoice(2), FooterTime + 57 + 1500);
}

TEST_F(RefaceDownloadTest, WaitsForNothingWhenTheRestArrivesBehindAReplyWithByteFiveNotZero) {
    Bytes common = CommonDump(Bytes(38, 0x55)), op = OperatorDump(1, Bytes(28, 0x55));
    common[5] = 0x7F;
    op[5] = 0x01;
    AnswerWith(2, {Common(2), common, Operator(1), op, Operator(0), Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
    EXPECT_EQ(TimeOfVoice(2), FooterTime + 57 + 13 + 11);
}

TEST_F(RefaceDownloadTest, StoresAnOperatorNumberAbove3AsTheFourthOperator) {
    for (const int number : {4, 7, 0x7F, 0x80, 0xFF}) {
        AnswerWith(6, {Common(6), Operator(0), Operator(1), Operator(2),
                       OperatorDump(number, TestRefaceOperator(3))});
        EXPECT_EQ(DownloadBank(), 1);
        ExpectWholeVoicesBut({});
        EXPECT_EQ(TimeOfVoice(6), FooterTime + 57) << number;
    }
}

TEST_F(RefaceDownloadTest, LooksAtNoOtherByteOfAReply) {
    const auto disguised = [](Bytes message) {
        for (const std::size_t place : {1u, 2u, 3u, 4u, 7u, 8u, 10u}) {
            message[place] = 0x66;
        }
        message[message.size() - 2] ^= 0x7F; // checksum
        return message;
    };
    std::vector<Bytes> messages;
    for (const Bytes &message : {Common(1), Operator(0), Operator(1), Operator(2), Operator(3)}) {
        messages.push_back(disguised(message));
    }
    messages[0][9] = 0x66; // an operator's number, in a common block
    AnswerWith(1, messages);
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
}

TEST_F(RefaceDownloadTest, KeepsBytesAboveSevenBitsAndOutOfEveryRange) {
    Bytes common(38, 0xFE), op(28, 0x80);
    common[10] = 0xFF; // belongs to no parameter
    AnswerWith(1, {CommonDump(common), OperatorDump(0, op), OperatorDump(1, op),
                   OperatorDump(2, op), OperatorDump(3, op)});
    EXPECT_EQ(DownloadBank(), 1);
    VoiceObject expected = ZeroRefaceVoice();
    std::ranges::copy(common, expected.bytes.begin() + 52);
    std::fill(expected.bytes.begin() + 90, expected.bytes.end(), 0x80);
    EXPECT_EQ(list.items[1], expected);
}

// Time-outs and broken messages.

TEST_F(RefaceDownloadTest, FromAnInstrumentThatFallsSilentTakes32TimesTheWaitAndSucceeds) {
    voiceMessages = [](int) { return std::vector<Bytes>{}; };
    for (const int wait : {1500, 10}) {
        SysexWait = static_cast<std::uint32_t>(wait);
        midi.written.clear();
        EXPECT_EQ(DownloadBank(), 1);
        ASSERT_EQ(ListCount(list), 32);
        for (int row = 0; row < 32; ++row) {
            EXPECT_EQ(TimeOfProgram(static_cast<std::uint8_t>(row)), 12 + row * wait);
            EXPECT_EQ(list.items[row], ZeroRefaceVoice()) << row;
        }
        EXPECT_EQ(midi.now, 12 + 32 * wait);
    }
    EXPECT_EQ(list.selection, 0);
    EXPECT_EQ(list.itemHeight, 48);
    EXPECT_TRUE(list.enabled);
    EXPECT_TRUE(list.redraw);
    EXPECT_EQ(desktop.statusTexts, (Calls{"", RefaceName, "", RefaceName}));
    EXPECT_EQ(desktop.progress, (std::vector<std::pair<int, int>>{{0, 1}, {0, 1}, {0, 1}, {0, 1}}));
    EXPECT_TRUE(desktop.messages.empty());
    const Traffic end(traffic.end() - 12, traffic.end());
    EXPECT_EQ(end, Traffic{"> C0 00 00"} + SettingsRestored);
}

TEST_F(RefaceDownloadTest, LeavesAVoiceThatTimesOutAsFarAsItCame) {
    AnswerWith(4, {Hex(HeaderDump), Operator(3), Common(4)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({4});
    VoiceObject expected = TestRefaceVoice(4);
    std::fill_n(expected.bytes.begin() + 90, 3 * 28, std::uint8_t{0});
    EXPECT_EQ(list.items[4], expected);
    EXPECT_EQ(TimeOfVoice(4), FooterTime + 4 + 11 + 13 + 1500);
    EXPECT_EQ(desktop.statusTexts[4], "Downloading voice 5 of 32 (REFACE 05)");
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(std::ranges::count(traffic, "> C0 04 00"), 1) << "it is not asked for again";
}

TEST_F(RefaceDownloadTest, CountsTheWaitAnewFromEveryEvent) {
    voiceMessages = [this](int asked) {
        int after = 0;
        for (const Bytes &message : WholeVoice(asked)) {
            midi.Send(in, message, after += asked == 8 ? 1400 : 0);
        }
        return std::vector<Bytes>{};
    };
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
    EXPECT_GT(TimeOfVoice(8), 6 * 1400);
}

TEST_F(RefaceDownloadTest, TakesABlockThatComesTooLateForOneOfTheNextVoice) {
    voiceMessages = [this](int asked) {
        if (asked == 0) {
            midi.Send(in, Common(0), 1500);
            return std::vector<Bytes>{};
        }
        return WholeVoice(asked);
    };
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({0}); // the next voice's own block came behind it
    EXPECT_EQ(list.items[0], ZeroRefaceVoice());
    EXPECT_EQ(TimeOfVoice(0), 1500);
    EXPECT_EQ(desktop.statusTexts[0], "Downloading voice 2 of 32 (REFACE 01)");
    EXPECT_EQ(desktop.statusTexts[1], "Downloading voice 2 of 32 (REFACE 02)");
}

TEST_F(RefaceDownloadTest, TakesACommonBlockThatIsCutShortWithZerosBehindItsEnd) {
    AnswerWith(7, {Hex("F0 43 00 7F 1C 00 2A 05 30 00 00 41 42 43 F7"), Operator(0), Operator(1),
                   Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({7});
    VoiceObject expected = TestRefaceVoice(7);
    std::fill_n(expected.bytes.begin() + 52, 38, std::uint8_t{0});
    std::ranges::copy(Hex("41 42 43 F7"), expected.bytes.begin() + 52);
    EXPECT_EQ(list.items[7], expected);
    EXPECT_EQ(desktop.statusTexts[7], "Downloading voice 8 of 32 (ABC\xC3\xB7)");
}

TEST_F(RefaceDownloadTest, TakesABlockThatEndsInFrontOfItsDataForZeros) {
    AnswerWith(7, {Hex("F0 43 00 7F 1C 00 2A F7"), Hex("F0 43 00 7F 1C 00 20 F7"), Operator(1),
                   Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({7});
    VoiceObject expected = TestRefaceVoice(7);
    std::fill_n(expected.bytes.begin() + 52, 38 + 28, std::uint8_t{0});
    EXPECT_EQ(list.items[7], expected) << "nothing of an earlier message is left in it";
    EXPECT_EQ(TimeOfVoice(7), FooterTime + 2 + 2 + 3 * 11);
}

TEST_F(RefaceDownloadTest, RunsAMessageWithoutItsEndIntoTheNextOne) {
    Bytes common = Common(7);
    common.resize(48); // twelve whole events, without reserved bytes, checksum and end
    AnswerWith(7, {common, Operator(0), Operator(1), Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({7});
    VoiceObject expected = TestRefaceVoice(7);
    std::ranges::copy(Hex("F0"), expected.bytes.begin() + 52 + 37);
    std::fill_n(expected.bytes.begin() + 90, 28, std::uint8_t{0});
    EXPECT_EQ(list.items[7], expected) << "the first operator is lost in the common block";
    EXPECT_EQ(TimeOfVoice(7), FooterTime + 12 + 4 * 11 + 1500);
}

TEST_F(RefaceDownloadTest, LosesTheMessageThatANoteCameInFrontOf) {
    voiceMessages = [this](int asked) {
        if (asked == 11) {
            midi.Send(in, Hex("90 3C 40"));
            return std::vector<Bytes>{Common(11), Operator(0), Operator(1), Operator(2),
                                      Operator(3)};
        }
        return WholeVoice(asked);
    };
    EXPECT_EQ(DownloadBank(), 1);
    // The note follows the footer of the voice before.
    ExpectWholeVoicesBut({11});
    VoiceObject expected = TestRefaceVoice(11);
    std::fill_n(expected.bytes.begin() + 52, 38, std::uint8_t{0});
    EXPECT_EQ(list.items[11], expected);
    EXPECT_EQ(TimeOfVoice(11), FooterTime + 1 + 57 + 1500);
}

TEST_F(RefaceDownloadTest, StoresARealTimeByteInsideABlockAsPartOfIt) {
    const Bytes sensing = Hex("FE 00 00 00"); // an event of its own
    Bytes op = Operator(0);
    op.insert(op.begin() + 12, sensing.begin(), sensing.end());
    AnswerWith(11, {Common(11), op, Operator(1), Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({11});
    const Bytes stored = TestRefaceOperator(0);
    Bytes shifted = Bytes{stored[0]} + sensing + Bytes(stored.begin() + 1, stored.end());
    shifted.resize(28);
    VoiceObject expected = TestRefaceVoice(11);
    std::ranges::copy(shifted, expected.bytes.begin() + 90);
    EXPECT_EQ(list.items[11], expected);
}

TEST_F(RefaceDownloadTest, TakesAMessageThatFillsTheBuffer) {
    Bytes endless = Common(0);
    endless.resize(49); // up to the last data byte
    endless.resize(8192, 0x22);
    AnswerWith(0, {endless, Operator(0), Operator(1), Operator(2), Operator(3)});
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
}

TEST_F(RefaceDownloadTest, TakesAReadThatFailsForAnEvent) {
    voiceMessages = [this](int asked) {
        midi.failingReads = asked == 30 ? 1 : 0; // four zero bytes in front of the common block
        return std::vector<Bytes>{Common(asked), Operator(0), Operator(1), Operator(2),
                                  Operator(3)};
    };
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({30});
    VoiceObject expected = TestRefaceVoice(30);
    std::fill_n(expected.bytes.begin() + 52, 38, std::uint8_t{0});
    EXPECT_EQ(list.items[30], expected);
}

// Writes that fail.

TEST_F(RefaceDownloadTest, LeavesAVoiceEmptyWhoseRequestCannotBeWritten) {
    // Request of the settings, Omni off, four settings, then two for each voice.
    midi.failingWrites = {6 + 2 * 3 + 1};
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({3});
    EXPECT_EQ(list.items[3], ZeroRefaceVoice());
    EXPECT_EQ(TimeOfVoice(3), 0) << "its answer is not waited for";
    EXPECT_TRUE(desktop.messages.empty());
    EXPECT_EQ(desktop.progress[3], (std::pair{2, 32}));
    EXPECT_EQ(desktop.progress[4], (std::pair{4, 32}));
}

TEST_F(RefaceDownloadTest, WithoutAnyRequestWrittenGives32EmptyVoicesAtOnce) {
    for (int row = 0; row < 32; ++row) {
        midi.failingWrites.insert(6 + 2 * row + 1);
    }
    EXPECT_EQ(DownloadBank(), 1);
    ASSERT_EQ(ListCount(list), 32);
    for (const VoiceObject &voice : list.items) {
        EXPECT_EQ(voice, ZeroRefaceVoice());
    }
    EXPECT_EQ(midi.now, 12);
    EXPECT_EQ(list.selection, 0);
    EXPECT_EQ(list.itemHeight, 48);
    EXPECT_TRUE(list.enabled);
}

TEST_F(RefaceDownloadTest, GoesOnBehindAWriteThatFailsAtEachPlace) {
    constexpr int writes = 1 + 1 + 4 + 2 * 32 + 1 + 11;
    for (int failing = 1; failing < writes; ++failing) {
        const int before = midi.writes;
        midi.failingWrites = {before + failing};
        EXPECT_EQ(DownloadBank(), 1) << failing;
        EXPECT_EQ(midi.writes - before, writes) << failing;
        EXPECT_EQ(ListCount(list), 32) << failing;
        EXPECT_TRUE(list.enabled && list.redraw) << failing;
        EXPECT_EQ(desktop.busyBoxesOpen, 0) << failing;
    }
}

// Ways out.

TEST_F(RefaceDownloadTest, FromAnInputThatDoesNotOpenDoesNothing) {
    FillList(5);
    ListSelect(list, 2);
    const auto before = list.items;
    midi.devices[0].opens = false;
    EXPECT_EQ(DownloadBank(), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pt_Stop()"}));
    EXPECT_EQ(list.items, before);
    EXPECT_EQ(list.selection, 2);
    EXPECT_TRUE(list.enabled);
}

TEST_F(RefaceDownloadTest, ToAnOutputThatDoesNotOpenClosesTheInput) {
    FillList(5);
    const auto before = list.items;
    midi.devices[1].opens = false;
    EXPECT_EQ(DownloadBank(), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pt_Stop()", "Pm_Close(0)"}));
    EXPECT_EQ(list.items, before);
}

TEST_F(RefaceDownloadTest, WithoutPortsDoesNothing) {
    FillList(5);
    EXPECT_EQ(RefaceDownloadBank(nullptr, list, {}), 0);
    EXPECT_EQ(RefaceDownloadBank(nullptr, list, {in, -1}), 0);
    EXPECT_EQ(RefaceDownloadBank(nullptr, list, {out, in}), 0) << "each the wrong way round";
    EXPECT_EQ(ListCount(list), 5);
    EXPECT_TRUE(midi.written.empty());
}

TEST_F(RefaceDownloadTest, WithNoInstrumentOnItsPortsSaysInvalidSystemCommonBehindTheWait) {
    FillList(5);
    ListSelect(list, 2);
    const auto before = list.items;
    RecordListAmongCalls(midi, list);
    answersSettings = false;
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(DownloadBank(), 0);
    EXPECT_EQ(midi.now, 1500);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_WriteSysEx(1, 0, " + SystemRequest + ")", "message",
                                 "Pt_Stop()", "Pm_Close(1)", "Pm_Close(0)"}));
    EXPECT_EQ(list.items, before);
    EXPECT_EQ(list.selection, 2);
    EXPECT_EQ(desktop.busyBoxesShown, 0);
}

TEST_F(RefaceDownloadTest, WithAFirstReplyOfAnotherFormSaysInvalidSystemCommonAtOnce) {
    FillList(5);
    settingsDump = Hex(HeaderDump);
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(DownloadBank(), 0);
    EXPECT_EQ(midi.now, 4);
    EXPECT_EQ(ListCount(list), 5);
    EXPECT_EQ(traffic, (Traffic{"> " + SystemRequest, "< " + HeaderDump}));
}

TEST_F(RefaceDownloadTest, WithAWaitOfNoTimeSaysInvalidSystemCommonAtOnce) {
    SysexWait = 0;
    desktop.ExpectMessage(InvalidSystem);
    EXPECT_EQ(DownloadBank(), 0);
    EXPECT_EQ(midi.now, 0);
}

TEST_F(RefaceDownloadTest, WithoutABusyBoxGoesOn) {
    desktop.busyBoxWorks = false;
    EXPECT_EQ(DownloadBank(), 1);
    ExpectWholeVoicesBut({});
}

TEST_F(RefaceDownloadTest, GoesThroughTheCurrentRow) {
    MidiInPort = in;
    MidiOutPort = out;
    EXPECT_EQ(DownloadCurrent(nullptr, list), 1);
    ExpectWholeVoicesBut({});
}

} // namespace
} // namespace tonewright
