// The end of a drag inside the voice list.
#include "shell/reorder.h"

#include "core/current.h"
#include "shell/command_queue.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <utility>

namespace tonewright {

void DropVoiceAt(int pressedRow, int targetRow) {
    const int count = ListCount(MainList);
    if (pressedRow < 0 || pressedRow >= count || targetRow < 0 || targetRow >= count ||
        pressedRow == targetRow) {
        return;
    }
    const RunningMark running;
    UndoPush(TheShellWindow.window, MainList);
    VoiceObject voice = ListTakeVoice(MainList, pressedRow);
    ListInsert(MainList, targetRow);
    ListSetVoice(MainList, targetRow, std::move(voice));
    ListDelete(MainList, targetRow < pressedRow ? pressedRow + 1 : pressedRow);
    ListSelect(MainList, targetRow);
    MainListChanged(0);
    RepaintList();
}

} // namespace tonewright
