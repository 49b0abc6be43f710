// How the program talks to an instrument: one link for the length of one operation, opened and
// closed in a fixed order, and one rule for what a received message is.
#pragma once

#include "core/midi_ports.h"
#include "midi/midi_api.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace tonewright {

constexpr std::size_t SysexBufferSize = 8192; // for a reply of any length

struct MidiLink {
    MidiStream input = NoMidiStream;
    MidiStream output = NoMidiStream;
};

// Starts the clock, then opens the input (when `withInput`) and the output, by device index. 1, or
// 0 when one of them does not open: then the clock is stopped and what was opened is closed again.
int MidiLinkOpen(MidiLink &link, bool withInput, int inputDevice, int outputDevice);
// Stops the clock, then closes the output and the input, as far as they are open.
void MidiLinkClose(MidiLink &link);

enum class LinkFault { None, NoOutput, NoInput, OutputNotOpened, InputNotOpened };
// Opens a link with both ports as an operation does, and closes it again: what kept an operation
// from beginning, as far as it is still there.
LinkFault TryMidiLink(MidiPorts ports);

// Receives one message, events of four bytes each: 1 when a byte F7 has come or `buffer` is full, 0
// when SysexWait milliseconds have passed since the last event, or the transfer has been cancelled.
// `*count` becomes the number of bytes stored, the F7 included; the rest of `buffer` is left as it
// was. Whatever arrives counts, notes and real-time bytes too; nothing is judged. What follows an
// F7 in its event is dropped.
int SysexReceive(MidiStream input, std::span<std::uint8_t> buffer, std::size_t *count);

// The place of the first occurrence of `pattern` in `name` without regard to case; nullptr for
// none. An empty pattern is found in every name.
const char *NameContains(const char *name, const char *pattern);

// Looks for an input and an output by parts of their names; a device that matches as an input is
// not taken as an output, and the last match wins. What is found is written into `ports`, the rest
// of which stays as it was. True when both were found. The clock is the caller's.
bool FindPorts(const PortNames &names, MidiPorts &ports);

// One short message of up to three bytes, stamped with the present time. `status` tells how many;
// pass 0 for a data byte that it has no use for. 0 when the message was taken, else an error code.
int WriteShort(MidiStream output, std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
// A whole system-exclusive message, F0 to F7, at once. A message without F7 at its end, or with one
// before it, is cut behind the first F7; one without any, or that does not begin with F0, is
// refused. 0 when the message was taken, else an error code.
int WriteSysex(MidiStream output, std::span<const std::uint8_t> message);

} // namespace tonewright
