// The instrument that a command talks to: which one it is, on which ports it is found, and the MIDI
// table for as long as the command lasts.
#pragma once

#include "cli/command_line.h"
#include "core/synth_driver.h"
#include "midi/midi_start.h"

#include <functional>
#include <optional>
#include <string>

namespace tonewright {

// The options that the commands for instruments take.
constexpr unsigned MidiOptions = OptionBit(CliOption::Synth) | OptionBit(CliOption::In) |
                                 OptionBit(CliOption::Out) | OptionBit(CliOption::Channel) |
                                 OptionBit(CliOption::Trace) | OptionBit(CliOption::Memory);

// How the ports are chosen, for the help.
std::string MidiHelp();

// Reads the user's settings of ports, channel and waiting; --in, --out and --channel count in their
// stead for this call. ExitDone, or ExitWrongCall after telling.
int ReadMidiSettings(const CliCall &call);

// The row that --synth names; `preset` without the option. Nothing after telling that it names
// none, or more than one.
std::optional<const SynthDriver *> ReadSynth(const CliCall &call, const SynthDriver *preset);
// The row that the user's settings choose, or nullptr.
const SynthDriver *SynthOfSettings();

// Runs `work` with the program's MIDI table, under --trace if that was asked for, and with what the
// built-in instruments hold in the file of --memory. The exit status, of `work` or of a failure
// that was told. A request to end the program is kept until the table is closed.
int WithMidi(const CliCall &call, const std::function<int()> &work,
             InstrumentsAre instruments = InstrumentsAre::Silent);
// The same once the instrument has been found, its ports then being MidiInPort and MidiOutPort.
// What the built-in instruments hold afterwards goes into the file of --memory.
int WithInstrument(const CliCall &call, const SynthDriver &synth, const std::function<int()> &work,
                   InstrumentsAre instruments = InstrumentsAre::Silent);

// Reads a file of --memory into the built-in instruments; with `mayBeNew` one that does not exist
// stands for the state of the factory. ExitDone, or ExitFailed after telling why not.
int ReadInstrumentMemory(const char *path, bool mayBeNew);

// Whether the instrument is there: looks for it by the names of its ports, or, where its family can
// be detected and no names were given, by its answer. Sets CurrentDriverId, MidiInPort,
// MidiOutPort, SynthFirmware.
bool FindInstrument(const SynthDriver &synth);
// After a search in vain: tells what was looked for. ExitFailed.
int TellNoDevice(const SynthDriver &synth);
// After a transfer in vain: tells whether the ports do not open, or nobody answers. ExitFailed.
int TellTransferFailed(const SynthDriver &synth);

} // namespace tonewright
