// The choices of "Select Synthesizer".
#include "shell/synth_selection.h"

#include "common/settings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "midi/midi_api.h"
#include "shell/command_state.h"
#include "shell/documents.h"

#include <algorithm>

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
    const int cleared = RunClear();
    RefreshCommands();
    if (!cleared) {
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

} // namespace tonewright
