// Any bytes as a file of each format, judged and listed without opening it: the judgement tells the
// truth of the file's size, and what is not refused can be listed to its last voice.
#include "core/synth_driver.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

void JudgeAndList(const VoiceFileFormat &format, std::span<const std::uint8_t> file) {
    const VoiceFileReport report = format.judge(file);
    Demand((report.state == VoiceFileState::Ok) == report.reason.empty(),
           "whatever is wrong has a reason");
    const std::uint64_t wholeSize =
        format.wholeSize(file.first(std::min<std::size_t>(file.size(), format.size)));
    if (report.state == VoiceFileState::Refused) {
        return;
    }
    Demand(wholeSize <= file.size(), "a file that is cut off is refused");
    const auto whole = file.first(static_cast<std::size_t>(wholeSize));
    const VoiceFileReport again = format.judge(whole);
    Demand(again.state == report.state && again.reason == report.reason,
           "what follows the whole file is ignored");
    if (!whole.empty()) {
        Demand(format.judge(whole.first(whole.size() - 1)).state == VoiceFileState::Refused,
               "a byte less is too short");
    }
    const std::size_t count = format.count(whole);
    Demand(count == format.count(file), "it has as many voices");
    Demand(format.kind == VoiceFileKind::Bank || count == 1, "a single voice is one");
    for (std::size_t index = 0; index < count; ++index) {
        const VoiceLine line = format.voice(whole, index);
        Demand(line.algorithm >= 0 && line.name.size() <= whole.size(), "every voice has a line");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    for (const SynthDriver *driver : SynthDrivers) {
        for (const VoiceFileFormat *format : {driver->bankFormat, driver->voiceFormat}) {
            if (format) {
                JudgeAndList(*format, {data, size});
            }
        }
    }
    return 0;
}
