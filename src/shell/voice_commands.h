// The commands that act on voices of the list and on the instrument, with their undo levels,
// messages and sounds.
#pragma once

#include <string>
#include <vector>

namespace tonewright {

int RunUndo();
int RunDownload();
int RunUpload();
int RunFind();
int RunEdit();
int RunConfigure();
int RunMidiDevices();
int RunSelectSynth();
int RunUploadVoice();
int RunAudition();
int RunAddToDatabase();
int RunInsertFromDatabase();
int RunMoveUp();
int RunMoveDown();
int RunExport();
int RunImport();

// Single-voice files dropped on the list fill rows downward from the selection. Paths are UTF-8.
void DropFiles(const std::vector<std::string> &paths);

} // namespace tonewright
