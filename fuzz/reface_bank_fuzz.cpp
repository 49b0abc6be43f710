// Any bytes as a reface DX bank: what opens holds the records of the file as they stand, what does
// not leaves the whole ones in front of its end, and what can be saved comes back unchanged.
#include "common/desktop.h"
#include "core/dispatch.h"
#include "drivers/reface_dx/files.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

void LookAt(const VoiceObject &voice) {
    std::string name;
    const int length = RefaceVoiceName(name, voice);
    Demand(length >= 0 && length <= static_cast<int>(VoiceNameSize), "a name has ten bytes");
    Demand(static_cast<std::size_t>(length) == name.size(), "the length is the name's");
    Demand(!RefaceVoiceOf(voice) || RefaceCommonOf(voice), "a whole voice has a common block");
    Demand(VoiceObjectName(voice)[0] != 0, "everything can be named");
}

void SaveAndOpenAgain(VoiceList &list) {
    const std::string path = FuzzPath("saved.srx");
    bool complete = true;
    for (int row = 0; row < RefaceVoicesPerBank; ++row) {
        complete = complete && RefaceVoiceCanBeWritten(ListVoice(list, row));
    }
    const bool saved = RefaceSaveBank(nullptr, list, path.c_str()) == 1;
    Demand(saved == complete, "32 whole voices can be saved, and nothing else");
    if (!saved) {
        return;
    }
    Demand(FuzzRead(path).size() == RefaceBankFileSize, "a saved bank has its size");
    VoiceList again;
    Demand(RefaceOpenBank(nullptr, again, path.c_str(), nullptr) == 1, "a saved bank opens");
    Demand(ListCount(again) == RefaceVoicesPerBank, "a saved bank has 32 voices");
    for (int row = 0; row < RefaceVoicesPerBank; ++row) {
        const auto before = std::span(list.items[row].bytes).first<RefaceVoiceObjectSize>();
        Demand(std::ranges::equal(again.items[row].bytes, before), "every byte is kept");
    }
}

void OpenAndSave(std::span<const std::uint8_t> input) {
    const std::string path = FuzzFile("input.srx", input);
    VoiceList list;
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    const bool opened = OpenDocument(nullptr, list, path.c_str(), &driver, &time) == 1;
    DemandSoundList(list);
    const auto header = RefaceHeaderOf(input, RefaceFileKind::Bank);
    const std::size_t room = header ? input.size() - RefaceFileHeaderSize : 0;
    const std::size_t records =
        header && header->recordSize > 0
            ? std::min<std::size_t>(header->voiceCount, room / header->recordSize)
            : 0;
    Demand(opened == (header && records == header->voiceCount), "a bank opens when all is there");
    Demand(static_cast<std::size_t>(ListCount(list)) == records, "its whole records are listed");
    Demand(list.selection == (opened && records > 0 ? 0 : NoRow), "the first row is selected");
    for (std::size_t row = 0; row < records; ++row) {
        const auto record =
            input.subspan(RefaceFileHeaderSize + row * header->recordSize, header->recordSize);
        Demand(std::ranges::equal(list.items[row].bytes, record), "a record is kept as it stands");
        LookAt(list.items[row]);
    }
    SaveAndOpenAgain(list);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    const std::span<const std::uint8_t> input(data, size);
    OpenAndSave(input);

    // The same bytes behind a right magic and driver id, and as the records of a right header.
    std::vector<std::uint8_t> file(input.begin(), input.end());
    file.resize(std::max(size, RefaceFileHeaderSize));
    std::ranges::copy(std::string_view("TNWRDXrf"), file.begin());
    WriteLittle32(file, 16, RefaceDxDriverId);
    OpenAndSave(file);

    file.insert(file.begin() + RefaceFileHeaderSize, input.begin(), input.end());
    file.resize(RefaceBankFileSize);
    WriteLittle32(file, 24, RefaceVoicesPerBank);
    WriteLittle32(file, 28, RefaceVoiceObjectSize);
    OpenAndSave(file);
    return 0;
}
