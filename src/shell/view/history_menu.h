// The history at the end of the File menu.
#pragma once

class QMenu;

namespace tonewright {

// Gives the File menu the look of history entries (a picture beside each path, pinned ones in
// bold), which is used while RememberFileHistoryEnable is set. Call it once.
void PrepareHistoryMenu(QMenu *fileMenu);

// Makes the separator and the entries anew from HistoryEntries().
void RebuildHistoryMenu(QMenu *fileMenu);

} // namespace tonewright
