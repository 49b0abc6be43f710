// Any bytes as a file of each kind: it is opened or imported as its decoder says, and what is saved
// or exported is opened again. Slow, since every run writes and reads files; the fuzzers of the
// decoders look at many more inputs.
#include "common/desktop.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "drivers/dx7/files.h"
#include "drivers/reface_dx/files.h"
#include "support/fuzz_support.h"

#include <algorithm>
#include <string_view>

using namespace tonewright;

namespace {

void OpenAndSave(const std::string &path, DriverId family, bool decodes, const VoiceList &decoded) {
    VoiceList list;
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    const bool opened = OpenDocument(nullptr, list, path.c_str(), &driver, &time) == 1;
    Demand(opened == decodes, "what can be decoded opens, and nothing else");
    Demand(list.items == decoded.items, "with the voices that were decoded");
    if (!opened) {
        return;
    }
    Demand(driver == family && time != 0, "it belongs to its family");
    CurrentDriverId = family;
    const std::string saved = FuzzPath("saved." + std::string(BankExtension(family)));
    if (SaveDocument(nullptr, list, saved.c_str()) != 1) {
        return;
    }
    const auto once = FuzzRead(saved);
    VoiceList again;
    Demand(OpenDocument(nullptr, again, saved.c_str(), &driver, nullptr) == 1, "it opens again");
    Demand(SaveDocument(nullptr, again, saved.c_str()) == 1, "and can be saved");
    const auto twice = FuzzRead(saved);
    // The time of writing, bytes 20 to 23 of a reface DX bank, may have moved on.
    Demand(once.size() == twice.size() &&
               std::equal(once.begin(), once.begin() + 20, twice.begin()) &&
               std::equal(once.begin() + 24, once.end(), twice.begin() + 24),
           "saving what was saved changes nothing");
}

void ImportAndExport(const std::string &path, DriverId family,
                     const std::optional<VoiceObject> &decoded) {
    CurrentDriverId = family;
    VoiceList list;
    ListSetVoice(list, ListAdd(list), VoiceObject{{1, 2, 3}});
    const bool imported = ImportOneVoice(nullptr, list, 0, path.c_str(), nullptr) == 1;
    Demand(imported == decoded.has_value(), "what can be decoded is imported, and nothing else");
    Demand(ListVoice(list, 0)->bytes ==
               (imported ? decoded->bytes : std::vector<std::uint8_t>{1, 2, 3}),
           "a refused file leaves the row alone");
    const std::string exported = FuzzPath("exported." + std::string(VoiceExtension(family)));
    const SynthDriver *driver = DriverOfId(family);
    if (imported &&
        driver->ExportVoice(nullptr, list, nullptr, exported.c_str(), 0, SynthFirmware) == 1) {
        VoiceObject again;
        Demand(ImportOneVoice(nullptr, list, 0, exported.c_str(), &again) == 1,
               "what was exported is imported");
        const auto &whole = decoded->bytes;
        Demand(again.bytes.size() <= whole.size() &&
                   std::equal(again.bytes.begin(), again.bytes.end(), whole.begin()),
               "every byte is kept");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    if (size == 0) {
        return 0;
    }
    const std::span<const std::uint8_t> input(data + 1, size - 1);
    VoiceList decoded;
    switch (data[0] % 4) {
    case 0: {
        const bool decodes = DecodeDx7Bank(decoded, input);
        OpenAndSave(FuzzFile("input.syx", input), Dx7DriverId, decodes, decoded);
        break;
    }
    case 1:
        ImportAndExport(FuzzFile("input.sy1", input), Dx7DriverId, DecodeDx7Voice(input));
        break;
    case 2: {
        const bool decodes = DecodeRefaceBank(decoded, input);
        OpenAndSave(FuzzFile("input.srx", input), RefaceDriverId, decodes, decoded);
        break;
    }
    case 3:
        ImportAndExport(FuzzFile("input.sr1", input), RefaceDriverId, DecodeRefaceVoice(input));
        break;
    }
    return 0;
}
