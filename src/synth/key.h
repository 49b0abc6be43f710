// A key that sounds: its envelopes, phases and gains, moved on a block at a time.
#pragma once

#include "synth/block.h"
#include "synth/envelope.h"
#include "synth/pitch_envelope.h"
#include "synth/prepared_voice.h"

#include <array>
#include <cstdint>

namespace tonewright {

struct KeyOperator {
    Envelope envelope;
    EnvelopeShape shape;
    double hertz = 1.0;                // its frequency at rest
    std::uint32_t phase = 0;           // of 2^32
    std::uint32_t increment = 0;       // a frame, at the end of the last block
    float gain = 0.0f;                 // at the end of the last block
    bool follows = false;              // the gain is still on its way to that of the envelope
    std::array<float, 2> outputs = {}; // the last two, of an operator that feeds back
};

struct Key {
    bool sounds = false;
    bool held = false;
    bool sustained = false; // released while the pedal was down
    bool rendered = false;  // at least one block of it has been heard
    bool ends = false;      // sounds on only until everything has faded out together
    int number = 0;         // MIDI note
    int velocity = 0;
    std::uint64_t order = 0; // the higher, the younger
    std::array<KeyOperator, MaxOperators> operators;
    PitchEnvelope pitchEnvelope;
    double wait = 0.0;  // seconds until it begins, while another one gives way
    double glide = 0.0; // octaves that portamento still has to go
    // How loud it is beside what it plays: on its way to `fadeTarget`, 1 or 0, where it gives way
    // to another one. At 0 it no longer sounds.
    float fade = 1.0f;
    float fadeTarget = 1.0f;
};

// What all keys of an instrument have in common in a block.
struct Modulation {
    double octaves = 0.0;    // bend and tune
    double lfoOctaves = 0.0; // of the LFO, for the operators that follow it
    // What operators that are sensitive to it lose of their amplitude: where the LFO is, 0 to 1 at
    // its lowest; how much of an operator's depth counts, 0 to 1, and what controllers add to it;
    // and what they take wherever the LFO is. Depths are parts of 255.
    double lfoLoss = 0.0;
    double amplitudeFade = 0.0;
    double amplitudeDepth = 0.0;
    double envelopeBias = 0.0;
    double glideSpeed = 0.0; // octaves a second at the end of a glide; 0 is at once
};

// Key down, in a voice; `glide` octaves away from where it belongs. Phases stay where they are
// unless the voice synchronises them.
void StartKey(Key &key, const PreparedVoice &voice, int number, int velocity, double glide = 0.0);
// Another key takes over what sounds, envelopes and all.
void MoveKey(Key &key, const PreparedVoice &voice, int number, double glide);
void ReleaseKey(Key &key, const PreparedVoice &voice);
// Nothing more is heard of the key before it goes down again, although it is held.
bool HoldsSilence(const Key &key, const PreparedVoice &voice);
// Works out again what depends on the voice, which has been changed while the key sounds; what is
// heard of the key begins at silence.
void AdaptKey(Key &key, const PreparedVoice &voice);

// Adds a block of keys of one voice to `out`, at `rate` frames a second, and moves them on.
// Amplitude 1 is a carrier at full level. A key that has fallen silent no longer sounds.
void RenderKeys(Key *const *keys, int count, const PreparedVoice &voice,
                const Modulation &modulation, double rate, float (&out)[BlockFrames]);

} // namespace tonewright
