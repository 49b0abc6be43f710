// Which devices a program sees, by the environment that it is started in.
#include "midi/midi_start.h"

#include "midi/midi_api.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

namespace tonewright {
namespace {

// "interface, name" of every device.
std::vector<std::string> Devices() {
    std::vector<std::string> devices;
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

    static std::vector<std::string> DevicesWith(const char *instruments) {
        if (instruments) {
            setenv("TONEWRIGHT_INSTRUMENTS", instruments, 1);
        }
        UseMidi();
        return Devices();
    }
    static bool HasBuiltIn(const std::vector<std::string> &devices) {
        return std::ranges::any_of(devices, [](const std::string &device) {
            return device.find("reface DX") != std::string::npos;
        });
    }
};

TEST_F(MidiStart, WithoutTheVariableOnlyRealPortsAreThere) {
    EXPECT_FALSE(HasBuiltIn(DevicesWith(nullptr)));
}

TEST_F(MidiStart, AnyOtherValueThanOneCountsAsNone) {
    for (const char *value : {"", "0", "yes", "11"}) {
        EXPECT_FALSE(HasBuiltIn(DevicesWith(value))) << value;
    }
}

TEST_F(MidiStart, WithTheVariableTheInstrumentsStandAheadOfTheRealPorts) {
    const auto real = DevicesWith(nullptr);
    const auto all = DevicesWith("1");
    ASSERT_EQ(all.size(), real.size() + 6); // an input and an output of each of three
    EXPECT_TRUE(HasBuiltIn({all.begin(), all.begin() + 6}));
    EXPECT_EQ(std::vector<std::string>(all.begin() + 6, all.end()), real);
}

TEST_F(MidiStart, AtTheEndNoDeviceIsLeft) {
    EXPECT_FALSE(DevicesWith("1").empty());
    EndMidi();
    EXPECT_TRUE(Devices().empty());
}

} // namespace
} // namespace tonewright
