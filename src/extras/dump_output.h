// What is found on the way to whom it is told: voices one by one, and dumps, of which those that
// belong together become one.
#pragma once

#include "extras/found_dump.h"

#include <cstdint>
#include <optional>

namespace tonewright {

struct DumpOutput {
    const DumpVisitor &visitor;
    std::uint64_t place = 0;            // of the next voice
    bool ended = false;                 // by the visitor
    std::uint32_t faults = 0;           // of every dump: in what the bytes are read
    std::uint64_t dumps = 0;            // found so far
    std::optional<FoundDump> last = {}; // not told yet, since the next one may belong to it
    std::uint64_t messages = 0;         // of which the last one consists
};

// Goes before the voices of a dump of that kind: what cannot be one with it is told.
void BeginDump(DumpOutput &output, DumpKind kind);
// The next voice, and what it is a part of.
void PutVoice(DumpOutput &output, const DumpVoice &voice, std::uint64_t offset);
void PutDump(DumpOutput &output, FoundDump dump);
// Tells the last dump.
void EndDumps(DumpOutput &output);

} // namespace tonewright
