// The commands for the settings that an instrument itself keeps: get, set, save, load. Which there
// are and what they mean, the row of the family says that has them.
#include "cli/changes.h"
#include "cli/cli_commands.h"
#include "cli/midi_session.h"
#include "cli/terminal_desktop.h"
#include "cli/text_output.h"
#include "common/desktop.h"
#include "common/text.h"
#include "common/utf8_path.h"
#include "core/current.h"
#include "core/dispatch.h"
#include "core/document_file.h"
#include "core/synth_settings.h"
#include "core/voice_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {
namespace {

using Bytes = std::vector<std::uint8_t>;

// The family whose instruments have settings that are known; with --synth the one that it names.
// The exit status; a failure has been told.
int ReadSettingsFamily(const CliCall &call, const SynthDriver *&family) {
    const auto hasSettings = [](const SynthDriver *synth) { return synth->settings != nullptr; };
    const auto preset = std::ranges::find_if(SynthDrivers, hasSettings);
    const auto synth = ReadSynth(call, preset == SynthDrivers.end() ? nullptr : *preset);
    if (!synth) {
        return ExitWrongCall;
    }
    family = *synth;
    if (!family || !family->settings) {
        return TellWrongCall(family ? family->name : "", "its own settings are not known");
    }
    return ReadMidiSettings(call);
}

std::optional<std::size_t> SettingOfName(const SynthSettings &settings, std::string_view name) {
    const auto found = std::ranges::find(settings.names, name,
                                         [](const char *each) { return std::string_view(each); });
    return found == settings.names.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(found - settings.names.begin()));
}

std::string NoSuchSetting(const SynthSettings &settings) {
    std::string names;
    for (const char *each : settings.names) {
        names += (names.empty() ? "" : ", ") + std::string(each);
    }
    return "no such setting; there are: " + names;
}

using SettingChange = Change<std::size_t>;

int Store(const SynthSettings &settings, const std::vector<SettingChange> &changes, Bytes &bytes) {
    for (const SettingChange &change : changes) {
        const std::string reason = settings.Store(change.parameter, change.value, bytes);
        if (!reason.empty()) {
            return TellWrongCall(settings.names[change.parameter], FieldText(reason));
        }
    }
    return ExitDone;
}

int ReadFromInstrument(const SynthDriver &family, Bytes &bytes) {
    bytes.assign(family.settings->size, 0);
    return family.settings->Read(CurrentMidiPorts(), bytes) ? ExitDone : TellTransferFailed(family);
}

// Sends the settings and looks whether the instrument has them now.
int WriteToInstrument(const SynthDriver &family, const Bytes &bytes) {
    const SynthSettings &settings = *family.settings;
    if (!settings.Write(CurrentMidiPorts(), bytes)) {
        return TellTransferFailed(family);
    }
    Bytes now;
    if (const int status = ReadFromInstrument(family, now)) {
        return status;
    }
    const auto written = static_cast<std::ptrdiff_t>(settings.writtenSize);
    if (std::equal(bytes.begin(), bytes.begin() + written, now.begin())) {
        return ExitDone;
    }
    std::string others;
    for (std::size_t setting = 0; setting < settings.names.size(); ++setting) {
        const std::string text = settings.Text(setting, now);
        if (text != settings.Text(setting, bytes)) {
            others += (others.empty() ? ": " : ", ") + std::string(settings.names[setting]) +
                      " is " + text;
        }
    }
    return TellFailure(family.name, "has other settings than those that were sent" + others);
}

int SaveSettings(const SynthSettings &settings, const char *path, const Bytes &bytes) {
    const std::string file = AbsolutePath(path);
    if (!IsPath(file)) {
        return TellFailure(path, WithSystemReason("could not be written", ENAMETOOLONG));
    }
    if (!MakeBackupOf(nullptr, file.c_str())) {
        return TellFailure(path, "not written, as answered");
    }
    errno = 0;
    return settings.WriteFile(file.c_str(), bytes)
               ? ExitDone
               : TellFailure(path, WithSystemReason("could not be written", errno));
}

// Asks whether the file is to be sent, since `reason`.
bool AskToSend(const char *path, const std::string &reason) {
    return AskYesNo(nullptr, FormatText("The document %s ", FileNameOfPath(path)) + reason +
                                 ".\n\nDo you wish to send it anyway?") == ResultYes;
}

// Reads a file of settings, and asks about one that lacks some of them and about one with numbers
// that a message has no room for. The exit status; a failure has been told.
int LoadSettings(const SynthDriver &family, const char *path, Bytes &bytes) {
    bytes.assign(family.settings->size, 0);
    std::vector<std::string> missing;
    errno = 0;
    if (!family.settings->ReadFile(AbsolutePath(path).c_str(), bytes, missing)) {
        return TellFailure(path, errno == EINVAL
                                     ? FormatText("not a file of settings of the %s", family.name)
                                     : WithSystemReason("not readable", errno));
    }
    std::string keys;
    for (const std::string &key : missing) {
        keys += (keys.empty() ? "" : ", ") + key;
    }
    const bool isSent =
        (missing.empty() ||
         AskToSend(path, "does not tell all settings. These would be sent as zero: " + keys)) &&
        (FitAMessage(bytes) ||
         AskToSend(path, "holds numbers above 127, which a MIDI message cannot carry"));
    return isSent ? ExitDone : TellFailure(path, "not sent, as answered");
}

} // namespace

int CliRefaceSettingsGet(const CliCall &call) {
    const SynthDriver *family = nullptr;
    if (const int status = ReadSettingsFamily(call, family)) {
        return status;
    }
    const SynthSettings &settings = *family->settings;
    std::vector<std::size_t> wanted;
    for (const char *name : call.words) {
        const auto setting = SettingOfName(settings, name);
        if (!setting) {
            return TellWrongCall(name, NoSuchSetting(settings));
        }
        wanted.push_back(*setting);
    }
    if (wanted.empty()) {
        wanted.resize(settings.names.size());
        std::iota(wanted.begin(), wanted.end(), std::size_t{0});
    }
    UseTerminalDesktop(call);
    return WithInstrument(call, *family, [&] {
        Bytes bytes;
        if (const int status = ReadFromInstrument(*family, bytes)) {
            return status;
        }
        for (const std::size_t setting : wanted) {
            Put(StandardOutput, settings.names[setting]);
            Put(StandardOutput, '\t');
            Put(StandardOutput, FieldText(settings.Text(setting, bytes)));
            Put(StandardOutput, '\n');
        }
        return static_cast<int>(ExitDone);
    });
}

int CliRefaceSettingsSet(const CliCall &call) {
    const SynthDriver *family = nullptr;
    if (const int status = ReadSettingsFamily(call, family)) {
        return status;
    }
    const SynthSettings &settings = *family->settings;
    std::vector<SettingChange> changes;
    if (const int status = ReadChanges(
            call.words, "KEY=VALUE",
            [&](std::string_view name) { return SettingOfName(settings, name); },
            NoSuchSetting(settings), changes)) {
        return status;
    }
    Bytes none(settings.size); // so that what is wrong is told before anything is sent
    if (const int status = Store(settings, changes, none)) {
        return status;
    }
    UseTerminalDesktop(call);
    return WithInstrument(call, *family, [&] {
        Bytes bytes;
        if (const int status = ReadFromInstrument(*family, bytes)) {
            return status;
        }
        if (const int status = Store(settings, changes, bytes)) {
            return status;
        }
        return WriteToInstrument(*family, bytes);
    });
}

int CliRefaceSettingsSave(const CliCall &call) {
    const char *out = call.words[0];
    const SynthDriver *family = nullptr;
    if (const int status = ReadSettingsFamily(call, family)) {
        return status;
    }
    if (!EqualNoCase(ExtensionOfPath(out), family->extraExtension)) {
        return TellWrongCall(out, FormatText("the extension of the file to write must be \"%s\"",
                                             family->extraExtension));
    }
    UseTerminalDesktop(call);
    return WithInstrument(call, *family, [&] {
        Bytes bytes;
        if (const int status = ReadFromInstrument(*family, bytes)) {
            return status;
        }
        return SaveSettings(*family->settings, out, bytes);
    });
}

int CliRefaceSettingsLoad(const CliCall &call) {
    const SynthDriver *family = nullptr;
    if (const int status = ReadSettingsFamily(call, family)) {
        return status;
    }
    UseTerminalDesktop(call);
    Bytes bytes;
    if (const int status = LoadSettings(*family, call.words[0], bytes)) {
        return status;
    }
    return WithInstrument(call, *family, [&] { return WriteToInstrument(*family, bytes); });
}

} // namespace tonewright
