// Reads, shows, keeps and sends the settings of a reface DX.
#include "drivers/reface_dx/configure.h"

#include "drivers/reface_dx/settings_file.h"
#include "midi/transport.h"

#include <algorithm>

namespace tonewright {
namespace {

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
