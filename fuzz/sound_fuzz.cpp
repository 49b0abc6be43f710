// Any bytes as a sound file: what is taken for a sound has whole frames out of the input.
#include "common/sound_file.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::span<const std::uint8_t> input(data, size);
    const auto sound = DecodeSound(input);
    if (sound) {
        const int frameSize = FrameSize(sound->format);
        Demand(frameSize >= 1 && frameSize <= 32, "a frame has 1 to 32 bytes");
        Demand(!sound->frames.empty(), "a sound has a frame");
        Demand(sound->frames.size() % static_cast<std::size_t>(frameSize) == 0, "whole frames");
        Demand(std::search(input.begin(), input.end(), sound->frames.begin(),
                           sound->frames.end()) != input.end(),
               "the frames stand in the file");
    }
    return 0;
}
