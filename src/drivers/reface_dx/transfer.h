// The conversation with a reface DX, in the messages of its published MIDI data format.
//
//   parameter change  F0 43 10 7F 1C 05 aH aM aL data F7
//   dump request      F0 43 20 7F 1C 05 aH aM aL F7
//   bulk dump         F0 43 00 7F 1C cH cL 05 aH aM aL data cs F7
//
// aH aM aL is the address, cH cL the number of bytes from the model byte 05 to the last data byte,
// cs the checksum over the same bytes. The device number is 0.
//
// The instrument has no dump of all its voices: each one is selected by a program change and asked
// for, and one that is sent lands in the edit buffer. So that its settings do not get in the way,
// every operation saves the system settings, changes a few, and puts them back at the end.
// Short messages go out on channel 1, whatever the user's channel is.
#pragma once

#include "core/voice_list.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/transport.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>

class QWidget;

namespace tonewright {

constexpr std::size_t RefaceSystemSize = 32;
constexpr std::size_t RefaceSentSize = 15; // of which so many from the start can be changed
using RefaceSystem = std::span<std::uint8_t, RefaceSystemSize>;
using RefaceSystemConst = std::span<const std::uint8_t, RefaceSystemSize>;

// A received message; what it does not fill is zero.
using RefaceMessage = std::array<std::uint8_t, SysexBufferSize>;

// The settings in a message that is their dump; nothing in any other. Start, maker, count and model
// are looked at, the checksum is not.
std::optional<RefaceSystemConst> RefaceSystemOf(const RefaceMessage &message);

// A block of a voice, in the message that brought it.
constexpr std::size_t RefaceCommonBlock = RefaceOperatorCount; // its number, behind the operators'
struct RefaceBlock {
    std::size_t number = 0;
    std::span<const std::uint8_t> data;
};
// Nothing in a message without one. Only its byte count and the operator's number are looked at; a
// number above 3 counts as 3.
std::optional<RefaceBlock> RefaceBlockOf(const RefaceMessage &message);
// Puts a block into its place in a voice; a voice without that place stays as it is.
void StoreRefaceBlock(VoiceObject &voice, const RefaceBlock &block);

// Asks for the system settings. 1 when the next message that arrives is their dump (its checksum is
// not tested), else 0, the destination then untouched.
int ReadSystemCommon(const MidiLink &link, RefaceSystem destination);
// Sends the first RefaceSentSize settings as parameter changes. Returns 1.
int WriteSystemCommon(const MidiLink &link, RefaceSystemConst system);

// Opens a link and reads the settings, with which every conversation begins. 0, the link closed,
// when a port does not open or (after the message "Invalid system common.") they cannot be read.
int OpenRefaceLink(QWidget *window, MidiLink &link, MidiPorts ports, RefaceSystem settings);

// Operations of the reface DX row; see core/synth_driver.h. All return 0 when the ports do not open
// or (after the message "Invalid system common.") the settings cannot be read, else 1.

// Fills the list with the 32 voices of the instrument. A voice that does not arrive in time stays
// as far as it came.
int RefaceDownloadBank(QWidget *window, VoiceList &list, MidiPorts ports);
// Sends the first voice of the list, in spite of its name, and leaves the list disabled.
int RefaceUploadBank(QWidget *window, VoiceList &list, MidiPorts ports);
// Sends a voice into the edit buffer. Bit 0 of `flags`: tells the user how to store it.
int RefaceUploadVoice(QWidget *window, VoiceList &list, const VoiceObject *voice, MidiPorts ports,
                      int index, std::uint8_t flags);

} // namespace tonewright
