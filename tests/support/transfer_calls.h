// Writes what a transfer asks of the desktop, and what it does to its list, among the calls of the
// MIDI table, so that a test sees all of it in one order:
//
//   "SetProgress(1, 32)"  "SetStatusText(text)"  "ShowBusyBox(title)"  "CloseBusyBox()"  "message"
//   "3 rows"  "voice"  "select 0"  "disable"  "enable"  "no redraw"  "redraw"  "height 48"
#pragma once

#include "core/voice_list.h"
#include "support/fake_midi.h"

namespace tonewright {

// From now on, until the desktop of the test gives TheDesktop back.
void RecordDesktopAmongCalls(FakeMidi &midi);
// From now on. "3 rows" is the count after rows came or went.
void RecordListAmongCalls(FakeMidi &midi, VoiceList &list);

} // namespace tonewright
