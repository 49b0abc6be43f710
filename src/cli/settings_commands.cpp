// The commands for settings: config shows any file of settings as the program would read it,
// settings shows and changes the user's own.
#include "cli/choices.h"
#include "cli/cli_commands.h"
#include "cli/text_output.h"
#include "cli/user_settings.h"
#include "common/folders.h"
#include "common/platform.h"
#include "common/setting_rows.h"
#include "common/settings.h"
#include "common/text.h"
#include "shell/setting_line.h"
#include "shell/settings_file.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <optional>

namespace tonewright {
namespace {

void PutValue(const ConfigKey &key) {
    if (const auto *text = std::get_if<std::string *>(&key.value)) {
        Put(StandardOutput, FieldText(**text));
    } else {
        PutNumber(StandardOutput, *std::get<std::uint32_t *>(key.value));
    }
    Put(StandardOutput, '\n');
}

void PutSettings(const SettingsList &list) {
    for (const ConfigKey &key : list.rows) {
        Put(StandardOutput, list.prefix);
        Put(StandardOutput, key.name);
        Put(StandardOutput, '\t');
        PutValue(key);
    }
}

// A setting by its name on the command line.
struct NamedSetting {
    const SettingsList *list;
    const ConfigKey *key;
};

std::optional<NamedSetting> SettingOfName(std::string_view name) {
    for (const SettingsList *list : SettingsLists) {
        const std::string_view prefix(list->prefix);
        if (!name.starts_with(prefix)) {
            continue;
        }
        const std::string_view rest = name.substr(prefix.size());
        const auto key = std::ranges::find(list->rows, rest, &ConfigKey::name);
        if (key != list->rows.end()) {
            return NamedSetting{list, &*key};
        }
    }
    return std::nullopt;
}

// A whole number from 0 to `largest`, without blanks or anything behind it.
std::optional<std::uint32_t> ReadWholeNumber(std::string_view text, std::uint32_t largest) {
    std::uint32_t number = 0;
    const char *end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || stop != end || number > largest) {
        return std::nullopt;
    }
    return number;
}

// Why a text would not come back from the file as it is; empty when it would.
std::string ReasonAgainst(const ConfigKey &key, std::string_view text) {
    const auto isControl = [](char character) {
        return static_cast<unsigned char>(character) < 0x20;
    };
    if (std::ranges::any_of(text, isControl)) {
        return "the value has a control character";
    }
    if (text.starts_with(' ') || text.starts_with('=')) {
        return "the value begins with a blank or an equal sign";
    }
    const std::size_t limit = ValueLimit(key.name, PlatformLines("\n"));
    if (text.size() > limit) {
        return FormatText("the value has %zu bytes, and %zu is the limit", text.size(), limit);
    }
    return "";
}

// Gives a key a value. The reason in words when the key does not take it.
std::string SetSetting(const ConfigKey &key, const char *value) {
    if (key.flags & SettingWriteOnly) {
        return "the program sets this key itself";
    }
    if (auto *const *text = std::get_if<std::string *>(&key.value)) {
        const std::string reason = ReasonAgainst(key, value);
        if (reason.empty()) {
            **text = value;
        }
        return reason;
    }
    const bool isBool = key.flags & SettingBool;
    const auto number = ReadWholeNumber(value, isBool ? 1 : 4'294'967'295);
    if (!number) {
        return std::string(FieldText(value)) +
               (isBool ? " is neither 0 nor 1" : " is no whole number from 0 to 4294967295");
    }
    *std::get<std::uint32_t *>(key.value) = *number;
    return "";
}

int SetAndWrite(const NamedSetting &setting, const char *value) {
    const auto &[list, key] = setting;
    if (const std::string reason = SetSetting(*key, value); !reason.empty()) {
        return TellWrongCall(std::string(list->prefix) + key->name, reason);
    }
    MakeProgramFolders();
    errno = 0;
    switch (WriteChosenSetting(*list, *key)) {
    case SettingsWrite::Done:
        return ExitDone;
    case SettingsWrite::NoBackup:
        return TellFailure(SettingsFilePath(*list),
                           WithSystemReason("written, but a version before it could not be kept as "
                                            "its backup",
                                            errno));
    case SettingsWrite::Failed:
        break;
    }
    return TellFailure(SettingsFilePath(*list), WithSystemReason("could not be written", errno));
}

} // namespace

int CliConfig(const CliCall &call) {
    PrepareSettings();
    const char *path = call.words[0];
    errno = 0;
    if (!ReadSettingsFile(ProgramSettings, path)) {
        return TellFailure(path, WithSystemReason("not readable", errno));
    }
    PutSettings(ProgramSettings);
    return ExitDone;
}

int CliSettings(const CliCall &call) {
    const std::string_view action = call.words[0];
    const auto row = std::ranges::find(SettingsActions, action, &Choice::name);
    if (row == SettingsActions.end()) {
        return TellWrongCall("settings", "takes " + InWords(SettingsActions, "or") + ", not " +
                                             FieldText(action));
    }
    const std::size_t words = row->value;
    if (call.words.size() != words) {
        return TellWrongCall("settings",
                             FormatText("%s %s arguments", call.words[0],
                                        call.words.size() < words ? "lacks" : "has too many"));
    }
    const auto setting = words > 1 ? SettingOfName(call.words[1]) : std::nullopt;
    if (words > 1 && !setting) {
        return TellWrongCall(call.words[1], "no such key; settings list shows all");
    }
    ReadUserSettings();
    if (action == "set") {
        return SetAndWrite(*setting, call.words[2]);
    }
    if (action == "get") {
        PutValue(*setting->key);
    } else {
        std::ranges::for_each(SettingsLists, [](const SettingsList *list) { PutSettings(*list); });
    }
    return ExitDone;
}

} // namespace tonewright
