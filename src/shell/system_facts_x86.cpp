// What a processor of the x86 family tells of itself; others have no instruction for it.
#include "shell/system_facts.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace tonewright {

std::optional<ProcessorFacts> ReadProcessorFacts() {
#if defined(__x86_64__) || defined(__i386__)
    return ProcessorOf([](std::uint32_t function) {
        CpuidRegisters registers = {};
        __cpuid(function, registers[0], registers[1], registers[2], registers[3]);
        return registers;
    });
#else
    return std::nullopt;
#endif
}

} // namespace tonewright
