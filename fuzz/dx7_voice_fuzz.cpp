// Any bytes as a DX7 single-voice file: whatever is imported is exported unchanged.
#include "drivers/dx7/files.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>

using namespace tonewright;

namespace {

void ImportAndExport(std::span<const std::uint8_t> input) {
    const std::string path = FuzzFile("input.sy1", input);
    const Dx7FileVerdict verdict = JudgeDx7Voice(input);
    VoiceList list;
    VoiceObject voice;
    const bool imported = Dx7ImportVoice(nullptr, list, 0, path.c_str(), &voice) == 1;
    Demand(imported == (verdict == Dx7FileVerdict::Ok || verdict == Dx7FileVerdict::WrongChecksum),
           "what is judged acceptable is imported, and nothing else");
    Demand(imported != voice.bytes.empty(), "a refused file gives no voice");
    if (!imported) {
        return;
    }
    const std::string exported = FuzzPath("exported.sy1");
    Demand(Dx7ExportVoice(nullptr, list, &voice, exported.c_str(), 0, 0) == 1,
           "an imported voice can be exported");
    const auto bytes = FuzzRead(exported);
    Demand(JudgeDx7Voice(bytes) == Dx7FileVerdict::Ok, "an exported voice is right");
    Demand(std::ranges::equal(input.first(162), std::span(bytes).first(162)),
           "every byte in front of the checksum is kept");

    // Once packed, a voice stays as it is.
    std::array<std::uint8_t, Dx7PackedVoiceSize> packed, repacked;
    std::array<std::uint8_t, Dx7VoiceSize> unpacked;
    PackDx7Voice(packed, std::span(bytes).subspan<6, Dx7VoiceSize>());
    UnpackDx7Voice(unpacked, packed);
    PackDx7Voice(repacked, unpacked);
    UnpackDx7Voice(unpacked, repacked);
    PackDx7Voice(packed, unpacked);
    Demand(packed == repacked, "a voice that was packed and unpacked stays as it is");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    const std::span<const std::uint8_t> input(data, size);
    ImportAndExport(input);

    // The same bytes as the data of a message whose frame is right.
    std::vector<std::uint8_t> framed(Dx7VoiceFileSize);
    const std::uint8_t header[] = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    std::ranges::copy(header, framed.begin());
    std::ranges::copy(input.first(std::min(size, Dx7VoiceSize)), framed.begin() + 6);
    framed.back() = 0xF7;
    ImportAndExport(framed);
    return 0;
}
