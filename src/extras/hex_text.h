// Dumps that are written as text, two hexadecimal digits a byte: "F0 43 00 09 20 00", with blanks,
// commas, ends of lines and brackets between the bytes or nothing, and with 0x, $ or a following h.
// Lines as programs print them for people are taken too, with the place of their first byte in
// front and the letters of the bytes behind; "*" stands for lines that are as the one before:
//
//   00000010: f043 0009 2000 5f1d  .C.. ._.
//   00000010  f0 43 00 09 20 00 5f 1d  |.C.. ._.|
//   0000020 f0 43 00 09 20 00 5f 1d            the place in eights
//   1A2B:0010  F0 43 00 09-20 00 5F 1D   .C.. ._.
#pragma once

#include "extras/dump_stream.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>

namespace tonewright {

// Whether bytes are text, as far as a dump in hexadecimal may be in it.
bool IsText(std::span<const std::uint8_t> bytes);
// Where the first message that is written in a text begins, in front of `limit`; of what follows
// some characters more are looked at. Nothing where none does.
struct HexMessage {
    std::size_t front = 0;  // what stands in front of the digits and says nothing begins here
    std::size_t digits = 0; // the first of them
};
std::optional<HexMessage> FindHexMessage(std::span<const std::uint8_t> text, std::size_t limit);

// Moves a text on to the digits of a message, calls `read` with a stream of the bytes from there
// on, and leaves what follows their digits.
void ReadHexText(DumpStream &text, const HexMessage &message,
                 const std::function<void(DumpStream &)> &read);

} // namespace tonewright
