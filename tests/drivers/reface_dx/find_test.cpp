// The search for a reface DX, by names and by asking.
#include "drivers/reface_dx/find.h"

#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tonewright {
namespace {

using Bytes = FakeMidi::Bytes;
using Calls = std::vector<std::string>;

const Bytes IdentityRequest = {0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7};
// Version 01.30.
const Bytes RefaceReply = {0xF0, 0x7E, 0x7F, 0x06, 0x02, 0x43, 0x00, 0x41,
                           0x53, 0x06, 0x03, 0x00, 0x00, 0x7F, 0xF7};

struct RefaceFind : testing::Test {
    FakeMidi midi;
    FoundSynth found{.driver = NoDriverId, .ports = {}, .firmware = 0x11};
    int requests = 0;

    int Detect() { return RefaceFindSynth(nullptr, found, {"stored in", "stored out"}, true); }
    int FindByName(const char *inPattern, const char *outPattern) {
        return RefaceFindSynth(nullptr, found, {inPattern, outPattern}, false);
    }
    // Adds an input and an output of one name; the index of the input.
    int AddPair(const std::string &name) {
        const int input = midi.AddInput(name);
        midi.AddOutput(name);
        return input;
    }
    // Each request to the output behind `input` is answered at once.
    void AnswerAt(int input, const Bytes &reply) {
        midi.onWrite = [this, input, reply,
                        inner = midi.onWrite](const FakeMidi::Message &message) {
            if (message.device == input + 1) {
                EXPECT_EQ(message.bytes, IdentityRequest);
                ++requests;
                midi.Send(input, reply);
            } else if (inner) {
                inner(message);
            }
        };
    }
    void ExpectNothingFound() {
        EXPECT_EQ(found.driver, NoDriverId);
        EXPECT_EQ(found.firmware, 0x11u);
    }
};

// Stored names.

TEST_F(RefaceFind, ByStoredNamesTakesThePortsAndAsksNothing) {
    AddPair("My reface");
    EXPECT_EQ(FindByName("reface", "REFACE"), 1);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, 1);
    EXPECT_EQ(found.firmware, 0x11u);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, ByStoredNamesTakesTheLastMatch) {
    AddPair("Port 1");
    AddPair("Port 2");
    EXPECT_EQ(FindByName("Port", "Port"), 1);
    EXPECT_EQ(found.ports.in, 2);
    EXPECT_EQ(found.ports.out, 3);
}

TEST_F(RefaceFind, ByStoredNamesWithOnePortFailsAndKeepsIt) {
    midi.AddInput("Port");
    EXPECT_EQ(FindByName("Port", "Port"), 0);
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, -1);
    EXPECT_EQ(found.driver, NoDriverId);
}

TEST_F(RefaceFind, ByEmptyNamesTakesTheLastPorts) {
    AddPair("A");
    AddPair("B");
    EXPECT_EQ(FindByName("", ""), 1);
    EXPECT_EQ(found.ports.in, 2);
    EXPECT_EQ(found.ports.out, 3);
}

// Detection.

TEST_F(RefaceFind, RecognisesAnInstrumentAndStillAnswersZero) {
    AnswerAt(AddPair("reface DX"), RefaceReply);
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, 1);
    EXPECT_EQ(found.firmware, 0x10300u);
    EXPECT_STREQ(SynthTitle(found.driver, found.firmware), "Yamaha reface DX version 01.30");
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_WriteSysEx(1, 0, F0 7E 00 06 01 F7)", "Pm_Close(1)",
                                 "Pm_Close(0)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, AsksTheSecondNameWhenThereIsNoFirst) {
    AddPair("Keyboard");
    AnswerAt(AddPair("USB Audio Device"), RefaceReply);
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 2);
    EXPECT_EQ(found.ports.out, 3);
    EXPECT_EQ(found.firmware, 0x10300u);
    EXPECT_EQ(requests, 1);
}

TEST_F(RefaceFind, EndsWithThePortsOfTheSecondNameAlsoBehindASuccess) {
    AnswerAt(AddPair("reface DX"), RefaceReply);
    AddPair("USB Audio Device"); // stays silent
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 2);
    EXPECT_EQ(found.ports.out, 3);
    EXPECT_EQ(found.firmware, 0x10300u);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_WriteSysEx(1, 0, F0 7E 00 06 01 F7)", "Pm_Close(1)",
                                 "Pm_Close(0)", "Pm_OpenInput(2, 512)", "Pm_OpenOutput(3, 0, 0)",
                                 "Pm_WriteSysEx(3, 0, F0 7E 00 06 01 F7)", "Pm_Close(3)",
                                 "Pm_Close(2)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, TakesTheVersionOfTheLastOneThatAnswers) {
    Bytes other = RefaceReply;
    other[10] = 0x09;
    AnswerAt(AddPair("reface DX"), RefaceReply);
    AnswerAt(AddPair("USB Audio Device"), other);
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(requests, 2);
    EXPECT_EQ(found.firmware, 0x10900u);
    EXPECT_EQ(found.ports.in, 2);
}

TEST_F(RefaceFind, ShowsAByteOfTwoAsVersionOneTwenty) {
    Bytes reply = RefaceReply;
    reply[10] = 0x02;
    AnswerAt(AddPair("reface DX"), reply);
    Detect();
    EXPECT_EQ(found.firmware, 0x10200u);
    EXPECT_STREQ(SynthTitle(found.driver, found.firmware), "Yamaha reface DX version 01.20");
}

TEST_F(RefaceFind, AmongNoDevicesAnswersZero) {
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.ports.in, -1);
    EXPECT_EQ(found.ports.out, -1);
    ExpectNothingFound();
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, DetectionLooksPastTheStoredNames) {
    AddPair("stored in");
    AddPair("stored out");
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.ports.in, -1);
    EXPECT_EQ(found.ports.out, -1);
}

TEST_F(RefaceFind, MatchesTheNameAtAnyPlaceAndInAnyCase) {
    AnswerAt(AddPair("Yamaha REFACE dx MIDI 1"), RefaceReply);
    AddPair("reface D");
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 0);
}

TEST_F(RefaceFind, KeepsThePortsOfAnInstrumentThatDoesNotAnswer) {
    AddPair("reface DX");
    SysexWait = 1500;
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, 1);
    ExpectNothingFound();
    EXPECT_EQ(midi.now, 1500);
}

TEST_F(RefaceFind, WritesASinglePortButAsksNothing) {
    midi.AddInput("reface DX");
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, -1);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, ASinglePortOfTheSecondNameReplacesItsPartner) {
    AnswerAt(AddPair("reface DX"), RefaceReply);
    midi.AddOutput("USB Audio Device");
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, 2);
    EXPECT_EQ(requests, 1);
}

TEST_F(RefaceFind, AsksTheLastOfSeveralInstruments) {
    AddPair("reface DX");
    AnswerAt(AddPair("reface DX"), RefaceReply);
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 2);
    EXPECT_EQ(requests, 1);
}

TEST_F(RefaceFind, GoesOnToTheSecondNameWhenTheInputDoesNotOpen) {
    AddPair("reface DX");
    midi.devices[0].opens = false;
    AnswerAt(AddPair("USB Audio Device"), RefaceReply);
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenInput(2, 512)",
                                 "Pm_OpenOutput(3, 0, 0)", "Pm_WriteSysEx(3, 0, F0 7E 00 06 01 F7)",
                                 "Pm_Close(3)", "Pm_Close(2)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, ClosesTheInputWhenTheOutputDoesNotOpen) {
    AddPair("reface DX");
    midi.devices[1].opens = false;
    EXPECT_EQ(Detect(), 0);
    ExpectNothingFound();
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_Close(0)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, DoesNotWaitBehindARequestThatFailed) {
    AddPair("reface DX");
    midi.failingWrites = {0};
    AnswerAt(AddPair("USB Audio Device"), RefaceReply);
    midi.recordEverything = true;
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(std::ranges::count(midi.calls, "Pm_Poll(0)"), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 2);
}

TEST_F(RefaceFind, ClosesEverythingWhenEveryRequestFails) {
    AddPair("reface DX");
    AddPair("USB Audio Device");
    midi.allWritesFail = true;
    EXPECT_EQ(Detect(), 0);
    ExpectNothingFound();
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_WriteSysEx(1, 0, F0 7E 00 06 01 F7)", "Pm_Close(1)",
                                 "Pm_Close(0)", "Pm_OpenInput(2, 512)", "Pm_OpenOutput(3, 0, 0)",
                                 "Pm_WriteSysEx(3, 0, F0 7E 00 06 01 F7)", "Pm_Close(3)",
                                 "Pm_Close(2)", "Pt_Stop()"}));
}

TEST_F(RefaceFind, JudgesAReplyOfFifteenBytesWithoutAnEnd) {
    Bytes reply = RefaceReply;
    reply[14] = 0x00;
    reply.push_back(0x00);
    AnswerAt(AddPair("reface DX"), reply);
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.firmware, 0x10300u);
}

TEST_F(RefaceFind, DoesNotKnowAReplyBehindANote) {
    const int input = AddPair("reface DX");
    midi.onWrite = [&](const FakeMidi::Message &) {
        midi.SendEventAt(input, 0x00403C90, midi.now);
        midi.Send(input, RefaceReply);
    };
    EXPECT_EQ(Detect(), 0);
    ExpectNothingFound();
}

TEST_F(RefaceFind, DoesNotKnowAReplyBehindANoteThatWasPlayedEarlier) {
    const int input = AddPair("reface DX");
    midi.SendEventAt(input, 0x00403C90, 0);
    AnswerAt(input, RefaceReply);
    EXPECT_EQ(Detect(), 0);
    ExpectNothingFound();
}

TEST_F(RefaceFind, KeepsTheVersionOfAnotherInstrumentOfTheMaker) {
    Bytes reply = RefaceReply;
    reply[8] = 0x52; // another member of the family
    AnswerAt(AddPair("reface DX"), reply);
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, NoDriverId);
    EXPECT_EQ(found.firmware, 0x10300u);
}

TEST_F(RefaceFind, LooksAtMakerAndFamilyForTheVersion) {
    for (const std::size_t place : {5u, 6u, 7u}) {
        Bytes reply = RefaceReply;
        reply[place] = 0x01;
        midi.onWrite = nullptr;
        midi.devices.clear();
        AnswerAt(AddPair("reface DX"), reply);
        EXPECT_EQ(Detect(), 0);
        ExpectNothingFound();
    }
}

TEST_F(RefaceFind, NeedsBothBytesOfTheMember) {
    for (const std::size_t place : {8u, 9u}) {
        Bytes reply = RefaceReply;
        reply[place] = 0x01;
        midi.onWrite = nullptr;
        midi.devices.clear();
        AnswerAt(AddPair("reface DX"), reply);
        EXPECT_EQ(Detect(), 0);
        EXPECT_EQ(found.driver, NoDriverId);
    }
}

TEST_F(RefaceFind, StopsAtTheMemberOneZeroWhateverElseTheReplyHolds) {
    AnswerAt(AddPair("reface DX"), {0xF0, 0x7E, 0x7F, 0x06, 0x02, 0x11, 0x22, 0x33, 0x01, 0x00,
                                    0x05, 0x00, 0x00, 0x00, 0xF7});
    AnswerAt(AddPair("USB Audio Device"), RefaceReply);
    EXPECT_EQ(Detect(), 1);
    ExpectNothingFound();
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, 1);
    EXPECT_EQ(requests, 1);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pm_OpenInput(0, 512)", "Pm_OpenOutput(1, 0, 0)",
                                 "Pm_WriteSysEx(1, 0, F0 7E 00 06 01 F7)", "Pt_Stop()",
                                 "Pm_Close(1)", "Pm_Close(0)"}));
}

TEST_F(RefaceFind, StopsAtTheMemberOneZeroOfTheFamilyWithItsVersion) {
    Bytes reply = RefaceReply;
    reply[8] = 0x01;
    reply[9] = 0x00;
    AnswerAt(AddPair("USB Audio Device"), reply);
    EXPECT_EQ(Detect(), 1);
    EXPECT_EQ(found.driver, NoDriverId);
    EXPECT_EQ(found.firmware, 0x10300u);
    EXPECT_EQ(found.ports.in, 0);
}

TEST_F(RefaceFind, StopsInTheSecondPassAlsoBehindASuccess) {
    Bytes other = RefaceReply;
    other[5] = 0x00;
    other[8] = 0x01;
    other[9] = 0x00;
    AnswerAt(AddPair("reface DX"), RefaceReply);
    AnswerAt(AddPair("USB Audio Device"), other);
    EXPECT_EQ(Detect(), 1);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.ports.in, 2);
}

TEST_F(RefaceFind, DoesNotTakeBytesOfAnEarlierReplyForALaterOne) {
    AnswerAt(AddPair("reface DX"), RefaceReply);
    AnswerAt(AddPair("USB Audio Device"), {0xF0, 0x7E, 0x7F, 0x06, 0xF7});
    found.firmware = 0;
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
    EXPECT_EQ(found.firmware, 0x10300u);
}

TEST_F(RefaceFind, IsNotTakenInByAReplyThatIsTooShort) {
    for (std::size_t size = 1; size <= 9; ++size) {
        Bytes reply(RefaceReply.begin(), RefaceReply.begin() + static_cast<long>(size));
        reply.back() = 0xF7;
        midi.onWrite = nullptr;
        midi.devices.clear();
        AnswerAt(AddPair("reface DX"), reply);
        EXPECT_EQ(Detect(), 0) << size;
        EXPECT_EQ(found.driver, NoDriverId) << size;
    }
}

TEST_F(RefaceFind, WaitsForTheReplyAsLongAsTheSettingSays) {
    const int input = AddPair("reface DX");
    SysexWait = 1500;
    midi.onWrite = [&](const FakeMidi::Message &) { midi.Send(input, RefaceReply, 1499); };
    EXPECT_EQ(Detect(), 0);
    EXPECT_EQ(found.driver, RefaceDriverId);
}

TEST_F(RefaceFind, DoesNotTakeAReplyAtTheVeryEndOfTheWait) {
    const int input = AddPair("reface DX");
    SysexWait = 1500;
    midi.onWrite = [&](const FakeMidi::Message &) { midi.Send(input, RefaceReply, 1500); };
    EXPECT_EQ(Detect(), 0);
    ExpectNothingFound();
}

// Through the current driver.

struct FindCurrent : RefaceFind {
    FindCurrent() {
        MidiInPort = 70;
        MidiOutPort = 71;
        SynthFirmware = 0x22;
        SelectKeyboardMidiIn = "UM-ONE";
        SelectKeyboardMidiOut = "UM-ONE";
    }
    int Find() { return FindCurrentSynth(nullptr); }
};

TEST_F(FindCurrent, WithoutADriverOnlyForgetsThePorts) {
    CurrentDriverId = NoDriverId;
    AnswerAt(AddPair("reface DX"), RefaceReply);
    EXPECT_EQ(Find(), 0);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_EQ(MidiInPort, -1);
    EXPECT_EQ(MidiOutPort, -1);
    EXPECT_EQ(SynthFirmware, 0x22u);
    EXPECT_TRUE(midi.calls.empty());
}

TEST_F(FindCurrent, OfADx7MatchesTheStoredNamesAlsoWithDetectionOn) {
    CurrentDriverId = Dx7DriverId;
    SelectKeyboardAutodetect = 1;
    AnswerAt(AddPair("reface DX"), RefaceReply);
    AddPair("UM-ONE");
    EXPECT_EQ(Find(), 1);
    EXPECT_EQ(CurrentDriverId, Dx7DriverId);
    EXPECT_EQ(MidiInPort, 2);
    EXPECT_EQ(MidiOutPort, 3);
    EXPECT_EQ(SynthFirmware, 0x22u);
    EXPECT_EQ(requests, 0);
}

TEST_F(FindCurrent, OfADx7ThatIsGoneForgetsDriverAndPorts) {
    CurrentDriverId = Dx7DriverId;
    AnswerAt(AddPair("reface DX"), RefaceReply);
    EXPECT_EQ(Find(), 0);
    EXPECT_EQ(CurrentDriverId, NoDriverId) << "no other row is tried";
    EXPECT_EQ(MidiInPort, -1);
    EXPECT_EQ(MidiOutPort, -1);
}

TEST_F(FindCurrent, OfARefaceAsksWithDetectionOn) {
    CurrentDriverId = RefaceDriverId;
    SelectKeyboardAutodetect = 1;
    AddPair("UM-ONE");
    AnswerAt(AddPair("reface DX"), RefaceReply);
    EXPECT_EQ(Find(), 0);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(MidiInPort, 2);
    EXPECT_EQ(MidiOutPort, 3);
    EXPECT_EQ(SynthFirmware, 0x10300u);
}

TEST_F(FindCurrent, OfARefaceTakesTheStoredNamesWithDetectionOff) {
    CurrentDriverId = RefaceDriverId;
    SelectKeyboardAutodetect = 0;
    AddPair("UM-ONE");
    AnswerAt(AddPair("reface DX"), RefaceReply);
    EXPECT_EQ(Find(), 1);
    EXPECT_EQ(CurrentDriverId, RefaceDriverId);
    EXPECT_EQ(MidiInPort, 0);
    EXPECT_EQ(MidiOutPort, 1);
    EXPECT_EQ(SynthFirmware, 0x22u);
    EXPECT_EQ(requests, 0);
}

TEST_F(FindCurrent, OfARefaceThatIsGoneForgetsTheDriver) {
    CurrentDriverId = RefaceDriverId;
    SelectKeyboardAutodetect = 1;
    EXPECT_EQ(Find(), 0);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
    EXPECT_STREQ(SynthTitle(CurrentDriverId, SynthFirmware), "Unknown or unrecognized synthesizer");
}

TEST_F(FindCurrent, WithAnUnknownDriverFails) {
    CurrentDriverId = MakeDriverId("none");
    AddPair("UM-ONE");
    EXPECT_EQ(Find(), 0);
    EXPECT_EQ(CurrentDriverId, NoDriverId);
}

} // namespace
} // namespace tonewright
