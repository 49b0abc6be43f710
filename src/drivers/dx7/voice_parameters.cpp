// The rows of the DX7's parameters.
#include "drivers/dx7/voice_parameters.h"

#include "common/text.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/frequency.h"

namespace tonewright {
namespace {

using enum ParameterKind;
using enum ParameterTaken;

constexpr int TransposeBias = 24;
constexpr int DetuneBias = 7;
constexpr int HighestLevel = 99;
constexpr int HighestOfThreeBits = 7;

constexpr std::uint32_t ControlEnable = 201;

// A level or rate with a scroll bar.
constexpr VoiceParameter Level(std::uint32_t control, const char *label, const char *name,
                               std::size_t offset, int maximum = HighestLevel, int packedBits = 8) {
    return {.control = control,
            .label = label,
            .name = name,
            .maximum = maximum,
            .offset = offset,
            .packedBits = packedBits,
            .hasBar = true};
}

constexpr VoiceParameter VoiceRows[] = {
    {.control = 101, .label = "Name:", .name = "name", .kind = Name, .offset = Dx7Voice::name},
    {.control = 106,
     .label = "Algorithm:",
     .name = "algorithm",
     .kind = Algorithm,
     .maximum = 31,
     .offset = Dx7Voice::algorithm,
     .items = "0;1;2;3;4;5;6;7;8;9;10;11;12;13;14;15;16;17;18;19;20;21;22;23;24;25;26;27;28;29;30;"
              "31"},
    Level(104, "Feedback:", "feedback", Dx7Voice::feedback, HighestOfThreeBits, 3),
    {.control = 102,
     .label = "Transpose:",
     .name = "transpose",
     .minimum = -24,
     .maximum = 24,
     .offset = Dx7Voice::transpose,
     .bias = TransposeBias},
    // The DX7 has no such parameter in its voices.
    {.control = 105, .label = "Pitch bend:", .minimum = -24, .maximum = 24, .taken = Never},
    {.control = 120,
     .label = "Oscillator sync",
     .name = "oscillatorKeySync",
     .kind = Check,
     .maximum = 1,
     .offset = Dx7Voice::oscillatorKeySync,
     .packedBits = 1},
    {.control = 107,
     .label = "LFO wave:",
     .name = "lfoWave",
     .kind = List,
     .maximum = 5,
     .offset = Dx7Voice::lfoWave,
     .packedBits = 3,
     .items = "Triangle (TRI);Sawtooth up (SAW U);Sawtooth down (SAW D);Square (SQ);Sine (SI);"
              "Sample and hold (SH)"},
    Level(108, "LFO speed:", "lfoSpeed", Dx7Voice::lfoSpeed),
    Level(109, "LFO delay:", "lfoDelay", Dx7Voice::lfoDelay),
    Level(110, "LFO pitch mod depth:", "lfoPitchModDepth", Dx7Voice::lfoPitchModDepth),
    Level(122, "LFO amp mod depth:", "lfoAmpModDepth", Dx7Voice::lfoAmpModDepth),
    Level(121, "Pitch mod sense:", "pitchModSensitivity", Dx7Voice::pitchModSensitivity,
          HighestOfThreeBits, 3),
    {.control = 123,
     .label = "LFO sync",
     .name = "lfoKeySync",
     .kind = Check,
     .maximum = 1,
     .offset = Dx7Voice::lfoKeySync,
     .packedBits = 1},
    Level(111, "Pitch EG Rate 1:", "pitchEgRate1", Dx7Voice::pitchEgRate1),
    Level(115, "Pitch EG Level 1:", "pitchEgLevel1", Dx7Voice::pitchEgLevel1),
    Level(112, "Pitch EG Rate 2:", "pitchEgRate2", Dx7Voice::pitchEgRate2),
    Level(116, "Pitch EG Level 2:", "pitchEgLevel2", Dx7Voice::pitchEgLevel2),
    Level(113, "Pitch EG Rate 3:", "pitchEgRate3", Dx7Voice::pitchEgRate3),
    Level(117, "Pitch EG Level 3:", "pitchEgLevel3", Dx7Voice::pitchEgLevel3),
    Level(114, "Pitch EG Rate 4:", "pitchEgRate4", Dx7Voice::pitchEgRate4),
    Level(118, "Pitch EG Level 4:", "pitchEgLevel4", Dx7Voice::pitchEgLevel4),
};

// A row of an operator's page: taken when the page is collected, and enabled with the operator.
constexpr VoiceParameter OfOperator(VoiceParameter row) {
    row.taken = AtCollection;
    row.gates = {ControlEnable};
    return row;
}

constexpr VoiceParameter Curve(std::uint32_t control, const char *label, const char *name,
                               std::size_t offset) {
    return OfOperator(
        {.control = control,
         .label = label,
         .name = name,
         .kind = List,
         .maximum = 3,
         .offset = offset,
         .packedBits = 2,
         .items = "-linear (-LIN);-exponential (-EXP);+exponential (+EXP);+linear (+LIN)"});
}

constexpr VoiceParameter OperatorRows[] = {
    {.control = 101, .label = "Name:", .kind = Name, .offset = Dx7Voice::name, .taken = Never},
    {.control = ControlEnable,
     .label = "Enable operator",
     .name = "enable",
     .kind = OperatorBit,
     .maximum = 1,
     .offset = Dx7Voice::operatorEnable,
     .taken = AtCollection},
    OfOperator({.control = 221,
                .label = "Oscillator mode fixed",
                .name = "oscillatorMode",
                .kind = Check,
                .maximum = 1,
                .offset = Dx7Operator::oscillatorMode,
                .packedBits = 1}),
    OfOperator({.control = 223,
                .label = "Frequency:",
                .name = "frequency",
                .kind = Frequency,
                .maximum = MostHundredths,
                .offset = Dx7Operator::frequencyCoarse,
                .packedBits = 5 + 8}), // whole part and hundredths
    OfOperator({.control = 224,
                .label = "Frequency detune:",
                .name = "detune",
                .minimum = -7,
                .maximum = 7,
                .offset = Dx7Operator::detune,
                .bias = DetuneBias,
                .packedBits = 4,
                .readBits = 3}),
    OfOperator({.control = 220,
                .label = "Output level:",
                .name = "outputLevel",
                .maximum = HighestLevel,
                .offset = Dx7Operator::outputLevel,
                .tellsOperatorIsOn = true,
                .hasBar = true}),
    OfOperator(Level(219, "Key velocity sensitivity:", "velocitySensitivity",
                     Dx7Operator::velocitySensitivity, HighestLevel, 3)),
    OfOperator({.control = 216,
                .name = "ampModSensitivity",
                .maximum = 3,
                .offset = Dx7Operator::ampModSensitivity,
                .packedBits = 2}),
    OfOperator(Level(202, "EG rate 1:", "egRate1", Dx7Operator::egRate1)),
    OfOperator(Level(206, "EG level 1:", "egLevel1", Dx7Operator::egLevel1)),
    OfOperator(Level(203, "EG rate 2:", "egRate2", Dx7Operator::egRate2)),
    OfOperator(Level(207, "EG level 2:", "egLevel2", Dx7Operator::egLevel2)),
    OfOperator(Level(204, "EG rate 3:", "egRate3", Dx7Operator::egRate3)),
    OfOperator(Level(208, "EG level 3:", "egLevel3", Dx7Operator::egLevel3)),
    OfOperator(Level(205, "EG rate 4:", "egRate4", Dx7Operator::egRate4)),
    OfOperator(Level(209, "EG level 4:", "egLevel4", Dx7Operator::egLevel4)),
    OfOperator(Level(215, "Keyboard level:", "scaleBreakPoint", Dx7Operator::scaleBreakPoint, 127)),
    OfOperator(
        Level(210, "Kbd rate scaling:", "rateScaling", Dx7Operator::rateScaling, HighestLevel, 3)),
    Curve(213, "Kbd rate left curve:", "scaleLeftCurve", Dx7Operator::scaleLeftCurve),
    OfOperator(Level(211, "Kbd rate left depth:", "scaleLeftDepth", Dx7Operator::scaleLeftDepth)),
    Curve(214, "Kbd rate right curve:", "scaleRightCurve", Dx7Operator::scaleRightCurve),
    OfOperator(
        Level(212, "Kbd rate right scaling:", "scaleRightDepth", Dx7Operator::scaleRightDepth)),
};

std::size_t PartOffset(const VoiceObject &voice, int part) {
    const std::size_t payload = HeaderOf(voice)->payloadOffset;
    return part == 0 ? payload : payload + static_cast<std::size_t>(part - 1) * Dx7OperatorSize;
}

bool IsWhole(const VoiceObject &voice) {
    return Dx7VoiceOf(&voice) && HeaderOf(voice)->payloadOffset >= VoiceObjectHeaderSize;
}

std::string PlaceText(int index) {
    return FormatText("Voice %d", index + 1);
}

} // namespace

constinit const VoiceParameters Dx7Parameters = {
    .voice = VoiceRows,
    .operators = OperatorRows,
    .operatorCount = Dx7OperatorCount,
    .lastPageBlock = 4, // what the page Operator 6 shows is the block of Operator 5
    .nameSize = Dx7NameSize,
    .PartOffset = PartOffset,
    .IsWhole = IsWhole,
    .PlaceText = PlaceText,
};

} // namespace tonewright
