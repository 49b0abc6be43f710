// Each fault that an instrument can be given, as the program sees it.
#include "cable.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr auto Reface = BuiltinInstrument::Reface;
InstrumentFaults &Faults() {
    return FaultsOf(Reface);
}

// What message `number` of a voice is by the byte count and the address.
int BlockOf(const Bytes &message) {
    return message[6] == 0x2A ? 0 : message[6] == 0x20 ? message[9] + 1 : -1;
}
std::vector<int> BlocksOf(const std::vector<Bytes> &messages) {
    std::vector<int> blocks;
    for (const Bytes &message : messages) {
        blocks.push_back(BlockOf(message));
    }
    return blocks;
}

TEST(InstrumentFaults, ASilentInstrumentListensAndAnswersNothing) {
    Cable cable(Reface);
    Faults().silent = true;
    EXPECT_EQ(cable.Send(IdentityRequest), 0);
    cable.Send(SystemRequest);
    cable.SendShort(0x07C0);
    EXPECT_TRUE(cable.Words(2000).empty());
    EXPECT_EQ(SelectedProgramOf(Reface), 7);
}

TEST(InstrumentFaults, FallsSilentAfterSoManyAnswers) {
    Cable cable(Reface);
    Faults().silentAfterMessages = 3;
    cable.Send(SystemRequest);
    EXPECT_EQ(cable.Messages().size(), 1u);
    cable.Send(VoiceRequest);
    EXPECT_EQ(BlocksOf(cable.Messages()), (std::vector<int>{-1, 0})); // header, common block
    cable.Send(SystemRequest);
    EXPECT_TRUE(cable.Words().empty());
    Faults().silentAfterMessages = -1;
    cable.Send(SystemRequest);
    EXPECT_EQ(cable.Messages().size(), 1u);
}

TEST(InstrumentFaults, TouchOnlyTheAnswersTheyAreMeantFor) {
    Cable cable(Reface);
    Faults().silent = true;
    Faults().goodMessages = 1;
    Faults().faultyMessages = 7;
    cable.Send(SystemRequest);
    EXPECT_EQ(cable.Messages().size(), 1u);
    cable.Send(VoiceRequest);
    EXPECT_TRUE(cable.Words().empty());
    cable.Send(VoiceRequest);
    EXPECT_EQ(cable.Messages().size(), 7u);
}

// The present time when event `number` of a reply was read, counted from the reading of the one
// before it; -1 when it did not come within the deadline, as the transport counts it.
int GapBefore(Cable &cable, int number, int deadline) {
    MidiEvent event;
    std::int32_t start = cable.midi.Pt_Time();
    for (int i = 0;; ++i) {
        start = cable.midi.Pt_Time();
        while (cable.midi.Pm_Poll(cable.input) == 0) {
            if (cable.midi.Pt_Time() >= start + deadline) {
                return -1;
            }
        }
        if (cable.midi.Pm_Read(cable.input, &event) <= 0) {
            return -2;
        }
        if (i == number) {
            return cable.midi.Pt_Time() - 1 - start;
        }
    }
}

TEST(InstrumentFaults, ALateFirstEventOneMillisecondBeforeTheDeadlineIsInTime) {
    Cable cable(Reface);
    Faults().lateByMilliseconds = 1499;
    cable.Send(IdentityRequest);
    EXPECT_EQ(GapBefore(cable, 0, 1500), 1499);
}

TEST(InstrumentFaults, ALateFirstEventExactlyAtTheDeadlineIsTooLate) {
    Cable cable(Reface);
    Faults().lateByMilliseconds = 1500;
    cable.Send(IdentityRequest);
    EXPECT_EQ(GapBefore(cable, 0, 1500), -1);
}

TEST(InstrumentFaults, ALateEventInsideAnAnswerIsCountedFromTheEventBefore) {
    Cable cable(Reface);
    Faults().lateEvent = 2;
    Faults().lateByMilliseconds = 1499;
    cable.Send(IdentityRequest);
    EXPECT_EQ(GapBefore(cable, 2, 1500), 1499);
    cable.Words();
    Faults().lateByMilliseconds = 1500;
    cable.Send(IdentityRequest);
    EXPECT_EQ(GapBefore(cable, 2, 1500), -1);
    EXPECT_EQ(cable.Words().size(), 2u) << "the rest comes after all";
}

TEST(InstrumentFaults, EveryMessageOfAVoiceHasItsLateEvent) {
    Cable cable(Reface);
    Faults().lateByMilliseconds = 400;
    const std::int32_t start = cable.midi.Pt_Time();
    cable.Send(VoiceRequest);
    EXPECT_EQ(cable.Messages(500).size(), 7u);
    EXPECT_GE(cable.midi.Pt_Time() - start, 7 * 400 + 500);
}

TEST(InstrumentFaults, ANoteComesInFrontOfAnAnswer) {
    Cable cable(Reface);
    Faults().noteBeforeReply = true;
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Words(), (std::vector<std::uint32_t>{0x00403C90, 0x067F7EF0, 0x41004302,
                                                         0x00020653, 0x00F77F00}));
}

TEST(InstrumentFaults, ActiveSensingInsideAnAnswerIsAnEventOfItsOwn) {
    Cable cable(Reface);
    Faults().activeSensingInReply = true;
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Words(), (std::vector<std::uint32_t>{0x067F7EF0, 0x000000FE, 0x41004302,
                                                         0x00020653, 0x00F77F00}));
}

TEST(InstrumentFaults, ActiveSensingInFrontOfAnAnswerIsAnEventOfItsOwn) {
    Cable cable(Reface);
    Faults().activeSensingBeforeReply = true;
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Words(), (std::vector<std::uint32_t>{0x000000FE, 0x067F7EF0, 0x41004302,
                                                         0x00020653, 0x00F77F00}));
}

TEST(InstrumentFaults, ANoteInsideAnAnswerIsAnEventOfItsOwn) {
    Cable cable(Reface);
    Faults().noteInReply = true;
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Words(), (std::vector<std::uint32_t>{0x067F7EF0, 0x00403C90, 0x41004302,
                                                         0x00020653, 0x00F77F00}));
}

TEST(InstrumentFaults, WhatIsInsideAnAnswerStandsAtItsPlace) {
    const std::vector<std::uint32_t> reply = {0x067F7EF0, 0x41004302, 0x00020653, 0x00F77F00};
    for (const int place : {-1, 0, 1, 2, 3, 4, 5}) {
        ResetBuiltinInstruments();
        Cable cable(Reface);
        Faults().strayPlace = place;
        cable.Send(IdentityRequest);
        EXPECT_EQ(cable.Words(), reply) << "a place alone is no fault";
        Faults().noteInReply = true;
        Faults().activeSensingInReply = true;
        cable.Send(IdentityRequest);
        auto expected = reply;
        const std::uint32_t stray[] = {0x00403C90, 0x000000FE};
        expected.insert(expected.begin() + std::clamp(place, 0, 4), std::begin(stray),
                        std::end(stray));
        EXPECT_EQ(cable.Words(), expected) << place;
    }
}

TEST(InstrumentFaults, BlocksComeInAnyOrderTwiceOrNotAtAll) {
    Cable cable(Reface);
    Faults().blockOrder = {3, 0, 1, 1, 2, 4, 9, -1};
    cable.Send(VoiceRequest);
    EXPECT_EQ(BlocksOf(cable.Messages()), (std::vector<int>{-1, 3, 0, 1, 1, 2, 4, -1}));
    Faults().blockOrder = {0};
    cable.Send(VoiceRequest);
    EXPECT_EQ(BlocksOf(cable.Messages()), (std::vector<int>{-1, 0, -1}));
    cable.Send(SystemRequest);
    EXPECT_EQ(cable.Messages().size(), 1u);
}

TEST(InstrumentFaults, TheFourthOperatorCallsItselfAHighNumber) {
    Cable cable(Reface);
    cable.Send(VoiceRequest);
    auto expected = cable.Messages();
    ASSERT_EQ(expected.size(), 7u);
    expected[5][9] = 0x14;
    expected[5][39] = static_cast<std::uint8_t>((expected[5][39] + 128 - 17) & 0x7F);
    Faults().operatorNumberAboveThree = true;
    cable.Send(VoiceRequest);
    EXPECT_EQ(cable.Messages(), expected);
}

TEST(InstrumentFaults, ByteFiveOfDumpsIsOne) {
    Cable cable(Reface);
    cable.Send(SystemRequest);
    cable.Send(VoiceRequest);
    auto expected = cable.Messages();
    ASSERT_EQ(expected.size(), 8u);
    for (Bytes &message : expected) {
        message[5] = 0x01;
    }
    Faults().byteFiveNonzero = true;
    cable.Send(SystemRequest);
    cable.Send(VoiceRequest);
    EXPECT_EQ(cable.Messages(), expected);
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{IdentityReply}) << "which is no dump";
}

TEST(InstrumentFaults, CutMessagesLackTheirLastFourBytes) {
    Cable cable(Reface);
    Faults().cutMessages = true;
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Words(), (std::vector<std::uint32_t>{0x067F7EF0, 0x41004302, 0x00020653}));
}

TEST(InstrumentFaults, ACorruptChecksumIsOffByOneBit) {
    Cable cable(Reface);
    cable.Send(VoiceRequest);
    auto expected = cable.Messages();
    for (Bytes &message : expected) {
        message[message.size() - 2] ^= 1;
    }
    Faults().corruptChecksum = true;
    cable.Send(VoiceRequest);
    EXPECT_EQ(cable.Messages(), expected);
    cable.Send(IdentityRequest);
    EXPECT_EQ(cable.Messages(), std::vector<Bytes>{IdentityReply}) << "which has none";
}

TEST(InstrumentFaults, PortsThatDoNotOpen) {
    const MidiApi midi = MakeBuiltinInstruments({});
    MidiStream stream = 77;
    Faults().inputDoesNotOpen = true;
    EXPECT_NE(midi.Pm_OpenInput(&stream, 4, 512), 0);
    EXPECT_EQ(stream, NoMidiStream);
    EXPECT_EQ(midi.Pm_OpenOutput(&stream, 5, 0, 0), 0);
    EXPECT_EQ(midi.Pm_Close(stream), 0);
    Faults().outputDoesNotOpen = true;
    EXPECT_NE(midi.Pm_OpenOutput(&stream, 5, 0, 0), 0);
    EXPECT_EQ(midi.Pm_OpenOutput(&stream, 1, 0, 0), 0) << "another instrument's port";
    EXPECT_EQ(OpenBuiltinStreams(), 1);
}

TEST(InstrumentFaults, OneWriteFailsAndIsNotHeard) {
    Cable cable(Reface);
    Faults().failWrite = 2;
    EXPECT_EQ(cable.SendShort(0x01C0), 0);
    EXPECT_EQ(cable.midi.Pm_Write(cable.output, {0x02C0, 0}), 0);
    EXPECT_NE(cable.SendShort(0x03C0), 0);
    EXPECT_EQ(SelectedProgramOf(Reface), 2);
    EXPECT_EQ(cable.Send(IdentityRequest), 0);
    EXPECT_EQ(cable.Messages().size(), 1u);
    // Counted from the opening of the output.
    cable.midi.Pm_Close(cable.output);
    ASSERT_EQ(cable.midi.Pm_OpenOutput(&cable.output, 5, 0, 0), 0);
    EXPECT_EQ(cable.SendShort(0x04C0), 0);
    EXPECT_EQ(cable.SendShort(0x05C0), 0);
    EXPECT_NE(cable.Send(IdentityRequest), 0);
    EXPECT_TRUE(cable.Words().empty());
}

TEST(InstrumentFaults, ATwinIsListedBehindAllOthersAndIsTheSameInstrument) {
    const MidiApi midi = MakeBuiltinInstruments({});
    EXPECT_EQ(midi.Pm_CountDevices(), 6);
    Faults().twin = true;
    ASSERT_EQ(midi.Pm_CountDevices(), 8);
    EXPECT_STREQ(midi.Pm_GetDeviceInfo(4)->name, "Built-in reface DX");
    EXPECT_STREQ(midi.Pm_GetDeviceInfo(6)->name, "Built-in reface DX");
    EXPECT_STREQ(midi.Pm_GetDeviceInfo(7)->name, "Built-in reface DX");
    EXPECT_TRUE(midi.Pm_GetDeviceInfo(6)->input);
    EXPECT_TRUE(midi.Pm_GetDeviceInfo(7)->output);
    MidiStream output = NoMidiStream;
    ASSERT_EQ(midi.Pm_OpenOutput(&output, 7, 0, 0), 0);
    midi.Pm_WriteShort(output, 0, 0x09C0);
    EXPECT_EQ(SelectedProgramOf(Reface), 9);
}

} // namespace
} // namespace tonewright
