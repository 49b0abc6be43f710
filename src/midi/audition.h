// Auditioning a voice: the voice goes to the instrument, and the keys of a two-octave keyboard play
// it there, one note at a time. What is sent and when, and where the keys lie; the window is
// midi/view/audition_box.
#pragma once

#include "common/geometry.h"
#include "core/midi_ports.h"
#include "core/voice_list.h"
#include "core/voice_object.h"
#include "midi/midi_api.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

class QWidget;

namespace tonewright {

struct KeyColour {
    std::uint8_t red = 0, green = 0, blue = 0;

    bool operator==(const KeyColour &) const = default;
};
struct AuditionColours {
    KeyColour whiteKey, blackKey;
    KeyColour outline; // of the white keys

    bool operator==(const AuditionColours &) const = default;
};

constexpr int NoNote = -1;

// A key of the computer that is held down, and what it plays.
struct HeldComputerKey {
    std::uint32_t id = 0; // tells keys of the computer apart
    int key = 0;          // of the piano
    int note = 0;
};

// One open box.
struct AuditionState {
    VoiceList *list = nullptr; // that holds the voice; nullptr: none
    VoiceObject voice;         // a copy
    DriverId driverId = NoDriverId;
    MidiPorts ports;
    int itemIndex = 0;                              // of the voice in `list`
    AuditionColours colours;                        // of the keyboard, for the life of the box
    MidiStream outputStream = NoMidiStream;         // held for the life of the box
    int sustainedNote = NoNote;                     // the note of the mouse that sounds now
    std::vector<HeldComputerKey> computerKeys = {}; // in the order in which they were pressed
};

// State of a box for `voice`, or for the voice at `itemIndex` of `list` when it is nullptr; both
// are copied. Nothing when there is no such voice. By the ports that PortsToHear gives. With the
// Shift key held now, the colours are swapped.
std::optional<AuditionState> PrepareAudition(VoiceList *list, const VoiceObject *voice,
                                             DriverId driverId, MidiPorts ports, int itemIndex);

constexpr int HighestAuditionOctave = 7; // from 0; shown as 1 to 8
constexpr int LowestAuditionVelocity = 1;
constexpr int HighestAuditionVelocity = 127;

// Limits AuditionCurrentOctave and AuditionCurrentVelocity to their ranges, and returns them.
int AuditionOctave();
int AuditionVelocity();
// Stores the position of a scroll bar in the setting, limited in the same way, and returns it.
int SetAuditionOctave(int position);
int SetAuditionVelocity(int position);

// Uploads the voice and opens the output. A failure is told by a message, after which the rest is
// done all the same; false then.
bool SendAudition(AuditionState &state, QWidget *window);
// The same for the box, which then selects the last and the first program, unless
// AuditionKeepsVoice. False when the box is to close again.
bool OpenAudition(AuditionState &state, QWidget *window);
// Plays the note of key `key`, 0 to 23 from the left, in the octave of the setting; a negative
// number plays nothing.
void PressAuditionKey(AuditionState &state, int key);
// The name of the note that a key plays in the octave of the setting, as it is read aloud, with the
// maker's octaves: "C3" is note 60, and the key behind it "C sharp 3".
std::string AuditionKeyName(int key);
// Plays a note, 0 to 255, of which the low seven bits are sent.
void PlayAuditionNote(AuditionState &state, int note);
// Ends the note that was played last.
void ReleaseAuditionKey(AuditionState &state);
// The keys of the computer play chords, beside the one note of the mouse. A press plays the note of
// key `key`, any number from 0, in the octave of the setting, until that key of the computer is let
// go; a note that sounds already goes on. False for a key that is held already.
bool PressComputerKey(AuditionState &state, std::uint32_t id, int key);
// Ends the note, whatever the octave is by now, unless something else holds it. The key of the
// piano; nothing when the key of the computer is not held.
std::optional<int> ReleaseComputerKey(AuditionState &state, std::uint32_t id);
// True when the box plays a built-in instrument.
bool PlaysBuiltinInstrument(const AuditionState &state);
// Ends all notes and silences everything.
void SilenceAudition(AuditionState &state);
// The same for the box, which then selects the last and the first program, unless
// AuditionKeepsVoice.
void EndAudition(AuditionState &state);
// Closes the output.
void CloseAudition(AuditionState &state);

// The keys. A white key has two parts, the upper one between the black keys; a black key has one.
constexpr int AuditionKeyCount = 24;
constexpr int AuditionKeyPartCount = 38;
constexpr int LowerPartControl = 500;   // plus the key's number; black keys too
constexpr int UpperPartControl = 12500; // plus the key's number

enum class KeyPartKind { LowerWhite, UpperWhite, Black };

struct KeyPart {
    int key = 0;     // 0 to 23
    int control = 0; // number of the control that shows it
    KeyPartKind kind = KeyPartKind::LowerWhite;
    Rectangle area; // pixels
};

// The keyboard in dialog units, a quarter of a character's width and an eighth of its height.
constexpr int KeyboardUnitsWide = 336;
constexpr int KeyboardUnitsHigh = 98;

// The parts of a keyboard of that size in pixels, by ascending key, the lower part of a white key
// before its upper part. Neighbours share their edges, so that the parts cover the keyboard without
// gap or overlap.
std::array<KeyPart, AuditionKeyPartCount> AuditionKeyParts(int width, int height);

} // namespace tonewright
