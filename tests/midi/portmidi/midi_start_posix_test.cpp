// Which devices a program sees, by the environment that it is started in and its settings, and
// whether it asks for a sound card. The real ports are those of the library in
// portmidi_api_test.cpp.
#include "midi/midi_start.h"

#include "common/settings.h"
#include "midi/instrument_sound.h"
#include "midi/instruments/builtin_instruments.h"
#include "midi/midi_api.h"
#include "support/environment.h"
#include "support/fake_audio.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

namespace tonewright {
namespace {

using Devices = std::vector<std::string>; // "interface, name" of each; "-" without a record

const Devices RealPorts = {"Fake, Synth in", ", ", "-", "Fake, Neither"};
const Devices AllPorts = {"Built-in, Built-in DX7",
                          "Built-in, Built-in DX7",
                          "Built-in, Built-in volca fm",
                          "Built-in, Built-in volca fm",
                          "Built-in, Built-in reface DX",
                          "Built-in, Built-in reface DX",
                          "Fake, Synth in",
                          ", ",
                          "-",
                          "Fake, Neither"};

Devices DevicesNow() {
    Devices devices;
    for (int index = 0; index < TheMidi.Pm_CountDevices(); ++index) {
        const MidiDeviceInfo *info = TheMidi.Pm_GetDeviceInfo(index);
        devices.push_back(info ? std::string(info->interf) + ", " + info->name : "-");
    }
    return devices;
}

class MidiStart : public testing::Test {
protected:
    void TearDown() override { EndMidi(); }

    static Devices DevicesWith(const char *instruments) {
        if (instruments) {
            SetVariable("TONEWRIGHT_INSTRUMENTS", instruments);
        }
        UseMidi(InstrumentsAre::Heard);
        return DevicesNow();
    }
    // Opens the output of the built-in reface DX, plays a note on it and closes it.
    static void PlayReface() {
        MidiStream stream = NoMidiStream;
        ASSERT_EQ(TheMidi.Pm_OpenOutput(&stream, 5, MidiOutputBufferSize, 0), MidiSuccess);
        EXPECT_EQ(TheMidi.Pm_WriteShort(stream, 0, 0x643C90), MidiSuccess);
        EXPECT_EQ(TheMidi.Pm_Close(stream), MidiSuccess);
    }

    const EnvironmentVariable instruments{"TONEWRIGHT_INSTRUMENTS", std::nullopt};
    const EnvironmentVariable sound{"TONEWRIGHT_SOUND", std::nullopt};
    FakeAudio card;
};

TEST_F(MidiStart, WithoutTheVariableOnlyRealPortsAreThere) {
    EXPECT_EQ(DevicesWith(nullptr), RealPorts);
}

TEST_F(MidiStart, AnyOtherValueThanOneCountsAsNone) {
    for (const char *value : {"", "0", "yes", "11"}) {
        EXPECT_EQ(DevicesWith(value), RealPorts) << value;
    }
}

TEST_F(MidiStart, WithTheVariableTheInstrumentsStandAheadOfTheRealPorts) {
    EXPECT_EQ(DevicesWith("1"), AllPorts);
}

TEST_F(MidiStart, SoTheyDoWithTheSetting) {
    BuiltinInstruments = 1;
    EXPECT_EQ(DevicesWith(nullptr), AllPorts);
    EXPECT_EQ(DevicesWith("0"), AllPorts);
}

TEST_F(MidiStart, AChangedSettingCountsAtTheNextLookForDevices) {
    EXPECT_EQ(DevicesWith(nullptr).size(), RealPorts.size());
    BuiltinInstruments = 1;
    EXPECT_EQ(DevicesNow().size(), RealPorts.size());
    TheMidi.RescanDevices();
    ASSERT_EQ(DevicesNow().size(), AllPorts.size());
    EXPECT_EQ(DevicesNow()[5], AllPorts[5]);
    MidiStream stream = NoMidiStream;
    ASSERT_EQ(TheMidi.Pm_OpenOutput(&stream, 5, MidiOutputBufferSize, 0), MidiSuccess);
    BuiltinInstruments = 0;
    TheMidi.RescanDevices();
    EXPECT_EQ(DevicesNow().size(), AllPorts.size()); // one of them is in use
    EXPECT_EQ(TheMidi.Pm_Close(stream), MidiSuccess);
    TheMidi.RescanDevices();
    EXPECT_EQ(DevicesNow().size(), RealPorts.size());
}

TEST_F(MidiStart, TheInstrumentsAreHeardAsTheSettingsSay) {
    InstrumentDevice = "Second card";
    InstrumentBuffer = 1024;
    DevicesWith("1");
    EXPECT_EQ(card.Calls(), 0);
    PlayReface();
    ASSERT_TRUE(card.UntilItRuns());
    EXPECT_EQ(card.request.device, "Second card");
    EXPECT_EQ(card.request.frames, 1024);
    const std::vector<float> frames = card.Play(4800);
    EXPECT_GT(*std::ranges::max_element(frames), 0.01f);
    EndMidi();
    EXPECT_EQ(card.closes, 1);
}

TEST_F(MidiStart, SettingsOutOfRangeAreLimited) {
    InstrumentBuffer = 1;
    InstrumentPolyphony = 0;
    InstrumentVolume = 101;
    DevicesWith("1");
    PlayReface();
    ASSERT_TRUE(card.UntilItRuns());
    EXPECT_EQ(card.request.frames, 128);
    EndMidi();
    InstrumentBuffer = 4096;
    InstrumentPolyphony = 1000;
    DevicesWith("1");
    PlayReface();
    ASSERT_TRUE(card.UntilItRuns());
    EXPECT_EQ(card.request.frames, 2048);
}

TEST_F(MidiStart, WithRealPortsAloneNoSoundCardIsAskedFor) {
    DevicesWith(nullptr);
    MidiStream stream = NoMidiStream;
    EXPECT_NE(TheMidi.Pm_OpenOutput(&stream, 0, MidiOutputBufferSize, 0), MidiSuccess);
    ASSERT_EQ(TheMidi.Pm_OpenOutput(&stream, 1, MidiOutputBufferSize, 0), MidiSuccess);
    EXPECT_EQ(TheMidi.Pm_WriteShort(stream, 0, 0x643C90), MidiSuccess);
    EXPECT_EQ(TheMidi.Pm_Close(stream), MidiSuccess);
    EndMidi();
    EXPECT_EQ(card.Calls(), 0);
}

TEST_F(MidiStart, NorWhereItIsForbidden) {
    const EnvironmentVariable none("TONEWRIGHT_SOUND", "0");
    DevicesWith("1");
    PlayReface();
    EndMidi();
    EXPECT_EQ(card.Calls(), 0);
}

TEST_F(MidiStart, NorByAProgramThatWantsSilence) {
    SetVariable("TONEWRIGHT_INSTRUMENTS", "1");
    UseMidi(InstrumentsAre::Silent);
    PlayReface();
    EndMidi();
    EXPECT_EQ(card.Calls(), 0);
}

TEST_F(MidiStart, NorOnTheSimulatedClock) {
    DevicesWith("1");
    TheMidi = MakeBuiltinInstruments({.simulatedClock = true});
    PlayReface();
    EndMidi();
    EXPECT_EQ(card.Calls(), 0);
}

TEST_F(MidiStart, AtTheEndNoDeviceIsLeft) {
    EXPECT_EQ(DevicesWith("1").size(), AllPorts.size());
    EndMidi();
    EXPECT_EQ(DevicesNow(), Devices{});
}

} // namespace
} // namespace tonewright
