// The names of catalogues: which ones there are, where they lie and which may be given to a new
// one.
#pragma once

#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tonewright {

constexpr const char *DefaultDatabaseName = "Voices"; // there always is one of this name
constexpr int DatabaseNameLimit = 64;                 // characters

// The catalogues in the user's documents: the names, without their extension, of the regular files
// whose name ends in a dot and `extension`, but for those that begin with a dot. UTF-8, in the
// order of their letters, A to Z counting as small ones. Where the folder cannot be read, those
// that were found before; `failure` becomes why, or no error.
std::vector<std::string> DatabaseNames(const char *extension, std::error_code *failure = nullptr);

// The path of a catalogue in the user's documents, cut at 260 bytes. `extension` has no dot.
std::string DatabasePathNamed(std::string_view name, const char *extension);
// The path of the backup of the catalogue at `path`. `backupExtension` has its dot.
std::string DatabaseBackupPathOf(std::string_view path, const char *backupExtension);

// Whether a character, which is or is not a letter or a digit of any script, may stand in the name
// of a new catalogue.
bool MayStandInDatabaseName(char32_t character, bool isLetterOrDigit);

// Whether a catalogue can be made under this name: it is another one than the default name and each
// of `existing`, letters of either case being the same, and it is neither empty nor begins with a
// blank or a dot.
bool IsNewDatabaseName(std::string_view name, const std::vector<std::string> &existing);

} // namespace tonewright
