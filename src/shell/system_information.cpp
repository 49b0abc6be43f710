// Writes the report about machine and program.
#include "shell/system_information.h"

#include "common/file_bytes.h"
#include "common/folders.h"
#include "common/settings.h"
#include "common/strings.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "common/version.h"
#include "shell/settings_file.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace tonewright {
namespace {

constexpr std::size_t FeatureColumns = 60;                       // bytes of the features on a line
constexpr std::size_t ConfigurationLimit = std::size_t{1} << 26; // bytes
constexpr int LargestColourBits = 24;
constexpr const char *ConfigurationHeading = ";\r\n;\r\n;------ INI FILE ------\r\n;\r\n;\r\n";

std::string InOneLine(std::string text) {
    const auto isControl = [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; };
    std::ranges::replace_if(text, isControl, '?');
    return text;
}

struct ReportLines {
    std::vector<std::string> lines;

    void Text(const std::string &label, const std::string &value) {
        if (!value.empty()) {
            lines.push_back(InOneLine(label) + ":\t" + InOneLine(value));
        }
    }
    void Number(const char *label, int value) { Text(label, std::to_string(value)); }
    void KnownNumber(const char *label, int value, const char *unit = "") {
        if (value > 0) {
            Text(label, std::to_string(value) + unit);
        }
    }
    void YesOrNo(const char *label, std::optional<bool> value) {
        if (value) {
            Text(label, *value ? "YES" : "NO");
        }
    }
    void Folder(const char *label, const std::string &path) {
        std::error_code ignored;
        if (std::filesystem::is_directory(PathOfUtf8(path), ignored)) {
            Text(label, path);
        }
    }
};

void AddDisplay(ReportLines &report, const SystemFacts &facts) {
    const DisplayFacts &display = facts.display;
    report.KnownNumber("Screen width", display.screenWidth, " pixels");
    report.KnownNumber("Screen depth", display.screenHeight, " pixels");
    if (display.bitsPerPixel > 0) {
        const int bits = std::min(display.bitsPerPixel, LargestColourBits);
        report.Text("Screen colors", std::string(FormatThousands(1u << bits)) + " colors");
    }
    report.KnownNumber("Monitors", display.monitors);
    report.KnownNumber("Mouse buttons", facts.mouseButtons);
    report.YesOrNo("Mouse wheel", display.mouseWheel);
    report.YesOrNo("Mouse buttons swapped", facts.mouseButtonsSwapped);
}

void AddMemory(ReportLines &report, const MemoryFacts &memory) {
    report.Text("Physical memory", std::string(FormatThousands(memory.megabytes)) + " megabytes");
    report.Text("Memory in use", std::to_string(memory.percentInUse) + " percent");
}

void AddFolders(ReportLines &report, const SystemFacts &facts) {
    report.Folder("Configuration folder", PlatformFolders.applicationData);
    report.Folder("Documents folder", PlatformFolders.documents);
    report.Folder("Music folder", PlatformFolders.music);
    report.Folder("Pictures folder", PlatformFolders.pictures);
    report.Folder("Video folder", PlatformFolders.videos);
    report.Folder("Desktop folder", PlatformFolders.desktop);
    report.Folder("Windows folder", facts.windowsFolder);
    report.Folder("System folder", facts.systemFolder);
    report.Folder("Start-up folder", facts.startUpFolder);
    report.Folder("Programs folder", PlatformFolders.programMenu);
    report.Folder("Profile folder", PlatformFolders.profile);
}

void AddRawVersion(ReportLines &report, const RawVersionFacts &version) {
    report.Number("Raw major version", version.major);
    report.Number("Raw minor version", version.minor);
    report.Number("Raw build number", version.build);
    report.Number("Raw platform ID", version.platformId);
    // Without a service pack the line stands with nothing behind it.
    report.lines.push_back("Raw CSD version:\t" + InOneLine(version.servicePack));
    report.Number("Raw service major version", version.serviceMajor);
    report.Number("Raw service minor version", version.serviceMinor);
    report.Number("Raw suite mask", version.suiteMask);
    report.Number("Raw product type", version.productType);
}

void AddProcessor(ReportLines &report, const ProcessorFacts &processor) {
    report.Text("CPUID highest function", std::to_string(processor.highestFunction));
    report.Text("CPUID manufacturer", processor.manufacturer);
    report.Text("CPUID processor", processor.name);
    std::string line = "CPUID features:\t";
    std::size_t column = 0;
    for (const std::string &feature : processor.features) {
        const bool isLast = &feature == &processor.features.back();
        const std::string item = feature + (isLast ? "" : ",");
        if (column != 0 && column + 1 + item.size() > FeatureColumns) {
            report.lines.push_back(line);
            line = "\t";
            column = 0;
        }
        const std::string added = (column == 0 ? "" : " ") + item;
        line += added;
        column += added.size();
    }
    if (column != 0) {
        report.lines.push_back(line);
    }
}

std::string_view LabelOf(std::string_view line) {
    return line.substr(0, line.find('\t'));
}

} // namespace

std::vector<std::string> SystemLines(const SystemFacts &facts) {
    ReportLines report;
    report.Text("Operating system", facts.system);
    report.Text("Operating system build", facts.build);
    AddDisplay(report, facts);
    report.YesOrNo("Network", facts.network);
    report.YesOrNo("Low end processor", facts.lowEndProcessor);
    report.YesOrNo("Tablet PC", facts.tabletPc);
    if (facts.memory) {
        AddMemory(report, *facts.memory);
    }
    AddFolders(report, facts);
    if (facts.rawVersion) {
        AddRawVersion(report, *facts.rawVersion);
    }
    report.Text("Application build date", BuildDate);
    for (const VolumeFacts &volume : facts.volumes) {
        report.Text("Drive " + volume.place, volume.kind);
    }
    if (facts.processor) {
        AddProcessor(report, *facts.processor);
    }
    return report.lines;
}

std::vector<std::string> ProgramLines() {
    constexpr std::size_t DateLength = 24; // "Sun Feb 22 14:05:09 2026"
    ReportLines report;
    const std::time_t now = std::time(nullptr);
    if (const char *date = std::ctime(&now)) {
        report.Text("Date", std::string(CutText(date, DateLength)));
    }
    report.Text("Application", LoadProgramString(109));
    int version = 0, subVersion = 0;
    char revision = 0;
    if (ScanText(ProgramVersion, "%d.%d%c", &version, &subVersion, &revision) == 3) {
        report.Number("Version", version);
        report.Number("Sub-version", subVersion);
        report.Text("Revision", std::string(1, revision));
    }
    report.Number("Patch", ProgramRevision);
    return report.lines;
}

std::string ReportText(const std::vector<std::string> &lines) {
    std::size_t width = 0;
    for (const std::string &line : lines) {
        width = std::max(width, LabelOf(line).size());
    }
    std::string text;
    for (const std::string &line : lines) {
        std::string label(LabelOf(line));
        const std::string value = line.substr(label.size() + 1);
        label.resize(width + 1, ' ');
        text += label + value + "\r\n";
    }
    const std::string path = SettingsFilePath(ProgramSettings);
    if (const auto configuration = ReadFileBytes(path.c_str(), ConfigurationLimit)) {
        text += ConfigurationHeading;
        text.append(configuration->begin(), configuration->end());
    }
    return text;
}

std::vector<ReportFolder> ReportFolders() {
    const std::string configuration = SettingsFilePath(ProgramSettings);
    return {{"Open Quillbrook configuration folder", MakerUserFolder(),
             FileNameOfPath(configuration.c_str())},
            {"Open Tonewright configuration folder", ProductUserFile(""), ""},
            {"Open Tonewright documents folder", DefaultDocumentsFolder(), ""}};
}

} // namespace tonewright
