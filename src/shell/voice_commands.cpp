// What the commands do to the voices of the list.
#include "shell/voice_commands.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "database/add_voice.h"
#include "database/database_window.h"
#include "midi/midi_api.h"
#include "shell/careful.h"
#include "shell/command_state.h"
#include "shell/documents.h"
#include "shell/list_origin.h"
#include "shell/list_replacement.h"
#include "shell/list_state.h"
#include "shell/midi_devices.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <cerrno>
#include <utility>

namespace tonewright {
namespace {

QWidget *Window() {
    return TheShellWindow.window;
}

// The name of the voice in a row, for a message.
std::string NameOfRow(int row) {
    const VoiceObject *voice = ListVoice(MainList, row);
    return Latin1ToUtf8(VoiceObjectName(voice ? *voice : VoiceObject{}));
}

// Takes the voice of `row` out, deletes the row and puts the voice into a new row at `target`. The
// selection goes along when it was on the voice.
int MoveVoice(int row, int target) {
    const bool wasSelected = MainList.selection == row;
    VoiceObject voice = ListTakeVoice(MainList, row);
    ListDelete(MainList, row);
    MainListState.dirty = true;
    if (ListInsert(MainList, target) == NoRow) {
        ShowMessage(Window(), LoadProgramString(6));
        return 0;
    }
    ListSetVoice(MainList, target, std::move(voice));
    if (wasSelected) {
        ListSelect(MainList, target);
    }
    RepaintList();
    return 1;
}

} // namespace

int RunUndo() {
    const int result = UndoPop(Window(), MainList);
    if (result) {
        BringDocumentBack();
        RepaintList();
        MainListChanged(0);
        RefreshCopy();
    }
    return result;
}

int RunDownload() {
    if (CarefulRefusesToDownload(Window()) || !AskToSave()) {
        return 0;
    }
    UndoPush(Window(), MainList);
    const int result = DownloadCurrent(Window(), MainList);
    RefreshCopy(); // the first voice is selected now
    if (!result) {
        CarefulTakeBackDownload(Window());
        return 0;
    }
    BeginListOrigin();
    MainListState.dirty = true;
    if (!CarefulMissesVoices(Window())) {
        PlayEventSound(DefaultEventSound);
    }
    return result;
}

int RunUpload() {
    if (CarefulRefusesToUpload(Window(), NoRow) || !CarefulMayReplaceMemory(Window())) {
        return 0;
    }
    const int result = UploadCurrent(Window(), MainList);
    if (result) {
        PlayEventSound(DefaultEventSound);
    } else if (const std::string failure = CarefulUploadFailure(""); !failure.empty()) {
        ShowMessage(Window(), failure);
    }
    return result;
}

int RunFind() {
    TheMidi.RescanDevices();
    const DriverId former = CurrentDriverId;
    const int result = FindCurrentSynth(Window());
    AutoConfigureCurrent(Window());
    CarefulKeepInstrument(Window(), former);
    RefreshStatus();
    return result;
}

int RunConfigure() {
    return CarefulRefusesToConfigure(Window()) ? 0 : ConfigureCurrent(Window());
}

int RunMidiDevices() {
    RescanDevicesKeepingPorts();
    if (TheShellWindow.ShowMidiDevicesBox) {
        TheShellWindow.ShowMidiDevicesBox();
    }
    return 1;
}

int RunSelectSynth() {
    if (!AskToSave()) {
        return 0;
    }
    RescanDevicesKeepingPorts();
    if (!TheShellWindow.ShowSelectSynthBox || !TheShellWindow.ShowSelectSynthBox()) {
        return 0;
    }
    ListReset(MainList);
    BeginListOrigin();
    FindCurrentSynth(Window());
    RefreshCopy();
    RefreshStatus();
    return 1;
}

int RunEdit() {
    UndoPush(Window(), MainList);
    const int row = ListIndexForCommand();
    const VoiceObject *voice = ListVoice(MainList, row);
    if (!voice) {
        return 0;
    }
    VoiceObject edited = *voice;
    if (!EditOneVoice(Window(), edited, row)) {
        return 0;
    }
    ListSetVoice(MainList, row, std::move(edited));
    RepaintList();
    MainListState.dirty = true;
    return 1;
}

int RunUploadVoice() {
    const int row = ListIndexForCommand();
    if (row == NoRow || CarefulRefusesToUpload(Window(), row)) {
        return 0;
    }
    const int result = UploadOneVoice(Window(), MainList, ListVoice(MainList, row), CurrentDriverId,
                                      CurrentMidiPorts(), row, 1);
    if (result) {
        PlayEventSound(DefaultEventSound);
    } else {
        ShowMessage(Window(),
                    CarefulUploadFailure("There has been an error uploading " + NameOfRow(row)));
    }
    return result;
}

int RunAudition() {
    const int row = ListIndexForCommand();
    return row != NoRow && TheShellWindow.ShowAuditionBox ? TheShellWindow.ShowAuditionBox(row) : 0;
}

int RunAddToDatabase() {
    const int clicked = ListIndexForCommand();
    const bool addsAll = ShiftKeyDown();
    if (clicked == NoRow && !addsAll) {
        return 0;
    }
    const int first = addsAll ? 0 : clicked;
    const int last = addsAll ? ListCount(MainList) - 1 : clicked;
    std::vector<FailedAdd> failed;
    for (int row = first; row <= last; ++row) {
        if (CarefulRefusesToAdd(row) || !AddRowToDatabase(Window(), MainList, row)) {
            failed.push_back({row, errno});
        }
    }
    if (failed.empty()) {
        PlayEventSound(DefaultEventSound);
        return 1;
    }
    ShowMessage(Window(), CarefulAddFailure(addsAll ? "One or more voices could not be added to "
                                                      "the current database."
                                                    : "This voice could not be added to the "
                                                      "current database.",
                                            failed, addsAll));
    return 0;
}

int RunInsertFromDatabase() {
    UndoPush(Window(), MainList);
    const int row = std::exchange(MainListState.clickedIndex, NoRow);
    const int driver = DriverIndexOfId(CurrentDriverId);
    if (driver < 0) {
        return 0; // there is no family whose database could be shown
    }
    const int result = RunDatabaseWindow(Window(), MainList, row, driver);
    if (result) {
        MainListState.dirty = true;
    }
    return result;
}

int RunMoveUp() {
    UndoPush(Window(), MainList);
    const int row = std::exchange(MainListState.clickedIndex, -1);
    return row > 0 && row < ListCount(MainList) ? MoveVoice(row, row - 1) : 0;
}

int RunMoveDown() {
    UndoPush(Window(), MainList);
    const int row = std::exchange(MainListState.clickedIndex, -1);
    return row >= 0 && row < ListCount(MainList) ? MoveVoice(row, row + 1) : 0;
}

int RunExport() {
    const int row = ListIndexForCommand();
    if (row == NoRow || CarefulRefusesToExport(Window(), row)) {
        return 0;
    }
    std::string path;
    errno = 0;
    const int result = ExportOneVoice(Window(), MainList, row, &path);
    if (!result) {
        const int reason = errno;
        ShowMessage(Window(),
                    CarefulWriteFailure("There has been an error exporting " + NameOfRow(row), path,
                                        reason));
    }
    PlayEventSound(DefaultEventSound);
    return result;
}

int RunImport() {
    UndoPush(Window(), MainList);
    const int row = ListIndexForCommand();
    if (row == NoRow) {
        return 0;
    }
    std::string path;
    if (!ImportOneVoice(Window(), MainList, row, nullptr, nullptr, &path)) {
        ShowMessage(Window(), CarefulImportFailure(
                                  "There has been an error importing " + NameOfRow(row), path));
        return 0;
    }
    if (path.empty() && !CarefulMarksCancelledImport()) {
        UndoTakeBack();
        return 1;
    }
    // A cancelled dialog is a success too, and marks the document all the same.
    RepaintList();
    PlayEventSound(DefaultEventSound);
    MainListState.dirty = true;
    return 1;
}

void DropFiles(const std::vector<std::string> &paths) {
    if (TheShellWindow.Raise) {
        TheShellWindow.Raise();
    }
    if (paths.empty()) {
        return;
    }
    UndoPush(Window(), MainList);
    const char *extension = VoiceExtension(CurrentDriverId);
    const int count = ListCount(MainList);
    int row = MainList.selection;
    if (row != NoRow) {
        for (const std::string &path : paths) {
            if (!EqualNoCase(ExtensionOfPath(path), extension)) {
                continue;
            }
            if (!ImportOneVoice(Window(), MainList, row, path.c_str(), nullptr)) {
                ShowMessage(Window(), CarefulImportFailure("Import error", path));
                break;
            }
            ++row;
            MainListState.dirty = true;
        }
        if (row >= count) {
            return; // past the end: the list is repainted by later events only
        }
    }
    RefreshCommands();
    RepaintList();
    PlayEventSound(DefaultEventSound);
}

} // namespace tonewright
