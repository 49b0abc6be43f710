// The facts of a machine with Windows.
#include "common/utf8_path.h"
#include "common/windows_version.h"
#include "shell/system_facts.h"

#include <windows.h>

#include <shlobj.h>

namespace tonewright {
namespace {

bool IsMetricSet(int metric, int bits = ~0) {
    return (GetSystemMetrics(metric) & bits) != 0;
}

std::string Folder(int number) {
    wchar_t path[MAX_PATH + 1] = {};
    if (SHGetFolderPathW(nullptr, number, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) {
        return "";
    }
    return Utf8OfPath(path);
}

std::optional<MemoryFacts> Memory() {
    constexpr DWORDLONG BytesOfAMegabyte = 1 << 20;
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    if (!GlobalMemoryStatusEx(&status)) {
        return std::nullopt;
    }
    return MemoryFacts{static_cast<std::uint32_t>(status.ullTotalPhys / BytesOfAMegabyte),
                       static_cast<int>(status.dwMemoryLoad)};
}

std::optional<RawVersionFacts> RawVersion() {
    OSVERSIONINFOEXA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (!GetVersionExA(reinterpret_cast<OSVERSIONINFOA *>(&version))) {
        return std::nullopt;
    }
    return RawVersionFacts{static_cast<int>(version.dwMajorVersion),
                           static_cast<int>(version.dwMinorVersion),
                           static_cast<int>(version.dwBuildNumber),
                           static_cast<int>(version.dwPlatformId),
                           version.szCSDVersion,
                           version.wServicePackMajor,
                           version.wServicePackMinor,
                           version.wSuiteMask,
                           version.wProductType};
}

const char *KindOf(UINT driveType) {
    switch (driveType) {
    case DRIVE_REMOVABLE:
        return RemovableVolume;
    case DRIVE_FIXED:
        return FixedVolume;
    case DRIVE_REMOTE:
        return RemoteVolume;
    case DRIVE_CDROM:
        return OpticalVolume;
    case DRIVE_RAMDISK:
        return MemoryVolume;
    default:
        return nullptr;
    }
}

std::vector<VolumeFacts> Volumes() {
    std::vector<VolumeFacts> volumes;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const std::string place(1, letter);
        if (const char *kind = KindOf(GetDriveTypeA((place + ":\\").c_str()))) {
            volumes.push_back({place, kind});
        }
    }
    return volumes;
}

} // namespace

SystemFacts ReadSystemFacts() {
    constexpr int NetworkIsThere = 1;
    SystemFacts facts;
    WindowsName(&facts.system);
    facts.build = SystemBuild();
    facts.mouseButtons = GetSystemMetrics(SM_CMOUSEBUTTONS);
    facts.mouseButtonsSwapped = IsMetricSet(SM_SWAPBUTTON);
    facts.network = IsMetricSet(SM_NETWORK, NetworkIsThere);
    facts.lowEndProcessor = IsMetricSet(SM_SLOWMACHINE);
    facts.tabletPc = IsMetricSet(SM_TABLETPC);
    facts.memory = Memory();
    facts.windowsFolder = Folder(CSIDL_WINDOWS);
    facts.systemFolder = Folder(CSIDL_SYSTEM);
    facts.startUpFolder = Folder(CSIDL_STARTUP);
    facts.rawVersion = RawVersion();
    facts.volumes = Volumes();
    facts.processor = ReadProcessorFacts();
    return facts;
}

} // namespace tonewright
