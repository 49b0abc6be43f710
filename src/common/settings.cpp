// The variables of the settings, and the tables of their rows.
#include "common/settings.h"

#include "common/folders.h"
#include "common/setting_rows.h"

#include <array>
#include <string_view>

namespace tonewright {
namespace {

// Date of this build, "Feb 22 2026"; the compiler pads a day below 10 with a blank.
constexpr auto DateOfBuild = [] {
    constexpr std::string_view date = __DATE__;
    constexpr std::size_t dayAt = 4;
    std::array<char, date.size() + 1> text{};
    auto end = text.begin();
    for (std::size_t at = 0; at < date.size(); ++at) {
        if (at != dayAt || date[at] != ' ') {
            *end++ = date[at];
        }
    }
    return text;
}();

} // namespace

#define SETTING(kind, name, preset, ...) kind##SettingValue name = preset;
#include "common/settings_lists.inc"

namespace {

// clang-format off
#define SETTINGS_LIST(list, ...) constexpr ConfigKey list##Rows[] = {
#define SETTING(kind, name, preset, ...)                                                           \
    SettingRow(#name, &name, preset, Setting##kind, {__VA_ARGS__}),
#define END_SETTINGS_LIST };
#include "common/settings_lists.inc"
// clang-format on

// A line of a file goes to the first row whose name begins as the line's does, so a name must not
// be the beginning of an earlier one (nor the same again). What is never read stands in nobody's
// way.
template <std::size_t count> constexpr bool EveryRowIsReached(const ConfigKey (&rows)[count]) {
    for (std::size_t row = 0; row < count; ++row) {
        for (std::size_t earlier = 0; earlier < row; ++earlier) {
            if ((rows[earlier].flags & SettingWriteOnly) == 0 &&
                std::string_view(rows[earlier].name).starts_with(rows[row].name)) {
                return false;
            }
        }
    }
    return true;
}

#define SETTINGS_LIST(list, ...) static_assert(EveryRowIsReached(list##Rows));
#include "common/settings_lists.inc"

constexpr const SettingsList *Lists[] = {
#define SETTINGS_LIST(list, ...) &list,
#include "common/settings_lists.inc"
};

} // namespace

#define SETTINGS_LIST(list, folder, file, section, prefix, written)                                \
    constinit const SettingsList list = {                                                          \
        folder, file, section, prefix, SettingsWritten::written, list##Rows};
#include "common/settings_lists.inc"

constinit const std::span<const SettingsList *const> SettingsLists(Lists);

void ResetSettings(const SettingsList &list) {
    for (const ConfigKey &row : list.rows) {
        if (std::uint32_t *const *number = std::get_if<std::uint32_t *>(&row.value)) {
            **number = std::get<std::uint32_t>(row.preset);
        } else {
            *std::get<std::string *>(row.value) = std::get<const char *>(row.preset);
        }
    }
}

void ResetSettings() {
    for (const SettingsList *list : SettingsLists) {
        ResetSettings(*list);
    }
}

} // namespace tonewright
