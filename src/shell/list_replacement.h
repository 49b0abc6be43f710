// What changes beside the voices when a list from elsewhere takes the place of a document, and when
// Undo brings that back.
#pragma once

#include "core/voice_object.h"

#include <string>

namespace tonewright {

// Before voices of a family go into the list from elsewhere: the family is made current, the list
// is another one (MainListOrigin), and the document has the default name and no file. `source`:
// where the voices come from, in words, UTF-8; empty for nothing to say.
void BeginListFrom(const std::string &source, DriverId family);

// By the first voice there is; that of a list without one is the current one.
DriverId FamilyOfMainList();

// After a level of undo has been put into the list: when it was made before the last call of
// BeginListFrom, the document is again what it was then, and the family of the voices is current.
void BringDocumentBack();

} // namespace tonewright
