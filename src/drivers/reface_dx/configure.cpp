// Reads, shows, keeps and sends the settings of a reface DX.
#include "drivers/reface_dx/configure.h"

#include "common/desktop.h"
#include "common/folders.h"
#include "common/platform.h"
#include "common/settings.h"
#include "common/strings.h"
#include "core/dispatch.h"
#include "core/document_file.h"
#include "drivers/reface_dx/settings_file.h"
#include "midi/transport.h"

#include <algorithm>

namespace tonewright {
namespace {

// Numbers of texts that the program does not have: what is shown is the text for such a number.
constexpr unsigned ReadFailure = 3;
constexpr unsigned WriteFailure = 11;

// Where the dialogs start: the folder of the last one, with a separator behind it.
std::string StartFolder() {
    std::string folder = OpenExportPath;
    if (!folder.empty() && folder.back() != '/' && folder.back() != PathSeparator) {
        folder += PathSeparator;
    }
    return folder;
}

std::string AutoConfigPath() {
    const std::string folder = DefaultDocumentsFolder();
    return folder.empty()
               ? folder
               : std::string(
                     CutText(folder + "AutoConfig." + ExtraExtension(RefaceDriverId), PathLimit));
}

int ReadSettings(MidiPorts ports, std::span<std::uint8_t> bytes) {
    MidiLink link;
    if (!MidiLinkOpen(link, true, ports.in, ports.out)) {
        return 0;
    }
    const int result = ReadSystemCommon(link, bytes.first<RefaceSystemSize>());
    MidiLinkClose(link);
    return result;
}

int SendSettings(int midiOut, RefaceSystemConst system) {
    MidiLink link;
    if (!MidiLinkOpen(link, false, NoMidiDevice, midiOut)) {
        return 0;
    }
    const int result = WriteSystemCommon(link, system);
    MidiLinkClose(link);
    return result;
}

int WriteSettings(MidiPorts ports, std::span<const std::uint8_t> bytes) {
    return SendSettings(ports.out, bytes.first<RefaceSystemSize>());
}

int ReadSettingsFile(const char *path, std::span<std::uint8_t> bytes,
                     std::vector<std::string> &missing) {
    SynthConfigBlock block;
    if (!ReadCrgFile(path, block, &missing)) {
        return 0;
    }
    std::ranges::copy(block.system, bytes.begin());
    return 1;
}

int WriteSettingsFile(const char *path, std::span<const std::uint8_t> bytes) {
    SynthConfigBlock block;
    std::ranges::copy(bytes.first<RefaceSystemSize>(), block.system.begin());
    return WriteCrgFile(path, block);
}

} // namespace

int ConfigureReface(QWidget *window, MidiPorts ports, const RefaceSettingsBox &box) {
    SynthConfigBlock block{.driverId = RefaceDriverId, .midiIn = ports.in, .midiOut = ports.out};
    MidiLink link;
    if (!OpenRefaceLink(window, link, ports, block.system)) {
        return 0;
    }
    if (box(window, block)) {
        WriteSystemCommon(link, block.system);
    }
    MidiLinkClose(link);
    return 1;
}

void SaveRefaceSettings(QWidget *window, SynthConfigBlock &block,
                        const std::function<void()> &collect) {
    const std::string proposal = StartFolder() + "Untitled." + ExtraExtension(block.driverId);
    const auto path =
        ChooseSaveExtraFile(window, std::string(CutText(proposal, PathLimit)), block.driverId);
    if (!path) {
        return;
    }
    const bool isPath = SetExportFolder(*path);
    if (isPath && !MakeBackupOf(window, path->c_str())) {
        return;
    }
    collect();
    if (isPath && WriteCrgFile(path->c_str(), block)) {
        SaveConfiguration();
    } else {
        ShowMessage(window, LoadProgramString(WriteFailure));
    }
}

bool OpenRefaceSettings(QWidget *window, SynthConfigBlock &block) {
    const auto path = ChooseExtraFile(window, StartFolder(), block.driverId);
    if (!path) {
        return false;
    }
    if (SetExportFolder(*path) && ReadCrgFile(path->c_str(), block)) {
        SaveConfiguration();
    } else {
        block = {};
        ShowMessage(window, LoadProgramString(ReadFailure));
    }
    return true;
}

int RefaceAutoConfigure(QWidget *, int midiOut) {
    SynthConfigBlock block;
    return ReadCrgFile(AutoConfigPath().c_str(), block) ? SendSettings(midiOut, block.system) : 0;
}

extern constinit const SynthSettings RefaceSettings = {
    .names = RefaceSettingNames,
    .size = RefaceSystemSize,
    .writtenSize = RefaceSentSize,
    .Text = RefaceSettingText,
    .Store = StoreRefaceSetting,
    .Read = ReadSettings,
    .Write = WriteSettings,
    .ReadFile = ReadSettingsFile,
    .WriteFile = WriteSettingsFile,
};

} // namespace tonewright
