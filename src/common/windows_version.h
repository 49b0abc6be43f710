// Which Windows the program runs on, by the names that its makers gave to the versions. On another
// system it counts as a Windows 10 that is new enough for everything, under the system's own name.
#pragma once

#include <string>
#include <string_view>

namespace tonewright {

// The numbers of the generations that are asked about; WindowsName gives others too.
constexpr int UnknownWindows = 0;
constexpr int Windows10 = 18;
constexpr int Windows11 = 19;

// True if the running version is at least that one; false when it cannot be found out. The first of
// the three numbers that differs decides.
bool WindowsVersionAtLeast(unsigned major, unsigned minor, unsigned servicePack);
// The generation of the running version. `name`, which may be null, becomes its name with the
// service pack, at most 260 bytes.
int WindowsName(std::string *name);
// The build of the system as text, off Windows the release of its kernel; empty when unknown.
std::string SystemBuild();
bool IsWindows10OrLater();

// The same of versions that need not run here.
struct WindowsVersion {
    unsigned major = 0, minor = 0, servicePack = 0;
};
bool IsVersionAtLeast(const WindowsVersion &version, const WindowsVersion &asked);
struct WindowsGeneration {
    int number = UnknownWindows;
    std::string name;
};
// `build` counts from version 10 on, where the later of two generations shows in nothing else.
WindowsGeneration GenerationOf(const WindowsVersion &version, unsigned build);

// The name that a system tells of itself in the text of a file os-release; empty when it tells
// none.
std::string NameInOsRelease(std::string_view text);

} // namespace tonewright
