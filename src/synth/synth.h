// A synthesizer: keys, pedals and wheels, and the sound that they make of a voice. Everything
// happens at the begin of a block of 64 frames; nothing here allocates once it is made.
#pragma once

#include "synth/choices.h"
#include "synth/effects.h"
#include "synth/key.h"
#include "synth/prepared_voice.h"

#include <array>
#include <cstdint>
#include <vector>

namespace tonewright {

constexpr int MinPolyphony = 1;
constexpr int MaxPolyphony = 64;

// What pedals, wheels and modes have set.
struct Controls {
    bool pedal = false;
    bool portamento = false;
    int portamentoTime = 0;             // 0 to 127
    bool mono = false;                  // by a mode message; a voice may ask for it as well
    double bend = 0.0;                  // -1 to 1
    std::array<double, 4> sources = {}; // 0 to 1, by ControllerSource
    double volume = 1.0;                // 0 to 1
    double expression = 1.0;            // 0 to 1
};

struct Synth {
    double rate = 48000.0; // frames a second
    int polyphony = 16;

    // The voice that new keys play, and the one whose keys fade out. Not owned.
    const PreparedVoice *voice = nullptr;
    const PreparedVoice *fadingVoice = nullptr;

    std::vector<Key> keys;   // of `voice`, and those that give way to them
    std::vector<Key> fading; // of `fadingVoice`
    std::uint64_t keysSoFar = 0;
    int lastNumber = -1; // of the last key, from which portamento begins
    // Numbers whose keys are down, the last one behind the others.
    std::array<std::uint8_t, 128> down = {};
    int downCount = 0;

    Lfo lfo;
    Controls controls;
    ControllerRoutes routes = TheSynthChoices.controllers;
    bool routesAdd = TheSynthChoices.controllersAdd; // or the farthest counts
    std::array<Effect, 2> effects;
    // Frames until everything is silent behind a panic, and until the keys of the former voice are
    // before a new one; 0 when nothing fades. Keys that go down meanwhile begin then.
    int endsIn = 0;
    int voiceEndsIn = 0;

    // What is left of the last block: gain of the output, and the filter that takes offsets away.
    float gain = 1.0f;
    float filtered = 0.0f;
    float unfiltered = 0.0f;
};

// An engine without a voice, which is silent. `rate` 8,000 to 192,000 frames a second, `polyphony`
// MinPolyphony to MaxPolyphony.
Synth MakeSynth(double rate, int polyphony);

// Another voice: its keys go on in it when `sameKeys` (in a mono one the youngest of those that are
// held; the others are released), or else fade out. `voice` must live until another one has been
// set and IsFading says no. Not to be called while it says yes.
void SetVoice(Synth &synth, const PreparedVoice *voice, bool sameKeys);
bool IsFading(const Synth &synth);

// Note 0 to 127, velocity 1 to 127.
void NoteOn(Synth &synth, int number, int velocity);
void NoteOff(Synth &synth, int number);
// The controllers 1, 2, 4, 5, 7, 11, 64, 65, 120, 121 and 123 to 127, of which every one releases
// all keys; others do nothing.
void Control(Synth &synth, int controller, int value);
// 0 to 16383; 8192 is the middle.
void Bend(Synth &synth, int value);
// Of the whole keyboard, 0 to 127.
void Press(Synth &synth, int value);
// Silence within FadeTime, whatever sounds, tails of effects too.
void Panic(Synth &synth);
// The same at once, for what is not heard.
void Silence(Synth &synth);

// The next block of both sides: amplitude 1, a carrier at full level, is an eighth of full scale,
// so that loud chords go beyond it. Exact zeros when nothing sounds.
void Render(Synth &synth, float (&left)[BlockFrames], float (&right)[BlockFrames]);
// Keys that sound, those that fade out among them.
int SoundingKeys(const Synth &synth);
// What is rendered is exactly 0 until a key goes down.
bool IsSilent(const Synth &synth);

} // namespace tonewright
