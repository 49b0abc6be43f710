// The program's settings: one variable each, read directly by every layer. Their list, with the
// defaults that they hold until a file of settings is read, is common/program_settings.inc; the
// table made of it is common/setting_rows.
//
// Integers are kept as the file gives them, modulo 2^32, without a range: whoever reads one
// guards against values that make no sense. Texts are UTF-8 of at most 260 bytes.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

constexpr std::size_t SettingTextLimit = 260; // bytes

using BoolSettingValue = std::uint32_t; // 0 or 1; a file may bring other numbers
using IntegerSettingValue = std::uint32_t;
using TextSettingValue = std::string;

#define SETTING(kind, name, ...) extern kind##SettingValue name;
#include "common/settings_lists.inc"

// Puts every setting back to its default.
void ResetSettings();

} // namespace tonewright
