// Reads the dumps of FM instruments out of any file, whatever stands around them, and says what
// each is and what is wrong with it. One pass over the bytes, in time that grows with their number
// alone and in memory that does not: files are read in pieces of a megabyte at most.
//
// Byte layouts follow the published MIDI data formats of the instruments.
#pragma once

#include "extras/found_dump.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

enum class DumpRead {
    Done,
    Ended,  // by the visitor
    Failed, // errno tells why: no such file, no regular file, EIO
};
// `path`: UTF-8.
DumpRead ReadDumps(const char *path, const DumpVisitor &visitor);
// The same of bytes in memory.
DumpRead ReadDumps(std::span<const std::uint8_t> file, const DumpVisitor &visitor);

// A voice at its place in a file, from 0; nothing when there is none, errno 0, or the file cannot
// be read.
std::optional<KeptVoice> ReadVoiceAt(const char *path, std::uint64_t place);

// In words, in English: "DX7 bank", with the number of voices; and what is wrong, each fault a
// phrase ("wrong checksum"), joined by commas; empty for none.
std::string TextOfDump(const FoundDump &dump);
std::string TextOfFaults(const FoundDump &dump);

} // namespace tonewright
