// Any bytes as a file of each kind: it is opened or imported as its format judges it, and what is
// saved or exported is opened again. Slow, since every run writes and reads files; the fuzzers of
// the decoders and of the formats look at many more inputs.
#include "core/current.h"
#include "core/dispatch.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

// The voices in a list are those that the format tells of the file.
void CompareWithLines(const VoiceList &list, const SynthDriver &family,
                      const VoiceFileFormat &format, std::span<const std::uint8_t> input) {
    Demand(static_cast<std::size_t>(ListCount(list)) == format.count(input),
           "every voice that is told of is there");
    for (int row = 0; row < ListCount(list); ++row) {
        const VoiceObject &voice = *ListVoice(list, row);
        std::string name;
        // A file may hold blocks of another family, whose names it does not tell.
        if (family.VoiceName(name, voice) > 0 && HeaderOf(voice)->driverId == family.id) {
            Demand(format.voice(input, static_cast<std::size_t>(row)).name == name,
                   "with its name");
        }
    }
}

void OpenAndSave(const SynthDriver &family, std::span<const std::uint8_t> input) {
    const std::string path = FuzzFile("input." + std::string(family.bankExtension), input);
    const VoiceFileFormat &format = *family.bankFormat;
    VoiceList list;
    DriverId driver = NoDriverId;
    std::int64_t time = 0;
    const bool opened = OpenDocument(nullptr, list, path.c_str(), &driver, &time) == 1;
    Demand(opened == (format.judge(input).state != VoiceFileState::Refused),
           "what is not refused opens, and nothing else");
    if (!opened) {
        return;
    }
    Demand(driver == family.id && time != 0, "it belongs to its family");
    CompareWithLines(list, family, format, input);
    CurrentDriverId = family.id;
    const std::string saved = FuzzPath("saved." + std::string(family.bankExtension));
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

void ImportAndExport(const SynthDriver &family, std::span<const std::uint8_t> input) {
    const std::string path = FuzzFile("input." + std::string(family.voiceExtension), input);
    const VoiceFileFormat &format = *family.voiceFormat;
    CurrentDriverId = family.id;
    const VoiceObject before{{1, 2, 3}};
    VoiceList list;
    ListSetVoice(list, ListAdd(list), VoiceObject(before));
    const bool imported = ImportOneVoice(nullptr, list, 0, path.c_str(), nullptr) == 1;
    Demand(imported == (format.judge(input).state != VoiceFileState::Refused),
           "what is not refused is imported, and nothing else");
    if (!imported) {
        Demand(*ListVoice(list, 0) == before, "a refused file leaves the row alone");
        return;
    }
    CompareWithLines(list, family, format, input);
    const std::string exported = FuzzPath("exported." + std::string(family.voiceExtension));
    if (family.ExportVoice(nullptr, list, nullptr, exported.c_str(), 0, SynthFirmware) == 1) {
        VoiceObject again;
        Demand(ImportOneVoice(nullptr, list, 0, exported.c_str(), &again) == 1,
               "what was exported is imported");
        const auto &whole = ListVoice(list, 0)->bytes;
        Demand(again.bytes.size() <= whole.size() &&
                   std::equal(again.bytes.begin(), again.bytes.end(), whole.begin()),
               "every byte is kept");
    }
}

} // namespace

// The first byte chooses the family and the kind of the file, the rest is the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    AnswerYesToEverything();
    if (size == 0) {
        return 0;
    }
    const std::span<const std::uint8_t> input(data + 1, size - 1);
    const SynthDriver &family = *SynthDrivers[data[0] / 2 % SynthDrivers.size()];
    if (data[0] % 2 == 0 && family.bankFormat) {
        OpenAndSave(family, input);
    } else if (data[0] % 2 == 1 && family.voiceFormat) {
        ImportAndExport(family, input);
    }
    return 0;
}
