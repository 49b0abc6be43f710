// Reads what systems and processors tell of themselves.
#include "shell/system_facts.h"

#include "common/text.h"

#include <algorithm>
#include <span>

namespace tonewright {
namespace {

// The kind of a volume by the type of its file system; other types keep no files of users.
struct FileSystemRow {
    std::string_view type;
    const char *kind;
};
constexpr FileSystemRow FileSystems[] = {
    {"apfs", FixedVolume},         {"bcachefs", FixedVolume},    {"btrfs", FixedVolume},
    {"ext2", FixedVolume},         {"ext3", FixedVolume},        {"ext4", FixedVolume},
    {"f2fs", FixedVolume},         {"fuseblk", FixedVolume},     {"hfs", FixedVolume},
    {"hfsplus", FixedVolume},      {"jfs", FixedVolume},         {"ntfs", FixedVolume},
    {"ntfs3", FixedVolume},        {"overlay", FixedVolume},     {"reiserfs", FixedVolume},
    {"xfs", FixedVolume},          {"zfs", FixedVolume},         {"exfat", RemovableVolume},
    {"msdos", RemovableVolume},    {"vfat", RemovableVolume},    {"9p", RemoteVolume},
    {"afs", RemoteVolume},         {"ceph", RemoteVolume},       {"cifs", RemoteVolume},
    {"fuse.rclone", RemoteVolume}, {"fuse.sshfs", RemoteVolume}, {"nfs", RemoteVolume},
    {"nfs4", RemoteVolume},        {"smb3", RemoteVolume},       {"smbfs", RemoteVolume},
    {"virtiofs", RemoteVolume},    {"iso9660", OpticalVolume},   {"udf", OpticalVolume},
    {"ramfs", MemoryVolume},       {"tmpfs", MemoryVolume},
};

// The names of the bits of a register, from bit 0 on; an empty one has none.
using FeatureNames = std::array<std::string_view, 32>;
constexpr FeatureNames FeaturesInEdx = {
    "fpu",  "vme",  "de",   "pse", "tsc",  "msr", "pae",    "mce", "cx8",   "apic", "",
    "sep",  "mtrr", "pge",  "mca", "cmov", "pat", "pse-36", "psn", "clfsh", "",     "ds",
    "acpi", "mmx",  "fxsr", "sse", "sse2", "ss",  "htt",    "tm",  "ia64",  "pbe",
};
constexpr FeatureNames FeaturesInEcx = {
    "sse3",   "pclmulqdq", "dtes64", "monitor",      "ds-cpl", "vmx",    "smx",
    "est",    "tm2",       "ssse3",  "cnxt-id",      "sdbg",   "fma",    "cx16",
    "xtpr",   "pdcm",      "",       "pcid",         "dca",    "sse4.1", "sse4.2",
    "x2apic", "movbe",     "popcnt", "tsc-deadline", "aes",    "xsave",  "osxsave",
    "avx",    "f16c",      "rdrnd",  "hypervisor",
};

void AddFeatures(std::vector<std::string> &features, std::uint32_t bits,
                 const FeatureNames &names) {
    for (std::size_t bit = 0; bit < names.size(); ++bit) {
        if ((bits >> bit & 1) != 0 && !names[bit].empty()) {
            features.emplace_back(names[bit]);
        }
    }
}

// The characters in registers, up to the first zero, without the blanks around them.
std::string TextIn(std::span<const std::uint32_t> registers) {
    std::string text;
    for (const std::uint32_t value : registers) {
        for (int shift = 0; shift < 32; shift += 8) {
            text += static_cast<char>(value >> shift & 0xFF);
        }
    }
    text = text.c_str();
    text.erase(0, text.find_first_not_of(' '));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// What stands in front of `separator`, which is taken off `text` with it.
std::string_view TakeUpTo(std::string_view &text, char separator) {
    const std::string_view part = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(part.size() + 1, text.size()));
    return part;
}

// A place of /proc/self/mounts, where a backslash and three octal digits stand for some characters.
std::string PlaceOf(std::string_view field) {
    const auto isOctal = [](char digit) { return digit >= '0' && digit <= '7'; };
    std::string place;
    while (!field.empty()) {
        if (field[0] == '\\' && field.size() > 3 &&
            std::all_of(field.begin() + 1, field.begin() + 4, isOctal)) {
            place +=
                static_cast<char>((field[1] - '0') * 64 + (field[2] - '0') * 8 + (field[3] - '0'));
            field.remove_prefix(4);
        } else {
            place += field[0];
            field.remove_prefix(1);
        }
    }
    return place;
}

bool IsAtOrBelow(std::string_view place, std::string_view folder) {
    return place.starts_with(folder) &&
           (place.size() == folder.size() || place[folder.size()] == '/');
}

// The kind of what is mounted there, or null.
const char *KindOf(std::string_view type, std::string_view place) {
    const auto row = std::ranges::find(FileSystems, type, &FileSystemRow::type);
    if (row == std::end(FileSystems)) {
        return nullptr;
    }
    const auto isBelow = [&](std::string_view folder) { return IsAtOrBelow(place, folder); };
    if (row->kind == MemoryVolume) {
        constexpr std::string_view OfTheSystem[] = {"/dev", "/proc", "/run", "/sys"};
        return std::ranges::any_of(OfTheSystem, isBelow) ? nullptr : MemoryVolume;
    }
    // The partition from which the machine starts has a file system of removable media.
    return row->kind == RemovableVolume && (isBelow("/boot") || isBelow("/efi")) ? FixedVolume
                                                                                 : row->kind;
}

// The kilobytes of a line "NAME: 123 kB"; nothing when no line has that name.
std::optional<double> KilobytesIn(std::string_view meminfo, std::string_view name) {
    while (!meminfo.empty()) {
        std::string_view line = TakeUpTo(meminfo, '\n');
        if (TakeUpTo(line, ':') == name) {
            line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
            return ReadNumber(line);
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<MemoryFacts> MemoryIn(std::string_view meminfo) {
    constexpr double KilobytesOfAMegabyte = 1024, LargestMemory = 4e12; // kilobytes
    const auto total = KilobytesIn(meminfo, "MemTotal");
    const auto available = KilobytesIn(meminfo, "MemAvailable");
    const bool isPlausible = total && available && *total >= 1 && *total <= LargestMemory &&
                             *available >= 0 && *available <= *total;
    if (!isPlausible) {
        return std::nullopt;
    }
    return MemoryFacts{static_cast<std::uint32_t>(*total / KilobytesOfAMegabyte),
                       static_cast<int>((*total - *available) * 100 / *total)};
}

std::vector<VolumeFacts> VolumesIn(std::string_view mounts) {
    std::vector<VolumeFacts> volumes;
    std::vector<std::string_view> devices; // that have been seen
    while (!mounts.empty()) {
        std::string_view line = TakeUpTo(mounts, '\n');
        const std::string_view device = TakeUpTo(line, ' ');
        const std::string place = PlaceOf(TakeUpTo(line, ' '));
        const char *kind = KindOf(TakeUpTo(line, ' '), place);
        const bool isSeen =
            device.starts_with('/') && std::ranges::find(devices, device) != devices.end();
        if (kind && !place.empty() && !isSeen) {
            devices.push_back(device);
            volumes.push_back({place, kind});
        }
    }
    return volumes;
}

ProcessorFacts ProcessorOf(const std::function<CpuidRegisters(std::uint32_t function)> &cpuid) {
    constexpr std::uint32_t Features = 1, FirstExtended = 0x80000000;
    constexpr std::uint32_t FirstOfName = 0x80000002, LastOfName = 0x80000004;
    const auto [highest, ebx, ecx, edx] = cpuid(0);
    ProcessorFacts facts;
    facts.highestFunction = highest;
    facts.manufacturer = TextIn(CpuidRegisters{ebx, edx, ecx, 0});
    if (cpuid(FirstExtended)[0] >= LastOfName) {
        std::vector<std::uint32_t> name;
        for (std::uint32_t function = FirstOfName; function <= LastOfName; ++function) {
            const CpuidRegisters part = cpuid(function);
            name.insert(name.end(), part.begin(), part.end());
        }
        facts.name = TextIn(name);
    }
    if (highest >= Features) {
        const CpuidRegisters registers = cpuid(Features);
        AddFeatures(facts.features, registers[3], FeaturesInEdx);
        AddFeatures(facts.features, registers[2], FeaturesInEcx);
    }
    return facts;
}

} // namespace tonewright
