// The identity exchange that recognises a reface DX.
#include "drivers/reface_dx/find.h"

#include "drivers/find_by_name.h"
#include "drivers/reface_dx/voice_codec.h"
#include "midi/transport.h"

#include <array>

namespace tonewright {
namespace {

// Names that the system's MIDI layer gives the instrument, in the order of the passes.
constexpr const char *PortPatterns[] = {"reface DX", "USB Audio Device"};

constexpr std::array<std::uint8_t, 6> IdentityRequest = {0xF0, 0x7E, 0x00, 0x06, 0x01, 0xF7};
constexpr std::size_t IdentityReplySize = 15;
constexpr std::uint32_t FirmwareBase = 0x10000;

enum class Reply {
    None,    // no instrument, no answer, or an answer of another kind
    Stopped, // an answer that ends the search
};

// One exchange with the ports found. A reface DX that is recognised writes driver and firmware, and
// counts as no answer all the same.
Reply AskIdentity(const MidiLink &link, FoundSynth &found) {
    if (WriteSysex(link.output, IdentityRequest) != 0) {
        return Reply::None;
    }
    std::array<std::uint8_t, IdentityReplySize> reply = {};
    std::size_t count = 0;
    if (!SysexReceive(link.input, reply, &count)) {
        return Reply::None;
    }
    if (reply[5] == 0x43 && reply[6] == 0x00 && reply[7] == 0x41) {
        found.firmware = FirmwareBase + (std::uint32_t{reply[10]} << 8);
        if (reply[8] == 0x53 && reply[9] == 0x06) {
            found.driver = RefaceDriverId;
            return Reply::None;
        }
    }
    return reply[8] == 0x01 && reply[9] == 0x00 ? Reply::Stopped : Reply::None;
}

Reply RunPass(const char *pattern, FoundSynth &found) {
    MidiPorts ports;
    const bool both = FindPorts({pattern, pattern}, ports);
    if (ports.in != NoMidiDevice) {
        found.ports.in = ports.in;
    }
    if (ports.out != NoMidiDevice) {
        found.ports.out = ports.out;
    }
    if (!both) {
        return Reply::None;
    }
    MidiLink link;
    if (TheMidi.Pm_OpenInput(&link.input, ports.in, MidiInputBufferSize) != 0) {
        return Reply::None;
    }
    Reply reply = Reply::None;
    if (TheMidi.Pm_OpenOutput(&link.output, ports.out, MidiOutputBufferSize, MidiLatency) == 0) {
        reply = AskIdentity(link, found);
    } else {
        link.output = NoMidiStream;
    }
    if (reply == Reply::Stopped) {
        TheMidi.Pt_Stop(); // the clock always stops before the streams close
    }
    for (const MidiStream stream : {link.output, link.input}) {
        if (stream != NoMidiStream) {
            TheMidi.Pm_Close(stream);
        }
    }
    return reply;
}

} // namespace

int RefaceFindSynth(QWidget *, FoundSynth &found, const PortNames &names, bool autodetect) {
    if (!autodetect) {
        return FindSynthByName(RefaceDriverId, found, names);
    }
    TheMidi.Pt_Start(MidiClockResolution);
    for (const char *pattern : PortPatterns) {
        if (RunPass(pattern, found) == Reply::Stopped) {
            return 1;
        }
    }
    TheMidi.Pt_Stop();
    return 0;
}

} // namespace tonewright
