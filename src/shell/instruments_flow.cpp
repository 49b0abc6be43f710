// Takes the choices of the box over into the settings, and does what follows from them.
#include "shell/instruments_flow.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/text.h"
#include "midi/instrument_settings.h"
#include "midi/midi_api.h"
#include "shell/midi_devices.h"
#include "shell/settings_flow.h"
#include "shell/shell_window.h"

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

constexpr double FramesInAMillisecond = 48.0;

// Stores a value that is not the setting's yet. One message is enough for several that cannot be
// kept: the first that fails leaves the others for this run.
template <typename Value> void Store(Value &setting, Value value, bool &keeps) {
    if (std::exchange(setting, value) != value && keeps) {
        keeps = KeepChosen(&setting);
    }
}

IntegerSettingValue AsSetting(int value) {
    return static_cast<IntegerSettingValue>(value);
}

void OfferToKeepVoice() {
    const int answer = AskYesNo(
        TheShellWindow.window,
        "When an audition has sent its voice, it selects the last program of the instrument and "
        "then the first. A built-in instrument, like many others, then plays the first voice of "
        "its memory, and not the one that you have chosen.\n\nShall an audition select no program, "
        "so that you hear the voice that was sent? The menu Extras has an entry for it.");
    if (answer == ResultYes) {
        ToggleSetting(AuditionKeepsVoice);
    }
}

} // namespace

InstrumentsChoice CurrentInstrumentsChoice() {
    const InstrumentSoundOptions sound = InstrumentSoundOfSettings();
    return {.wanted = BuiltinInstruments != 0,
            .device = sound.device,
            .volume = InstrumentVolumeOfSetting(),
            .buffer = sound.frames,
            .polyphony = sound.polyphony};
}

void AcceptInstrumentsChoice(const InstrumentsChoice &choice) {
    const InstrumentsChoice former = CurrentInstrumentsChoice();
    bool keeps = true;
    const auto storeNumber = [&](IntegerSettingValue &setting, int chosen, int before) {
        if (chosen != before) { // a number beyond its range stays where nothing else was chosen
            Store(setting, AsSetting(chosen), keeps);
        }
    };
    storeNumber(BuiltinInstruments, choice.wanted ? 1 : 0, former.wanted ? 1 : 0);
    Store(InstrumentDevice, choice.device, keeps);
    storeNumber(InstrumentVolume, choice.volume, former.volume);
    storeNumber(InstrumentBuffer, choice.buffer, former.buffer);
    storeNumber(InstrumentPolyphony, choice.polyphony, former.polyphony);
    FollowInstrumentSettings();
    if (choice.wanted == former.wanted) {
        return;
    }
    RescanDevicesKeepingPorts();
    if (choice.wanted && AuditionKeepsVoice == 0) {
        OfferToKeepVoice();
    }
}

std::vector<DeviceRow> DeviceRows(const std::vector<AudioDevice> &devices,
                                  const std::string &chosen, bool searched) {
    std::vector<DeviceRow> rows = {{.name = "", .text = "System default"}};
    for (const AudioDevice &device : devices) {
        rows.push_back({.name = device.name, .text = device.name});
    }
    if (std::ranges::find(rows, chosen, &DeviceRow::name) == rows.end()) {
        rows.push_back({.name = chosen, .text = searched ? chosen + " (not found)" : chosen});
    }
    return rows;
}

std::vector<int> BufferRows(int chosen) {
    std::vector<int> rows(InstrumentBuffers.begin(), InstrumentBuffers.end());
    if (std::ranges::find(rows, chosen) == rows.end()) {
        rows.insert(std::ranges::upper_bound(rows, chosen), chosen);
    }
    return rows;
}

std::string BufferText(int frames) {
    return FormatText("%d frames (%.1f ms)", frames, frames / FramesInAMillisecond);
}

int RunInstruments() {
    if (TheShellWindow.ShowInstrumentsBox) {
        TheShellWindow.ShowInstrumentsBox();
    }
    return 1;
}

} // namespace tonewright
