// The two byte forms of a DX7 voice.
//
// Packed, 128 bytes, as a 32-voice bulk dump holds it: six operator blocks of 17 bytes, then the
// voice-wide bytes 102 to 127 (pitch envelope, algorithm, feedback, LFO, transpose, name).
// Unpacked, 156 bytes, one parameter a byte, as the single-voice dump holds it: six operator blocks
// of 21 bytes, the voice-wide fields 126 to 154 and, at 155, which operators are switched on.
// Both follow the published MIDI data format of the DX7.
#pragma once

#include "core/voice_object.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tonewright {

constexpr DriverId Dx7DriverId = MakeDriverId("y7XD");
static_assert(Dx7DriverId == 0x44583779);

constexpr std::size_t Dx7PackedVoiceSize = 128;
constexpr std::size_t Dx7VoiceSize = 156;
constexpr std::size_t Dx7OperatorCount = 6;
constexpr std::size_t Dx7OperatorSize = 21;       // unpacked
constexpr std::size_t Dx7PackedOperatorSize = 17;
constexpr std::size_t Dx7NameSize = 10;
constexpr int Dx7VoicesPerBank = 32;

// Offsets in an unpacked operator block.
namespace Dx7Operator {
enum : std::size_t {
    egRate1 = 0, egRate2, egRate3, egRate4,
    egLevel1, egLevel2, egLevel3, egLevel4,
    scaleBreakPoint, scaleLeftDepth, scaleRightDepth, scaleLeftCurve, scaleRightCurve,
    rateScaling, ampModSensitivity, velocitySensitivity, outputLevel,
    oscillatorMode, frequencyCoarse, frequencyFine, detune,
};
static_assert(detune + 1 == Dx7OperatorSize);
} // namespace Dx7Operator

// Offsets of the voice-wide fields of an unpacked voice.
namespace Dx7Voice {
enum : std::size_t {
    pitchEgRate1 = 126, pitchEgRate2, pitchEgRate3, pitchEgRate4,
    pitchEgLevel1, pitchEgLevel2, pitchEgLevel3, pitchEgLevel4,
    algorithm, // 0 to 31; shown plus one
    feedback, oscillatorKeySync,
    lfoSpeed, lfoDelay, lfoPitchModDepth, lfoAmpModDepth, lfoKeySync, lfoWave,
    pitchModSensitivity, transpose,
    name,                  // ten bytes, blank-padded
    operatorEnable = 155,  // bit 5: first operator block in the data ... bit 0: last
};
static_assert(name == 145 && operatorEnable + 1 == Dx7VoiceSize);
} // namespace Dx7Voice

using Dx7Packed = std::span<std::uint8_t, Dx7PackedVoiceSize>;
using Dx7PackedConst = std::span<const std::uint8_t, Dx7PackedVoiceSize>;
using Dx7Unpacked = std::span<std::uint8_t, Dx7VoiceSize>;
using Dx7UnpackedConst = std::span<const std::uint8_t, Dx7VoiceSize>;

// Every byte of the destination is written. Nothing is checked: an out-of-range byte in a copied
// field is passed on, a bit field is cut to its width. Of the packed detune only three of the four
// bits are read, so 8 to 14 come out as 0 to 6; with WholeDetune all four. An operator is enabled
// when its level is not 0.
void UnpackDx7Voice(Dx7Unpacked destination, Dx7PackedConst source);
// The same with all four bits of each detune, whatever WholeDetune says.
void UnpackWholeDx7Voice(Dx7Unpacked destination, Dx7PackedConst source);
// An operator that is not enabled is packed with level 0.
void PackDx7Voice(Dx7Packed destination, Dx7UnpackedConst source);

// A block with the 156 bytes as payload and the DX7 driver's id.
VoiceObject MakeDx7VoiceObject(Dx7UnpackedConst voice);

// The 156 bytes in such a block; nothing for null, a block of another driver, or one that is too
// short.
std::optional<Dx7UnpackedConst> Dx7VoiceOf(const VoiceObject *voice);

// The name of ten bytes as MakeVoiceNameText gives it. Static text.
const char *Dx7NameText(const std::uint8_t *tenBytes);

// VoiceName operation of the DX7 row: writes the name and returns its length. 0 for a block whose
// payload is too short.
int Dx7VoiceName(std::string &name, const VoiceObject &voice);

// VoiceAlgorithm operation of the DX7 row.
int Dx7VoiceAlgorithm(const VoiceObject &voice);

} // namespace tonewright
