// The clicked row, the mark of a changed document, and who hears of a change.
#include "shell/list_state.h"

#include "common/settings.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "midi/midi_api.h"
#include "shell/command_state.h"
#include "shell/shell_window.h"

#include <utility>

namespace tonewright {

ListState MainListState;

int ListIndexForCommand() {
    const int clicked = std::exchange(MainListState.clickedIndex, -1);
    return clicked != -1 ? clicked : MainList.selection;
}

void MainListChanged(int value) {
    if (value == 0) {
        MainListState.dirty = true;
        RefreshCommands();
        return;
    }
    const int driver = DriverIndexOfName(SelectKeyboardName.c_str());
    if (!SelectKeyboardName.empty() && driver >= 0) {
        CurrentDriverId = DriverIdAt(driver);
    }
    RefreshStatus();
    RefreshCommands();
}

void SelectFamily(DriverId family) {
    CurrentDriverId = family;
    MidiInPort = MidiOutPort = NoMidiDevice;
    SynthFirmware = 0;
    RefreshStatus();
    RefreshCommands();
}

} // namespace tonewright
