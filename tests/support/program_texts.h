// What the program says and writes, where more than one test goes by it.
#pragma once

#include <string>

namespace tonewright {

// What is said where the program has no text of a number.
inline const std::string NoSuchText = "String table error - this application may be damaged";
inline const std::string BackupQuestion =
    "Warning: there has been an error creating a backup for your file.\r\n\r\nClick on Yes to "
    "proceed, or click on No to abort this save.";
// Of a file of reface DX settings.
inline const std::string CrgFirstLine = ";Quillbrook Tonewright - reface DX configuration\n";

} // namespace tonewright
