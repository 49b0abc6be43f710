// Prints the two reports: asks for the printer, and prints while a box says so.
#pragma once

#include "core/voice_list.h"
#include "database/record_list.h"

#include <string>

class QWidget;

namespace tonewright {

// Both ask for a printer or a file and for copies, and print at once; what the user does meanwhile
// is dropped, and then the owner is brought to the top. 1 in any case: also when the user cancels,
// or there is no page that could be printed. Both need a QApplication.

// The voices of the list, on one page for each copy; the title has the name of the document.
int PrintVoiceList(QWidget *owner, const VoiceList &list, const char *documentPath);

// The records of the list, in its order. `heading` stands on every page: see DatabaseHeading.
int PrintDatabase(QWidget *owner, const RecordList &list, const std::string &heading);

} // namespace tonewright
