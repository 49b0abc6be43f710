// A voice as it was found in a file, whatever dump it stood in: its bytes, untouched, and how they
// are to be read.
#pragma once

#include "core/voice_object.h"
#include "drivers/dx7/voice_codec.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tonewright {

enum class VoiceForm : std::uint8_t {
    Dx7Packed, // 128 bytes of a bank
    Dx7Single, // 155 bytes of the instrument's single-voice dump: all operators are on
    Dx7Stored, // 156 bytes, as ours: the last one says which operators are on
    Reface,    // 150 bytes: the common block of 38 and four operators of 28
};

// Bytes of a voice of that form, and its family.
std::size_t SizeOfForm(VoiceForm form);
DriverId FamilyOfForm(VoiceForm form);

// The bytes are SizeOfForm(form) long.
struct DumpVoice {
    VoiceForm form = VoiceForm::Dx7Packed;
    std::span<const std::uint8_t> bytes;
};

// The name, as MakeVoiceNameText gives it (Latin-1), and its ten bytes.
std::string NameOfVoice(const DumpVoice &voice);
std::span<const std::uint8_t, 10> NameBytesOf(const DumpVoice &voice);
// From 1, as the family counts; of a DX7 voice the five bits that the instrument reads.
int AlgorithmOfVoice(const DumpVoice &voice);
// How many bytes are above 7F, which no message can carry.
std::size_t HighBytesOf(const DumpVoice &voice);

// The voice as the main list holds it. All four bits of each detune are read, whatever WholeDetune
// says.
VoiceObject VoiceObjectOf(const DumpVoice &voice);

// A DX7 voice as a bank holds it: packed bytes as they stand; the other forms packed, in which an
// operator that is off has level 0. Only for the forms of the DX7.
std::array<std::uint8_t, Dx7PackedVoiceSize> PackedBytesOf(const DumpVoice &voice);

// A voice that may be kept, with bytes of its own.
struct KeptVoice {
    VoiceForm form = VoiceForm::Dx7Packed;
    std::vector<std::uint8_t> bytes;

    DumpVoice Voice() const { return {form, bytes}; }
    bool operator==(const KeptVoice &) const = default;
};
KeptVoice KeepVoice(const DumpVoice &voice);

} // namespace tonewright
