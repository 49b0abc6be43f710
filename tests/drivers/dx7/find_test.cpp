// The search for a DX7 among the MIDI ports.
#include "drivers/dx7/find.h"

#include "drivers/dx7/voice_codec.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tonewright {
namespace {

using Calls = std::vector<std::string>;

struct Dx7Find : testing::Test {
    FakeMidi midi;
    FoundSynth found{.driver = NoDriverId, .ports = {}, .firmware = 0x11};

    int Find(const char *inPattern, const char *outPattern, bool autodetect = false) {
        return Dx7FindSynth(nullptr, found, {inPattern, outPattern}, autodetect);
    }
};

TEST_F(Dx7Find, TakesThePortsByTheirNames) {
    midi.AddInput("UM-ONE MIDI 1");
    midi.AddOutput("UM-ONE MIDI 1");
    EXPECT_EQ(Find("um-one", "ONE midi"), 1);
    EXPECT_EQ(found.driver, Dx7DriverId);
    EXPECT_EQ(found.ports.in, 0);
    EXPECT_EQ(found.ports.out, 1);
    EXPECT_EQ(found.firmware, 0x11u) << "it is never asked for";
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pt_Stop()"})) << "nothing is opened";
}

TEST_F(Dx7Find, TakesTheLaterOfTwoPortsThatMatch) {
    midi.AddInput("Port 1");
    midi.AddOutput("Port 1");
    midi.AddInput("Port 2");
    midi.AddOutput("Port 2");
    EXPECT_EQ(Find("Port", "Port"), 1);
    EXPECT_EQ(found.ports.in, 2);
    EXPECT_EQ(found.ports.out, 3);
}

TEST_F(Dx7Find, WithOnlyTheInputFoundFailsAndKeepsItsNumber) {
    midi.AddOutput("Other");
    midi.AddInput("Port");
    EXPECT_EQ(Find("Port", "Port"), 0);
    EXPECT_EQ(found.ports.in, 1);
    EXPECT_EQ(found.ports.out, -1);
    EXPECT_EQ(found.driver, NoDriverId);
}

TEST_F(Dx7Find, WithOnlyTheOutputFoundFailsAndKeepsItsNumber) {
    midi.AddOutput("Port");
    EXPECT_EQ(Find("Port", "Port"), 0);
    EXPECT_EQ(found.ports.in, -1);
    EXPECT_EQ(found.ports.out, 0);
    EXPECT_EQ(found.driver, NoDriverId);
}

TEST_F(Dx7Find, LooksPastTheAutodetectFlag) {
    midi.AddInput("reface DX");
    midi.AddOutput("reface DX");
    EXPECT_EQ(Find("UM-ONE", "UM-ONE", true), 0);
    EXPECT_EQ(found.ports.in, -1);
    EXPECT_TRUE(midi.written.empty());
}

TEST_F(Dx7Find, AmongNoDevicesFails) {
    EXPECT_EQ(Find("", ""), 0);
    EXPECT_EQ(midi.calls, (Calls{"Pt_Start(1)", "Pt_Stop()"}));
}

} // namespace
} // namespace tonewright
