// The choices of "Select Synthesizer" and the rows of "MIDI Devices".
#include "shell/synth_selection.h"

#include "common/settings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "midi/transport.h"
#include "shell/commands.h"

#include <algorithm>
#include <optional>

namespace tonewright {
namespace {

constexpr const char *UnknownSynth = "Unknown";

// The text of the selected item; empty without one.
std::string SelectedText(const ItemChoice &choice) {
    const bool exists =
        choice.selected >= 0 && static_cast<std::size_t>(choice.selected) < choice.items.size();
    return exists ? std::string(CutText(choice.items[static_cast<std::size_t>(choice.selected)],
                                        SettingTextLimit))
                  : std::string();
}

// A device by what stays of it when the devices are numbered anew: the n-th of its name, from 0, in
// its direction.
struct DeviceMark {
    std::string name;
    int place = 0;
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
        mark.place += IsOf(TheMidi.Pm_GetDeviceInfo(index), mark.name, input);
    }
    return mark;
}

int PortOf(const std::optional<DeviceMark> &mark, bool input) {
    int before = 0;
    for (int index = 0; mark && index < TheMidi.Pm_CountDevices(); ++index) {
        if (IsOf(TheMidi.Pm_GetDeviceInfo(index), mark->name, input) && before++ == mark->place) {
            return index;
        }
    }
    return NoMidiDevice;
}

void SelectItem(ItemChoice &choice, const std::string &text) {
    choice.selected = FindItem(choice.items, text);
}

} // namespace

SelectParams CurrentSelectParams() {
    return {.driverId = &CurrentDriverId,
            .name = &SelectKeyboardName,
            .midiIn = &SelectKeyboardMidiIn,
            .midiOut = &SelectKeyboardMidiOut,
            .autodetect = &SelectKeyboardAutodetect,
            .midiChannel = &CurrentMidiChannel};
}

int FindItem(const std::vector<std::string> &items, const std::string &text) {
    auto found = std::ranges::find(items, text);
    if (found == items.end()) {
        found = std::ranges::find_if(items, [&](const std::string &item) {
            return EqualNoCase(std::string_view(item).substr(0, text.size()), text);
        });
    }
    if (found == items.end()) {
        return items.empty() ? NoItem : 0;
    }
    return static_cast<int>(found - items.begin());
}

SynthSelection OpenSynthSelection(const SelectParams &params) {
    SynthSelection selection;
    selection.synths.items.push_back(UnknownSynth);
    for (const SynthDriver *driver : SynthDrivers) {
        selection.synths.items.push_back(driver->name);
    }
    SelectItem(selection.synths, *params.name);
    for (int index = 0; index < TheMidi.Pm_CountDevices(); ++index) {
        const MidiDeviceInfo *device = TheMidi.Pm_GetDeviceInfo(index);
        if (device && device->input) {
            selection.inputs.items.push_back(device->name);
        }
        if (device && device->output) {
            selection.outputs.items.push_back(device->name);
        }
    }
    SelectItem(selection.inputs, *params.midiIn);
    SelectItem(selection.outputs, *params.midiOut);
    selection.detect = *params.autodetect != 0;
    selection.midiChannel = static_cast<int>(*params.midiChannel);
    SynthChosen(selection);
    return selection;
}

void SynthChosen(SynthSelection &selection) {
    const int row = DriverIndexOfName(SelectedText(selection.synths).c_str());
    if (row >= 0) {
        selection.detectEnabled =
            (SynthDrivers[static_cast<std::size_t>(row)]->flags & DriverFlagAutodetect) != 0;
    }
}

int AcceptSynthSelection(const SynthSelection &selection, const SelectParams &params) {
    if (!RunCommand(CommandClear)) {
        return 0;
    }
    *params.name = SelectedText(selection.synths);
    *params.midiIn = SelectedText(selection.inputs);
    *params.midiOut = SelectedText(selection.outputs);
    *params.autodetect = selection.detect ? 1 : 0;
    *params.midiChannel = static_cast<std::uint32_t>(selection.midiChannel);
    const int row = DriverIndexOfName(params.name->c_str());
    if (row >= 0) {
        *params.driverId = DriverIdAt(row);
    }
    return 1;
}

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
