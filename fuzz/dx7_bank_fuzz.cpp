// Any bytes as a DX7 bank: whatever is decoded has 32 voices and is encoded as a right bank.
#include "drivers/dx7/files.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>

using namespace tonewright;

namespace {

using Image = std::array<std::uint8_t, Dx7BankFileSize>;

void DecodeAndEncode(std::span<const std::uint8_t> input) {
    VoiceList list;
    const Dx7FileVerdict verdict = JudgeDx7Bank(input);
    const bool decoded = DecodeDx7Bank(list, input);
    Demand(decoded ==
               (verdict != Dx7FileVerdict::TooShort && verdict != Dx7FileVerdict::WrongHeader),
           "what is judged acceptable is decoded, and nothing else");
    Demand(list.enabled, "the list is enabled");
    if (!decoded) {
        Demand(ListCount(list) == 0, "a refused bank leaves the list alone");
        return;
    }
    Demand(ListCount(list) == Dx7VoicesPerBank, "a bank has 32 voices");
    for (const VoiceObject &voice : list.items) {
        std::string name;
        const int length = Dx7VoiceName(name, voice);
        Demand(length >= 0 && length <= static_cast<int>(Dx7NameSize), "a name has ten bytes");
        Demand(static_cast<std::size_t>(length) == name.size(), "the length is the name's");
    }
    // That a voice stays as it is from then on is seen by the fuzzer of single voices.
    Image image;
    EncodeDx7Bank(list, image);
    Demand(JudgeDx7Bank(image) == Dx7FileVerdict::Ok, "an encoded bank is right");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    if (size >= Dx7BankFileSize) {
        DecodeAndEncode(input);
        return 0;
    }
    // Too short for a bank: its refusal, and the same bytes as the first voices of one whose frame
    // is right, so that the codec sees them.
    VoiceList list;
    Demand(!DecodeDx7Bank(list, input) && ListCount(list) == 0, "a short file is refused");
    Image framed{};
    const std::uint8_t header[] = {0xF0, 0x43, 0x00, 0x09, 0x20, 0x00};
    std::ranges::copy(header, framed.begin());
    std::ranges::copy(input.first(std::min<std::size_t>(size, 4096)), framed.begin() + 6);
    framed.back() = 0xF7;
    DecodeAndEncode(framed);
    return 0;
}
