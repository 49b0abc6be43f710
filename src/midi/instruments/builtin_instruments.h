// The built-in instruments: a DX7, a Volca FM and a reface DX behind the MIDI table, for everyone
// without hardware and for the tests. They know only bytes, and share no code with the drivers.
#pragma once

#include "midi/instruments/faults.h"
#include "midi/midi_api.h"
#include "synth/prepared_voice.h"
#include "synth/synth_event.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace tonewright {

enum class BuiltinInstrument { Dx7, VolcaFm, Reface };
constexpr int BuiltinInstrumentCount = 3;

// Learns what happens to the instruments, on the thread that writes to them; an empty function
// learns nothing.
struct InstrumentListener {
    // An output has been opened, or closed.
    std::function<void(BuiltinInstrument instrument)> outputOpened;
    std::function<void(BuiltinInstrument instrument)> outputClosed;
    // What an instrument does because of a message that it has taken, and NewVoice when the edit
    // buffers are those of the factory or of a file: with a new or changed voice, PreparedVoiceOf
    // has it. Whoever writes into EditBufferOf tells nothing.
    std::function<void(BuiltinInstrument instrument, const SynthEvent &event)> heard;
};

// Simulated clock: answers are there at once, Pm_Poll answers for the present millisecond and then
// moves Pt_Time on by one, and nothing else moves it. Wall clock: bytes take the time of a MIDI
// line in both directions, a write returns when its last byte is out, and an answer begins 16 ms
// after the request; so all voices of a reface DX take about three seconds, and a bank for a DX7
// one.
struct InstrumentsOptions {
    bool simulatedClock = true;
    InstrumentListener listener = {};
};

// The MIDI table of the three instruments: for each one an input (even index) and an output (odd
// index) of the same name, in the order of BuiltinInstrument. The clock and the listener of the
// table that was made last hold for all of them; a listener that begins while an output is open
// does not learn of it. An input gets what is answered while it is open; what does not fit into its
// buffer is lost. A device is open once at a time.
MidiApi MakeBuiltinInstruments(const InstrumentsOptions &options);

// State of the instruments behind that table; program-wide, there is one of each.
InstrumentFaults &FaultsOf(BuiltinInstrument instrument);
// Back to the state of the factory: memory, edit buffer, settings, faults and time (but not the
// kind of clock); open streams are gone.
void ResetBuiltinInstruments();
// Memory as a real one holds it. DX7 and Volca FM: 32 packed voices, 4096 bytes, and the edit
// buffer of 155 bytes. reface DX: 32 voices of 38 + 4 * 28 bytes, the edit buffer of the same form,
// and 32 bytes of system settings (none for the others).
std::vector<std::uint8_t> &MemoryOf(BuiltinInstrument instrument);
std::vector<std::uint8_t> &EditBufferOf(BuiltinInstrument instrument);
std::vector<std::uint8_t> &SystemSettingsOf(BuiltinInstrument instrument); // reface DX
// The voice of the edit buffer as it sounds: without the operators that are switched off, and with
// the tune and the transpose of the settings.
PreparedVoice PreparedVoiceOf(BuiltinInstrument instrument);
int SelectedProgramOf(BuiltinInstrument instrument); // from 0
// DX7 and Volca FM: the channel, 1 to 16 (1 from the factory), and whether Omni is on. A reface DX
// has its receive channel in its settings.
int &ChannelOf(BuiltinInstrument instrument);
bool OmniOf(BuiltinInstrument instrument);
// Notes that sound now, as key numbers in rising order.
std::vector<int> SoundingNotesOf(BuiltinInstrument instrument);

// Streams that are open, and whether the clock runs: both 0 and false after every operation.
int OpenBuiltinStreams();
bool BuiltinClockRuns();

// Keeps the memory of all instruments in a file between runs of the command-line program. False
// when the file cannot be read as such (then memory, edit buffers and settings are those of the
// factory) or written (the former file then stays).
bool LoadInstrumentMemory(const char *path);
bool SaveInstrumentMemory(const char *path);

} // namespace tonewright
