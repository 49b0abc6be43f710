// The program's own link to a built-in instrument: what it receives, when it gives up, and that it
// leaves nothing open.
#include "cable.h"

#include "common/settings.h"
#include "midi/transport.h"
#include "support/builtin_midi.h"

#include <array>

namespace tonewright {
namespace {

constexpr auto Reface = BuiltinInstrument::Reface;
constexpr int RefaceInput = 4;
constexpr int RefaceOutput = 5;

struct Link {
    BuiltinMidi midi;
    MidiLink link;
    std::array<std::uint8_t, SysexBufferSize> buffer{};
    std::size_t count = 0;

    Link() { EXPECT_EQ(MidiLinkOpen(link, true, RefaceInput, RefaceOutput), 1); }
    ~Link() { MidiLinkClose(link); }
    Link(const Link &) = delete;
    Link &operator=(const Link &) = delete;

    Bytes Received() const {
        return Bytes(buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(count));
    }
};

TEST(InstrumentLink, ReceivesAReplyAsItWasSent) {
    Link link;
    EXPECT_EQ(WriteSysex(link.link.output, IdentityRequest), 0);
    EXPECT_EQ(SysexReceive(link.link.input, link.buffer, &link.count), 1);
    EXPECT_EQ(link.Received(), IdentityReply);
}

TEST(InstrumentLink, GapsOneMillisecondShorterThanTheWaitAreInTimeForEveryMessage) {
    Link link;
    SysexWait = 1500;
    FaultsOf(Reface).lateEvent = 2;
    FaultsOf(Reface).lateByMilliseconds = 1499;
    WriteSysex(link.link.output, VoiceRequest);
    for (int message = 0; message < 7; ++message) {
        EXPECT_EQ(SysexReceive(link.link.input, link.buffer, &link.count), 1);
    }
    EXPECT_EQ(link.Received(), VoiceFooter);
}

TEST(InstrumentLink, AGapOfExactlyTheWaitIsTooLong) {
    Link link;
    SysexWait = 1500;
    FaultsOf(Reface).lateEvent = 2;
    FaultsOf(Reface).lateByMilliseconds = 1500;
    WriteSysex(link.link.output, IdentityRequest);
    EXPECT_EQ(SysexReceive(link.link.input, link.buffer, &link.count), 0);
    EXPECT_EQ(link.count, 8u);
}

TEST(InstrumentLink, ASilentInstrumentCostsExactlyTheWait) {
    Link link;
    SysexWait = 1500;
    FaultsOf(Reface).silent = true;
    WriteSysex(link.link.output, IdentityRequest);
    const std::int32_t start = TheMidi.Pt_Time();
    EXPECT_EQ(SysexReceive(link.link.input, link.buffer, &link.count), 0);
    EXPECT_EQ(TheMidi.Pt_Time() - start, 1500);
    EXPECT_EQ(link.count, 0u);
}

TEST(InstrumentLink, ACutReplyEndsInATimeOut) {
    Link link;
    FaultsOf(Reface).cutMessages = true;
    WriteSysex(link.link.output, IdentityRequest);
    EXPECT_EQ(SysexReceive(link.link.input, link.buffer, &link.count), 0);
    EXPECT_EQ(link.count, 12u); // eleven bytes and what fills the last event
}

TEST(InstrumentLink, ALinkThatDoesNotOpenLeavesNothingOpen) {
    const BuiltinMidi midi;
    FaultsOf(Reface).outputDoesNotOpen = true;
    MidiLink link;
    EXPECT_EQ(MidiLinkOpen(link, true, RefaceInput, RefaceOutput), 0);
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    EXPECT_FALSE(BuiltinClockRuns());
    FaultsOf(Reface) = {.inputDoesNotOpen = true};
    EXPECT_EQ(MidiLinkOpen(link, true, RefaceInput, RefaceOutput), 0);
    EXPECT_EQ(OpenBuiltinStreams(), 0);
    EXPECT_FALSE(BuiltinClockRuns());
}

TEST(InstrumentLink, PortsAreFoundByAPartOfTheirNameAndATwinWins) {
    const BuiltinMidi midi;
    MidiPorts ports;
    EXPECT_TRUE(FindPorts({"dx7", "DX7"}, ports));
    EXPECT_EQ(ports.in, 0);
    EXPECT_EQ(ports.out, 1);
    EXPECT_TRUE(FindPorts({"volca fm", "volca fm"}, ports));
    EXPECT_EQ(ports.in, 2);
    EXPECT_EQ(ports.out, 3);
    EXPECT_TRUE(FindPorts({"reface DX", "reface DX"}, ports));
    EXPECT_EQ(ports.in, RefaceInput);
    EXPECT_EQ(ports.out, RefaceOutput);
    FaultsOf(Reface).twin = true;
    EXPECT_TRUE(FindPorts({"reface DX", "reface DX"}, ports));
    EXPECT_EQ(ports.in, 6);
    EXPECT_EQ(ports.out, 7);
}

} // namespace
} // namespace tonewright
