// Any bytes as a reface DX single-voice file: what is decoded is the file's first record as it
// stands, and comes back unchanged.
#include "drivers/reface_dx/files.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <string_view>

using namespace tonewright;

namespace {

void DecodeAndEncode(std::span<const std::uint8_t> input) {
    auto voice = DecodeRefaceVoice(input);
    const auto header = RefaceHeaderOf(input, RefaceFileKind::SingleVoice);
    const std::size_t room = header ? input.size() - RefaceFileHeaderSize : 0;
    Demand(voice.has_value() == (header && header->recordSize > 0 && header->recordSize <= room),
           "a whole record is decoded, and nothing else");
    if (!voice) {
        return;
    }
    Demand(
        std::ranges::equal(voice->bytes, input.subspan(RefaceFileHeaderSize, header->recordSize)),
        "the record is kept as it stands");

    if (RefaceVoiceCanBeWritten(&*voice)) {
        const VoiceObject *const voices[] = {&*voice};
        const auto again =
            DecodeRefaceVoice(EncodeRefaceFile(RefaceFileKind::SingleVoice, voices, 7));
        Demand(again.has_value(), "an encoded voice is decoded");
        Demand(std::ranges::equal(again->bytes,
                                  std::span(voice->bytes).first<RefaceVoiceObjectSize>()),
               "every byte is kept");
    }

    // Through its parts a voice is changed nowhere else.
    if (const auto parts = MutableRefaceVoiceOf(*voice)) {
        const VoiceObject before = *voice;
        std::ranges::fill(parts->common, std::uint8_t{0x55});
        std::ranges::fill(parts->operators, std::uint8_t{0x55});
        const auto offset = HeaderOf(before)->payloadOffset;
        Demand(voice->bytes.size() == before.bytes.size(), "the block keeps its size");
        Demand(offset < VoiceObjectHeaderSize ||
                   HeaderOf(*voice)->driverId == HeaderOf(before)->driverId,
               "the header is not part of the voice");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    DecodeAndEncode(input);

    // The same bytes behind a right magic and driver id, and as the record of a right header.
    std::vector<std::uint8_t> file(input.begin(), input.end());
    file.resize(std::max(size, RefaceFileHeaderSize));
    std::ranges::copy(std::string_view("TNWRDxrf"), file.begin());
    WriteLittle32(file, 16, RefaceDriverId);
    DecodeAndEncode(file);

    file.insert(file.begin() + RefaceFileHeaderSize, input.begin(), input.end());
    file.resize(std::max(file.size(), RefaceVoiceFileSize));
    WriteLittle32(file, 28, RefaceVoiceObjectSize);
    DecodeAndEncode(file);
    return 0;
}
