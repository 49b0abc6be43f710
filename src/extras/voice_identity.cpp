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

#include <algorithm>
#include <array>
#include <bit>

namespace tonewright {
namespace {

// ---- XXH64

constexpr std::uint64_t Prime1 = 0x9E3779B185EBCA87, Prime2 = 0xC2B2AE3D27D4EB4F,
                        Prime3 = 0x165667B19E3779F9, Prime4 = 0x85EBCA77C2B2AE63,
                        Prime5 = 0x27D4EB2F165667C5;

std::uint64_t Little64(std::span<const std::uint8_t> bytes, std::size_t at) {
    std::uint64_t value = 0;
    for (std::size_t byte = 0; byte < 8; ++byte) {
        value |= std::uint64_t{bytes[at + byte]} << (8 * byte);
    }
    return value;
}

std::uint64_t Round(std::uint64_t sum, std::uint64_t word) {
    return std::rotl(sum + word * Prime2, 31) * Prime1;
}

std::uint64_t Merge(std::uint64_t hash, std::uint64_t sum) {
    return (hash ^ Round(0, sum)) * Prime1 + Prime4;
}

// Of at least 32 bytes.
std::uint64_t Xxh64(std::span<const std::uint8_t> bytes, std::uint64_t seed) {
    std::array<std::uint64_t, 4> sums = {seed + Prime1 + Prime2, seed + Prime2, seed,
                                         seed - Prime1};
    std::size_t at = 0;
    for (; at + 32 <= bytes.size(); at += 32) {
        for (std::size_t lane = 0; lane < sums.size(); ++lane) {
            sums[lane] = Round(sums[lane], Little64(bytes, at + 8 * lane));
        }
    }
    std::uint64_t hash = std::rotl(sums[0], 1) + std::rotl(sums[1], 7) + std::rotl(sums[2], 12) +
                         std::rotl(sums[3], 18);
    for (const std::uint64_t sum : sums) {
        hash = Merge(hash, sum);
    }
    hash += bytes.size();
    for (; at + 8 <= bytes.size(); at += 8) {
        hash = std::rotl(hash ^ Round(0, Little64(bytes, at)), 27) * Prime1 + Prime4;
    }
    if (at + 4 <= bytes.size()) {
        hash = std::rotl(hash ^ ReadLittle32(bytes, at) * Prime1, 23) * Prime2 + Prime3;
        at += 4;
    }
    for (; at < bytes.size(); ++at) {
        hash = std::rotl(hash ^ bytes[at] * Prime5, 11) * Prime1;
    }
    hash = (hash ^ hash >> 33) * Prime2;
    hash = (hash ^ hash >> 29) * Prime3;
    return hash ^ hash >> 32;
}

// ---- the bytes of the parameters

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
    return Xxh64(std::span(packed).first<Dx7ParameterBytes>(), Dx7DriverId);
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
    return Xxh64(parameters, RefaceDriverId);
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
