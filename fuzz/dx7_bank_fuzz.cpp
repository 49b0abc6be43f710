// Any bytes as a DX7 bank: whatever opens has 32 voices and can be saved and opened again.
#include "common/desktop.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

void OpenAndSave(const std::string &path, Dx7FileVerdict verdict) {
    VoiceList list;
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    const bool opened = OpenDocument(nullptr, list, path.c_str(), &driver, &time) == 1;
    const bool acceptable =
        verdict != Dx7FileVerdict::TooShort && verdict != Dx7FileVerdict::WrongHeader;
    Demand(opened == acceptable, "what is judged acceptable opens, and nothing else");
    Demand(list.enabled, "the list is enabled");
    DemandSoundList(list);
    if (!opened) {
        Demand(ListCount(list) == 0, "a refused file leaves the list alone");
        return;
    }
    Demand(driver == Dx7DriverId && ListCount(list) == Dx7VoicesPerBank, "a bank has 32 voices");
    for (const VoiceObject &voice : list.items) {
        std::string name;
        const int length = Dx7VoiceName(name, voice);
        Demand(length >= 0 && length <= static_cast<int>(Dx7NameSize), "a name has ten bytes");
        Demand(static_cast<std::size_t>(length) == name.size(), "the length is the name's");
    }
    const std::string saved = FuzzPath("saved.syx");
    Demand(Dx7SaveBank(nullptr, list, saved.c_str()) == 1, "an open bank can be saved");
    const auto once = FuzzRead(saved);
    Demand(JudgeDx7Bank(once) == Dx7FileVerdict::Ok, "a saved bank is right");
    VoiceList again;
    Demand(Dx7OpenBank(nullptr, again, saved.c_str(), nullptr) == 1, "a saved bank opens");
    Demand(Dx7SaveBank(nullptr, again, saved.c_str()) == 1, "and can be saved");
    Demand(FuzzRead(saved) == once, "saving what was saved changes nothing");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    const std::span<const std::uint8_t> input(data, size);
    OpenAndSave(FuzzFile("input.syx", input), JudgeDx7Bank(input));

    // The same bytes as the voices of a bank whose frame is right, so that the codec sees them all.
    std::vector<std::uint8_t> framed(Dx7BankFileSize);
    const std::uint8_t header[] = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    std::ranges::copy(header, framed.begin());
    std::ranges::copy(input.first(std::min<std::size_t>(size, 4096)), framed.begin() + 6);
    framed.back() = 0xF7;
    OpenAndSave(FuzzFile("framed.syx", framed), JudgeDx7Bank(framed));
    return 0;
}
