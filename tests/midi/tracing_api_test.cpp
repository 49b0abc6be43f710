// The lines in which a trace shows messages.
#include "midi/tracing_api.h"

#include "midi/transport.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Bytes = FakeMidi::Bytes;
using Lines = std::vector<std::string>;

// A link to a device pair through a trace.
struct TracedLink {
    FakeMidi midi;
    int in = midi.AddInput("Synth"), out = midi.AddOutput("Synth");
    Lines lines;
    MidiLink link;

    TracedLink() {
        TheMidi =
            MakeTracingApi(TheMidi, [this](const std::string &line) { lines.push_back(line); });
        EXPECT_EQ(MidiLinkOpen(link, true, in, out), 1);
    }
    ~TracedLink() { MidiLinkClose(link); }

    // Reads all events that are due, in the millisecond 0.
    void ReadAll() {
        MidiEvent event;
        int read = 1;
        while (read != 0) {
            const int ready = TheMidi.Pm_Poll(link.input);
            midi.now = 0;
            read = ready != 0 ? TheMidi.Pm_Read(link.input, &event) : 0;
        }
    }
};

TEST(TracingApi, ShowsSystemExclusiveMessagesThatGoOut) {
    TracedLink traced;
    traced.midi.now = 17;
    EXPECT_EQ(WriteSysex(traced.link.output, Bytes{0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7}), 0);
    EXPECT_EQ(traced.lines, (Lines{"17\tout\tF0 7E 00 06 01 F7"}));
    EXPECT_EQ(traced.midi.WrittenBytes(),
              (std::vector<Bytes>{{0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7}}));
}

TEST(TracingApi, ShowsShortMessagesInTheirRealLength) {
    TracedLink traced;
    for (const std::uint8_t status :
         {0x80, 0x9F, 0xA0, 0xB1, 0xC2, 0xD3, 0xE4, 0xF1, 0xF2, 0xF3, 0xF6, 0xF8, 0xFE, 0xFF}) {
        WriteShort(traced.link.output, status, 0x01, 0x7F);
    }
    EXPECT_EQ(traced.lines,
              (Lines{"0\tout\t80 01 7F", "0\tout\t9F 01 7F", "0\tout\tA0 01 7F", "0\tout\tB1 01 7F",
                     "0\tout\tC2 01", "0\tout\tD3 01", "0\tout\tE4 01 7F", "0\tout\tF1 01",
                     "0\tout\tF2 01 7F", "0\tout\tF3 01", "0\tout\tF6", "0\tout\tF8", "0\tout\tFE",
                     "0\tout\tFF"}));
}

TEST(TracingApi, ShowsSingleEventsThatGoOut) {
    TracedLink traced;
    traced.midi.now = 5;
    EXPECT_EQ(TheMidi.Pm_Write(traced.link.output, {.message = 0x00403C90, .timestamp = 4}), 0);
    EXPECT_EQ(traced.lines, (Lines{"5\tout\t90 3C 40"}));
}

TEST(TracingApi, MarksAWriteThatFailed) {
    TracedLink traced;
    traced.midi.allWritesFail = true;
    EXPECT_NE(WriteShort(traced.link.output, 0x90, 0x3C, 0x40), 0);
    EXPECT_NE(WriteSysex(traced.link.output, Bytes{0xF0, 0xF7}), 0);
    EXPECT_EQ(traced.lines, (Lines{"0\tout\t90 3C 40\tfailed", "0\tout\tF0 F7\tfailed"}));
}

TEST(TracingApi, GathersAnIncomingMessageFromItsEvents) {
    TracedLink traced;
    const Bytes reply = {0xF0, 0x7E, 0x7F, 0x06, 0x02, 0x43, 0x00, 0x41, 0x53, 0x06, 0x03, 0xF7};
    traced.midi.SendAt(traced.in, reply, 40);
    traced.midi.now = 40;
    Bytes buffer(20);
    std::size_t count = 0;
    EXPECT_EQ(SysexReceive(traced.link.input, buffer, &count), 1);
    EXPECT_EQ(traced.lines, (Lines{"43\tin\tF0 7E 7F 06 02 43 00 41 53 06 03 F7"}));
    buffer.resize(count);
    EXPECT_EQ(buffer, reply) << "a trace changes nothing";
}

TEST(TracingApi, DropsTheFillBehindAnEnd) {
    TracedLink traced;
    traced.midi.SendAt(traced.in, {0xF0, 0x43, 0x01, 0x02, 0xF7}, 0);
    traced.midi.SendEventAt(traced.in, 0x007F01C0, 0);
    traced.ReadAll();
    EXPECT_EQ(traced.lines, (Lines{"0\tin\tF0 43 01 02 F7", "0\tin\tC0 01"})) << "in their order";
}

TEST(TracingApi, ShowsWhatStandsInsideAMessageInFrontOfIt) {
    TracedLink traced;
    traced.midi.SendEventAt(traced.in, 0x030201F0, 0);
    traced.midi.SendEventAt(traced.in, 0x000000F8, 0);
    traced.midi.SendEventAt(traced.in, 0x00403C90, 0);
    traced.midi.SendEventAt(traced.in, 0xF705FE04, 0); // active sensing among the data
    traced.ReadAll();
    EXPECT_EQ(traced.lines,
              (Lines{"0\tin\tF8", "0\tin\t90 3C 40", "0\tin\tFE", "0\tin\tF0 01 02 03 04 05 F7"}));
}

TEST(TracingApi, ShowsAnUnfinishedMessageWhenTheNextOneBegins) {
    TracedLink traced;
    traced.midi.SendAt(traced.in, {0xF0, 0x01, 0x02, 0x03}, 0);
    traced.midi.SendAt(traced.in, {0xF0, 0x04, 0xF7}, 0);
    traced.ReadAll();
    EXPECT_EQ(traced.lines, (Lines{"0\tin\tF0 01 02 03", "0\tin\tF0 04 F7"}));
}

TEST(TracingApi, ShowsAnUnfinishedMessageWhenItsStreamIsClosed) {
    TracedLink traced;
    traced.midi.SendAt(traced.in, {0xF0, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07}, 0);
    traced.ReadAll();
    EXPECT_TRUE(traced.lines.empty());
    MidiLinkClose(traced.link);
    EXPECT_EQ(traced.lines, (Lines{"0\tin\tF0 01 02 03 04 05 06 07"}));
}

TEST(TracingApi, DoesNotGatherWithoutEnd) {
    TracedLink traced;
    traced.midi.SendAt(traced.in, Bytes(70000, 0x11), 0);
    traced.ReadAll();
    ASSERT_EQ(traced.lines.size(), 1u);
    EXPECT_EQ(traced.lines[0].size(), std::string("0\tin\t").size() + 3 * 65536 - 1);
}

TEST(TracingApi, ShowsNothingForAReadThatGaveNothing) {
    TracedLink traced;
    MidiEvent event;
    EXPECT_EQ(TheMidi.Pm_Read(traced.link.input, &event), 0);
    traced.midi.failingReads = 1;
    EXPECT_LT(TheMidi.Pm_Read(traced.link.input, &event), 0);
    EXPECT_TRUE(traced.lines.empty());
}

TEST(TracingApi, PassesDevicesClockAndRescanOn) {
    TracedLink traced;
    EXPECT_EQ(TheMidi.Pm_CountDevices(), 2);
    EXPECT_STREQ(TheMidi.Pm_GetDeviceInfo(1)->name, "Synth");
    traced.midi.now = 99;
    EXPECT_EQ(TheMidi.Pt_Time(), 99);
    MidiLinkClose(traced.link);
    TheMidi.RescanDevices();
    EXPECT_EQ(traced.midi.calls.back(), "RescanDevices()");
}

} // namespace
} // namespace tonewright
