// Any bytes as the voice on the clipboard: what is pasted is the block as it stands, within its
// size; what is not leaves the row alone.
#include "common/desktop.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/voice_codec.h"
#include "drivers/reface_dx/voice_codec.h"
#include "shell/clipboard.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <array>

using namespace tonewright;

namespace {

std::vector<std::uint8_t> OnTheClipboard;

void Paste(DriverId driver) {
    CurrentDriverId = driver;
    VoiceList list;
    ListAdd(list);
    const VoiceObject former{{1, 2, 3}};
    ListSetVoice(list, 0, former);
    const std::string name = ClipboardVoiceName(nullptr);
    if (!ClipboardPaste(nullptr, list, 0)) {
        Demand(list.items[0] == former, "what is refused leaves the row alone");
        Demand(name.empty(), "and has no name");
        return;
    }
    const VoiceObject &pasted = list.items[0];
    Demand(pasted.bytes == OnTheClipboard, "a block is pasted as it stands");
    Demand(!name.empty(), "everything can be named");
    const auto header = HeaderOf(pasted);
    const auto parts = PayloadOf(pasted);
    Demand(header && parts && header->driverId == driver, "it belongs to the driver");
    Demand(parts->payload.size() == header->payloadSize && parts->extra.size() == header->extraSize,
           "its parts have the sizes that it tells");
    Demand(RecordSizeOf(pasted) <= pasted.bytes.size(), "within its bytes");
    ClipboardCopy(nullptr, pasted);
    Demand(OnTheClipboard == pasted.bytes, "a copy is the same block");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    TheDesktop = {};
    TheDesktop.TakeClipboard = [] { return std::optional(OnTheClipboard); };
    TheDesktop.PutClipboard = [](std::span<const std::uint8_t> block, const std::string &) {
        OnTheClipboard.assign(block.begin(), block.end());
        return true;
    };
    const std::span<const std::uint8_t> input(data, size);
    for (const DriverId driver : {Dx7DriverId, RefaceDriverId}) {
        OnTheClipboard.assign(input.begin(), input.end());
        Paste(driver);

        // The same bytes as the payload of a right block, and behind a right magic and driver.
        OnTheClipboard = MakeVoiceObject(driver, input).bytes;
        Paste(driver);
        OnTheClipboard.assign(input.begin(), input.end());
        OnTheClipboard.resize(std::max(size, VoiceObjectHeaderSize));
        WriteLittle32(OnTheClipboard, 0, VoiceObjectMagic);
        WriteLittle32(OnTheClipboard, 16, driver);
        Paste(driver);
    }
    return 0;
}
