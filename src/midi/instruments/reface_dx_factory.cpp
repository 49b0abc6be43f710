// The 32 voices that the built-in reface DX leaves the factory with: four banks of eight, one row
// each, from electric pianos over basses, winds and pads to plucked and struck things.
#include "midi/instruments/reface_dx_factory.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace tonewright {

namespace {

// How a level moves: rates and levels of four segments, the last after the key was let go. Each
// unit below 127 is three quarters of a decibel less.
struct Envelope {
    std::array<std::uint8_t, 4> rates;
    std::array<std::uint8_t, 4> levels;
};
constexpr Envelope Struck = {{127, 46, 38, 82}, {127, 110, 0, 0}};
constexpr Envelope Plucked = {{127, 62, 50, 84}, {127, 106, 0, 0}};
constexpr Envelope Bell = {{127, 44, 30, 44}, {127, 110, 0, 0}};
constexpr Envelope Click = {{127, 76, 70, 90}, {127, 80, 0, 0}};
constexpr Envelope Held = {{127, 127, 127, 110}, {127, 127, 127, 0}};
constexpr Envelope Blown = {{92, 80, 62, 88}, {127, 122, 120, 0}};
constexpr Envelope Bowed = {{74, 68, 60, 70}, {127, 122, 124, 0}};
constexpr Envelope Slow = {{52, 48, 46, 46}, {127, 124, 120, 0}};
constexpr Envelope Bass = {{127, 62, 36, 96}, {127, 117, 102, 0}};
constexpr Envelope Still = {{127, 127, 127, 127}, {127, 127, 127, 0}};

// The frequency is a ratio in hundredths: 100 is the key's own pitch.
struct FactoryOperator {
    const Envelope *envelope;
    std::uint8_t level;
    int ratio;
    int detune;
    std::uint8_t feedback;
    std::uint8_t velocity;
};

// A depth of 1 moves the pitch by a tenth of a semitone to each side.
struct Lfo {
    std::uint8_t wave, speed, delay, depth;
};
constexpr Lfo Steady = {0, 86, 0, 0};
constexpr Lfo LateVibrato = {1, 86, 90, 2};
constexpr Lfo Leslie = {0, 90, 0, 1};
constexpr Lfo Drift = {1, 34, 30, 1};
constexpr Lfo Random = {5, 96, 0, 40};

enum EffectType : std::uint8_t {
    Through,
    Distortion,
    TouchWah,
    Chorus,
    Flanger,
    Phaser,
    Delay,
    Reverb
};
struct Effect {
    EffectType type;
    std::uint8_t parameter1, parameter2;
};
constexpr Effect Dry = {Through, 0, 0};
constexpr Effect Wide = {Chorus, 48, 40};
constexpr Effect Room = {Reverb, 30, 36};
constexpr Effect Hall = {Reverb, 70, 84};
constexpr Effect Echo = {Delay, 46, 62};
constexpr Effect Swirl = {Phaser, 40, 52};
constexpr Effect Jet = {Flanger, 36, 60};
constexpr Effect Wah = {TouchWah, 58, 70};
constexpr Effect Edge = {Distortion, 44, 50};

enum PartMode : std::uint8_t { Poly, Mono, Legato };

struct FactoryVoice {
    const char *name;       // ten characters, filled with blanks
    std::uint8_t algorithm; // from 0
    PartMode partMode;
    std::uint8_t portamento;
    Lfo lfo;
    Effect effect1, effect2;
    std::array<FactoryOperator, RefaceOperators> operators;
};

constexpr std::array<FactoryVoice, VoicesPerInstrument> Voices = {{
    // Bank 1: keys
    {"Rose Tine ",
     7,
     Poly,
     0,
     Steady,
     Wide,
     Room,
     {{{&Struck, 122, 100, 0, 0, 48},
       {&Click, 101, 1400, 3, 0, 80},
       {&Struck, 119, 100, -4, 0, 40},
       {&Struck, 93, 100, 4, 20, 64}}}},
    {"Glass Key ",
     7,
     Poly,
     0,
     Steady,
     Dry,
     Hall,
     {{{&Bell, 120, 100, 0, 0, 40},
       {&Bell, 95, 700, 0, 0, 72},
       {&Struck, 117, 200, 5, 0, 40},
       {&Click, 104, 1100, 0, 12, 84}}}},
    {"Soft Reed ",
     4,
     Poly,
     0,
     Leslie,
     Swirl,
     Room,
     {{{&Struck, 122, 100, 0, 0, 36},
       {&Struck, 90, 100, 0, 24, 50},
       {&Struck, 86, 200, 2, 0, 60},
       {&Click, 81, 500, 0, 0, 70}}}},
    {"Clav Spark",
     1,
     Poly,
     0,
     Steady,
     Wah,
     Room,
     {{{&Plucked, 123, 100, 0, 0, 52},
       {&Plucked, 106, 300, 0, 0, 64},
       {&Plucked, 98, 50, 0, 0, 40},
       {&Click, 108, 800, 0, 48, 70}}}},
    {"Felt Piano",
     5,
     Poly,
     0,
     Steady,
     Dry,
     Room,
     {{{&Struck, 118, 100, -3, 8, 56},
       {&Struck, 122, 100, 3, 0, 56},
       {&Struck, 94, 100, 0, 0, 76},
       {&Click, 92, 1300, 0, 10, 84}}}},
    {"Music Box ",
     9,
     Poly,
     0,
     Steady,
     Dry,
     Hall,
     {{{&Bell, 113, 400, 0, 0, 30},
       {&Plucked, 121, 400, -5, 0, 40},
       {&Plucked, 119, 800, 5, 0, 40},
       {&Click, 100, 1700, 0, 0, 60}}}},
    {"Vibra Bar ",
     7,
     Poly,
     0,
     Leslie,
     Dry,
     Room,
     {{{&Bell, 122, 100, 0, 0, 44},
       {&Click, 96, 400, 0, 0, 70},
       {&Bell, 114, 400, 0, 0, 50},
       {&Click, 88, 1000, 0, 0, 70}}}},
    {"Toy Celest",
     10,
     Poly,
     0,
     Steady,
     Wide,
     Hall,
     {{{&Bell, 118, 200, -3, 0, 40},
       {&Bell, 115, 400, 3, 0, 40},
       {&Bell, 116, 800, 0, 0, 50},
       {&Click, 94, 1600, 0, 0, 64}}}},
    // Bank 2: basses, brass, reeds
    {"Round Bass",
     0,
     Mono,
     12,
     Steady,
     Dry,
     Dry,
     {{{&Bass, 125, 50, 0, 0, 40},
       {&Bass, 99, 50, 0, 0, 56},
       {&Click, 93, 100, 0, 0, 60},
       {&Click, 87, 100, 0, 30, 60}}}},
    {"Slap Wire ",
     1,
     Poly,
     0,
     Steady,
     Wide,
     Dry,
     {{{&Bass, 124, 50, 0, 0, 56},
       {&Plucked, 107, 100, 0, 0, 80},
       {&Click, 105, 600, 0, 0, 88},
       {&Click, 102, 300, 0, 52, 84}}}},
    {"Sub Solid ",
     11,
     Legato,
     24,
     Steady,
     Dry,
     Dry,
     {{{&Held, 125, 50, 0, 0, 20},
       {&Bass, 114, 100, -2, 30, 36},
       {&Bass, 104, 200, 2, 0, 36},
       {&Click, 101, 300, 0, 0, 48}}}},
    {"Acid Rung ",
     0,
     Legato,
     40,
     Steady,
     Edge,
     Echo,
     {{{&Bass, 123, 50, 0, 0, 44},
       {&Plucked, 113, 100, 0, 0, 72},
       {&Plucked, 104, 200, 0, 0, 64},
       {&Bass, 96, 100, 0, 90, 50}}}},
    {"Brass Hall",
     6,
     Poly,
     0,
     LateVibrato,
     Wide,
     Hall,
     {{{&Blown, 122, 100, -5, 0, 40},
       {&Blown, 122, 100, 5, 0, 40},
       {&Blown, 104, 100, 0, 36, 60},
       {&Blown, 86, 200, 0, 0, 48}}}},
    {"Horn Duo  ",
     7,
     Poly,
     0,
     LateVibrato,
     Dry,
     Hall,
     {{{&Blown, 122, 100, -3, 0, 32},
       {&Blown, 95, 100, 0, 12, 56},
       {&Blown, 120, 100, 3, 0, 32},
       {&Blown, 93, 50, 0, 0, 56}}}},
    {"Mute Trump",
     2,
     Mono,
     8,
     LateVibrato,
     Dry,
     Room,
     {{{&Blown, 122, 100, 0, 0, 44},
       {&Blown, 105, 100, 0, 0, 52},
       {&Blown, 90, 400, 0, 0, 48},
       {&Click, 89, 700, 0, 40, 60}}}},
    {"Sax Breath",
     3,
     Mono,
     6,
     LateVibrato,
     Dry,
     Room,
     {{{&Blown, 122, 100, 0, 0, 48},
       {&Blown, 100, 200, 0, 0, 60},
       {&Blown, 98, 100, 2, 0, 52},
       {&Bowed, 93, 300, 0, 64, 40}}}},
    // Bank 3: organs, winds, strings, pads
    {"Pipe Eight",
     11,
     Poly,
     0,
     Drift,
     Dry,
     Hall,
     {{{&Held, 120, 100, 0, 0, 0},
       {&Held, 117, 200, 2, 0, 0},
       {&Held, 113, 400, -2, 0, 0},
       {&Held, 111, 800, 0, 10, 0}}}},
    {"Jazz Wheel",
     11,
     Poly,
     0,
     Leslie,
     Swirl,
     Room,
     {{{&Held, 122, 50, 0, 0, 0},
       {&Held, 120, 100, 0, 0, 0},
       {&Held, 118, 150, 0, 0, 0},
       {&Click, 115, 600, 0, 0, 20}}}},
    {"Accordia  ",
     7,
     Poly,
     0,
     Leslie,
     Wide,
     Room,
     {{{&Held, 119, 100, -8, 40, 20},
       {&Still, 90, 100, 0, 0, 0},
       {&Held, 119, 100, 8, 44, 20},
       {&Still, 88, 200, 0, 0, 0}}}},
    {"Flute Lane",
     10,
     Mono,
     4,
     LateVibrato,
     Dry,
     Hall,
     {{{&Blown, 122, 100, 0, 0, 36},
       {&Click, 104, 300, 0, 0, 50},
       {&Blown, 112, 200, 0, 0, 36},
       {&Click, 95, 50, 0, 100, 30}}}},
    {"Bowed Silk",
     6,
     Poly,
     0,
     LateVibrato,
     Wide,
     Hall,
     {{{&Bowed, 120, 100, -6, 20, 30},
       {&Bowed, 120, 100, 6, 0, 30},
       {&Bowed, 99, 100, 0, 60, 44},
       {&Bowed, 87, 300, 0, 0, 40}}}},
    {"Choir Fog ",
     8,
     Poly,
     0,
     Drift,
     Wide,
     Hall,
     {{{&Slow, 120, 100, -4, 0, 20},
       {&Slow, 114, 200, 0, 0, 20},
       {&Slow, 119, 100, 4, 0, 20},
       {&Slow, 84, 100, 0, 50, 20}}}},
    {"Dawn Pad  ",
     7,
     Poly,
     0,
     Drift,
     Swirl,
     Hall,
     {{{&Slow, 120, 100, -7, 0, 24},
       {&Slow, 96, 100, 0, 16, 40},
       {&Slow, 118, 200, 7, 0, 24},
       {&Slow, 89, 50, 0, 0, 40}}}},
    {"Ice Drift ",
     9,
     Poly,
     0,
     Drift,
     Jet,
     Hall,
     {{{&Slow, 115, 50, 0, 0, 20},
       {&Bell, 118, 300, -6, 0, 44},
       {&Slow, 119, 100, 6, 0, 24},
       {&Bell, 94, 900, 0, 0, 56}}}},
    // Bank 4: plucked, leads, struck
    {"Nylon Six ",
     1,
     Poly,
     0,
     Steady,
     Dry,
     Room,
     {{{&Plucked, 123, 100, 0, 0, 56},
       {&Plucked, 98, 300, 0, 0, 76},
       {&Click, 93, 100, 0, 0, 60},
       {&Click, 90, 500, 0, 20, 70}}}},
    {"Koto Rain ",
     2,
     Poly,
     0,
     Steady,
     Dry,
     Echo,
     {{{&Plucked, 123, 100, 0, 0, 52},
       {&Plucked, 101, 200, 0, 0, 70},
       {&Click, 104, 500, 0, 0, 80},
       {&Plucked, 89, 900, 0, 16, 64}}}},
    {"Harp Cloud",
     7,
     Poly,
     0,
     Drift,
     Wide,
     Hall,
     {{{&Plucked, 122, 100, -2, 0, 48},
       {&Click, 96, 200, 0, 0, 66},
       {&Struck, 118, 100, 2, 0, 44},
       {&Click, 86, 400, 0, 8, 60}}}},
    {"Square Tow",
     7,
     Legato,
     30,
     LateVibrato,
     Dry,
     Echo,
     {{{&Held, 120, 100, -3, 0, 30},
       {&Still, 104, 200, 0, 0, 20},
       {&Held, 119, 100, 3, 60, 30},
       {&Still, 87, 400, 0, 0, 20}}}},
    {"Mono Laser",
     0,
     Legato,
     56,
     LateVibrato,
     Edge,
     Echo,
     {{{&Held, 122, 100, 0, 0, 36},
       {&Blown, 106, 100, 0, 0, 50},
       {&Still, 89, 300, 0, 0, 36},
       {&Still, 93, 100, 0, 110, 30}}}},
    {"Marimba On",
     5,
     Poly,
     0,
     Steady,
     Dry,
     Room,
     {{{&Click, 116, 400, 0, 0, 60},
       {&Plucked, 124, 100, 0, 0, 52},
       {&Click, 99, 400, 0, 0, 76},
       {&Click, 87, 1000, 0, 0, 70}}}},
    {"Temple Bel",
     4,
     Poly,
     0,
     Drift,
     Dry,
     Hall,
     {{{&Bell, 122, 50, 0, 0, 40},
       {&Bell, 101, 141, 0, 0, 48},
       {&Bell, 96, 273, 0, 0, 48},
       {&Bell, 86, 519, 0, 0, 56}}}},
    {"Star Noise",
     3,
     Poly,
     0,
     Random,
     Jet,
     Echo,
     {{{&Slow, 118, 100, 0, 0, 20},
       {&Bell, 110, 1733, 0, 0, 40},
       {&Slow, 106, 371, 0, 0, 30},
       {&Still, 117, 2999, 0, 127, 20}}}},
}};

constexpr std::uint8_t SemitoneZero = 64; // transpose and pitch bend
constexpr std::uint8_t PitchBendRange = 2;
constexpr std::uint8_t PitchLevelCentre = 64;
constexpr std::uint8_t FastestRate = 127;
constexpr int DetuneZero = 64;

std::array<std::uint8_t, RefaceCommonBytes> CommonBlock(const FactoryVoice &voice) {
    std::array<std::uint8_t, RefaceCommonBytes> block{};
    std::memcpy(block.data(), voice.name, 10);
    block[12] = SemitoneZero;
    block[13] = voice.partMode;
    block[14] = voice.portamento;
    block[15] = SemitoneZero + PitchBendRange;
    block[16] = voice.algorithm;
    block[17] = voice.lfo.wave;
    block[18] = voice.lfo.speed;
    block[19] = voice.lfo.delay;
    block[20] = voice.lfo.depth;
    std::fill_n(block.begin() + 21, 4, FastestRate);
    std::fill_n(block.begin() + 25, 4, PitchLevelCentre);
    block[29] = voice.effect1.type;
    block[30] = voice.effect1.parameter1;
    block[31] = voice.effect1.parameter2;
    block[32] = voice.effect2.type;
    block[33] = voice.effect2.parameter1;
    block[34] = voice.effect2.parameter2;
    return block;
}

std::array<std::uint8_t, RefaceOperatorBytes> OperatorBlock(const FactoryOperator &op) {
    std::array<std::uint8_t, RefaceOperatorBytes> block{};
    block[0] = 1; // switched on
    std::ranges::copy(op.envelope->rates, block.begin() + 1);
    std::ranges::copy(op.envelope->levels, block.begin() + 5);
    block[9] = 16; // higher keys are quicker
    block[15] = 1; // follows the LFO's pitch
    block[17] = op.velocity;
    block[18] = op.level;
    block[19] = op.feedback;
    block[22] = static_cast<std::uint8_t>(op.ratio / 100);
    block[23] = static_cast<std::uint8_t>(op.ratio % 100);
    block[24] = static_cast<std::uint8_t>(op.detune + DetuneZero);
    return block;
}

} // namespace

void FillRefaceFactoryVoices(std::span<std::uint8_t> memory) {
    const std::size_t count = std::min(Voices.size(), memory.size() / RefaceVoiceBytes);
    auto end = memory.begin();
    for (const FactoryVoice &voice : std::span(Voices).first(count)) {
        end = std::ranges::copy(CommonBlock(voice), end).out;
        for (const FactoryOperator &op : voice.operators) {
            end = std::ranges::copy(OperatorBlock(op), end).out;
        }
    }
}

} // namespace tonewright
