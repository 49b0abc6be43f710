// Any bytes as a reface DX single-voice file: what is imported is the file's first record as it
// stands, and comes back unchanged from an export. Any text as a frequency.
#include "drivers/reface_dx/files.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <string_view>

using namespace tonewright;

namespace {

void ImportAndExport(std::span<const std::uint8_t> input) {
    const std::string path = FuzzFile("input.sr1", input);
    VoiceList list;
    VoiceObject voice;
    const bool imported = RefaceImportVoice(nullptr, list, 0, path.c_str(), &voice) == 1;
    const auto header = RefaceHeaderOf(input, RefaceFileKind::SingleVoice);
    const std::size_t room = header ? input.size() - RefaceFileHeaderSize : 0;
    Demand(imported == (header && header->recordSize > 0 && header->recordSize <= room),
           "a whole record is imported, and nothing else");
    Demand(imported != voice.bytes.empty(), "a refused file gives no voice");
    if (!imported) {
        return;
    }
    Demand(std::ranges::equal(voice.bytes, input.subspan(RefaceFileHeaderSize, header->recordSize)),
           "the record is kept as it stands");

    const std::string exported = FuzzPath("exported.sr1");
    const bool written = RefaceExportVoice(nullptr, list, &voice, exported.c_str(), 0, 7) == 1;
    Demand(written == RefaceVoiceCanBeWritten(&voice), "a whole voice can be exported");
    if (written) {
        VoiceObject again;
        Demand(RefaceImportVoice(nullptr, list, 0, exported.c_str(), &again) == 1,
               "an exported voice can be imported");
        Demand(
            std::ranges::equal(again.bytes, std::span(voice.bytes).first<RefaceVoiceObjectSize>()),
            "every byte is kept");
    }

    // Through its parts a voice is changed nowhere else.
    if (const auto parts = MutableRefaceVoiceOf(voice)) {
        const VoiceObject before = voice;
        std::ranges::fill(parts->common, std::uint8_t{0x55});
        std::ranges::fill(parts->operators, std::uint8_t{0x55});
        const auto offset = HeaderOf(before)->payloadOffset;
        Demand(voice.bytes.size() == before.bytes.size(), "the block keeps its size");
        Demand(offset < VoiceObjectHeaderSize ||
                   HeaderOf(voice)->driverId == HeaderOf(before)->driverId,
               "the header is not part of the voice");
    }
}

void ReadAsFrequency(std::string_view text) {
    const RefaceFrequency frequency = ReadRefaceFrequency(text);
    Demand(frequency.coarse <= 31 && frequency.fine <= 99, "a frequency lies in its range");
    const std::string shown = RefaceFrequencyText(frequency);
    Demand(shown.size() == 4 || shown.size() == 5, "a frequency is shown with two decimals");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    const std::span<const std::uint8_t> input(data, size);
    ImportAndExport(input);
    ReadAsFrequency({reinterpret_cast<const char *>(data), size});

    // The same bytes behind a right magic and driver id, and as the record of a right header.
    std::vector<std::uint8_t> file(input.begin(), input.end());
    file.resize(std::max(size, RefaceFileHeaderSize));
    std::ranges::copy(std::string_view("TNWRDxrf"), file.begin());
    WriteLittle32(file, 16, RefaceDxDriverId);
    ImportAndExport(file);

    file.insert(file.begin() + RefaceFileHeaderSize, input.begin(), input.end());
    file.resize(std::max(file.size(), RefaceVoiceFileSize));
    WriteLittle32(file, 28, RefaceVoiceObjectSize);
    ImportAndExport(file);
    return 0;
}
