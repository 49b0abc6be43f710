// Banks out of any dump: the bytes of a valid document for each bank that was found.
//
// What is kept to the byte: of a 32-voice dump its 4096 data bytes and its checksum, byte 2
// becoming 0 for another channel; headerless voices get header, checksum and end byte; a single
// voice of 155 bytes becomes one of 156 with all operators on and a new checksum; voices of 155
// bytes are packed where they fill a bank; of MIDI-file events the length bytes are dropped; of a
// reface DX's dumps the 38 and four times 28 bytes behind the addresses are taken.
#pragma once

#include "extras/dump_reader.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

// Whether it is known what it is, and nothing is wrong with it.
bool IsSoundDump(const FoundDump &dump);

// What is to be remarked of it, in words: its faults and, where ranges and names had to be judged,
// how sure that is: "no header, 99% sure". Empty for nothing.
std::string RemarksOfDump(const FoundDump &dump);

// A document that a dump gives: a bank, or a single voice.
struct RescuedDocument {
    // Or the first of those that it was made of. Of one with tens of thousands of voices it says
    // before its end only what is known by then.
    FoundDump dump;
    DriverId family = NoDriverId;
    const char *extension = "";   // without the dot
    std::uint64_t firstPlace = 0; // of its first voice in the file
    int voices = 0;               // whole ones; initial voices fill up the rest of a bank
    int highByteVoices = 0;       // of these, with bytes above 7F: to be asked about
    std::vector<std::uint8_t> bytes;
};

// Called for each document, which may come behind dumps that follow it; false ends the run.
using RescueVisitor = std::function<bool(const RescuedDocument &)>;
// The file is read once, and what was read up to a failure is rescued; memory does not grow with
// it. `left`, which may be empty, is called for each dump without a voice that the list can hold.
DumpRead RescueDocuments(const char *path, const RescueVisitor &visit,
                         const std::function<void(const FoundDump &)> &left = {});

} // namespace tonewright
