// Any bytes as a reface DX bank: what is decoded holds the records of the file as they stand, what
// is not leaves the whole ones in front of its end, and what can be written is such a bank again.
#include "core/dispatch.h"
#include "drivers/reface_dx/files.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>
#include <string_view>

using namespace tonewright;

namespace {

void LookAt(const VoiceObject &voice) {
    std::string name;
    const int length = RefaceVoiceName(name, voice);
    Demand(length >= 0 && length <= static_cast<int>(RefaceNameSize), "a name has ten bytes");
    Demand(static_cast<std::size_t>(length) == name.size(), "the length is the name's");
    Demand(!RefaceVoiceOf(voice) || RefaceCommonOf(voice), "a whole voice has a common block");
    Demand(VoiceObjectName(voice)[0] != 0, "everything can be named");
}

// That such a bank is decoded to what it holds is seen with every input that is one.
void Encode(const VoiceList &list) {
    std::array<const VoiceObject *, RefaceVoicesPerBank> voices;
    for (int row = 0; row < RefaceVoicesPerBank; ++row) {
        voices[row] = ListVoice(list, row);
    }
    if (!std::ranges::all_of(voices, RefaceVoiceCanBeWritten)) {
        return;
    }
    const auto file = EncodeRefaceFile(RefaceFileKind::Bank, voices, 0x01020304);
    Demand(file.size() == RefaceBankFileSize, "an encoded bank has its size");
    const auto header = RefaceHeaderOf(file, RefaceFileKind::Bank);
    Demand(header && header->voiceCount == RefaceVoicesPerBank &&
               header->recordSize == RefaceVoiceObjectSize,
           "its header says what it holds");
    for (std::size_t row = 0; row < RefaceVoicesPerBank; ++row) {
        const std::uint8_t *record = &file[RefaceFileHeaderSize + row * RefaceVoiceObjectSize];
        Demand(std::equal(record, record + RefaceVoiceObjectSize, list.items[row].bytes.data()),
               "every byte is kept");
    }
}

void DecodeAndEncode(std::span<const std::uint8_t> input) {
    VoiceList list;
    const bool decoded = DecodeRefaceBank(list, input);
    const auto header = RefaceHeaderOf(input, RefaceFileKind::Bank);
    const std::size_t room = header ? input.size() - RefaceFileHeaderSize : 0;
    const std::size_t records =
        header && header->recordSize > 0
            ? std::min<std::size_t>(header->voiceCount, room / header->recordSize)
            : 0;
    Demand(decoded == (header && records == header->voiceCount),
           "a bank is decoded when all is there");
    Demand(static_cast<std::size_t>(ListCount(list)) == records, "its whole records are listed");
    Demand(list.selection == (decoded && records > 0 ? 0 : NoRow), "the first row is selected");
    for (std::size_t row = 0; row < records; ++row) {
        const auto record =
            input.subspan(RefaceFileHeaderSize + row * header->recordSize, header->recordSize);
        Demand(std::ranges::equal(list.items[row].bytes, record), "a record is kept as it stands");
        LookAt(list.items[row]);
    }
    Encode(list);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    DecodeAndEncode(input);

    // The same bytes behind a right magic and driver id, and as the records of a right header.
    std::vector<std::uint8_t> file(input.begin(), input.end());
    file.resize(std::max(size, RefaceFileHeaderSize));
    std::ranges::copy(std::string_view("TNWRDXrf"), file.begin());
    WriteLittle32(file, 16, RefaceDriverId);
    DecodeAndEncode(file);

    file.insert(file.begin() + RefaceFileHeaderSize, input.begin(), input.end());
    file.resize(RefaceBankFileSize);
    WriteLittle32(file, 24, RefaceVoicesPerBank);
    WriteLittle32(file, 28, RefaceVoiceObjectSize);
    DecodeAndEncode(file);
    return 0;
}
