// A MIDI table that shows what goes through another one.
#pragma once

#include "midi/midi_api.h"

#include <functional>
#include <string>

namespace tonewright {

// Passes every call on to `inner` and hands each MIDI message to `out` as a line without its end:
// the time in milliseconds (of a write, when it begins), "out" or "in", and the bytes in
// hexadecimal with single blanks, the three separated by tabs; "failed" as a fourth field marks a
// write that did not succeed.
//
//     17	out	F0 7E 00 06 01 F7
//     21	in	90 3C 40
//
// A message that comes in is shown when it is complete: a note or clock tick in the middle of a
// system-exclusive message stands in front of it. One that was never finished is shown as far as it
// came, when the next one begins or its stream is closed.
MidiApi MakeTracingApi(MidiApi inner, std::function<void(const std::string &line)> out);

} // namespace tonewright
