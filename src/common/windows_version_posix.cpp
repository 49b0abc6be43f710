// Name and kernel of a system that is not Windows.
#include "common/file_bytes.h"
#include "common/text.h"
#include "common/windows_version.h"

#include <sys/utsname.h>

namespace tonewright {
namespace {

constexpr std::size_t OsReleaseLimit = 65536; // bytes

std::string NameOfSystem() {
    for (const char *path : {"/etc/os-release", "/usr/lib/os-release"}) {
        if (const auto bytes = ReadFileBytes(path, OsReleaseLimit)) {
            const std::string name = NameInOsRelease(
                std::string_view(reinterpret_cast<const char *>(bytes->data()), bytes->size()));
            if (!name.empty()) {
                return name;
            }
        }
    }
    utsname kernel;
    return uname(&kernel) >= 0 ? kernel.sysname : "";
}

} // namespace

bool WindowsVersionAtLeast(unsigned, unsigned, unsigned) {
    return true;
}

int WindowsName(std::string *name) {
    if (name) {
        *name = CutText(NameOfSystem(), PathLimit);
    }
    return Windows10;
}

std::string SystemBuild() {
    utsname kernel;
    return uname(&kernel) >= 0 ? kernel.release : "";
}

} // namespace tonewright
