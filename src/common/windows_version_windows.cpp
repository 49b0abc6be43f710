// The version of Windows that runs.
#include "common/text.h"
#include "common/windows_version.h"

#include <windows.h>

namespace tonewright {
namespace {

// All zero, which is older than everything, when it cannot be found out.
WindowsVersion RunningVersion() {
    // GetVersionEx answers for the program's manifest, RtlGetVersion for the system.
    using RtlGetVersionCall = LONG(WINAPI *)(OSVERSIONINFOEXW *);
    const HMODULE library = GetModuleHandleA("ntdll.dll");
    const FARPROC address = library ? GetProcAddress(library, "RtlGetVersion") : nullptr;
    if (!address) {
        return {};
    }
    const auto call = reinterpret_cast<RtlGetVersionCall>(reinterpret_cast<void *>(address));
    OSVERSIONINFOEXW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    if (call(&version) != 0) {
        return {};
    }
    return {version.dwMajorVersion, version.dwMinorVersion, version.wServicePackMajor};
}

} // namespace

bool WindowsVersionAtLeast(unsigned major, unsigned minor, unsigned servicePack) {
    const WindowsVersion version = RunningVersion();
    return version.major != 0 && IsVersionAtLeast(version, {major, minor, servicePack});
}

int WindowsName(std::string *name) {
    const WindowsGeneration generation = GenerationOf(RunningVersion(), ReadInteger(SystemBuild()));
    if (name) {
        *name = CutText(generation.name, PathLimit);
    }
    return generation.number;
}

std::string SystemBuild() {
    char build[64] = {};
    DWORD size = sizeof build;
    return RegGetValueA(HKEY_LOCAL_MACHINE, "SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion",
                        "CurrentBuild", RRF_RT_REG_SZ, nullptr, build, &size) == ERROR_SUCCESS
               ? build
               : "";
}

} // namespace tonewright
