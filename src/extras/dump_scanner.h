// Walks over bytes and finds the dumps in them, messages and what stands without one.
#pragma once

#include "extras/dump_output.h"
#include "extras/dump_stream.h"

namespace tonewright {

// What the bytes are.
enum class ScannedBytes {
    Plain,  // of a file
    Digits, // written as text: nothing but messages is looked for
    Events, // of a MIDI file: the same, and what is no dump is not told
};

// Everything from the present place on.
void ScanDumps(DumpStream &stream, ScannedBytes what, DumpOutput &output);

} // namespace tonewright
