// What the program can find out about the machine that it runs on. What is empty, zero or without a
// value could not be found out, or does not exist on this system.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

// What only a program with windows knows.
struct DisplayFacts {
    int screenWidth = 0, screenHeight = 0; // pixels
    int bitsPerPixel = 0;
    int monitors = 0;
    std::optional<bool> mouseWheel = {};
};

struct MemoryFacts {
    std::uint32_t megabytes = 0;
    int percentInUse = 0;
};

// The version numbers that Windows tells of itself.
struct RawVersionFacts {
    int major = 0, minor = 0, build = 0, platformId = 0;
    std::string servicePack;
    int serviceMajor = 0, serviceMinor = 0, suiteMask = 0, productType = 0;
};

// A drive, or a volume and the place at which it is mounted.
struct VolumeFacts {
    std::string place;
    const char *kind = nullptr;
};
constexpr const char *RemovableVolume = "Removable";
constexpr const char *FixedVolume = "Fixed (hard drive)";
constexpr const char *RemoteVolume = "Remote (network drive)";
constexpr const char *OpticalVolume = "CD-ROM";
constexpr const char *MemoryVolume = "RAM disk";

struct ProcessorFacts {
    std::uint32_t highestFunction = 0;
    std::string manufacturer;
    std::string name;
    std::vector<std::string> features;
};

struct SystemFacts {
    std::string system; // name and version
    std::string build;
    DisplayFacts display = {};
    int mouseButtons = 0;
    std::optional<bool> mouseButtonsSwapped = {}, network = {}, lowEndProcessor = {}, tabletPc = {};
    std::optional<MemoryFacts> memory = {};
    // Beside those of PlatformFolders.
    std::string windowsFolder = {}, systemFolder = {}, startUpFolder = {};
    std::optional<RawVersionFacts> rawVersion = {};
    std::vector<VolumeFacts> volumes = {};
    std::optional<ProcessorFacts> processor = {};
};

// Everything but the display.
SystemFacts ReadSystemFacts();

// The memory that a text in the form of /proc/meminfo tells of.
std::optional<MemoryFacts> MemoryIn(std::string_view meminfo);
// The volumes in a text in the form of /proc/self/mounts, each at the first of its places. File
// systems that keep no files of users are left out, and so is memory that the system needs for
// itself.
std::vector<VolumeFacts> VolumesIn(std::string_view mounts);

// The registers eax, ebx, ecx and edx that the instruction CPUID leaves for a function.
using CpuidRegisters = std::array<std::uint32_t, 4>;
ProcessorFacts ProcessorOf(const std::function<CpuidRegisters(std::uint32_t function)> &cpuid);
// Of the processor that runs the program.
std::optional<ProcessorFacts> ReadProcessorFacts();

} // namespace tonewright
