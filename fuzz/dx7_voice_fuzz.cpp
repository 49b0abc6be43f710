// Any bytes as a DX7 single-voice file: whatever is decoded is encoded unchanged.
#include "drivers/dx7/files.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>

using namespace tonewright;

namespace {

void DecodeAndEncode(std::span<const std::uint8_t> input) {
    const Dx7FileVerdict verdict = JudgeDx7Voice(input);
    const auto voice = DecodeDx7Voice(input);
    Demand(voice.has_value() ==
               (verdict == Dx7FileVerdict::Ok || verdict == Dx7FileVerdict::WrongChecksum),
           "what is judged acceptable is decoded, and nothing else");
    if (!voice) {
        return;
    }
    const auto bytes = Dx7VoiceOf(&*voice);
    Demand(bytes.has_value(), "a decoded voice is a DX7's");
    const auto file = EncodeDx7Voice(*bytes);
    Demand(JudgeDx7Voice(file) == Dx7FileVerdict::Ok, "an encoded voice is right");
    Demand(std::ranges::equal(input.first(162), std::span(file).first(162)),
           "every byte in front of the checksum is kept");

    // Once packed, a voice stays as it is.
    std::array<std::uint8_t, Dx7PackedVoiceSize> packed, repacked;
    std::array<std::uint8_t, Dx7VoiceSize> unpacked;
    PackDx7Voice(packed, *bytes);
    UnpackDx7Voice(unpacked, packed);
    PackDx7Voice(repacked, unpacked);
    UnpackDx7Voice(unpacked, repacked);
    PackDx7Voice(packed, unpacked);
    Demand(packed == repacked, "a voice that was packed and unpacked stays as it is");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    DecodeAndEncode(input);

    // The same bytes as the data of a message whose frame is right.
    std::array<std::uint8_t, Dx7VoiceFileSize> framed{};
    const std::uint8_t header[] = {0xF0, 0x43, 0x00, 0x00, 0x01, 0x1B};
    std::ranges::copy(header, framed.begin());
    std::ranges::copy(input.first(std::min(size, Dx7VoiceSize)), framed.begin() + 6);
    framed.back() = 0xF7;
    DecodeAndEncode(framed);
    return 0;
}
