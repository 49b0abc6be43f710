// The facts of a machine in the files of Linux; a system without such a file leaves its facts out.
#include "common/file_bytes.h"
#include "common/windows_version.h"
#include "shell/system_facts.h"

namespace tonewright {
namespace {

constexpr std::size_t FileLimit = 1 << 20; // bytes

// Empty when there is no such file.
std::string TextOf(const char *path) {
    const auto bytes = ReadFileBytes(path, FileLimit);
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

} // namespace

SystemFacts ReadSystemFacts() {
    SystemFacts facts;
    WindowsName(&facts.system);
    facts.build = SystemBuild();
    facts.memory = MemoryIn(TextOf("/proc/meminfo"));
    facts.volumes = VolumesIn(TextOf("/proc/self/mounts"));
    facts.processor = ReadProcessorFacts();
    return facts;
}

} // namespace tonewright
