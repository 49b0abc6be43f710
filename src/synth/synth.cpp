// A key that must give way to another one fades out beside it; so there are twice as many places
// for keys as can be played at once.
#include "synth/synth.h"

#include "synth/choices.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tonewright {

namespace {

constexpr double FullScale = 0.125; // of a carrier at full level
constexpr float Inaudible = 1e-6f;  // -120 dB below a carrier at full level

bool Plays(const Key &key) {
    return key.sounds && !key.ends && key.fadeTarget > 0.0f;
}

int PlayingKeys(const Synth &synth) {
    return static_cast<int>(std::ranges::count_if(synth.keys, Plays));
}

void LetFade(Key &key) {
    key.fadeTarget = 0.0f;
    if (!key.rendered) {
        key.sounds = false;
    }
}

// How loud the carriers of a key are.
float Loudness(const Key &key, const PreparedVoice &voice) {
    float sum = 0.0f;
    for (int i = 0; i < voice.operatorCount; ++i) {
        sum += (voice.algorithm.carriers >> i & 1) != 0 ? key.operators[i].gain : 0.0f;
    }
    return sum;
}

// The key to give way when all are playing: a silent one, a released one of the same number, the
// quietest released one, the oldest.
Key &KeyToGiveWay(Synth &synth, int number) {
    Key *best = nullptr;
    const auto rank = [&](const Key &key) {
        const bool released = !key.held && !key.sustained;
        if (HoldsSilence(key, *synth.voice)) {
            return 3;
        }
        return released ? (key.number == number ? 2 : 1) : 0;
    };
    for (Key &key : synth.keys) {
        if (!Plays(key)) {
            continue;
        }
        const auto isBetter = [&] {
            if (rank(key) != rank(*best)) {
                return rank(key) > rank(*best);
            }
            return rank(key) == 1 ? Loudness(key, *synth.voice) < Loudness(*best, *synth.voice)
                                  : key.order < best->order;
        };
        if (!best || isBetter()) {
            best = &key;
        }
    }
    return *best;
}

// A place for another key: a silent one, or that of the key that has faded farthest.
Key &FreePlace(Synth &synth) {
    Key *best = nullptr;
    for (Key &key : synth.keys) {
        if (!key.sounds) {
            return key;
        }
        if (key.fadeTarget == 0.0f && (!best || key.fade < best->fade)) {
            best = &key;
        }
    }
    best->sounds = false;
    return *best;
}

Key *YoungestHeld(Synth &synth) {
    Key *youngest = nullptr;
    for (Key &key : synth.keys) {
        if (Plays(key) && key.held && (!youngest || key.order > youngest->order)) {
            youngest = &key;
        }
    }
    return youngest;
}

bool IsMono(const Synth &synth) {
    return synth.controls.mono || synth.voice->partMode != PartMode::Poly;
}

// The octaves that a new key has to glide, from where the pitch of the last one stands. `legato`:
// another one is down.
double GlideFor(Synth &synth, int number, bool legato) {
    const int from = synth.lastNumber;
    synth.lastNumber = number;
    const PartMode mode = synth.voice->partMode;
    const bool glides =
        mode == PartMode::Poly ? synth.controls.portamento : mode == PartMode::MonoFull || legato;
    if (!glides || from < 0) {
        return 0.0;
    }
    const auto isLast = [&](const Key &key) {
        return key.sounds && key.order == synth.keysSoFar && key.number == from;
    };
    const auto last = std::ranges::find_if(synth.keys, isLast);
    return (from - number) / 12.0 + (last == synth.keys.end() ? 0.0 : last->glide);
}

void TakeFromDown(Synth &synth, int number) {
    const auto end = synth.down.begin() + synth.downCount;
    const auto rest = std::remove(synth.down.begin(), end, static_cast<std::uint8_t>(number));
    synth.downCount = static_cast<int>(rest - synth.down.begin());
}

void AddToDown(Synth &synth, int number) {
    TakeFromDown(synth, number);
    synth.down[static_cast<std::size_t>(synth.downCount++)] = static_cast<std::uint8_t>(number);
}

// What the controllers add to the depths of the LFO and to the bias of envelopes.
struct Depths {
    double pitch = 0.0;
    double amplitude = 0.0;
    double envelopeBias = 0.0;
};

Depths DepthsOf(const Synth &synth) {
    Depths depths;
    const auto add = [&](double &depth, double more) {
        depth = synth.routesAdd ? depth + more : std::max(depth, more);
    };
    for (std::size_t source = 0; source < synth.routes.size(); ++source) {
        const ControllerRoute &route = synth.routes[source];
        const double range = Scaled(route.range);
        const double moved = range * synth.controls.sources[source];
        add(depths.pitch, route.pitch ? moved : 0.0);
        add(depths.amplitude, route.amplitude ? moved : 0.0);
        add(depths.envelopeBias, route.envelopeBias ? range - moved : 0.0);
    }
    return depths;
}

Modulation ModulationOf(const Synth &synth, const PreparedVoice &voice) {
    const double wave = LfoValue(synth.lfo, voice.lfo);
    const double fade = LfoFade(synth.lfo, voice.lfo);
    const Depths depths = DepthsOf(synth);
    const double lfoOctaves = std::min(
        255.0 * std::max(voice.pitchSensitivity, voice.controllerOctaves),
        voice.pitchDepth * fade * voice.pitchSensitivity + depths.pitch * voice.controllerOctaves);
    Modulation modulation;
    modulation.octaves = synth.controls.bend * voice.bendRange / 12.0 + voice.tune;
    modulation.lfoOctaves = wave * lfoOctaves / 255.0;
    modulation.lfoLoss = (1.0 - wave) / 2.0;
    modulation.amplitudeFade = fade;
    modulation.amplitudeDepth = depths.amplitude;
    modulation.envelopeBias = depths.envelopeBias;
    modulation.glideSpeed = voice.glideSpeed;
    if (voice.partMode == PartMode::Poly) {
        modulation.glideSpeed = PortamentoSpeed(synth.controls.portamentoTime, voice.glideHurries);
    }
    return modulation;
}

void RenderAll(std::vector<Key> &keys, const PreparedVoice &voice, const Modulation &modulation,
               double rate, float (&out)[BlockFrames]) {
    Key *sounding[2 * MaxPolyphony];
    int count = 0;
    for (Key &key : keys) {
        if (!key.sounds) {
            continue;
        }
        if (key.wait > 0.0) {
            key.wait -= BlockFrames / rate;
            continue;
        }
        sounding[count++] = &key;
    }
    if (count > 0) {
        RenderKeys(sounding, count, voice, modulation, rate, out);
    }
}

void ReleaseHeldBy(Synth &synth, Key &key) {
    key.held = false;
    if (synth.controls.pedal) {
        key.sustained = true;
    } else {
        ReleaseKey(key, *synth.voice);
    }
}

void SetPedal(Synth &synth, bool down) {
    synth.controls.pedal = down;
    if (down) {
        return;
    }
    for (Key &key : synth.keys) {
        if (key.sounds && key.sustained) {
            key.sustained = false;
            ReleaseKey(key, *synth.voice);
        }
    }
}

void ReleaseAll(Synth &synth) {
    synth.downCount = 0;
    for (Key &key : synth.keys) {
        if (Plays(key) && key.held) {
            ReleaseHeldBy(synth, key);
        }
    }
}

// What a voice that has become mono does with the keys that are held.
void ReleaseAllButYoungest(Synth &synth) {
    const Key *youngest = YoungestHeld(synth);
    for (Key &key : synth.keys) {
        if (Plays(key) && key.held && &key != youngest) {
            ReleaseHeldBy(synth, key);
        }
    }
}

void SetEffects(Synth &synth) {
    for (std::size_t i = 0; i < synth.effects.size(); ++i) {
        SetEffect(synth.effects[i], synth.voice->effects[i]);
    }
}

// Takes offsets away.
void FilterOffset(Synth &synth, float (&samples)[BlockFrames]) {
    const float keep = OffsetFilterKeeps(synth.rate);
    float before = synth.unfiltered;
    float filtered = synth.filtered;
    float loudest = 0.0f;
    for (float &sample : samples) {
        const float step = sample - before;
        before = sample;
        sample = filtered = keep * (filtered + step);
        loudest = std::max(loudest, std::fabs(filtered));
    }
    synth.unfiltered = before;
    // Silence, rather than smaller and smaller for ever.
    synth.filtered = loudest < Inaudible && before == 0.0f ? 0.0f : filtered;
}

// Volume and expression, squared.
float WantedGain(const Synth &synth) {
    const double gain = synth.controls.volume * synth.controls.expression;
    return static_cast<float>(gain * gain);
}

// The end of a panic's fade.
void EndPanic(Synth &synth) {
    for (Key &key : synth.keys) {
        key.sounds = key.sounds && !key.ends;
    }
    for (Key &key : synth.fading) {
        key.sounds = false;
    }
    if (synth.fadingVoice) {
        synth.fadingVoice = nullptr;
        SetEffects(synth);
    }
    for (Effect &effect : synth.effects) {
        ClearEffect(effect);
    }
    synth.voiceEndsIn = 0;
    synth.filtered = synth.unfiltered = 0.0f;
    synth.endsIn = 0;
}

} // namespace

Synth MakeSynth(double rate, int polyphony) {
    Synth synth;
    synth.rate = rate;
    synth.polyphony = polyphony;
    synth.keys.resize(static_cast<std::size_t>(2 * polyphony));
    synth.fading.resize(synth.keys.size());
    synth.effects = {MakeEffect(rate), MakeEffect(rate)};
    return synth;
}

bool IsFading(const Synth &synth) {
    return synth.fadingVoice != nullptr;
}

void SetVoice(Synth &synth, const PreparedVoice *voice, bool sameKeys) {
    synth.fadingVoice = std::exchange(synth.voice, voice);
    if (!synth.fadingVoice) {
        SetEffects(synth);
        return;
    }
    for (std::size_t i = 0; i < synth.keys.size(); ++i) {
        Key &key = synth.keys[i];
        if (!key.sounds) {
            synth.fading[i].sounds = false;
            continue;
        }
        synth.fading[i] = key;
        LetFade(synth.fading[i]);
        if (!sameKeys || !Plays(key)) {
            key.sounds = false;
        } else {
            AdaptKey(key, *voice);
        }
    }
    if (sameKeys && IsMono(synth)) {
        ReleaseAllButYoungest(synth);
    }
    if (sameKeys || std::ranges::none_of(synth.fading, &Key::sounds)) {
        SetEffects(synth);
    } else {
        synth.voiceEndsIn = FadeFrames(synth.rate);
    }
}

void NoteOn(Synth &synth, int number, int velocity) {
    if (!synth.voice) {
        return;
    }
    const double glide = GlideFor(synth, number, synth.downCount > 0);
    AddToDown(synth, number);
    if (IsMono(synth)) {
        if (Key *held = YoungestHeld(synth)) {
            // Envelopes go on from key to key while one is held.
            MoveKey(*held, *synth.voice, number, glide);
            return;
        }
    }
    const int playing = PlayingKeys(synth);
    LfoKeyDown(synth.lfo, synth.voice->lfo, playing == 0);
    const int most = IsMono(synth) ? 1 : synth.polyphony;
    double wait = 0.0;
    if (playing >= most) {
        Key &givesWay = KeyToGiveWay(synth, number);
        wait = givesWay.rendered ? FadeTime : givesWay.wait;
        LetFade(givesWay);
    }
    Key &key = FreePlace(synth);
    key.order = ++synth.keysSoFar;
    StartKey(key, *synth.voice, number, velocity, glide);
    key.ends = false;
    key.wait = std::max(wait, std::max(synth.endsIn, synth.voiceEndsIn) / synth.rate);
}

void NoteOff(Synth &synth, int number) {
    TakeFromDown(synth, number);
    if (synth.voice && IsMono(synth) && synth.downCount > 0) {
        // Back to the last of the keys that are still down.
        const int last = synth.down[static_cast<std::size_t>(synth.downCount - 1)];
        Key *held = YoungestHeld(synth);
        if (held && held->number != last) {
            MoveKey(*held, *synth.voice, last, GlideFor(synth, last, true));
        }
        return;
    }
    for (Key &key : synth.keys) {
        if (Plays(key) && key.held && key.number == number) {
            ReleaseHeldBy(synth, key);
        }
    }
}

void Control(Synth &synth, int controller, int value) {
    switch (controller) {
    case 1:
        synth.controls.sources[Wheel] = value / 127.0;
        break;
    case 2:
        synth.controls.sources[Breath] = value / 127.0;
        break;
    case 4:
        synth.controls.sources[Foot] = value / 127.0;
        break;
    case 5:
        synth.controls.portamentoTime = value;
        break;
    case 7:
        synth.controls.volume = value / 127.0;
        break;
    case 11:
        synth.controls.expression = value / 127.0;
        break;
    case 64:
        SetPedal(synth, value >= 64);
        break;
    case 65:
        synth.controls.portamento = value >= 64;
        break;
    case 120:
        Panic(synth);
        break;
    case 121:
        synth.controls.sources = {};
        synth.controls.bend = 0.0;
        synth.controls.expression = 1.0;
        synth.controls.portamento = false;
        SetPedal(synth, false);
        break;
    case 123:
    case 124:
    case 125:
        ReleaseAll(synth);
        break;
    case 126:
    case 127:
        ReleaseAll(synth);
        synth.controls.mono = controller == 126;
        break;
    default:
        break;
    }
}

void Bend(Synth &synth, int value) {
    synth.controls.bend = value < 8192 ? (value - 8192) / 8192.0 : (value - 8192) / 8191.0;
}

void Press(Synth &synth, int value) {
    synth.controls.sources[Pressure] = value / 127.0;
}

void Panic(Synth &synth) {
    for (Key &key : synth.keys) {
        key.ends = true;
        key.sounds = key.sounds && key.rendered;
    }
    if (synth.endsIn == 0) {
        synth.endsIn = FadeFrames(synth.rate);
    }
    synth.controls.pedal = false;
    synth.downCount = 0;
}

void Silence(Synth &synth) {
    Panic(synth);
    EndPanic(synth);
    synth.gain = WantedGain(synth);
}

bool IsSilent(const Synth &synth) {
    return SoundingKeys(synth) == 0 && synth.filtered == 0.0f && synth.unfiltered == 0.0f &&
           std::ranges::all_of(synth.effects, IsQuiet);
}

int SoundingKeys(const Synth &synth) {
    return static_cast<int>(std::ranges::count_if(synth.keys, &Key::sounds) +
                            std::ranges::count_if(synth.fading, &Key::sounds));
}

void Render(Synth &synth, float (&left)[BlockFrames], float (&right)[BlockFrames]) {
    std::ranges::fill(left, 0.0f);
    std::ranges::fill(right, 0.0f);
    if (!synth.voice) {
        return;
    }
    const double seconds = BlockFrames / synth.rate;
    AdvanceLfo(synth.lfo, synth.voice->lfo, seconds);
    RenderAll(synth.keys, *synth.voice, ModulationOf(synth, *synth.voice), synth.rate, left);
    if (synth.fadingVoice) {
        RenderAll(synth.fading, *synth.fadingVoice, ModulationOf(synth, *synth.fadingVoice),
                  synth.rate, left);
        if (std::ranges::none_of(synth.fading, &Key::sounds)) {
            synth.fadingVoice = nullptr;
            SetEffects(synth);
        }
    }
    synth.voiceEndsIn = std::max(0, synth.voiceEndsIn - BlockFrames);

    FilterOffset(synth, left);
    std::ranges::copy(left, right);
    for (Effect &effect : synth.effects) {
        ApplyEffect(effect, left, right);
    }

    // The gain follows as fast as it may without a click.
    const auto most = static_cast<float>(seconds / FadeTime);
    const float target = std::clamp(WantedGain(synth), synth.gain - most, synth.gain + most);
    const float step = (target - synth.gain) / BlockFrames;
    for (int i = 0; i < BlockFrames; ++i) {
        const float gain = synth.gain + step * static_cast<float>(i + 1);
        left[i] *= gain * static_cast<float>(FullScale);
        right[i] *= gain * static_cast<float>(FullScale);
    }
    synth.gain = target;

    if (synth.endsIn > 0) {
        for (int i = 0; i < BlockFrames; ++i) {
            synth.endsIn = std::max(0, synth.endsIn - 1);
            const float rest = static_cast<float>(synth.endsIn) / FadeFrames(synth.rate);
            left[i] *= rest;
            right[i] *= rest;
        }
        if (synth.endsIn == 0) {
            EndPanic(synth);
        }
    }
}

} // namespace tonewright
