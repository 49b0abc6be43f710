// Lists that the extras put in the place of a document: where their voices come from, and what the
// document was like, for the time when Undo brings its voices back.
#pragma once

#include "core/voice_object.h"

#include <string>

namespace tonewright {

// Before voices of a family go into the list from elsewhere: the family is made current, the list
// is another one (MainListOrigin), and the document has the default name and no file. `source`:
// where the voices come from, in words, UTF-8; empty for nothing to say.
void BeginListFrom(const std::string &source, DriverId family);

// Where the voices of the list come from; empty when they are those of the document.
std::string SourceOfList();

// By the first voice there is; that of a list without one is the current one.
DriverId FamilyOfMainList();

// After a level of undo has been put into the list: when it was made before the last call of
// BeginListFrom, the document is again what it was then, and the family of the voices is current.
void BringDocumentBack();

// There is nothing to bring back any more.
void ForgetListSources();

} // namespace tonewright
