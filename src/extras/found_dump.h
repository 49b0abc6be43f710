// What is found in a file: dumps, what is wrong with each, and voices.
#pragma once

#include "extras/dump_voice.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>

namespace tonewright {

enum class DumpKind : std::uint8_t {
    // With voices that the list can hold.
    Dx7Bank,             // 32-voice dump
    Dx7Voice,            // single-voice dump, of 155 bytes or, as ours, of 156
    Dx7Headerless,       // packed voices without a message around them
    Dx7HeaderlessVoices, // voices of 155 bytes without a message around them
    RefaceVoices,        // bulk dumps of the reface DX, one behind the other
    RefaceBankFile,
    RefaceVoiceFile, // ours
    Catalogue,       // ours, of either family
    // Named and skipped.
    Dx7Function,     // function data of TX7 and DX7, microtuning
    Dx7Supplement,   // what DX7II and TX802 add to their voices
    Dx7Performances, // of DX7II and TX802
    Dx7System,       // set-up of DX7II and TX802
    Dx7ParameterChanges,
    FourOperatorBank,
    FourOperatorVoice,
    FourOperatorOther,
    RefaceOther,  // settings, requests, parameter changes of the reface DX
    OtherMessage, // a system-exclusive message of some other kind
    Unknown,      // bytes that are nothing of all this
};

// What is wrong with a dump, a bit for each.
namespace DumpFault {
enum : std::uint32_t {
    Channel = 1 << 0,       // another channel than 1, which our own documents do not have
    Checksum = 1 << 1,      // wrong
    ChecksumBit7 = 1 << 2,  // right but for bit 7, which it must not have
    ByteCount = 1 << 3,     // not that of the data (10 00 instead of 20 00 and the like)
    NoEnd = 1 << 4,         // F7 is missing
    Cut = 1 << 5,           // the file, or another message, ends the data early
    HighBytes = 1 << 6,     // data bytes above 7F
    NoHeader = 1 << 7,      // no message around the data
    OutOfRange = 1 << 8,    // values that the instrument does not have
    MissingBlocks = 1 << 9, // of a reface DX voice: it is not among the voices
    InMidiFile = 1 << 10,   // not wrong: the bytes are in events of a MIDI file
    InHexText = 1 << 11,    // not wrong: the bytes are written as text
    TooLong = 1 << 12,      // a few bytes more than its data have
    RealTime = 1 << 13,     // real-time bytes within it, which are no part of its data
};
}

// True for a kind whose whole voices the list can hold.
bool HasVoices(DumpKind kind);

struct FoundDump {
    DumpKind kind = DumpKind::Unknown;
    std::uint64_t offset = 0;      // of its first byte in the file
    std::uint64_t length = 0;      // bytes of the file from there that belong to it
    DriverId family = NoDriverId;  // of the instrument; NoDriverId where we have no driver for it
    int channel = 0;               // 1 to 16; 0 where it has none
    std::uint64_t voices = 0;      // whole ones that the list can hold
    std::uint64_t otherVoices = 0; // whole ones of four operators, which it cannot
    std::uint32_t faults = 0;      // DumpFault
    int confidence = 100;    // per cent; below 100 only where ranges and names had to be judged
    std::string detail = {}; // what more is known, in words: "of a TX802", "manufacturer 41"

    bool operator==(const FoundDump &) const = default;
};

// A whole voice of the dump that is being read; `bytes` are valid during the call.
struct FoundVoice {
    DumpVoice voice;
    std::uint64_t place = 0;  // among all voices of the file that the list can hold, from 0
    std::uint64_t offset = 0; // of its first byte in the file; of messages the first one's
};

// What is called while a file is read: each voice, and behind its last one the dump. What is empty
// is not called. Either ends the reading with false.
struct DumpVisitor {
    std::function<bool(const FoundVoice &)> voice;
    std::function<bool(const FoundDump &)> dump;
    // Each piece of the file as it is read, in order, once (for sums over the whole file).
    std::function<void(std::span<const std::uint8_t>)> bytes;
    // Asked before each further piece of a file: false ends the reading, as what was found by then
    // stands.
    std::function<bool()> goesOn = {};
};

} // namespace tonewright
