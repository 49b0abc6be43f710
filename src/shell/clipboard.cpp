// Copy and paste of one voice. What lies on the clipboard is checked like any other input.
#include "shell/clipboard.h"

#include "common/desktop.h"
#include "common/text.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "shell/command_state.h"
#include "shell/list_state.h"
#include "shell/shell_window.h"
#include "shell/undo.h"

#include <utility>

namespace tonewright {
namespace {

constexpr std::size_t NameLimit = 260; // bytes

std::optional<std::vector<std::uint8_t>> TakeClipboard() {
    return TheDesktop.TakeClipboard ? TheDesktop.TakeClipboard() : std::nullopt;
}

// The voice on the clipboard when it belongs to the current driver; a block whose sizes promise
// more than lies there is none.
std::optional<VoiceObject> TakeVoice() {
    auto bytes = TakeClipboard();
    if (!bytes) {
        return std::nullopt;
    }
    VoiceObject voice{.bytes = std::move(*bytes)};
    if (!PayloadOf(voice) || HeaderOf(voice)->driverId != CurrentDriverId) {
        return std::nullopt;
    }
    return voice;
}

} // namespace

int ClipboardCopy(QWidget *, const VoiceObject &voice) {
    const std::string name(CutText(VoiceObjectName(voice), NameLimit));
    if (TheDesktop.PutClipboard) {
        TheDesktop.PutClipboard(voice.bytes, Latin1ToUtf8(name));
    }
    return 1;
}

int ClipboardPaste(QWidget *, VoiceList &list, int row) {
    auto voice = TakeVoice();
    if (!voice) {
        return 0;
    }
    ListSetVoice(list, row, std::move(*voice));
    return 1;
}

std::string ClipboardVoiceName(QWidget *) {
    const auto voice = TakeVoice();
    return voice ? Latin1ToUtf8(VoiceObjectName(*voice)) : "";
}

bool ClipboardHoldsVoice() {
    return TheDesktop.ClipboardHasVoice && TheDesktop.ClipboardHasVoice();
}

void ClipboardChanged() {
    SetRule(CommandRule::VoiceOnClipboard, ClipboardHoldsVoice());
}

int RunCopy() {
    const int row = ListIndexForCommand();
    const VoiceObject *voice = ListVoice(MainList, row);
    if (!voice) {
        return 0;
    }
    const int result = ClipboardCopy(TheShellWindow.window, *voice);
    if (!result) {
        ShowMessage(TheShellWindow.window,
                    "There has been an error copying " + Latin1ToUtf8(VoiceObjectName(*voice)));
    }
    return result;
}

int RunPaste() {
    UndoPush(TheShellWindow.window, MainList);
    const int row = ListIndexForCommand();
    if (row == NoRow) {
        return 0;
    }
    if (!ClipboardPaste(TheShellWindow.window, MainList, row)) {
        ShowMessage(TheShellWindow.window, "Clipboard error");
        return 0;
    }
    RepaintList();
    MainListState.dirty = true;
    return 1;
}

} // namespace tonewright
