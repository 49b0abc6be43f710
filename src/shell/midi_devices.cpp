// Looks for devices anew, and writes their rows.
#include "shell/midi_devices.h"

#include "common/settings.h"
#include "common/text.h"
#include "core/current.h"
#include "midi/transport.h"

#include <optional>

namespace tonewright {
namespace {

// A device by what stays of it when the devices are numbered anew: the n-th of its name, from 0, in
// its direction.
struct DeviceMark {
    std::string name;
    int before = 0; // devices of the same name and direction with a lower number
};

bool IsOf(const MidiDeviceInfo *device, const std::string &name, bool input) {
    return device && (input ? device->input : device->output) && device->name == name;
}

std::optional<DeviceMark> MarkOf(int port, bool input) {
    const MidiDeviceInfo *device = TheMidi.Pm_GetDeviceInfo(port);
    if (!device) {
        return std::nullopt;
    }
    DeviceMark mark = {.name = device->name};
    for (int index = 0; index < port; ++index) {
        mark.before += IsOf(TheMidi.Pm_GetDeviceInfo(index), mark.name, input);
    }
    return mark;
}

int PortOf(const std::optional<DeviceMark> &mark, bool input) {
    int seen = 0;
    for (int index = 0; mark && index < TheMidi.Pm_CountDevices(); ++index) {
        if (IsOf(TheMidi.Pm_GetDeviceInfo(index), mark->name, input) && seen++ == mark->before) {
            return index;
        }
    }
    return NoMidiDevice;
}

} // namespace

void RescanDevicesKeepingPorts() {
    const auto input = MarkOf(MidiInPort, true);
    const auto output = MarkOf(MidiOutPort, false);
    TheMidi.RescanDevices();
    MidiInPort = PortOf(input, true);
    MidiOutPort = PortOf(output, false);
}

std::vector<std::string> MidiDeviceRows() {
    std::vector<std::string> rows;
    const int count = TheMidi.Pm_CountDevices();
    for (int index = 0; index < count; ++index) {
        const MidiDeviceInfo *device = TheMidi.Pm_GetDeviceInfo(index);
        if (!device) {
            continue;
        }
        std::string row = FormatText("%d: %s, %s", index, device->interf, device->name);
        if (device->input) {
            row += " (input)";
        }
        if (device->output) {
            row += " (output)";
        }
        rows.push_back(std::string(CutText(row, SettingTextLimit)));
    }
    return rows;
}

} // namespace tonewright
