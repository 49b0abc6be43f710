// Voices of a list into the catalogue of the current family.
#pragma once

#include "core/voice_list.h"

class QWidget;

namespace tonewright {

// Adds the voice in a row, under its own name, with the name of the current document as its source.
// 1, also for one that is there already when the settings want no duplicates. 0, the reason in
// errno, when it is not added: DatabaseAddVoice tells what becomes of the catalogue. A row that
// holds no whole voice of the current family (EINVAL), which might cost the catalogue, is not even
// tried, nor is any while there is no current family.
int AddRowToDatabase(QWidget *window, const VoiceList &list, int row);

} // namespace tonewright
