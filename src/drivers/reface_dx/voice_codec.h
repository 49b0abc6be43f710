// The one byte form of a reface DX voice.
//
// The instrument's bulk dump, the voice in memory and the voice in a file are the same bytes: a
// common block of 38, which is the payload of the block that holds the voice, then four operator
// blocks of 28, which are its extra data. Nothing is packed, converted or checked on the way, and
// the bytes that belong to no parameter travel along.
//
//   offset  0  header of 52 bytes: payloadSize 38, extraSize 112, driverId "xdFR"
//          52  common block
//          90  operator 1, 118 operator 2, 146 operator 3, 174 operator 4
//         202  end
#pragma once

#include "core/voice_object.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tonewright {

constexpr DriverId RefaceDriverId = MakeDriverId("xdFR");
static_assert(RefaceDriverId == 0x52466478);

constexpr std::size_t RefaceCommonSize = 38;
constexpr std::size_t RefaceOperatorCount = 4;
constexpr std::size_t RefaceOperatorSize = 28;
constexpr std::size_t RefaceOperatorsSize = RefaceOperatorCount * RefaceOperatorSize;
constexpr std::size_t RefaceVoiceObjectSize =
    VoiceObjectHeaderSize + RefaceCommonSize + RefaceOperatorsSize;
static_assert(RefaceVoiceObjectSize == 202);
constexpr std::size_t RefaceNameSize = 10;
constexpr int RefaceVoicesPerBank = 32;
constexpr int RefaceProgramsPerBank = 8; // the instrument counts four banks of eight

// Offsets in the common block.
namespace RefaceVoice {
enum : std::size_t {
    name = 0,       // ten bytes, zero-filled
    reserved1 = 10, // two bytes
    transpose = 12, // -24 to 24, stored with RefaceTransposeBias
    partMode,
    portamentoTime,
    pitchBend, // -24 to 24, stored with RefaceTransposeBias
    algorithm, // 0 to 11; shown plus one
    lfoWave,
    lfoSpeed,
    lfoDelay,
    lfoModDepth,
    pitchEgRate1,
    pitchEgRate2,
    pitchEgRate3,
    pitchEgRate4,
    pitchEgLevel1,
    pitchEgLevel2,
    pitchEgLevel3,
    pitchEgLevel4,
    effect1Type,
    effect1Param1,
    effect1Param2,
    effect2Type,
    effect2Param1,
    effect2Param2,
    reserved2, // three bytes
};
static_assert(name + RefaceNameSize == reserved1 && algorithm == 16 && pitchEgRate1 == 21 &&
              effect1Type == 29 && reserved2 + 3 == RefaceCommonSize);
} // namespace RefaceVoice

// Offsets in an operator block.
namespace RefaceOperator {
enum : std::size_t {
    enable = 0,
    egRate1,
    egRate2,
    egRate3,
    egRate4,
    egLevel1,
    egLevel2,
    egLevel3,
    egLevel4,
    kbdRateScaling,
    kbdLeftDepth,
    kbdRightDepth,
    kbdLeftCurve,
    kbdRightCurve,
    lfoAmdDepth,
    lfoPmd,
    pitchEg,
    levelVelocitySense,
    outputLevel,
    feedbackLevel,
    feedbackType,
    frequencyMode,
    frequencyCoarse, // 0 to 31, whole part
    frequencyFine,   // 0 to 99, hundredths
    frequencyDetune, // -64 to 63, stored with RefaceDetuneBias
    reserved3,       // three bytes
};
static_assert(egRate1 == 1 && kbdLeftCurve == 12 && feedbackType == 20 &&
              reserved3 + 3 == RefaceOperatorSize);
} // namespace RefaceOperator

// What the values of the parameters that are lists mean, in their order.
constexpr const char *RefacePartModes = "Poly;Mono-full;Mono-legato";
constexpr const char *RefaceLfoWaves =
    "Sine (SIN);Triangle (TRI);Sawtooth up (SAW U);Sawtooth down (SAW D);Square (SQ);"
    "Sample and hold 8 (SH8);Sample and hold (SH)";
constexpr const char *RefaceEffectTypes =
    "Through (THRU);Distortion (DIST);Touch wah (T.WAH);Chorus (CHO);Flanger (FLA);Phaser (PHA);"
    "Delay (DLY);Reverb (REV)";
constexpr const char *RefaceKbdCurves =
    "-linear (-LIN);-exponential (-EXP);+exponential (+EXP);+linear (+LIN)";
constexpr const char *RefaceFeedbackTypes = "Sawtooth;Square";
constexpr const char *RefaceFrequencyModes = "Frequency/ratio (Ratio);Fixed freq/Hz (Fixed)";

// Signed parameters are stored with a bias.
constexpr int RefaceTransposeBias = 40;
constexpr int RefaceInstrumentZero = 64; // as the instrument counts transpose and pitch bend
constexpr int RefaceDetuneBias = 64;

// A block with 38 and 112 zero bytes and the reface DX driver's id.
VoiceObject MakeRefaceVoiceObject();

// The two parts of a voice. Nothing for a block that PayloadOf refuses, or whose parts are shorter.
struct RefaceVoiceParts {
    std::span<const std::uint8_t, RefaceCommonSize> common;
    std::span<const std::uint8_t, RefaceOperatorsSize> operators;
};
std::optional<RefaceVoiceParts> RefaceVoiceOf(const VoiceObject &voice);
// The same for writing in place.
struct MutableRefaceVoiceParts {
    std::span<std::uint8_t, RefaceCommonSize> common;
    std::span<std::uint8_t, RefaceOperatorsSize> operators;
};
std::optional<MutableRefaceVoiceParts> MutableRefaceVoiceOf(VoiceObject &voice);

// The common block alone, all that a name and a picture need. Nothing for a block that PayloadOf
// refuses, or whose payload is shorter.
std::optional<std::span<const std::uint8_t, RefaceCommonSize>>
RefaceCommonOf(const VoiceObject &voice);
// One operator alone, 0 to 3, of a block that may hold fewer than four.
std::optional<std::span<const std::uint8_t, RefaceOperatorSize>>
RefaceOperatorOf(const VoiceObject &voice, std::size_t index);

// The name of ten bytes as MakeVoiceNameText gives it. Static text.
const char *RefaceNameText(const std::uint8_t *tenBytes);

// VoiceName operation of the reface DX row: writes the name and returns its length. 0, and the name
// untouched, for a block without a whole common block.
int RefaceVoiceName(std::string &name, const VoiceObject &voice);

// VoiceAlgorithm operation of the reface DX row.
int RefaceVoiceAlgorithm(const VoiceObject &voice);

// The place of a voice in its list, from 0, as list and instrument count it: 8 reads
// "9 (Bank 2 - 1)".
std::string RefacePlaceText(int index);

} // namespace tonewright
