// One voice at a time on the system's clipboard: the whole block under the program's own type, its
// name as plain text.
#pragma once

#include "core/voice_list.h"

#include <string>

class QWidget;

namespace tonewright {

// Puts a copy of the block and its name (UTF-8) on the clipboard. Returns 1 always: a clipboard that
// another program holds is not asked about.
int ClipboardCopy(QWidget *window, const VoiceObject &voice);

// Replaces the voice of a row by the one on the clipboard. 0, and the row untouched, when the
// clipboard holds no voice block of the current driver, or one whose sizes lie.
int ClipboardPaste(QWidget *window, VoiceList &list, int row);

// The name (UTF-8) of a voice of the current driver on the clipboard; else empty.
std::string ClipboardVoiceName(QWidget *window);

// True when something lies on the clipboard under the program's own type, whatever its driver.
bool ClipboardHoldsVoice();

// Told when the clipboard has changed, and twice by start-up: Paste follows.
void ClipboardChanged();

// Commands 203 and 204.
int RunCopy();
int RunPaste();

} // namespace tonewright
