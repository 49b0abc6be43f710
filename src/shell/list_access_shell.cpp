// Puts voices into the main list, and plays them.
#include "shell/list_access_shell.h"

#include "common/desktop.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "extras/initial_voice.h"
#include "extras/list_access.h"
#include "midi/builtin_ports.h"
#include "midi/midi_api.h"
#include "shell/command_queue.h"
#include "shell/command_state.h"
#include "shell/documents.h"
#include "shell/list_replacement.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

// While it lives the questions of the flows stand over `owner`, and not behind it over the main
// window.
struct AskingOver {
    QWidget *former = TheShellWindow.window;

    explicit AskingOver(QWidget *owner) {
        if (owner) {
            TheShellWindow.window = owner;
        }
    }
    ~AskingOver() { TheShellWindow.window = former; }
    AskingOver(const AskingOver &) = delete;
    AskingOver &operator=(const AskingOver &) = delete;
};

bool AskToSaveOver(QWidget *owner) {
    const AskingOver asking(owner);
    return AskToSave();
}

std::string NameOfFamily(DriverId family) {
    const SynthDriver *driver = DriverOfId(family);
    return driver ? driver->name : "";
}

// Why the voices cannot go into the list as it is; empty when they can.
std::string WhyNewBank(DriverId family) {
    if (ListCount(MainList) == 0) {
        return "The list is empty.";
    }
    const DriverId listFamily = FamilyOfMainList();
    return listFamily == family ? ""
                                : "The list holds voices for the " + NameOfFamily(listFamily) +
                                      ", and these are for the " + NameOfFamily(family) + ".";
}

// False when the list could not be kept for Undo, and the user rather keeps it.
bool KeepForUndo(QWidget *owner) {
    if (UndoPush(owner, MainList) ||
        AskYesNo(owner, "Undo will not be able to bring the list back as it is now.\n\nDo you wish "
                        "to go on all the same?") == ResultYes) {
        return true;
    }
    UndoTakeBack();
    return false;
}

// What every change of the list ends with.
void ShowChangedList() {
    MainListState.dirty = true;
    RefreshCommands();
    RefreshCopy();
    RepaintList();
    PlayEventSound(DefaultEventSound);
}

int RowCount() {
    return ListCount(MainList);
}

int SelectedRow() {
    return MainList.selection;
}

bool NewBank(QWidget *owner, std::span<const KeptVoice> voices, const std::string &source) {
    const RunningMark running;
    const DriverId family = voices.empty() ? NoDriverId : FamilyOfForm(voices.front().form);
    const SynthDriver *driver = DriverOfId(family);
    if (!driver || !AskToSaveOver(owner) || !KeepForUndo(owner)) {
        return false;
    }
    std::vector<VoiceObject> rows;
    const auto bankRows = static_cast<std::size_t>(driver->bankRows);
    for (const KeptVoice &voice : voices.first(std::min(voices.size(), bankRows))) {
        rows.push_back(VoiceObjectOf(voice.Voice()));
    }
    rows.resize(bankRows, VoiceObjectOf(InitialVoiceOf(family).Voice()));
    BeginListFrom(source, family);
    ListSetRedraw(MainList, false);
    ListFill(MainList, std::move(rows));
    SelectListFonts(MainList, family);
    ListSetRedraw(MainList, true);
    ListEnable(MainList, true);
    ListSelect(MainList, 0);
    ShowChangedList();
    RefreshStatus();
    return true;
}

int PutVoices(QWidget *owner, int row, std::span<const KeptVoice> voices,
              const std::string &source) {
    if (voices.empty()) {
        return 0;
    }
    const RunningMark running;
    const DriverId family = FamilyOfForm(voices.front().form);
    if (const std::string why = WhyNewBank(family); !why.empty()) {
        if (AskYesNo(owner, why + "\n\nDo you wish to make a new bank of them?") != ResultYes ||
            !NewBank(owner, voices, source)) {
            return -1;
        }
        return std::min(static_cast<int>(voices.size()), ListCount(MainList));
    }
    const int count = ListCount(MainList);
    if (row < 0 || row >= count) {
        ShowMessage(owner, "Please select the row of the main list where the voices are to begin.");
        return -1;
    }
    if (!KeepForUndo(owner)) {
        return -1;
    }
    int end = row;
    for (const KeptVoice &voice : voices) {
        if (end == count) {
            break;
        }
        ListSetVoice(MainList, end++, VoiceObjectOf(voice.Voice()));
    }
    ListSelect(MainList, std::min(end, count - 1));
    ShowChangedList();
    return end - row;
}

bool Audition(QWidget *owner, const KeptVoice &voice) {
    const RunningMark running;
    const DriverId family = FamilyOfForm(voice.form);
    constexpr MidiPorts none = {.in = NoMidiDevice, .out = NoMidiDevice};
    const MidiPorts ports =
        PortsToHear(family, family == CurrentDriverId ? CurrentMidiPorts() : none);
    if (family != CurrentDriverId && ports.out == NoMidiDevice) {
        ShowMessage(owner, "This is a voice for the " + NameOfFamily(family) +
                               ", which is not the selected synthesizer. To hear it, select that "
                               "one, or switch the built-in instruments on in the menu Extras.");
        return false;
    }
    return TheShellWindow.AuditionVoice &&
           TheShellWindow.AuditionVoice(owner, VoiceObjectOf(voice.Voice()), family, ports) != 0;
}

} // namespace

void UseMainList() {
    TheListAccess = {.Post = Post,
                     .RowCount = RowCount,
                     .SelectedRow = SelectedRow,
                     .PutVoices = PutVoices,
                     .NewBank = NewBank,
                     .Audition = Audition};
}

} // namespace tonewright
