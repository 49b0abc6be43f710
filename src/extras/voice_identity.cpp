// The number of a voice: XXH64, a published function, over the bytes of its parameters, the
// family's id being the seed.
//
//   DX7         the 118 bytes in front of the name of a packed voice
//   reface DX   the 23 bytes of the common block's parameters, then 25 of each operator
//
// Bits that no parameter has are 0: in the DX7's bytes that hold two parameters, and those of the
// algorithm above its five. All eight bits count of a byte that holds one parameter alone. No
// message carries the eighth, so what an instrument would make of it nobody can say, and such a
// voice must not stand for the one that it may have been.
//
// An operator that is off has level 0; one of level 0 is off.
#include "extras/voice_identity.h"

#include "drivers/reface_dx/voice_codec.h"
#include "extras/content_sum.h"

#include <algorithm>
#include <array>

namespace tonewright {
namespace {

std::uint64_t SumOf(std::span<const std::uint8_t> bytes, DriverId seed) {
    ContentSum sum(seed);
    sum.Add(bytes);
    return sum.Value();
}

constexpr std::size_t Dx7ParameterBytes = Dx7PackedVoiceSize - Dx7NameSize;

struct SharedByte {
    std::size_t place;
    std::uint8_t bits; // that parameters have
};
constexpr SharedByte SharedOfOperator[] = {
    {11, 0x0F}, // curves
    {12, 0x7F}, // rate scaling, detune
    {13, 0x1F}, // sensitivities
    {15, 0x3F}, // mode, coarse frequency
};
constexpr SharedByte SharedOfVoice[] = {
    {110, 0x1F}, // algorithm
    {111, 0x0F}, // feedback, oscillator sync
    {116, 0x7F}, // LFO sync, wave, pitch sensitivity
};

VoiceIdentity IdentityOfDx7(const DumpVoice &voice) {
    auto packed = PackedBytesOf(voice);
    for (std::size_t block = 0; block < Dx7OperatorCount; ++block) {
        for (const auto &[place, bits] : SharedOfOperator) {
            packed[block * Dx7PackedOperatorSize + place] &= bits;
        }
    }
    for (const auto &[place, bits] : SharedOfVoice) {
        packed[place] &= bits;
    }
    return SumOf(std::span(packed).first<Dx7ParameterBytes>(), Dx7DriverId);
}

constexpr std::size_t RefaceCommonParameters = RefaceVoice::reserved2 - RefaceVoice::transpose;
constexpr std::size_t RefaceOperatorParameters = RefaceOperator::reserved3;

VoiceIdentity IdentityOfReface(std::span<const std::uint8_t> voice) {
    std::array<std::uint8_t,
               RefaceCommonParameters + RefaceOperatorCount * RefaceOperatorParameters>
        parameters;
    auto to = std::ranges::copy(voice.subspan<RefaceVoice::transpose, RefaceCommonParameters>(),
                                parameters.begin())
                  .out;
    for (std::size_t n = 0; n < RefaceOperatorCount; ++n) {
        const auto from =
            voice.subspan(RefaceCommonSize + n * RefaceOperatorSize, RefaceOperatorParameters);
        const auto block = to;
        to = std::ranges::copy(from, to).out;
        if (block[RefaceOperator::enable] == 0 || block[RefaceOperator::outputLevel] == 0) {
            block[RefaceOperator::enable] = block[RefaceOperator::outputLevel] = 0;
        }
    }
    return SumOf(parameters, RefaceDriverId);
}

constexpr int IdentityDigits = 16;

} // namespace

VoiceIdentity IdentityOf(const DumpVoice &voice) {
    return voice.form == VoiceForm::Reface ? IdentityOfReface(voice.bytes) : IdentityOfDx7(voice);
}

std::string TextOfIdentity(VoiceIdentity identity) {
    std::string text(IdentityDigits, '0');
    for (auto digit = text.rbegin(); digit != text.rend(); ++digit, identity >>= 4) {
        *digit = "0123456789abcdef"[identity & 15];
    }
    return text;
}

std::optional<VoiceIdentity> ReadIdentity(std::string_view text) {
    if (text.size() != IdentityDigits) {
        return std::nullopt;
    }
    VoiceIdentity identity = 0;
    for (const char character : text) {
        constexpr std::string_view digits = "0123456789abcdefABCDEF";
        const std::size_t found = digits.find(character);
        if (found == digits.npos) {
            return std::nullopt;
        }
        identity = identity << 4 | (found < 16 ? found : found - 6);
    }
    return identity;
}

} // namespace tonewright
