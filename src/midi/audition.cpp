// The order of the messages of an audition, the arithmetic of its keys, and their places.
#include "midi/audition.h"

#include "common/desktop.h"
#include "common/settings.h"
#include "core/dispatch.h"
#include "midi/builtin_ports.h"
#include "midi/short_messages.h"

#include <algorithm>
#include <string_view>

namespace tonewright {
namespace {

constexpr AuditionColours UsualColours = {
    .whiteKey = {0xF1, 0xED, 0xE0}, .blackKey = {0x30, 0x29, 0x16}, .outline = {0x12, 0x0F, 0x00}};
constexpr AuditionColours SwappedColours = {
    .whiteKey = {0x10, 0x0C, 0x0A}, .blackKey = {0xF1, 0xED, 0xE0}, .outline = {0xF1, 0xED, 0xE0}};

constexpr std::uint8_t DataByte = 0x7F;

// One event on the open output.
void Write(const AuditionState &state, std::uint8_t status, int data1, std::uint32_t data2) {
    if (state.outputStream == NoMidiStream) {
        return;
    }
    const auto message = static_cast<std::uint32_t>(OnCurrentChannel(status)) |
                         static_cast<std::uint32_t>(data1 & DataByte) << 8 |
                         (data2 & DataByte) << 16;
    TheMidi.Pm_Write(state.outputStream, {.message = message, .timestamp = TheMidi.Pt_Time()});
}

// An instrument that takes up its first program plays the voice that it has there, and no longer
// the one that was sent: with AuditionKeepsVoice nothing is selected.
void SelectFirstProgram(const AuditionState &state) {
    if (AuditionKeepsVoice == 0 && state.outputStream != NoMidiStream) {
        SelectLastThenFirstProgram(state.outputStream);
    }
}

int Limit(std::uint32_t &setting, int lowest, int highest) {
    const int value = std::clamp(static_cast<int>(setting), lowest, highest);
    setting = static_cast<std::uint32_t>(value);
    return value;
}

// Keys, in dialog units.
constexpr int OctaveKeys = 12;
constexpr int WhiteKeysInAnOctave = 7;
constexpr int WhiteKeyUnits = 24;
constexpr int BlackKeyUnits = 16;
constexpr int UpperPartUnits = 56; // height; black keys too
constexpr int OctaveUnits = WhiteKeysInAnOctave * WhiteKeyUnits;
static_assert(2 * OctaveUnits == KeyboardUnitsWide);

constexpr int LowestNoteOctave = -2; // of the names of notes

int NoteOfKey(int key) {
    // Unsigned: the setting may hold anything where no box has limited it.
    return static_cast<int>((static_cast<unsigned>(key) + OctaveKeys * AuditionCurrentOctave) &
                            255);
}

// By the mouse or by a key of the computer.
bool IsHeld(const AuditionState &state, int note) {
    return state.sustainedNote == note ||
           std::ranges::find(state.computerKeys, note, &HeldComputerKey::note) !=
               state.computerKeys.end();
}

// Where a key begins within its octave, from C to B: white keys by their lower part. The black keys
// leave upper parts of almost the same width: 13, 14 and 13 units for C to E, 12 for F to B.
struct KeyEdges {
    bool black;
    int left;
    int upperLeft, upperRight; // of white keys
};
constexpr KeyEdges OctaveEdges[] = {
    {false, 0, 0, 13},   {true, 13, 0, 0},       {false, 24, 29, 43}, {true, 43, 0, 0},
    {false, 48, 59, 72}, {false, 72, 72, 84},    {true, 84, 0, 0},    {false, 96, 100, 112},
    {true, 112, 0, 0},   {false, 120, 128, 140}, {true, 140, 0, 0},   {false, 144, 156, 168},
};
static_assert(std::size(OctaveEdges) == OctaveKeys && 2 * OctaveKeys == AuditionKeyCount);

} // namespace

std::optional<AuditionState> PrepareAudition(VoiceList *list, const VoiceObject *voice,
                                             DriverId driverId, MidiPorts ports, int itemIndex) {
    if (!voice && list) {
        voice = ListVoice(*list, itemIndex);
    }
    if (!voice) {
        return std::nullopt;
    }
    return AuditionState{.list = list,
                         .voice = *voice,
                         .driverId = driverId,
                         .ports = PortsToHear(driverId, ports),
                         .itemIndex = itemIndex,
                         .colours = ShiftKeyDown() ? SwappedColours : UsualColours};
}

int AuditionOctave() {
    return Limit(AuditionCurrentOctave, 0, HighestAuditionOctave);
}

int AuditionVelocity() {
    return Limit(AuditionCurrentVelocity, LowestAuditionVelocity, HighestAuditionVelocity);
}

int SetAuditionOctave(int position) {
    AuditionCurrentOctave = static_cast<std::uint32_t>(position);
    return AuditionOctave();
}

int SetAuditionVelocity(int position) {
    AuditionCurrentVelocity = static_cast<std::uint32_t>(position);
    return AuditionVelocity();
}

bool SendAudition(AuditionState &state, QWidget *window) {
    bool stays = true;
    VoiceList noList;
    if (!UploadOneVoice(window, state.list ? *state.list : noList, &state.voice, state.driverId,
                        state.ports, state.itemIndex, 0)) {
        ShowMessage(window, "The selected voice could not be uploaded.");
        stays = false;
    }
    // The clock does not run: at latency 0 the time stamps have no effect.
    if (TheMidi.Pm_OpenOutput(&state.outputStream, state.ports.out, MidiOutputBufferSize,
                              MidiLatency) != MidiSuccess) {
        state.outputStream = NoMidiStream;
        ShowMessage(window, "The MIDI output could not be opened.");
        stays = false;
    }
    return stays;
}

bool OpenAudition(AuditionState &state, QWidget *window) {
    const bool stays = SendAudition(state, window);
    SelectFirstProgram(state);
    return stays;
}

void PressAuditionKey(AuditionState &state, int key) {
    if (key < 0) {
        return;
    }
    PlayAuditionNote(state, NoteOfKey(key));
}

std::string AuditionKeyName(int key) {
    constexpr std::array letters = {"C", "C sharp ", "D", "D sharp ", "E", "F", "F sharp ",
                                    "G", "G sharp ", "A", "A sharp ", "B"};
    static_assert(letters.size() == OctaveKeys);
    const int note = NoteOfKey(key);
    return letters[static_cast<std::size_t>(note % OctaveKeys)] +
           std::to_string(note / OctaveKeys + LowestNoteOctave);
}

void PlayAuditionNote(AuditionState &state, int note) {
    Write(state, NoteOn, note, AuditionCurrentVelocity);
    state.sustainedNote = note;
}

void ReleaseAuditionKey(AuditionState &state) {
    // Without a note it is an end of note 7F, the data byte of -1.
    Write(state, NoteOff, state.sustainedNote, AuditionCurrentVelocity);
    state.sustainedNote = NoNote;
}

bool PressComputerKey(AuditionState &state, std::uint32_t id, int key) {
    if (std::ranges::find(state.computerKeys, id, &HeldComputerKey::id) !=
        state.computerKeys.end()) {
        return false;
    }
    const int note = NoteOfKey(key);
    if (!IsHeld(state, note)) {
        Write(state, NoteOn, note, AuditionCurrentVelocity);
    }
    state.computerKeys.push_back({.id = id, .key = key, .note = note});
    return true;
}

std::optional<int> ReleaseComputerKey(AuditionState &state, std::uint32_t id) {
    const auto found = std::ranges::find(state.computerKeys, id, &HeldComputerKey::id);
    if (found == state.computerKeys.end()) {
        return std::nullopt;
    }
    const HeldComputerKey released = *found;
    state.computerKeys.erase(found);
    if (!IsHeld(state, released.note)) {
        Write(state, NoteOff, released.note, AuditionCurrentVelocity);
    }
    return released.key;
}

bool PlaysBuiltinInstrument(const AuditionState &state) {
    const MidiDeviceInfo *device = TheMidi.Pm_GetDeviceInfo(state.ports.out);
    return device && std::string_view(device->interf) == BuiltinInterface;
}

void SilenceAudition(AuditionState &state) {
    while (!state.computerKeys.empty()) {
        ReleaseComputerKey(state, state.computerKeys.back().id);
    }
    ReleaseAuditionKey(state);
    Write(state, ControlChange, AllSoundOff, 0);
}

void EndAudition(AuditionState &state) {
    SilenceAudition(state);
    SelectFirstProgram(state);
}

void CloseAudition(AuditionState &state) {
    if (state.outputStream != NoMidiStream) {
        TheMidi.Pm_Close(state.outputStream);
        state.outputStream = NoMidiStream;
    }
}

std::array<KeyPart, AuditionKeyPartCount> AuditionKeyParts(int width, int height) {
    const auto x = [width](int units) { return units * width / KeyboardUnitsWide; };
    const int middle = UpperPartUnits * height / KeyboardUnitsHigh;
    std::array<KeyPart, AuditionKeyPartCount> parts;
    auto part = parts.begin();
    for (int key = 0; key < AuditionKeyCount; ++key) {
        const KeyEdges &edges = OctaveEdges[key % OctaveKeys];
        const int octave = key / OctaveKeys * OctaveUnits;
        const int left = octave + edges.left;
        if (edges.black) {
            *part++ = {
                .key = key,
                .control = LowerPartControl + key,
                .kind = KeyPartKind::Black,
                .area = {
                    .left = x(left), .top = 0, .right = x(left + BlackKeyUnits), .bottom = middle}};
            continue;
        }
        *part++ = {.key = key,
                   .control = LowerPartControl + key,
                   .kind = KeyPartKind::LowerWhite,
                   .area = {.left = x(left),
                            .top = middle,
                            .right = x(left + WhiteKeyUnits),
                            .bottom = height}};
        *part++ = {.key = key,
                   .control = UpperPartControl + key,
                   .kind = KeyPartKind::UpperWhite,
                   .area = {.left = x(octave + edges.upperLeft),
                            .top = 0,
                            .right = x(octave + edges.upperRight),
                            .bottom = middle}};
    }
    return parts;
}

} // namespace tonewright
