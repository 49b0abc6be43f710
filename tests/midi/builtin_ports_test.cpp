// By which ports a voice is heard where the built-in instruments are switched on.
#include "midi/builtin_ports.h"

#include "common/settings.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/audition.h"
#include "support/bank_bytes.h"
#include "support/driver_rows.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

class BuiltinPorts : public testing::Test {
protected:
    BuiltinPorts() {
        RestoreDriverRows();
        BuiltinInstruments = 1;
        keys = {midi.AddInput("reface DX"), midi.AddOutput("reface DX")};
        dx7 = AddBuiltin("Built-in DX7");
        volca = AddBuiltin("Built-in volca fm");
        reface = AddBuiltin("Built-in reface DX");
    }
    ~BuiltinPorts() override { BuiltinInstruments = 0; }

    MidiPorts AddBuiltin(const char *name) {
        const int in = midi.AddDevice({.name = name, .input = true, .interf = BuiltinInterface});
        return {in, midi.AddDevice({.name = name, .output = true, .interf = BuiltinInterface})};
    }

    FakeMidi midi;
    MidiPorts keys, dx7, volca, reface;
};

TEST_F(BuiltinPorts, WithoutAnOutputTheOneOfTheFamilyIsHeard) {
    EXPECT_EQ(PortsToHear(Dx7DriverId, {}), dx7);
    EXPECT_EQ(PortsToHear(RefaceDriverId, {}), reface);
    EXPECT_EQ(PortsToHear(RefaceDriverId, {.in = keys.in, .out = 99}), reface); // gone
}

TEST_F(BuiltinPorts, OneThatPlaysOtherVoicesGivesWay) {
    EXPECT_EQ(PortsToHear(Dx7DriverId, reface), dx7);
    EXPECT_EQ(PortsToHear(RefaceDriverId, volca), reface);
}

TEST_F(BuiltinPorts, WhatWasChosenStays) {
    EXPECT_EQ(PortsToHear(Dx7DriverId, keys), keys); // an instrument of the user's
    EXPECT_EQ(PortsToHear(Dx7DriverId, volca), volca);
    EXPECT_EQ(PortsToHear(RefaceDriverId, reface), reface);
}

TEST_F(BuiltinPorts, NothingChangesWhereTheyAreSwitchedOffOrDoNotKnowTheFamily) {
    EXPECT_EQ(PortsToHear(NoDriverId, {}), MidiPorts());
    BuiltinInstruments = 0;
    EXPECT_EQ(PortsToHear(Dx7DriverId, {}), MidiPorts());
    EXPECT_EQ(PortsToHear(Dx7DriverId, reface), reface);
}

TEST_F(BuiltinPorts, WhereTheyAreSwitchedOnAndNotThereThePortsStay) {
    midi.devices.resize(2);
    EXPECT_EQ(PortsToHear(Dx7DriverId, {}), MidiPorts());
    EXPECT_EQ(PortsToHear(Dx7DriverId, keys), keys);
}

TEST_F(BuiltinPorts, AnAuditionGoesThere) {
    const VoiceObject voice = MakeVoiceObject(Dx7DriverId, TestUnpackedVoice());
    const auto audition = PrepareAudition(nullptr, &voice, Dx7DriverId, {}, 0);
    EXPECT_EQ(audition->ports, dx7);
    EXPECT_TRUE(PlaysBuiltinInstrument(*audition));
}

} // namespace
} // namespace tonewright
