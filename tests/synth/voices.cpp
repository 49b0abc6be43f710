#include "voices.h"

#include "support/paths.h"
#include "synth/key.h"
#include "synth/synth.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace tonewright {

SixVoice InitialVoice() {
    SixVoice voice = {};
    for (int number = 1; number <= 6; ++number) {
        for (int i = 0; i < 4; ++i) {
            voice.Operator(number, Rate1 + i) = 99;
            voice.Operator(number, Level1 + i) = i < 3 ? 99 : 0;
        }
        voice.Operator(number, BreakPoint) = 39;
        voice.Operator(number, Coarse) = 1;
        voice.Operator(number, Detune) = 7;
    }
    voice.Operator(1, OutputLevel) = 99;
    for (int i = 0; i < 4; ++i) {
        voice.bytes[PitchRate1 + i] = 99;
        voice.bytes[PitchLevel1 + i] = 50;
    }
    voice.bytes[OscillatorSync] = 1;
    voice.bytes[LfoSpeed] = 35;
    voice.bytes[LfoKeySync] = 1;
    voice.bytes[PitchSensitivityByte] = 3;
    voice.bytes[TransposeByte] = 24;
    return voice;
}

SixVoice Unpacked(const std::uint8_t *packed) {
    SixVoice voice = {};
    for (int i = 0; i < 6; ++i) {
        const std::uint8_t *from = packed + 17 * i;
        std::uint8_t *to = voice.bytes + 21 * i;
        std::copy_n(from, 11, to);
        to[LeftCurve] = from[11] & 3;
        to[RightCurve] = from[11] >> 2 & 3;
        to[KeyRateScaling] = from[12] & 7;
        to[Detune] = from[12] >> 3 & 15;
        to[AmplitudeSensitivity] = from[13] & 3;
        to[VelocitySensitivity] = from[13] >> 2 & 7;
        to[OutputLevel] = from[14];
        to[FixedFrequency] = from[15] & 1;
        to[Coarse] = from[15] >> 1;
        to[Fine] = from[16];
    }
    const std::uint8_t *from = packed + 102;
    std::copy_n(from, 8, voice.bytes + PitchRate1);
    voice.bytes[AlgorithmByte] = from[8] & 31;
    voice.bytes[FeedbackByte] = from[9] & 7;
    voice.bytes[OscillatorSync] = from[9] >> 3 & 1;
    std::copy_n(from + 10, 4, voice.bytes + LfoSpeed);
    voice.bytes[LfoKeySync] = from[14] & 1;
    voice.bytes[LfoWaveByte] = from[14] >> 1 & 7;
    voice.bytes[PitchSensitivityByte] = from[14] >> 4 & 7;
    std::copy_n(from + 15, 11, voice.bytes + TransposeByte);
    return voice;
}

SixVoice ExampleVoice(int place) {
    std::ifstream file(ExampleFile("tonewright.syx"), std::ios::binary);
    const std::string bank((std::istreambuf_iterator<char>(file)), {});
    if (bank.size() != 4104) {
        throw std::runtime_error("no example bank");
    }
    return Unpacked(reinterpret_cast<const std::uint8_t *>(bank.data()) + 6 + 128 * (place - 1));
}

std::vector<double> RenderedKey(const PreparedVoice &voice, int key, int velocity, double held,
                                double seconds, double rate) {
    Synth synth = MakeSynth(rate, 1);
    SetVoice(synth, &voice, false);
    NoteOn(synth, key, velocity);
    std::vector<double> samples;
    bool down = true;
    while (static_cast<double>(samples.size()) < seconds * rate) {
        if (down && static_cast<double>(samples.size()) >= held * rate) {
            NoteOff(synth, key);
            down = false;
        }
        float block[BlockFrames];
        float right[BlockFrames];
        Render(synth, block, right);
        for (const float sample : block) {
            samples.push_back(sample / 0.125); // amplitude 1 is an eighth of full scale
        }
    }
    return samples;
}

} // namespace tonewright
