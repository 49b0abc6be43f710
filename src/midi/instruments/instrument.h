// What a built-in instrument is made of: a model that says how it behaves, and the state that it
// is in. Only the files of this folder and its fuzzers include this.
#pragma once

#include "midi/instruments/message_reader.h"
#include "synth/prepared_voice.h"
#include "synth/synth_event.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tonewright {

constexpr int VoicesPerInstrument = 32;
constexpr unsigned AllOperators = 0x3F;

// A message that an instrument sends because of one that it received.
struct Answer {
    std::vector<std::uint8_t> bytes;
    bool hasChecksum = false; // in the last byte but one, over the bytes from the model byte on
    int voiceBlock = -1;      // 0: common, 1 to 4: operators, -1: no block of a voice
};

struct InstrumentModel;

struct Instrument {
    const InstrumentModel *model = nullptr;
    std::vector<std::uint8_t> memory;         // VoicesPerInstrument voices
    std::vector<std::uint8_t> editBuffer;     // the voice that sounds
    std::vector<std::uint8_t> system;         // settings, where the model has any
    int selectedProgram = 0;                  // from 0
    int channel = 1;                          // 1 to 16; where the settings do not hold one
    bool omni = false;                        // hears every channel
    std::array<bool, 128> notes{};            // keys that sound
    unsigned enabledOperators = AllOperators; // of six; bit 0 is operator 1
    std::vector<std::uint8_t> arriving;       // a bulk voice between its header and its footer
    MessageReader reader;
};

struct InstrumentModel {
    const char *portName;
    std::size_t memorySize;
    std::size_t editBufferSize;
    std::size_t systemSize;
    // Memory and settings as they leave the factory. The three blocks have their sizes and are
    // zero.
    void (*fillFactory)(Instrument &instrument);
    // Whether notes, and program and control changes, of this channel (0 to 15) are for it.
    bool (*hearsNotes)(const Instrument &instrument, int channel);
    bool (*hearsControls)(const Instrument &instrument, int channel);
    // Omni on and off (controllers 125 and 124), on its own channel only.
    void (*setOmni)(Instrument &instrument, int channel, bool on);
    // Copies a voice of the memory into the edit buffer.
    void (*recall)(Instrument &instrument, int program);
    // A whole message F0 to F7; what it is answered with goes behind `answers`, and what is heard
    // of it behind `events`.
    void (*takeSysex)(Instrument &instrument, std::span<const std::uint8_t> message,
                      std::vector<Answer> &answers, std::vector<SynthEvent> &events);
    // The voice of an edit buffer that has its size, with the settings that are heard.
    PreparedVoice (*prepare)(const Instrument &instrument);
};

extern const InstrumentModel Dx7Model;
extern const InstrumentModel VolcaFmModel;
extern const InstrumentModel RefaceModel;

// The DX7, the Volca FM and the reface DX, as they leave the factory.
const std::array<Instrument, 3> &FactoryInstruments();
// Takes a whole message, short or system-exclusive. What it is answered with goes behind `answers`,
// and what is heard of it behind `events`.
void TakeInstrumentMessage(Instrument &instrument, std::span<const std::uint8_t> message,
                           std::vector<Answer> &answers, std::vector<SynthEvent> &events);
// Gives the three blocks the sizes of the model, whatever was done to them from outside.
void FitBlocks(Instrument &instrument);

} // namespace tonewright
