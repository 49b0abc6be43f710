// The channel in use, and the way to the first program.
#include "midi/short_messages.h"

#include "common/settings.h"
#include "midi/transport.h"

namespace tonewright {

namespace {

constexpr std::uint8_t LastProgram = 31; // in every family

} // namespace

std::uint32_t ChannelOfThisRun = 0;

std::uint8_t OnCurrentChannel(std::uint8_t status) {
    const std::uint32_t channel = ChannelOfThisRun != 0 ? ChannelOfThisRun : CurrentMidiChannel;
    return static_cast<std::uint8_t>(status | ((channel - 1) & 15));
}

void SelectLastThenFirstProgram(MidiStream output) {
    const std::uint8_t status = OnCurrentChannel(ProgramChange);
    WriteShort(output, status, LastProgram, 0);
    WriteShort(output, status, 0, 0);
}

} // namespace tonewright
