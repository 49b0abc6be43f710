// What the command settings does.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace tonewright {

struct SettingsAction {
    std::string_view name;
    std::size_t words; // with the name
};
extern const std::array<SettingsAction, 3> SettingsActions;

} // namespace tonewright
