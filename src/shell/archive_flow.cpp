// Shows the archive, and takes voices that were dropped.
#include "shell/archive_flow.h"

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
    TheListAccess.PutVoices(TheShellWindow.window, row, put);
}

} // namespace tonewright
