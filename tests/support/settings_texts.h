// Texts around the files of reface DX settings.
#pragma once

#include <string>

namespace tonewright {

// What is said where the program has no text of a number.
constexpr const char *NoSuchText = "String table error - this application may be damaged";
constexpr const char *BackupWarning =
    "Warning: there has been an error creating a backup for your file.\r\n\r\nClick on Yes to "
    "proceed, or click on No to abort this save.";
inline const std::string CrgFirstLine = ";Quillbrook Tonewright - reface DX configuration\n";

} // namespace tonewright
