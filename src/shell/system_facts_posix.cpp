// The facts of a machine with Linux or macOS.
#include "common/file_bytes.h"
#include "common/windows_version.h"
#include "shell/system_facts.h"

#if defined(__x86_64__) || defined(__i386__)
#include <cpuid.h>
#endif

namespace tonewright {
namespace {

constexpr std::size_t FileLimit = 1 << 20; // bytes

// Empty when there is no such file.
std::string TextOf(const char *path) {
    const auto bytes = ReadFileBytes(path, FileLimit);
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

std::optional<ProcessorFacts> Processor() {
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

} // namespace

SystemFacts ReadSystemFacts() {
    SystemFacts facts;
    WindowsName(&facts.system);
    facts.build = SystemBuild();
    facts.memory = MemoryIn(TextOf("/proc/meminfo"));
    facts.volumes = VolumesIn(TextOf("/proc/self/mounts"));
    facts.processor = Processor();
    return facts;
}

} // namespace tonewright
