// What a DX7 is sent, in which order, and what the user sees meanwhile.
#include "drivers/dx7/transfer.h"

#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/bank_bytes.h"
#include "support/fake_midi.h"
#include "support/family_names.h"
#include "support/scripted_desktop.h"
#include "support/transfer_calls.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

namespace tonewright {
namespace {

using Bytes = FakeMidi::Bytes;
using Calls = std::vector<std::string>;

constexpr const char *BeforePrompt =
    "E.PIANO 1x is about to be uploaded to your synthesizer.\n\nPlease select the voice bank in "
    "which you'd like it to be stored. (Turn the black Program knob on the Korg Volca FM.)";
constexpr const char *AfterPrompt =
    "E.PIANO 1x has been uploaded to your synthesizer.\n\nPress the Save button twice to store it.";
constexpr const char *AfterPromptWithoutName =
    " has been uploaded to your synthesizer.\n\nPress the Save button twice to store it.";

VoiceObject PianoVoice() {
    return MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
}

// The dump of the voice of support/bank_bytes.h, whose operator switches stay behind.
Bytes PianoDump() {
    Bytes dump = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    const auto voice = TestUnpackedVoice();
    dump.insert(dump.end(), voice.begin(), voice.begin() + 155);
    dump.push_back(TestChecksum(std::span(voice).first(155)));
    dump.push_back(0xF7);
    return dump;
}

Bytes ZeroDump() {
    Bytes dump(163, 0);
    std::ranges::copy(Bytes{0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B}, dump.begin());
    dump.back() = 0xF7;
    return dump;
}

// A desktop, a list and one output; what the desktop is asked and how the list changes stands
// among the calls of the MIDI table.
struct Dx7Transfer : testing::Test {
    ScriptedDesktop desktop;
    FakeMidi midi;
    int out = midi.AddOutput("Volca FM");
    VoiceList list;

    Dx7Transfer() {
        CurrentDriverId = Dx7DriverId;
        CurrentMidiChannel = 1;
        SynthFirmware = 0;
        RecordDesktopAmongCalls(midi);
        TheDesktop.RunMessage = [this, inner = TheDesktop.RunMessage](MessageRequest &request) {
            EXPECT_FALSE(list.enabled) << "no item moves while the prompt stands";
            inner(request);
        };
    }

    void FillList() {
        const auto bank = TestBank();
        DecodeDx7Bank(list, bank);
        RecordListAmongCalls(midi, list);
        midi.calls.clear();
    }

    int UploadBank() { return Dx7UploadBank(nullptr, list, {NoMidiDeviceIn, out}); }
    int UploadVoice(const VoiceObject *voice, int index, std::uint8_t flags) {
        return Dx7UploadVoice(nullptr, list, voice, {NoMidiDeviceIn, out}, index, flags);
    }
    static constexpr int NoMidiDeviceIn = -1;
};

std::string Status(int number) {
    return "SetStatusText(Encoding voice " + std::to_string(number) + " of 32 (" +
           TestVoiceName(number - 1) + "))";
}

// Bank.

TEST_F(Dx7Transfer, BankIsSentBetweenOmniOnAndProgramsLastAndFirst) {
    FillList();
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(midi.WrittenBytes(), (std::vector<Bytes>{{0xB0, 0x7D, 0x00},
                                                       TestBank(),
                                                       {0xC0, 0x1F, 0x00},
                                                       {0xC0, 0x00, 0x00},
                                                       {0xB0, 0x7C, 0x00}}));
}

TEST_F(Dx7Transfer, BankUploadFollowsItsOrder) {
    FillList();
    EXPECT_EQ(UploadBank(), 1);
    Calls expected = {
        "Pt_Start(1)",       "Pm_OpenOutput(0, 0, 0)",        "disable",
        "SetProgress(0, 1)", "ShowBusyBox(Uploading voices)", "Pm_WriteShort(0, 0, B0 7D 00)"};
    for (int row = 0; row < 32; ++row) {
        expected.push_back("SetProgress(" + std::to_string(row) + ", 32)");
        expected.push_back(Status(row + 1));
    }
    for (const std::string &call : std::initializer_list<std::string>{
             "Pm_WriteSysEx(0, 0, 4104 bytes)", "Pm_WriteShort(0, 0, C0 1F 00)",
             "Pm_WriteShort(0, 0, C0 00 00)", "Pm_WriteShort(0, 0, B0 7C 00)", "SetProgress(0, 1)",
             "SetStatusText()", std::string("SetStatusText(") + Dx7Name + ")", "enable",
             "CloseBusyBox()", "Pt_Stop()", "Pm_Close(0)"}) {
        expected.emplace_back(call);
    }
    EXPECT_EQ(midi.calls, expected);
    EXPECT_EQ(desktop.busyBoxesOpen, 0);
}

TEST_F(Dx7Transfer, BankUploadSwitchesRedrawingOn) {
    FillList();
    ListSetRedraw(list, false);
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_TRUE(list.redraw);
    EXPECT_TRUE(list.enabled);
    const auto place = [this](const char *call) { return std::ranges::find(midi.calls, call); };
    EXPECT_LT(place("redraw"), place("enable"));
}

TEST_F(Dx7Transfer, BankOfTwentyVoicesIsAWholeDumpWithTwelveZeroVoices) {
    FillList();
    while (ListCount(list) > 20) {
        ListDelete(list, 20);
    }
    EXPECT_EQ(UploadBank(), 1);
    Bytes expected = TestBank();
    std::fill(expected.begin() + TestBankVoiceOffset(20), expected.end() - 2, std::uint8_t{0});
    FixTestChecksum(expected);
    EXPECT_EQ(midi.WrittenBytes()[1], expected);
    EXPECT_EQ(desktop.progress[20], (std::pair{19, 32}));
    EXPECT_EQ(desktop.progress[21], (std::pair{0, 1})) << "no progress behind voice 20";
    EXPECT_EQ(desktop.statusTexts[19], "Encoding voice 20 of 32 (VOICE 20)");
    EXPECT_EQ(desktop.statusTexts[20], "");
}

TEST_F(Dx7Transfer, BankPassesOverRowsWithoutAVoiceInSilence) {
    FillList();
    ListTakeVoice(list, 1);
    EXPECT_EQ(UploadBank(), 1);
    Bytes expected = TestBank();
    std::fill_n(expected.begin() + TestBankVoiceOffset(1), 128, std::uint8_t{0});
    FixTestChecksum(expected);
    EXPECT_EQ(midi.WrittenBytes()[1], expected);
    EXPECT_EQ(desktop.progress[1], (std::pair{0, 32}));
    EXPECT_EQ(desktop.progress[2], (std::pair{2, 32}));
    EXPECT_EQ(desktop.statusTexts[1], "Encoding voice 3 of 32 (VOICE 03)");
}

TEST_F(Dx7Transfer, BankTellsOfABlockThatIsNoVoiceOfThisFamilyWithoutAName) {
    FillList();
    VoiceObject wrongMagic = *ListVoice(list, 0), shortPayload = *ListVoice(list, 2);
    wrongMagic.bytes[0] = 'x';
    shortPayload.bytes.pop_back(); // runs past its real end
    ListSetVoice(list, 0, wrongMagic);
    ListSetVoice(list, 1, MakeVoiceObject(RefaceDriverId, TestUnpackedVoice()));
    ListSetVoice(list, 2, shortPayload);
    ListSetVoice(list, 3, MakeVoiceObject(Dx7DriverId, Bytes(155, 1)));
    EXPECT_EQ(UploadBank(), 1);
    Bytes expected = TestBank();
    std::fill_n(expected.begin() + TestBankVoiceOffset(0), 4 * 128, std::uint8_t{0});
    FixTestChecksum(expected);
    EXPECT_EQ(midi.WrittenBytes()[1], expected);
    EXPECT_EQ(desktop.statusTexts[0], "Encoding voice 1 of 32 ()");
    EXPECT_EQ(desktop.statusTexts[1], "Encoding voice 2 of 32 ()");
    EXPECT_EQ(desktop.statusTexts[2], "Encoding voice 3 of 32 ()");
    EXPECT_EQ(desktop.statusTexts[3], "Encoding voice 4 of 32 ()");
    EXPECT_EQ(desktop.progress[4], (std::pair{3, 32}));
}

TEST_F(Dx7Transfer, BankOfAnEmptyListIsAllZeros) {
    EXPECT_EQ(UploadBank(), 1);
    Bytes expected(4104, 0);
    std::ranges::copy(Bytes{0xF0, 0x43, 0x00, 0x09, 0x20, 0x00}, expected.begin());
    expected.back() = 0xF7;
    EXPECT_EQ(midi.WrittenBytes()[1], expected);
}

TEST_F(Dx7Transfer, BankOfMoreThanThirtyTwoRowsSendsTheFirstOnes) {
    FillList();
    ListSetVoice(list, ListAdd(list), PianoVoice());
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], TestBank());
    EXPECT_EQ(desktop.statusTexts[31], "Encoding voice 32 of 32 (VOICE 32)");
    EXPECT_EQ(desktop.statusTexts[32], "");
}

TEST_F(Dx7Transfer, BankSilencesAnOperatorThatIsSwitchedOff) {
    ListSetVoice(list, ListAdd(list), PianoVoice());
    EXPECT_EQ(UploadBank(), 1);
    const Bytes dump = midi.WrittenBytes()[1];
    EXPECT_EQ(dump[6 + 14], 79);     // the first block keeps its level
    EXPECT_EQ(dump[6 + 17 + 14], 0); // the second one had 58
}

TEST_F(Dx7Transfer, BankShowsNamesAsLatin1) {
    Bytes voice = TestUnpackedVoice();
    voice[145] = 0xC9;
    ListSetVoice(list, ListAdd(list), MakeVoiceObject(Dx7DriverId, voice));
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(desktop.statusTexts[0], "Encoding voice 1 of 32 (\xC3\x89.PIANO 1x)");
}

TEST_F(Dx7Transfer, BankEndsAtAnEndByteAmongItsData) {
    Bytes voice = TestUnpackedVoice();
    voice[145] = 0xF7; // packed to place 118 of the first voice
    voice[146] = 0xFF;
    ListSetVoice(list, ListAdd(list), MakeVoiceObject(Dx7DriverId, voice));
    EXPECT_EQ(UploadBank(), 1);
    const auto written = midi.WrittenBytes();
    ASSERT_EQ(written.size(), 5u);
    EXPECT_EQ(written[1].size(), 6u + 118 + 1);
    EXPECT_EQ(written[1].back(), 0xF7);
    EXPECT_EQ(written[4], (Bytes{0xB0, 0x7C, 0x00}));
}

TEST_F(Dx7Transfer, BankNamesTheInstrumentInTheEnd) {
    SynthFirmware = 0x01020304;
    EXPECT_EQ(UploadBank(), 1);
    EXPECT_EQ(desktop.statusTexts.back(), "Yamaha DX7, TX7, Korg Volca FM version 12.34");
}

TEST_F(Dx7Transfer, BankToAnOutputThatDoesNotOpenDoesNothing) {
    FillList();
    midi.devices[0].opens = false;
    EXPECT_EQ(UploadBank(), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenOutput(0, 0, 0)", "Pt_Stop()"}));
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7Transfer, BankToNoDeviceFails) {
    EXPECT_EQ(Dx7UploadBank(nullptr, list, {0, -1}), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenOutput(-1, 0, 0)", "Pt_Stop()"}));
}

TEST_F(Dx7Transfer, BankGoesOnBehindAWriteThatFailsAtEachPlace) {
    for (int failing = 0; failing < 5; ++failing) {
        midi.failingWrites = {midi.writes + failing};
        const int before = midi.writes;
        EXPECT_EQ(UploadBank(), 1);
        EXPECT_EQ(midi.writes - before, 5);
        EXPECT_TRUE(list.enabled);
        EXPECT_EQ(desktop.busyBoxesOpen, 0);
        EXPECT_EQ(midi.OpenStreams(), 0);
    }
    midi.allWritesFail = true;
    EXPECT_EQ(UploadBank(), 1);
}

TEST_F(Dx7Transfer, ChannelIsPutIntoEveryStatus) {
    const std::pair<std::uint32_t, std::uint8_t> cases[] = {{1, 0},  {2, 1},  {16, 15},
                                                            {0, 15}, {17, 0}, {0xFFFFFFFF, 14}};
    for (const auto &[channel, nibble] : cases) {
        CurrentMidiChannel = channel;
        midi.written.clear();
        EXPECT_EQ(UploadBank(), 1);
        const auto written = midi.WrittenBytes();
        EXPECT_EQ(written[0][0], 0xB0 + nibble);
        EXPECT_EQ(written[1][2], 0) << "the dump itself carries no channel";
        EXPECT_EQ(written[2][0], 0xC0 + nibble);
        EXPECT_EQ(written[3][0], 0xC0 + nibble);
        EXPECT_EQ(written[4][0], 0xB0 + nibble);
    }
}

TEST_F(Dx7Transfer, ShortMessagesAreStampedWithTheTime) {
    TheMidi.Pt_Time = [] { return 4711; };
    EXPECT_EQ(UploadBank(), 1);
    for (const FakeMidi::Message &message : midi.written) {
        EXPECT_EQ(message.when, message.sysex ? 0 : 4711);
    }
}

// One voice.

TEST_F(Dx7Transfer, VoiceIsSentAsItsUnpackedBytes) {
    FillList();
    const VoiceObject voice = PianoVoice();
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(midi.WrittenBytes(),
              (std::vector<Bytes>{{0xB0, 0x7D, 0x00}, PianoDump(), {0xB0, 0x7C, 0x00}}));
    EXPECT_EQ(PianoDump().size(), 163u);
    EXPECT_TRUE(desktop.messages.empty()) << "without the flag there is no prompt";
}

TEST_F(Dx7Transfer, VoiceUploadFollowsItsOrder) {
    FillList();
    ListSetRedraw(list, false);
    midi.calls.clear();
    const VoiceObject voice = PianoVoice();
    desktop.ExpectMessage(BeforePrompt);
    desktop.ExpectMessage(AfterPrompt);
    EXPECT_EQ(UploadVoice(&voice, 0, 1), 1);
    EXPECT_EQ(
        midi.calls,
        (Calls{"Pt_Start(1)", "Pm_OpenOutput(0, 0, 0)", "disable", "Pm_WriteShort(0, 0, B0 7D 00)",
               "message", "Pm_WriteSysEx(0, 0, 163 bytes)", "message",
               "Pm_WriteShort(0, 0, B0 7C 00)", std::string("SetStatusText(") + Dx7Name + ")",
               "redraw", "enable", "Pt_Stop()", "Pm_Close(0)"}));
}

TEST_F(Dx7Transfer, VoiceAtARowIsTakenWhenNoneIsGiven) {
    ListAdd(list);
    ListSetVoice(list, ListAdd(list), PianoVoice());
    desktop.ExpectMessage(BeforePrompt);
    desktop.ExpectMessage(AfterPrompt);
    EXPECT_EQ(UploadVoice(nullptr, 1, 1), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], PianoDump());
}

TEST_F(Dx7Transfer, VoiceThatIsGivenWinsOverTheRow) {
    FillList();
    const VoiceObject voice = PianoVoice();
    EXPECT_EQ(UploadVoice(&voice, 5, 0), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], PianoDump());
}

TEST_F(Dx7Transfer, RowWithoutAVoiceIsSentAsZerosAndNotNamedBeforehand) {
    ListAdd(list);
    for (const int row : {0, 1, -1, 99}) {
        midi.written.clear();
        desktop.ExpectMessage(AfterPromptWithoutName);
        EXPECT_EQ(UploadVoice(nullptr, row, 1), 1);
        EXPECT_EQ(midi.WrittenBytes(),
                  (std::vector<Bytes>{{0xB0, 0x7D, 0x00}, ZeroDump(), {0xB0, 0x7C, 0x00}}));
        desktop.ExpectNothingLeft();
    }
}

TEST_F(Dx7Transfer, BlockThatIsNoVoiceOfThisFamilyIsSentAsZeros) {
    VoiceObject wrongMagic = PianoVoice(), cut = PianoVoice();
    wrongMagic.bytes[3] = 'x';
    cut.bytes.resize(20);
    const VoiceObject others[] = {wrongMagic, cut,
                                  MakeVoiceObject(RefaceDriverId, TestUnpackedVoice()),
                                  MakeVoiceObject(Dx7DriverId, Bytes(155, 1)), VoiceObject{}};
    for (const VoiceObject &other : others) {
        midi.written.clear();
        desktop.ExpectMessage(AfterPromptWithoutName);
        EXPECT_EQ(UploadVoice(&other, 0, 1), 1);
        EXPECT_EQ(midi.WrittenBytes()[1], ZeroDump());
        desktop.ExpectNothingLeft();
    }
}

TEST_F(Dx7Transfer, OnlyTheLowestFlagAsksForPrompts) {
    const VoiceObject voice = PianoVoice();
    EXPECT_EQ(UploadVoice(&voice, 0, 0xFE), 1);
    EXPECT_TRUE(desktop.messages.empty());
}

TEST_F(Dx7Transfer, VoiceKeepsTheLevelOfAnOperatorThatIsSwitchedOff) {
    const VoiceObject voice = PianoVoice();
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(midi.WrittenBytes()[1][6 + 21 + 16], 58);
}

TEST_F(Dx7Transfer, VoiceThatGoesAwayDuringThePromptIsSentNevertheless) {
    ListSetVoice(list, ListAdd(list), PianoVoice());
    desktop.Expect(ExpectedMessage{.text = BeforePrompt,
                                   .buttons = {"Dismiss"},
                                   .answer = ResultYes,
                                   .during = [this](MessageRequest &) { ListReset(list); }});
    desktop.ExpectMessage(AfterPrompt);
    EXPECT_EQ(UploadVoice(nullptr, 0, 1), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], PianoDump());
}

// The end of the session takes the prompt away, before the user has chosen a place.
TEST_F(Dx7Transfer, VoiceIsNotSentWhenItIsCancelledAtThePrompt) {
    const VoiceObject voice = PianoVoice();
    desktop.Expect(ExpectedMessage{
        .text = BeforePrompt, .buttons = {"Dismiss"}, .during = [](MessageRequest &) {
            TheMidi.TransferCancelled = [] { return true; };
        }});
    EXPECT_EQ(UploadVoice(&voice, 0, 1), 1);
    EXPECT_EQ(std::ranges::count(midi.WrittenBytes(), PianoDump()), 0);
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7Transfer, BankIsNotSentWhenItIsCancelledBeforehand) {
    TheMidi.TransferCancelled = [] { return true; };
    EXPECT_EQ(Dx7UploadBank(nullptr, list, {NoMidiDevice, 0}), 1);
    for (const Bytes &message : midi.WrittenBytes()) {
        EXPECT_LE(message.size(), 3u);
    }
}

TEST_F(Dx7Transfer, VoiceNameIsShownAsLatin1) {
    Bytes bytes = TestUnpackedVoice();
    std::ranges::copy(Bytes{0xC9, 't', 0xE9, ' ', ' ', ' ', ' ', ' ', ' ', ' '},
                      bytes.begin() + 145);
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, bytes);
    desktop.ExpectMessage(
        "\xC3\x89t\xC3\xA9 is about to be uploaded to your synthesizer.\n\nPlease "
        "select the voice bank in which you'd like it to be stored. (Turn the "
        "black Program knob on the Korg Volca FM.)");
    desktop.ExpectMessage("\xC3\x89t\xC3\xA9 has been uploaded to your synthesizer.\n\nPress the "
                          "Save button twice to store it.");
    EXPECT_EQ(UploadVoice(&voice, 0, 1), 1);
}

TEST_F(Dx7Transfer, VoiceWithBytesAboveSevenBitsIsSentAsItStands) {
    Bytes bytes = TestUnpackedVoice();
    bytes[0] = 0x80;
    bytes[50] = 0xFF;
    bytes[154] = 0xF0;
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, bytes);
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    const Bytes dump = midi.WrittenBytes()[1];
    ASSERT_EQ(dump.size(), 163u);
    EXPECT_EQ(dump[6], 0x80);
    EXPECT_EQ(dump[56], 0xFF);
    EXPECT_EQ(dump[160], 0xF0);
    EXPECT_EQ(dump[161], TestChecksum(std::span(bytes).first(155)));
}

TEST_F(Dx7Transfer, VoiceEndsAtAnEndByteAmongItsData) {
    for (const std::size_t place : {0u, 77u, 154u}) {
        midi.written.clear();
        Bytes bytes = TestUnpackedVoice();
        bytes[place] = 0xF7;
        const VoiceObject voice = MakeVoiceObject(Dx7DriverId, bytes);
        EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
        Bytes expected = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
        expected.insert(expected.end(), bytes.begin(),
                        bytes.begin() + static_cast<std::ptrdiff_t>(place) + 1);
        EXPECT_EQ(midi.WrittenBytes()[1], expected);
    }
}

TEST_F(Dx7Transfer, VoiceOfNothingButEndBytesIsSentWithOne) {
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, Bytes(156, 0xF7));
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], (Bytes{0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B, 0xF7}));
}

TEST_F(Dx7Transfer, SwitchesOfTheOperatorsAreNeitherSentNorSummed) {
    Bytes bytes = TestUnpackedVoice();
    bytes[155] = 0xF7;
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, bytes);
    EXPECT_EQ(UploadVoice(&voice, 0, 0), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], PianoDump());
}

TEST_F(Dx7Transfer, VoiceToAnOutputThatDoesNotOpenDoesNothing) {
    FillList();
    midi.devices[0].opens = false;
    EXPECT_EQ(UploadVoice(nullptr, 0, 1), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenOutput(0, 0, 0)", "Pt_Stop()"}));
    EXPECT_TRUE(list.enabled);
}

TEST_F(Dx7Transfer, VoiceToNoDeviceFails) {
    EXPECT_EQ(Dx7UploadVoice(nullptr, list, nullptr, {}, 0, 1), 0);
}

TEST_F(Dx7Transfer, VoiceGoesOnBehindAWriteThatFailsAtEachPlace) {
    const VoiceObject voice = PianoVoice();
    for (int failing = 0; failing < 3; ++failing) {
        const int before = midi.writes;
        midi.failingWrites = {before + failing};
        desktop.ExpectMessage(BeforePrompt);
        desktop.ExpectMessage(AfterPrompt);
        EXPECT_EQ(UploadVoice(&voice, 0, 1), 1);
        EXPECT_EQ(midi.writes - before, 3);
        EXPECT_TRUE(list.enabled);
        desktop.ExpectNothingLeft();
    }
}

TEST_F(Dx7Transfer, VoiceGoesThroughTheRowOfItsDriver) {
    CurrentDriverId = NoDriverId; // the title follows the current driver, the dump the given one
    const VoiceObject voice = PianoVoice();
    EXPECT_EQ(UploadOneVoice(nullptr, list, &voice, Dx7DriverId, {-1, out}, 0, 0), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], PianoDump());
    EXPECT_EQ(desktop.statusTexts,
              (std::vector<std::string>{"Unknown or unrecognized synthesizer"}));
}

TEST_F(Dx7Transfer, BankGoesThroughTheCurrentRow) {
    FillList();
    MidiOutPort = out;
    EXPECT_EQ(UploadCurrent(nullptr, list), 1);
    EXPECT_EQ(midi.WrittenBytes()[1], TestBank());
    EXPECT_EQ(DownloadCurrent(nullptr, list), 0) << "nothing is ever received";
}

} // namespace
} // namespace tonewright
