// Any sequence of what a user does in the editor of a voice, any text in its boxes and any bytes in
// the voice, against a model of it. Any text as a frequency. Fewer inputs a second than of other
// fuzzers, since each is a sequence: it is the steps of which there are more than 10,000 a second.
#include "drivers/sheet_model.h"
#include "support/fuzz_support.h"

#include <string_view>

using namespace tonewright;

namespace {

void ReadAsFrequency(std::string_view text) {
    const int hundredths = ReadFrequency(text);
    Demand(hundredths >= 0 && hundredths <= MostHundredths, "a frequency lies in its range");
    for (const int step : {1, -1}) {
        const std::string stepped = StepFrequency(text, step);
        Demand(stepped.size() == 4 || stepped.size() == 5, "a step leaves two decimals");
        Demand(stepped >= "0.00" && stepped.find(',') == stepped.npos, "a step is a number");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    ReadAsFrequency({reinterpret_cast<const char *>(data), size});
    sheet_model::Sequence(std::span(data, size), Demand).Run();
    return 0;
}
