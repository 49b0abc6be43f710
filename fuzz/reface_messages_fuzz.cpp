// Any bytes as a message that a reface DX sends, and the same as the data of dumps whose frame,
// count and sum are right: settings and blocks of a voice are taken from where they stand, and
// nothing from any other message. Whole conversations are another fuzzer's, a slow one.
#include "core/dispatch.h"
#include "drivers/reface_dx/transfer.h"
#include "support/fuzz_support.h"

#include <algorithm>

using namespace tonewright;

namespace {

using Bytes = std::vector<std::uint8_t>;

// What is taken, and what should have been.
struct Taken {
    VoiceObject voice = MakeRefaceVoiceObject();
    Bytes expected = Bytes(150, 0); // the common block, then the operators
};

void Take(Taken &taken, std::span<const std::uint8_t> bytes) {
    RefaceMessage message = {};
    std::ranges::copy(bytes.first(std::min(bytes.size(), message.size())), message.begin());

    const auto settings = RefaceSystemOf(message);
    Demand(settings.has_value() == (message[0] == 0xF0 && message[1] == 0x43 && message[5] == 0 &&
                                    message[6] == 0x24 && message[7] == 0x05),
           "a message holds settings by its start, count and model");
    Demand(!settings || std::equal(settings->begin(), settings->end(), message.begin() + 11),
           "which are its data");

    const auto block = RefaceBlockOf(message);
    const bool isCommon = message[5] == 0 && message[6] == 0x2A;
    const bool isOperator = message[5] == 0 && message[6] == 0x20;
    Demand(block.has_value() == (isCommon || isOperator), "a message holds a block by its count");
    if (!block) {
        return;
    }
    const int number = isCommon ? 4 : std::min<int>(message[9], 3);
    Demand(block->number == static_cast<std::size_t>(number), "an operator has its number");
    std::copy_n(message.begin() + 11, isCommon ? 38 : 28,
                taken.expected.begin() + (isCommon ? 0 : 38 + 28 * number));
    StoreRefaceBlock(taken.voice, *block);

    VoiceObject other{.bytes = Bytes(60, 0x6F)};
    StoreRefaceBlock(other, *block);
    Demand(other.bytes == Bytes(60, 0x6F), "a block that is no voice stays as it is");
}

void Check(const Taken &taken) {
    const VoiceObject empty = MakeRefaceVoiceObject();
    Demand(taken.voice.bytes.size() == VoiceObjectHeaderSize + taken.expected.size(),
           "a voice keeps its size");
    const auto voice = std::span(taken.voice.bytes);
    Demand(std::ranges::equal(voice.first(VoiceObjectHeaderSize),
                              std::span(empty.bytes).first(VoiceObjectHeaderSize)),
           "and its header");
    Demand(std::ranges::equal(voice.subspan(VoiceObjectHeaderSize), taken.expected),
           "its blocks are those that came last");
    Demand(VoiceObjectName(taken.voice)[0] != 0, "it can be named");
}

// The dump of that kind with right count and sum, its data the next bytes of the input.
Bytes DumpOf(unsigned kind, std::span<const std::uint8_t> &input) {
    struct Dump {
        std::uint8_t high, middle;
        std::size_t size;
    };
    static constexpr Dump Dumps[] = {{0x30, 0, 38},   {0x31, 0, 28},  {0x31, 1, 28},
                                     {0x31, 2, 28},   {0x31, 3, 28},  {0x00, 0, 32},
                                     {0x31, 127, 28}, {0x0E, 0x0F, 0}};
    const Dump &dump = Dumps[kind % std::size(Dumps)];
    Bytes message = {
        0xF0, 0x43,      0x00,        0x7F, 0x1C, 0x00, static_cast<std::uint8_t>(dump.size + 4),
        0x05, dump.high, dump.middle, 0x00};
    for (std::size_t i = 0; i < dump.size; ++i) {
        message.push_back(i < input.size() ? input[i] & 0x7F : 0);
    }
    input = input.subspan(std::min(input.size(), dump.size));
    unsigned sum = 0;
    for (const std::uint8_t byte : std::span(message).subspan(7)) {
        sum += byte;
    }
    message.push_back(static_cast<std::uint8_t>((128 - sum % 128) % 128));
    message.push_back(0xF7);
    return message;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    std::span<const std::uint8_t> input(data, size);
    Taken raw;
    Take(raw, input);
    Check(raw);

    // A byte for the kind of each dump; its upper bits say which byte of it is wrong, if any.
    Taken framed;
    while (!input.empty()) {
        const std::uint8_t how = input.front();
        input = input.subspan(1);
        Bytes dump = DumpOf(how, input);
        if (how >= 0x80 && !input.empty()) {
            dump[how / 8 % 16 % dump.size()] = input.front();
            input = input.subspan(1);
        }
        Take(framed, dump);
    }
    Check(framed);
    return 0;
}
