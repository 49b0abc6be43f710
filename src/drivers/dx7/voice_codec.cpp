// Converts DX7 voices between the packed form of the banks and the unpacked form of the editor.
#include "drivers/dx7/voice_codec.h"

#include "common/settings.h"

#include <cstring>

namespace tonewright {

namespace {

// Bytes 0 to 10 of an operator block are the same in both forms.
constexpr std::size_t PlainOperatorBytes = 11;

// Offsets in a packed operator block, behind the plain bytes.
namespace PackedOperator {
enum : std::size_t {
    scaleCurves = PlainOperatorBytes, // left 0-1, right 2-3
    rateScalingDetune,                // rate scaling 0-2, detune 3-6
    sensitivities,                    // amplitude modulation 0-1, velocity 2-4
    outputLevel,
    frequencyMode, // oscillator mode 0, coarse 1-5
    frequencyFine,
};
static_assert(frequencyFine + 1 == Dx7PackedOperatorSize);
} // namespace PackedOperator

// Offsets in a packed voice, behind the six operator blocks.
namespace PackedVoice {
enum : std::size_t {
    pitchEg = 102,          // four rates, four levels, then the algorithm
    feedbackSync = 111,     // feedback 0-2, oscillator key sync 3
    lfo = 112,              // speed, delay, pitch and amplitude modulation depth
    lfoSyncWavePitch = 116, // key sync 0, wave 1-3, pitch modulation sensitivity 4-6
    transpose = 117,
    name = 118,
};
static_assert(pitchEg == Dx7OperatorCount * Dx7PackedOperatorSize);
static_assert(name + Dx7NameSize == Dx7PackedVoiceSize);
} // namespace PackedVoice

constexpr std::size_t PitchEgAndAlgorithmBytes = 9;
constexpr std::size_t LfoBytes = 4;

std::uint8_t OperatorBit(std::size_t block) {
    return static_cast<std::uint8_t>(0x20 >> block);
}

// The bits of a packed detune that are read. It is written four bits wide, and the plain way reads
// three of them, on purpose: 8 to 14 become 0 to 6.
constexpr unsigned PlainDetune = 7;
constexpr unsigned AllOfDetune = 15;

std::uint8_t Bits(unsigned value) {
    return static_cast<std::uint8_t>(value);
}

void Unpack(Dx7Unpacked destination, Dx7PackedConst source, unsigned detuneMask) {
    std::uint8_t enabled = 0;
    for (std::size_t block = 0; block < Dx7OperatorCount; ++block) {
        const std::uint8_t *from = source.data() + block * Dx7PackedOperatorSize;
        std::uint8_t *to = destination.data() + block * Dx7OperatorSize;
        std::memcpy(to, from, PlainOperatorBytes);
        const std::uint8_t curves = from[PackedOperator::scaleCurves];
        to[Dx7Operator::scaleLeftCurve] = curves & 3;
        to[Dx7Operator::scaleRightCurve] = curves >> 2 & 3;
        const std::uint8_t rateAndDetune = from[PackedOperator::rateScalingDetune];
        to[Dx7Operator::rateScaling] = rateAndDetune & 7;
        to[Dx7Operator::detune] = Bits(rateAndDetune >> 3 & detuneMask);
        const std::uint8_t sensitivities = from[PackedOperator::sensitivities];
        to[Dx7Operator::ampModSensitivity] = sensitivities & 3;
        to[Dx7Operator::velocitySensitivity] = sensitivities >> 2 & 7;
        const std::uint8_t level = from[PackedOperator::outputLevel];
        to[Dx7Operator::outputLevel] = level;
        const std::uint8_t mode = from[PackedOperator::frequencyMode];
        to[Dx7Operator::oscillatorMode] = mode & 1;
        to[Dx7Operator::frequencyCoarse] = mode >> 1 & 31;
        to[Dx7Operator::frequencyFine] = from[PackedOperator::frequencyFine];
        if (level != 0) {
            enabled |= OperatorBit(block);
        }
    }
    std::memcpy(&destination[Dx7Voice::pitchEgRate1], &source[PackedVoice::pitchEg],
                PitchEgAndAlgorithmBytes);
    destination[Dx7Voice::feedback] = source[PackedVoice::feedbackSync] & 7;
    destination[Dx7Voice::oscillatorKeySync] = source[PackedVoice::feedbackSync] >> 3 & 1;
    std::memcpy(&destination[Dx7Voice::lfoSpeed], &source[PackedVoice::lfo], LfoBytes);
    const std::uint8_t syncWavePitch = source[PackedVoice::lfoSyncWavePitch];
    destination[Dx7Voice::lfoKeySync] = syncWavePitch & 1;
    destination[Dx7Voice::lfoWave] = syncWavePitch >> 1 & 7;
    destination[Dx7Voice::pitchModSensitivity] = syncWavePitch >> 4 & 7;
    destination[Dx7Voice::transpose] = source[PackedVoice::transpose];
    std::memcpy(&destination[Dx7Voice::name], &source[PackedVoice::name], Dx7NameSize);
    destination[Dx7Voice::operatorEnable] = enabled;
}

} // namespace

void UnpackDx7Voice(Dx7Unpacked destination, Dx7PackedConst source) {
    Unpack(destination, source, WholeDetune != 0 ? AllOfDetune : PlainDetune);
}

void UnpackWholeDx7Voice(Dx7Unpacked destination, Dx7PackedConst source) {
    Unpack(destination, source, AllOfDetune);
}

void PackDx7Voice(Dx7Packed destination, Dx7UnpackedConst source) {
    const std::uint8_t enabled = source[Dx7Voice::operatorEnable];
    for (std::size_t block = 0; block < Dx7OperatorCount; ++block) {
        const std::uint8_t *from = source.data() + block * Dx7OperatorSize;
        std::uint8_t *to = destination.data() + block * Dx7PackedOperatorSize;
        std::memcpy(to, from, PlainOperatorBytes);
        to[PackedOperator::scaleCurves] = Bits((from[Dx7Operator::scaleRightCurve] & 3u) << 2 |
                                               (from[Dx7Operator::scaleLeftCurve] & 3u));
        to[PackedOperator::rateScalingDetune] =
            Bits((from[Dx7Operator::detune] & 15u) << 3 | (from[Dx7Operator::rateScaling] & 7u));
        to[PackedOperator::sensitivities] =
            Bits((from[Dx7Operator::velocitySensitivity] & 7u) << 2 |
                 (from[Dx7Operator::ampModSensitivity] & 3u));
        // The packed form has no place for the switch: an operator that is off loses its level.
        to[PackedOperator::outputLevel] =
            (enabled & OperatorBit(block)) ? from[Dx7Operator::outputLevel] : 0;
        to[PackedOperator::frequencyMode] = Bits((from[Dx7Operator::frequencyCoarse] & 31u) << 1 |
                                                 (from[Dx7Operator::oscillatorMode] & 1u));
        to[PackedOperator::frequencyFine] = from[Dx7Operator::frequencyFine];
    }
    std::memcpy(&destination[PackedVoice::pitchEg], &source[Dx7Voice::pitchEgRate1],
                PitchEgAndAlgorithmBytes);
    destination[PackedVoice::feedbackSync] =
        Bits((source[Dx7Voice::oscillatorKeySync] & 1u) << 3 | (source[Dx7Voice::feedback] & 7u));
    std::memcpy(&destination[PackedVoice::lfo], &source[Dx7Voice::lfoSpeed], LfoBytes);
    destination[PackedVoice::lfoSyncWavePitch] =
        Bits((source[Dx7Voice::pitchModSensitivity] & 7u) << 4 |
             (source[Dx7Voice::lfoWave] & 7u) << 1 | (source[Dx7Voice::lfoKeySync] & 1u));
    destination[PackedVoice::transpose] = source[Dx7Voice::transpose];
    std::memcpy(&destination[PackedVoice::name], &source[Dx7Voice::name], Dx7NameSize);
}

VoiceObject MakeDx7VoiceObject(Dx7UnpackedConst voice) {
    return MakeVoiceObject(Dx7DriverId, voice);
}

std::optional<Dx7UnpackedConst> Dx7VoiceOf(const VoiceObject *voice) {
    if (!voice) {
        return std::nullopt;
    }
    const auto parts = PayloadOf(*voice);
    if (!parts || parts->payload.size() < Dx7VoiceSize ||
        HeaderOf(*voice)->driverId != Dx7DriverId) {
        return std::nullopt;
    }
    return parts->payload.first<Dx7VoiceSize>();
}

const char *Dx7NameText(const std::uint8_t *tenBytes) {
    static std::string text;
    text = MakeVoiceNameText({tenBytes, Dx7NameSize});
    return text.c_str();
}

int Dx7VoiceName(std::string &name, const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    if (!parts || parts->payload.size() < Dx7VoiceSize) {
        return 0;
    }
    name = Dx7NameText(&parts->payload[Dx7Voice::name]);
    return static_cast<int>(name.size());
}

int Dx7VoiceAlgorithm(const VoiceObject &voice) {
    const auto parts = PayloadOf(voice);
    return parts && parts->payload.size() >= Dx7VoiceSize ? parts->payload[Dx7Voice::algorithm] + 1
                                                          : 0;
}

} // namespace tonewright
