// Shows the archive, and takes voices that were dropped.
#include "shell/archive_flow.h"

#include "common/desktop.h"
#include "extras/archive_window.h"
#include "extras/list_access.h"
#include "extras/voice_parcel.h"
#include "shell/shell_window.h"

namespace tonewright {

int RunArchive() {
    if (TheShellWindow.ShowArchive) {
        TheShellWindow.ShowArchive();
    }
    return 1;
}

void DropArchiveVoices(int row, const std::vector<std::uint8_t> &parcel) {
    const auto voices = UnpackVoices(parcel);
    if (!voices || !TheListAccess.PutVoices) {
        return;
    }
    // Of one family, as the archive drags them; another program may do otherwise.
    std::vector<KeptVoice> put;
    for (const KeptVoice &voice : *voices) {
        if (FamilyOfForm(voice.form) == FamilyOfForm(voices->front().form)) {
            put.push_back(voice);
        }
    }
    if (!MayTakeHighBytes(TheShellWindow.window, put)) {
        return;
    }
    const int count = TheListAccess.PutVoices(TheShellWindow.window, row, put, ArchiveSource);
    if (count >= 0 && static_cast<std::size_t>(count) < put.size()) {
        ShowMessage(TheShellWindow.window,
                    ArchivePutText(static_cast<std::size_t>(count), put.size()));
    }
}

} // namespace tonewright
