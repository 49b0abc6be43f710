// Voices as they were found.
#include "extras/dump_voice.h"

#include "drivers/reface_dx/voice_codec.h"

#include <algorithm>

namespace tonewright {
namespace {

constexpr std::size_t SingleSize = Dx7Voice::operatorEnable;
constexpr std::size_t RefaceSize = RefaceCommonSize + RefaceOperatorsSize;
static_assert(SingleSize == 155 && RefaceSize == 150);

constexpr std::size_t PackedAlgorithm = 110;
constexpr std::size_t PackedName = Dx7PackedVoiceSize - Dx7NameSize;
constexpr std::uint8_t AlgorithmBits = 31;
constexpr std::uint8_t AllOperators = (1 << Dx7OperatorCount) - 1;

constexpr std::uint8_t LargestOfMessage = 0x7F;

std::size_t NamePlaceOf(VoiceForm form) {
    switch (form) {
    case VoiceForm::Dx7Packed:
        return PackedName;
    case VoiceForm::Reface:
        return RefaceVoice::name;
    default:
        return Dx7Voice::name;
    }
}

// A DX7 voice one parameter a byte.
std::array<std::uint8_t, Dx7VoiceSize> UnpackedBytesOf(const DumpVoice &voice) {
    std::array<std::uint8_t, Dx7VoiceSize> unpacked;
    switch (voice.form) {
    case VoiceForm::Dx7Packed:
        UnpackWholeDx7Voice(unpacked, voice.bytes.first<Dx7PackedVoiceSize>());
        break;
    case VoiceForm::Dx7Single:
        std::ranges::copy(voice.bytes.first<SingleSize>(), unpacked.begin());
        unpacked[Dx7Voice::operatorEnable] = AllOperators;
        break;
    default:
        std::ranges::copy(voice.bytes.first<Dx7VoiceSize>(), unpacked.begin());
        break;
    }
    return unpacked;
}

} // namespace

std::size_t SizeOfForm(VoiceForm form) {
    switch (form) {
    case VoiceForm::Dx7Packed:
        return Dx7PackedVoiceSize;
    case VoiceForm::Dx7Single:
        return SingleSize;
    case VoiceForm::Dx7Stored:
        return Dx7VoiceSize;
    case VoiceForm::Reface:
        return RefaceSize;
    }
    return 0;
}

DriverId FamilyOfForm(VoiceForm form) {
    return form == VoiceForm::Reface ? RefaceDriverId : Dx7DriverId;
}

std::string NameOfVoice(const DumpVoice &voice) {
    return MakeVoiceNameText(NameBytesOf(voice));
}

std::span<const std::uint8_t, 10> NameBytesOf(const DumpVoice &voice) {
    static_assert(Dx7NameSize == 10 && RefaceNameSize == 10);
    return voice.bytes.subspan(NamePlaceOf(voice.form)).first<10>();
}

int AlgorithmOfVoice(const DumpVoice &voice) {
    switch (voice.form) {
    case VoiceForm::Dx7Packed:
        return (voice.bytes[PackedAlgorithm] & AlgorithmBits) + 1;
    case VoiceForm::Reface:
        return voice.bytes[RefaceVoice::algorithm] + 1;
    default:
        return (voice.bytes[Dx7Voice::algorithm] & AlgorithmBits) + 1;
    }
}

std::size_t HighBytesOf(const DumpVoice &voice) {
    return static_cast<std::size_t>(std::ranges::count_if(
        voice.bytes, [](std::uint8_t byte) { return byte > LargestOfMessage; }));
}

VoiceObject VoiceObjectOf(const DumpVoice &voice) {
    if (voice.form == VoiceForm::Reface) {
        return MakeVoiceObject(RefaceDriverId, voice.bytes.first(RefaceCommonSize),
                               voice.bytes.subspan(RefaceCommonSize, RefaceOperatorsSize));
    }
    return MakeDx7VoiceObject(UnpackedBytesOf(voice));
}

std::array<std::uint8_t, Dx7PackedVoiceSize> PackedBytesOf(const DumpVoice &voice) {
    std::array<std::uint8_t, Dx7PackedVoiceSize> packed;
    if (voice.form == VoiceForm::Dx7Packed) {
        std::ranges::copy(voice.bytes.first<Dx7PackedVoiceSize>(), packed.begin());
    } else {
        PackDx7Voice(packed, UnpackedBytesOf(voice));
    }
    return packed;
}

KeptVoice KeepVoice(const DumpVoice &voice) {
    return {voice.form, {voice.bytes.begin(), voice.bytes.end()}};
}

} // namespace tonewright
