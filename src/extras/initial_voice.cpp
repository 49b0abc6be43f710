// The bytes of the initial voices.
#include "extras/initial_voice.h"

#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"

#include <array>

namespace tonewright {
namespace {

// clang-format off
constexpr std::array<std::uint8_t, Dx7PackedVoiceSize> Dx7Initial = {
    99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0x38, 0,  0, 0x02, 0, // operator 6, of ratio 1
    99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0x38, 0,  0, 0x02, 0,
    99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0x38, 0,  0, 0x02, 0,
    99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0x38, 0,  0, 0x02, 0,
    99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0x38, 0,  0, 0x02, 0,
    99, 99, 99, 99, 99, 99, 99, 0, 39, 0, 0, 0, 0x38, 0, 99, 0x02, 0, // operator 1
    99, 99, 99, 99, 50, 50, 50, 50,                                   // pitch envelope
    0, 0x08,                 // algorithm 1, no feedback, operators in step
    35, 0, 0, 0, 0x31, 24,   // LFO in step, pitch sensitivity 3, transpose C3
    'I', 'N', 'I', 'T', ' ', 'V', 'O', 'I', 'C', 'E',
};

constexpr std::array<std::uint8_t, RefaceCommonSize + RefaceOperatorsSize> RefaceInitial = {
    'I', 'n', 'i', 't', ' ', 'V', 'o', 'i', 'c', 'e', 0, 0,
    64, 0, 0, 66,                       // no transpose, poly, no portamento, bend of 2 semitones
    0, 0, 64, 0, 0,                     // algorithm 1, LFO without depth
    127, 127, 127, 127, 64, 64, 64, 64, // pitch envelope
    0, 0, 0, 0, 0, 0, 0, 0, 0,          // no effects
    // Operators: on, envelope, no scaling, follows LFO and pitch envelope, level, ratio 1.
    1, 127, 127, 127, 127, 127, 127, 127, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0, 127, 0, 0, 0, 1, 0, 64, 0, 0, 0,
    1, 127, 127, 127, 127, 127, 127, 127, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0,   0, 0, 0, 0, 1, 0, 64, 0, 0, 0,
    1, 127, 127, 127, 127, 127, 127, 127, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0,   0, 0, 0, 0, 1, 0, 64, 0, 0, 0,
    1, 127, 127, 127, 127, 127, 127, 127, 0, 0, 0, 0, 0, 0, 0, 1, 1, 0,   0, 0, 0, 0, 1, 0, 64, 0, 0, 0,
};
// clang-format on

} // namespace

KeptVoice InitialVoiceOf(DriverId family) {
    if (family == RefaceDriverId) {
        return {VoiceForm::Reface, {RefaceInitial.begin(), RefaceInitial.end()}};
    }
    return {VoiceForm::Dx7Packed, {Dx7Initial.begin(), Dx7Initial.end()}};
}

} // namespace tonewright
