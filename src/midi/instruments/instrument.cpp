// What the built-in instruments have in common: notes, program changes, mode messages.
#include "midi/instruments/instrument.h"

namespace tonewright {

namespace {

constexpr int AllSoundOff = 120;
constexpr int AllNotesOff = 123;
constexpr int OmniOff = 124;
constexpr int OmniOn = 125;
constexpr int LastModeMessage = 127;

void TakeController(Instrument &instrument, int channel, int controller) {
    if (controller == OmniOff || controller == OmniOn) {
        instrument.model->setOmni(instrument, channel, controller == OmniOn);
    }
    // Every mode message silences the keys as well.
    const bool silences =
        controller == AllSoundOff || (controller >= AllNotesOff && controller <= LastModeMessage);
    if (silences && instrument.model->hearsNotes(instrument, channel)) {
        instrument.notes.fill(false);
    }
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
                           std::vector<Answer> &answers) {
    if (message.empty()) {
        return;
    }
    FitBlocks(instrument);
    const InstrumentModel &model = *instrument.model;
    if (message[0] == 0xF0) {
        model.takeSysex(instrument, message, answers);
        return;
    }
    const int channel = message[0] & 0x0F;
    const int data1 = message.size() > 1 ? message[1] & 0x7F : 0;
    const int data2 = message.size() > 2 ? message[2] & 0x7F : 0;
    switch (message[0] & 0xF0) {
    case 0x80:
    case 0x90:
        if (model.hearsNotes(instrument, channel)) {
            const bool isOn = (message[0] & 0xF0) == 0x90 && data2 > 0;
            instrument.notes[static_cast<std::size_t>(data1)] = isOn;
        }
        break;
    case 0xB0:
        TakeController(instrument, channel, data1);
        break;
    case 0xC0:
        if (model.hearsControls(instrument, channel) && data1 < VoicesPerInstrument) {
            instrument.selectedProgram = data1;
            model.recall(instrument, data1);
        }
        break;
    default:
        break;
    }
}

} // namespace tonewright
