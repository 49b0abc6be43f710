// The rows of the reface DX's parameters.
#include "drivers/reface_dx/voice_parameters.h"

#include "drivers/frequency.h"
#include "drivers/reface_dx/voice_codec.h"

namespace tonewright {
namespace {

using enum ParameterKind;
using enum ParameterTaken;

constexpr int HighestValue = 127; // of seven bits

constexpr std::uint32_t ControlEnable = 201;
constexpr std::uint32_t ControlPitchEg = 217;

// A number with a scroll bar.
constexpr VoiceParameter Level(std::uint32_t control, const char *label, const char *name,
                               std::size_t offset) {
    return {.control = control,
            .label = label,
            .name = name,
            .maximum = HighestValue,
            .offset = offset,
            .hasBar = true};
}

// A number to both sides of 0, without a bar.
constexpr VoiceParameter Shift(std::uint32_t control, const char *label, const char *name,
                               std::size_t offset) {
    return {.control = control,
            .label = label,
            .name = name,
            .minimum = -24,
            .maximum = 24,
            .offset = offset,
            .bias = RefaceTransposeBias,
            .instrumentBias = RefaceInstrumentZero,
            .taken = AtCollection};
}

constexpr VoiceParameter Choice(std::uint32_t control, const char *label, const char *name,
                                std::size_t offset, int maximum, const char *items) {
    return {.control = control,
            .label = label,
            .name = name,
            .kind = List,
            .maximum = maximum,
            .offset = offset,
            .items = items,
            .taken = AtCollection};
}

constexpr VoiceParameter VoiceRows[] = {
    {.control = 101, .label = "Name:", .name = "name", .kind = Name, .offset = RefaceVoice::name},
    {.control = 106,
     .label = "Algorithm:",
     .name = "algorithm",
     .kind = Algorithm,
     .maximum = 11,
     .offset = RefaceVoice::algorithm,
     .items = "0;1;2;3;4;5;6;7;8;9;10;11"},
    Choice(103, "Part mode:", "partMode", RefaceVoice::partMode, 2, RefacePartModes),
    Level(104, "Portamento time:", "portamentoTime", RefaceVoice::portamentoTime),
    Shift(102, "Transpose:", "transpose", RefaceVoice::transpose),
    Shift(105, "Pitch bend:", "pitchBend", RefaceVoice::pitchBend),
    Choice(107, "LFO wave:", "lfoWave", RefaceVoice::lfoWave, 6, RefaceLfoWaves),
    Level(108, "LFO speed:", "lfoSpeed", RefaceVoice::lfoSpeed),
    Level(109, "LFO delay:", "lfoDelay", RefaceVoice::lfoDelay),
    Level(110, "LFO Modulation depth:", "lfoModDepth", RefaceVoice::lfoModDepth),
    Level(111, "Pitch EG Rate 1:", "pitchEgRate1", RefaceVoice::pitchEgRate1),
    Level(115, "Pitch EG Level 1:", "pitchEgLevel1", RefaceVoice::pitchEgLevel1),
    Level(112, "Pitch EG Rate 2:", "pitchEgRate2", RefaceVoice::pitchEgRate2),
    Level(116, "Pitch EG Level 2:", "pitchEgLevel2", RefaceVoice::pitchEgLevel2),
    Level(113, "Pitch EG Rate 3:", "pitchEgRate3", RefaceVoice::pitchEgRate3),
    Level(117, "Pitch EG Level 3:", "pitchEgLevel3", RefaceVoice::pitchEgLevel3),
    Level(114, "Pitch EG Rate 4:", "pitchEgRate4", RefaceVoice::pitchEgRate4),
    Level(118, "Pitch EG Level 4:", "pitchEgLevel4", RefaceVoice::pitchEgLevel4),
    Choice(119, "Effect type 1:", "effect1Type", RefaceVoice::effect1Type, 7, RefaceEffectTypes),
    Level(120, "Effect 1 parameter 1:", "effect1Param1", RefaceVoice::effect1Param1),
    Level(121, "Effect 1 parameter 2:", "effect1Param2", RefaceVoice::effect1Param2),
    Choice(122, "Effect type 2:", "effect2Type", RefaceVoice::effect2Type, 7, RefaceEffectTypes),
    Level(123, "Effect 2 parameter 1:", "effect2Param1", RefaceVoice::effect2Param1),
    Level(124, "Effect 2 parameter 2:", "effect2Param2", RefaceVoice::effect2Param2),
};

// A row of an operator's page: taken when the page is collected, and enabled with the operator.
constexpr VoiceParameter OfOperator(VoiceParameter row) {
    row.taken = AtCollection;
    row.gates = {ControlEnable};
    return row;
}

// A row of the envelope, which the switch of the pitch envelope enables as well.
constexpr VoiceParameter OfEnvelope(VoiceParameter row) {
    row = OfOperator(row);
    row.gates = {ControlEnable, ControlPitchEg};
    return row;
}

constexpr VoiceParameter Switch(std::uint32_t control, const char *label, const char *name,
                                std::size_t offset) {
    return {.control = control,
            .label = label,
            .name = name,
            .kind = Check,
            .maximum = 1,
            .offset = offset,
            .taken = AtCollection};
}

constexpr VoiceParameter OperatorRows[] = {
    {.control = 101, .label = "Name:", .kind = Name, .offset = RefaceVoice::name, .taken = Never},
    Switch(ControlEnable, "Enable operator", "enable", RefaceOperator::enable),
    OfOperator(Choice(222, "Frequency mode:", "frequencyMode", RefaceOperator::frequencyMode, 1,
                      RefaceFrequencyModes)),
    OfOperator({.control = 223,
                .label = "Frequency:",
                .name = "frequency",
                .kind = Frequency,
                .maximum = MostHundredths,
                .offset = RefaceOperator::frequencyCoarse,
                .packedBits = 2 * 8}),
    OfOperator({.control = 224,
                .label = "Frequency detune:",
                .name = "frequencyDetune",
                .minimum = -64,
                .maximum = 63,
                .offset = RefaceOperator::frequencyDetune,
                .bias = RefaceDetuneBias}),
    OfOperator(Level(219, "Level output level:", "outputLevel", RefaceOperator::outputLevel)),
    OfOperator(Level(218, "Level velocity sense:", "levelVelocitySense",
                     RefaceOperator::levelVelocitySense)),
    OfOperator(Level(220, "Level feedback level:", "feedbackLevel", RefaceOperator::feedbackLevel)),
    OfOperator(Choice(221, "Level feedback type:", "feedbackType", RefaceOperator::feedbackType, 1,
                      RefaceFeedbackTypes)),
    OfOperator(Level(215, "LFO AMD depth:", "lfoAmdDepth", RefaceOperator::lfoAmdDepth)),
    OfOperator(Switch(216, "LFO PMD", "lfoPmd", RefaceOperator::lfoPmd)),
    OfOperator(Switch(ControlPitchEg, "Pitch EG", "pitchEg", RefaceOperator::pitchEg)),
    OfEnvelope(Level(202, "EG rate 1:", "egRate1", RefaceOperator::egRate1)),
    OfEnvelope(Level(206, "EG level 1:", "egLevel1", RefaceOperator::egLevel1)),
    OfEnvelope(Level(203, "EG rate 2:", "egRate2", RefaceOperator::egRate2)),
    OfEnvelope(Level(207, "EG level 2:", "egLevel2", RefaceOperator::egLevel2)),
    OfEnvelope(Level(204, "EG rate 3:", "egRate3", RefaceOperator::egRate3)),
    OfEnvelope(Level(208, "EG level 3:", "egLevel3", RefaceOperator::egLevel3)),
    OfEnvelope(Level(205, "EG rate 4:", "egRate4", RefaceOperator::egRate4)),
    OfEnvelope(Level(209, "EG level 4:", "egLevel4", RefaceOperator::egLevel4)),
    OfOperator(Level(210, "Kbd rate scaling:", "kbdRateScaling", RefaceOperator::kbdRateScaling)),
    OfOperator(Choice(213, "Kbd rate left curve:", "kbdLeftCurve", RefaceOperator::kbdLeftCurve, 3,
                      RefaceKbdCurves)),
    OfOperator(Level(211, "Kbd rate left depth:", "kbdLeftDepth", RefaceOperator::kbdLeftDepth)),
    OfOperator(Choice(214, "Kbd rate right curve:", "kbdRightCurve", RefaceOperator::kbdRightCurve,
                      3, RefaceKbdCurves)),
    OfOperator(
        Level(212, "Kbd rate right scaling:", "kbdRightDepth", RefaceOperator::kbdRightDepth)),
};

std::size_t PartOffset(const VoiceObject &voice, int part) {
    const auto header = HeaderOf(voice);
    const std::size_t operators = header->payloadOffset + header->payloadSize;
    return part == 0 ? header->payloadOffset
                     : operators + static_cast<std::size_t>(part - 1) * RefaceOperatorSize;
}

bool IsWhole(const VoiceObject &voice) {
    const auto header = HeaderOf(voice);
    return RefaceVoiceOf(voice) && header->driverId == RefaceDriverId &&
           header->payloadOffset >= VoiceObjectHeaderSize;
}

} // namespace

constinit const VoiceParameters RefaceParameters = {
    .voice = VoiceRows,
    .operators = OperatorRows,
    .operatorCount = RefaceOperatorCount,
    .lastPageBlock = RefaceOperatorCount - 1,
    .nameSize = RefaceNameSize,
    .PartOffset = PartOffset,
    .IsWhole = IsWhole,
    .PlaceText = RefacePlaceText,
};

} // namespace tonewright
