// The search for MIDI devices, and what "MIDI Devices" lists.
#include "shell/midi_devices.h"

#include "core/current.h"
#include "midi/transport.h"
#include "support/fake_midi.h"

#include <gtest/gtest.h>

namespace tonewright {
namespace {

using Texts = std::vector<std::string>;

class MidiDevicesTest : public testing::Test {
protected:
    // Two inputs, two outputs, and one device that is both, at index 2.
    void AddDevices() {
        midi.AddInput("Keys");
        midi.AddOutput("Module");
        midi.AddDevice({.name = "Both", .input = true, .output = true});
        midi.AddInput("Pads");
        midi.AddOutput("Sampler");
    }

    FakeMidi midi;
};

TEST_F(MidiDevicesTest, ThePortsFollowTheirDevicesWhenTheseAreNumberedAnew) {
    AddDevices();
    MidiInPort = 3;  // Pads
    MidiOutPort = 4; // Sampler
    midi.onRescan = [&] { midi.devices.pop_front(); };
    RescanDevicesKeepingPorts();
    EXPECT_EQ(MidiInPort, 2);
    EXPECT_EQ(MidiOutPort, 3);
    midi.onRescan = [&] {
        midi.devices.push_front({.name = "New", .input = true, .output = true});
    };
    RescanDevicesKeepingPorts();
    EXPECT_EQ(MidiInPort, 3);
    EXPECT_EQ(MidiOutPort, 4);
}

TEST_F(MidiDevicesTest, APortWhoseDeviceIsGoneIsNoneAndSoIsOneThatWasNone) {
    AddDevices();
    MidiInPort = 3;
    MidiOutPort = NoMidiDevice;
    midi.onRescan = [&] { midi.devices.erase(midi.devices.begin() + 3); };
    RescanDevicesKeepingPorts();
    EXPECT_EQ(MidiInPort, NoMidiDevice); // not Sampler, which has its number now
    EXPECT_EQ(MidiOutPort, NoMidiDevice);
}

TEST_F(MidiDevicesTest, OfDevicesOfOneNameAndDirectionThePortsKeepTheirPlace) {
    midi.AddInput("Twin");
    midi.AddOutput("Twin");
    midi.AddInput("Twin");
    midi.AddOutput("Twin");
    MidiInPort = 2;
    MidiOutPort = 3;
    midi.onRescan = [&] { midi.devices.push_front({.name = "Other", .input = true}); };
    RescanDevicesKeepingPorts();
    EXPECT_EQ(MidiInPort, 3);
    EXPECT_EQ(MidiOutPort, 4);
}

TEST_F(MidiDevicesTest, TheRowsOfTheDevicesNameNumberInterfaceNameAndDirections) {
    AddDevices();
    midi.devices[4].interf = "ALSA";
    EXPECT_EQ(MidiDeviceRows(), (Texts{"0: Fake, Keys (input)", "1: Fake, Module (output)",
                                       "2: Fake, Both (input) (output)", "3: Fake, Pads (input)",
                                       "4: ALSA, Sampler (output)"}));
}

TEST_F(MidiDevicesTest, ARowIsHeldTo260BytesAsAWhole) {
    midi.AddInput(std::string(300, 'n'));
    EXPECT_EQ(MidiDeviceRows(), (Texts{"0: Fake, " + std::string(251, 'n')}));
}

TEST_F(MidiDevicesTest, ADeviceWithoutARecordHasNoRow) {
    AddDevices();
    midi.devices[2].absent = true;
    EXPECT_EQ(MidiDeviceRows(), (Texts{"0: Fake, Keys (input)", "1: Fake, Module (output)",
                                       "3: Fake, Pads (input)", "4: Fake, Sampler (output)"}));
}

TEST_F(MidiDevicesTest, WithoutDevicesThereAreNoRows) {
    EXPECT_TRUE(MidiDeviceRows().empty());
}

} // namespace
} // namespace tonewright
