// The memory of a reface DX: voices as its blocks hold them, in the edit buffer too.
#include "drivers/reface_dx/memory.h"

#include "drivers/reface_dx/voice_codec.h"

namespace tonewright {
namespace {

using Bytes = std::span<const std::uint8_t>;

VoiceObject RefaceVoiceOfBytes(Bytes bytes) {
    return MakeVoiceObject(RefaceDriverId, bytes.first<RefaceCommonSize>(),
                           bytes.subspan<RefaceCommonSize, RefaceOperatorsSize>());
}

} // namespace

const InstrumentMemory RefaceMemories[1] = {{.instrument = "reface DX",
                                             .voiceSize = RefaceCommonSize + RefaceOperatorsSize,
                                             .memoryVoice = RefaceVoiceOfBytes,
                                             .editedVoice = RefaceVoiceOfBytes}};

} // namespace tonewright
