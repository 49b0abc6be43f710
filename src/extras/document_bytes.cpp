// Banks and single voices of either family, around the bytes of voices.
#include "extras/document_bytes.h"

#include "drivers/dx7/files.h"
#include "drivers/reface_dx/files.h"
#include "extras/initial_voice.h"

#include <algorithm>
#include <array>

namespace tonewright {

namespace {

std::vector<std::uint8_t> Dx7BankOf(std::span<const KeptVoice> voices) {
    std::array<std::uint8_t, Dx7BankFileSize> image;
    auto end = image.begin() + Dx7FileHeaderSize;
    for (const KeptVoice &voice : voices) {
        end = std::ranges::copy(PackedBytesOf(voice.Voice()), end).out;
    }
    const KeptVoice initial = InitialVoiceOf(Dx7DriverId);
    for (std::size_t row = voices.size(); row < Dx7VoicesPerBank; ++row) {
        end = std::ranges::copy(initial.bytes, end).out;
    }
    CloseDx7Bank(image);
    return {image.begin(), image.end()};
}

std::vector<std::uint8_t> RefaceFileOf(RefaceFileKind kind, std::span<const KeptVoice> voices) {
    std::vector<VoiceObject> objects;
    for (const KeptVoice &voice : voices) {
        objects.push_back(VoiceObjectOf(voice.Voice()));
    }
    if (kind == RefaceFileKind::Bank) {
        objects.resize(RefaceVoicesPerBank, VoiceObjectOf(InitialVoiceOf(RefaceDriverId).Voice()));
    }
    std::vector<const VoiceObject *> rows;
    for (const VoiceObject &object : objects) {
        rows.push_back(&object);
    }
    constexpr std::uint32_t unknownFirmware = 0;
    return EncodeRefaceFile(kind, rows, unknownFirmware);
}

} // namespace

std::vector<std::uint8_t> BankBytesOf(std::span<const KeptVoice> voices) {
    return voices.front().form == VoiceForm::Reface ? RefaceFileOf(RefaceFileKind::Bank, voices)
                                                    : Dx7BankOf(voices);
}

std::vector<std::uint8_t> VoiceFileBytesOf(const KeptVoice &voice) {
    if (voice.form == VoiceForm::Reface) {
        return RefaceFileOf(RefaceFileKind::SingleVoice, {&voice, 1});
    }
    const VoiceObject object = VoiceObjectOf(voice.Voice());
    const auto image = EncodeDx7Voice(*Dx7VoiceOf(&object));
    return {image.begin(), image.end()};
}

bool LosesLevelInBank(const KeptVoice &voice) {
    if (voice.form != VoiceForm::Dx7Stored) {
        return false;
    }
    for (std::size_t block = 0; block < Dx7OperatorCount; ++block) {
        const bool isOn = voice.bytes[Dx7Voice::operatorEnable] & 0x20 >> block;
        if (!isOn && voice.bytes[block * Dx7OperatorSize + Dx7Operator::outputLevel] != 0) {
            return true;
        }
    }
    return false;
}

} // namespace tonewright
