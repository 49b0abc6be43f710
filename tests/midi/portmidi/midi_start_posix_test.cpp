// Which devices a program sees, by the environment that it is started in. The real ports are those
// of the library in portmidi_api_test.cpp.
#include "midi/midi_start.h"

#include "midi/midi_api.h"

#include <gtest/gtest.h>

#include <cstdlib>
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
    void SetUp() override { unsetenv("TONEWRIGHT_INSTRUMENTS"); }
    void TearDown() override { EndMidi(); }

    static Devices DevicesWith(const char *instruments) {
        if (instruments) {
            setenv("TONEWRIGHT_INSTRUMENTS", instruments, 1);
        }
        UseMidi();
        return DevicesNow();
    }
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

TEST_F(MidiStart, AtTheEndNoDeviceIsLeft) {
    EXPECT_EQ(DevicesWith("1").size(), AllPorts.size());
    EndMidi();
    EXPECT_EQ(DevicesNow(), Devices{});
}

} // namespace
} // namespace tonewright
