// Standard MIDI Files, as far as they hold system-exclusive messages.
//
//   "MThd", length, format, tracks, division; then for each track
//   "MTrk", length, events: delta time | status, data          status left out: the one before
//                                      | F0, length, what follows F0 in a message or its start
//                                      | F7, length, the next part of it
//                                      | FF, type, length, text and the like
//
// Chunk lengths have 32 bits, the high byte first; delta times and lengths of events seven bits a
// byte, the last byte being below 80.
#pragma once

#include "extras/dump_output.h"
#include "extras/dump_stream.h"

namespace tonewright {

// At the start of a file: finds the dumps in the events of a MIDI file if it is one, also in a RIFF
// file, behind a few bytes of something else, or without its first chunk, and leaves what is behind
// its last track. Where a track's events are broken, the next message is looked for behind them. A
// file without a dump is told as bytes that are none.
void ReadMidiFile(DumpStream &stream, DumpOutput &output);

} // namespace tonewright
