// One system-exclusive message of an FM instrument, judged by itself.
//
//   F0 43 0n ff hh ll | data | checksum | F7          a dump of format ff, channel n; hh ll data
//   bytes F0 43 0n 7E hh ll | "LM  8973PE" and the like, data | checksum | F7 F0 43 0n 7F 1C hh ll
//   | 05 address data | checksum | F7      reface DX F0 43 1n ... F7  a parameter change    F0 43
//   2n ... F7  a request
#pragma once

#include "extras/found_dump.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

// The parts of which a reface DX voice consists in messages, or none of them.
enum class RefacePart { None, Header, Common, Operator, Footer };

struct DumpMessage {
    DumpKind kind = DumpKind::OtherMessage;
    std::size_t length = 0; // bytes, from F0 on
    bool goesOn = false;    // its end lies behind what was looked at
    DriverId family = NoDriverId;
    int channel = 0;
    std::uint32_t faults = 0;
    VoiceForm form = VoiceForm::Dx7Packed; // of its voices
    std::size_t voices = 0;                // whole ones that the list can hold
    std::size_t otherVoices = 0;           // whole ones of four operators that it cannot
    std::size_t data = 0;                  // where they begin, or what a reface DX's part holds
    RefacePart part = RefacePart::None;
    bool isWholePart = false;
    std::size_t operatorNumber = 0; // from 0
    std::string detail;
    // The message without the real-time bytes that stand in it; empty where none do.
    std::vector<std::uint8_t> withoutRealTime = {};
};

// Bytes that may stand anywhere in a message and are no part of it.
constexpr bool IsRealTime(std::uint8_t byte) {
    return byte >= 0xF8 && byte <= 0xFE;
}

// Where messages may begin.
enum class MessagePlace {
    Clean, // at the start, or behind another message
    Amid,  // amid bytes that are nothing: what is short there and tells little is nothing either
};

// The message that begins with the first byte, which is F0; nothing where none does. `isAll`: the
// file ends behind these bytes, of which there are at least DumpLookAhead otherwise.
std::optional<DumpMessage> MessageAt(std::span<const std::uint8_t> bytes, bool isAll,
                                     MessagePlace place);

// How many bytes below 80 come first.
std::size_t CountDataBytes(std::span<const std::uint8_t> bytes);

} // namespace tonewright
