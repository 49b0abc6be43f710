// Any bytes as a file of reface DX settings and as a typed tune or number: what is read is written
// and read again, and whatever a box shows of it is taken back as settings that stay what they are.
#include "drivers/reface_dx/settings_file.h"
#include "support/fuzz_support.h"

using namespace tonewright;

namespace {

using System = std::array<std::uint8_t, RefaceSystemSize>;

// The settings after a box that was opened and accepted.
System Accepted(const System &system) {
    RefaceControls controls;
    ShowRefaceSettings(controls, system);
    System taken = system;
    CollectRefaceSettings(controls, taken);
    return taken;
}

void TypeTune(std::string_view text) {
    const std::uint16_t tuning = MasterTuneOf(text);
    Demand(tuning >= 3 && tuning <= 2048, "a tuning lies within 414.8 and 466.8 Hz");
    for (const int step : {-1, 1}) {
        const std::string stepped = StepMasterTune(text, step);
        Demand(stepped.size() == 5 && stepped >= "414.8" && stepped <= "466.8",
               "a step stays within the limits");
    }
}

void TypeNumbers(std::string_view text) {
    const std::string typed(text);
    RefaceControls controls;
    for (std::size_t n = 0; n < RefaceSettingCount; ++n) {
        controls[n].number = ClampedInteger(typed.c_str(), RefaceSettingRows[n].range);
        controls[n].text = typed;
    }
    System taken = {};
    CollectRefaceSettings(controls, taken);
    Demand(taken[7] >= 64 - 12 && taken[7] <= 64 + 12, "a transposition is one of the box");
    Demand(taken[8] <= 1 && taken[9] <= 127, "a tempo is eight bits in bytes of seven");
    Demand(taken[10] <= 63, "a contrast is one of the box");
    Demand(Accepted(taken)[7] == taken[7] && Accepted(taken)[10] == taken[10],
           "numbers that were taken stay what they are");
}

void ReadFile(std::string_view text) {
    LineReader lines = LinesOf(text);
    SynthConfigBlock block;
    std::vector<std::string> missing;
    if (!ReadCrgLines(lines, block, &missing)) {
        Demand(block.system == System{}, "what is no file of settings changes nothing");
        return;
    }
    Demand(block.driverId == 0 && block.midiIn == 0 && block.midiOut == 0,
           "there are settings only");
    for (std::size_t n = RefaceSentSize; n < RefaceSystemSize; ++n) {
        Demand(block.system[n] == 0, "a file says nothing of the bytes that are not sent");
    }

    LineReader again = LinesOf(CrgTextOf(block));
    SynthConfigBlock read;
    Demand(ReadCrgLines(again, read, &missing) && read.system == block.system && missing.empty(),
           "what is written is read again");

    const System accepted = Accepted(block.system);
    Demand(Accepted(accepted) == accepted, "accepted settings stay what they are");
    const std::size_t setting = text.size() % RefaceSettingCount;
    System stored = accepted;
    const std::string words = RefaceSettingText(setting, stored);
    if (StoreRefaceSetting(setting, words, stored).empty()) {
        Demand(stored == accepted, "the words of a setting are that setting");
    } else {
        Demand(RefaceSettingRows[setting].kind == RefaceSettingKind::Number ||
                   RefaceSettingRows[setting].kind == RefaceSettingKind::Tempo,
               "only a number can be out of range behind a box");
    }
    StoreRefaceSetting(setting, text, stored);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char *>(data), size);
    TypeTune(text);
    TypeNumbers(text);
    ReadFile(text);
    static const std::string firstLines = CrgTextOf({});
    ReadFile(firstLines + std::string(text));
    return 0;
}
