// Single settings in the text of a file of settings, read and written without the others. They are
// found by their whole name in a named section, without regard to case; the first section of a name
// is the one that counts.
#pragma once

#include "common/setting_rows.h"

#include <cstdint>
#include <string>

namespace tonewright {

// Of any file, and of the file of a list.
std::string ReadSingleText(const char *path, const char *section, const char *name,
                           const std::string &fallback);
std::string ReadSingleText(const SettingsList &list, const char *name, const std::string &fallback);
std::uint32_t ReadSingleInteger(const char *path, const char *section, const char *name,
                                std::uint32_t fallback);
std::uint32_t ReadSingleInteger(const SettingsList &list, const char *name, std::uint32_t fallback);

// Replaces the line of the setting, or adds one at the end of the section, or the section at the
// end of the file, or makes the file. Every other line stays as it is, byte for byte. `value` ends
// at its first control character. False, the reason in errno, when the
// file could not be written; it is then as it was.
bool WriteSingleText(const char *path, const char *section, const char *name,
                     const std::string &value);

} // namespace tonewright
