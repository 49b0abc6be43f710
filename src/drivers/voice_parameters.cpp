// Reads and writes parameters by their rows.
#include "drivers/voice_parameters.h"

#include "common/settings.h"
#include "common/text.h"
#include "drivers/frequency.h"

#include <algorithm>

namespace tonewright {
namespace {

const std::uint8_t *ByteOf(const VoiceParameters &family, const VoiceParameter &row,
                           const VoiceObject &voice, int part) {
    const int owner = row.kind == ParameterKind::OperatorBit ? 0 : part;
    return voice.bytes.data() + family.PartOffset(voice, owner) + row.offset;
}

std::uint8_t *ByteOf(const VoiceParameters &family, const VoiceParameter &row, VoiceObject &voice,
                     int part) {
    return const_cast<std::uint8_t *>(
        ByteOf(family, row, static_cast<const VoiceObject &>(voice), part));
}

std::uint8_t OperatorBitOf(const VoiceParameters &family, int part) {
    return static_cast<std::uint8_t>(1u << (family.operatorCount - part));
}

} // namespace

int BiasOf(const VoiceParameter &row) {
    return RefaceZero64 != 0 ? row.instrumentBias.value_or(row.bias) : row.bias;
}

int ShownValue(const VoiceParameters &family, const VoiceParameter &row, const VoiceObject &voice,
               int part) {
    const std::uint8_t *byte = ByteOf(family, row, voice, part);
    switch (row.kind) {
    case ParameterKind::Frequency:
        return byte[0] * HundredthsOfOne + byte[1];
    case ParameterKind::Check:
        return *byte != 0;
    case ParameterKind::OperatorBit:
        return (*byte & OperatorBitOf(family, part)) != 0;
    default:
        return *byte - BiasOf(row);
    }
}

void StoreShownValue(const VoiceParameters &family, const VoiceParameter &row, VoiceObject &voice,
                     int part, int shown) {
    std::uint8_t *byte = ByteOf(family, row, voice, part);
    const std::uint8_t bit = OperatorBitOf(family, part);
    switch (row.kind) {
    case ParameterKind::Frequency:
        byte[0] = static_cast<std::uint8_t>(shown / HundredthsOfOne);
        byte[1] = static_cast<std::uint8_t>(shown % HundredthsOfOne);
        break;
    case ParameterKind::Check:
        *byte = shown != 0;
        break;
    case ParameterKind::OperatorBit:
        *byte = static_cast<std::uint8_t>(shown != 0 ? *byte | bit : *byte & ~bit);
        break;
    default:
        *byte = static_cast<std::uint8_t>(shown + BiasOf(row));
    }
}

std::string ShownName(const VoiceParameters &family, const VoiceParameter &row,
                      const VoiceObject &voice) {
    return MakeVoiceNameText({ByteOf(family, row, voice, 0), family.nameSize});
}

void StoreShownName(const VoiceParameters &family, const VoiceParameter &row, VoiceObject &voice,
                    const std::string &text) {
    const std::span<std::uint8_t> field(ByteOf(family, row, voice, 0), family.nameSize);
    std::ranges::fill(field, std::uint8_t{0});
    std::copy_n(text.begin(), std::min(text.size(), field.size()), field.begin());
}

} // namespace tonewright
