// What the built-in instruments have in common: notes, program changes, mode messages.
#include "midi/instruments/instrument.h"

namespace tonewright {

namespace {

constexpr int AllSoundOff = 120;
constexpr int AllNotesOff = 123;
constexpr int OmniOff = 124;
constexpr int OmniOn = 125;
constexpr int LastModeMessage = 127;

SynthEvent EventOf(SynthEventKind kind, int number, int value) {
    return {kind, static_cast<std::uint8_t>(number), static_cast<std::uint16_t>(value)};
}

void TakeNote(Instrument &instrument, int key, int velocity, std::vector<SynthEvent> &events) {
    const bool isOn = velocity > 0;
    instrument.notes[static_cast<std::size_t>(key)] = isOn;
    events.push_back(
        EventOf(isOn ? SynthEventKind::NoteOn : SynthEventKind::NoteOff, key, velocity));
}

void TakeController(Instrument &instrument, int channel, int controller, int value,
                    std::vector<SynthEvent> &events) {
    if (controller == OmniOff || controller == OmniOn) {
        instrument.model->setOmni(instrument, channel, controller == OmniOn);
    }
    // Every mode message silences the keys as well.
    const bool silences =
        controller == AllSoundOff || (controller >= AllNotesOff && controller <= LastModeMessage);
    const InstrumentModel &model = *instrument.model;
    if (silences ? !model.hearsNotes(instrument, channel)
                 : !model.hearsControls(instrument, channel)) {
        return;
    }
    if (silences) {
        instrument.notes.fill(false);
    }
    events.push_back(EventOf(SynthEventKind::Controller, controller, value));
}

Instrument MakeInstrument(const InstrumentModel &model) {
    Instrument instrument;
    instrument.model = &model;
    FitBlocks(instrument);
    model.fillFactory(instrument);
    model.recall(instrument, 0);
    return instrument;
}

} // namespace

void FitBlocks(Instrument &instrument) {
    instrument.memory.resize(instrument.model->memorySize);
    instrument.editBuffer.resize(instrument.model->editBufferSize);
    instrument.system.resize(instrument.model->systemSize);
}

const std::array<Instrument, 3> &FactoryInstruments() {
    static const std::array<Instrument, 3> instruments = {
        MakeInstrument(Dx7Model), MakeInstrument(VolcaFmModel), MakeInstrument(RefaceModel)};
    return instruments;
}

void TakeInstrumentMessage(Instrument &instrument, std::span<const std::uint8_t> message,
                           std::vector<Answer> &answers, std::vector<SynthEvent> &events) {
    if (message.empty()) {
        return;
    }
    FitBlocks(instrument);
    const InstrumentModel &model = *instrument.model;
    if (message[0] == 0xF0) {
        model.takeSysex(instrument, message, answers, events);
        return;
    }
    const int channel = message[0] & 0x0F;
    const int data1 = message.size() > 1 ? message[1] & 0x7F : 0;
    const int data2 = message.size() > 2 ? message[2] & 0x7F : 0;
    switch (message[0] & 0xF0) {
    case 0x80:
    case 0x90:
        if (model.hearsNotes(instrument, channel)) {
            TakeNote(instrument, data1, (message[0] & 0xF0) == 0x90 ? data2 : 0, events);
        }
        break;
    case 0xB0:
        TakeController(instrument, channel, data1, data2, events);
        break;
    case 0xC0:
        if (model.hearsControls(instrument, channel) && data1 < VoicesPerInstrument) {
            instrument.selectedProgram = data1;
            model.recall(instrument, data1);
            events.push_back({SynthEventKind::NewVoice});
        }
        break;
    case 0xD0:
        if (model.hearsControls(instrument, channel)) {
            events.push_back(EventOf(SynthEventKind::Pressure, 0, data1));
        }
        break;
    case 0xE0:
        if (model.hearsControls(instrument, channel)) {
            events.push_back(EventOf(SynthEventKind::Bend, 0, data2 << 7 | data1));
        }
        break;
    default:
        break;
    }
}

} // namespace tonewright
