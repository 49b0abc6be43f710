// Looks into the voice files of every family whose driver reads them, without opening them as a
// document: what kind a file is, whether it is whole, and its voices' names and algorithms.
#pragma once

#include "core/voice_file.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

// The format of a driver's files, or nullptr while the driver's row leaves its reader empty.
const VoiceFileFormat *FormatOfDriver(DriverId driver, VoiceFileKind kind);

// The format that a path's extension, in any case of letters, stands for; nullptr for none.
const VoiceFileFormat *FormatOfPath(std::string_view path);
// The same where it is that of a bank, else nullptr.
const VoiceFileFormat *BankFormatOfPath(std::string_view path);

// Why FormatOfPath knows no format for a path.
std::string UnknownFormatReason();
// The same, and what the file is all the same, if a family knows it.
std::string UnknownFormatReason(const char *path);

// Reads the file's start and judges it. A file that cannot be read counts as refused; `bytes` is
// then empty. The reason of one that is refused says what else it is, if a family knows it.
// `unread` becomes the number of bytes behind those of the format.
VoiceFileReport ReadVoiceFile(const char *path, const VoiceFileFormat &format,
                              std::vector<std::uint8_t> &bytes, std::uint64_t *unread = nullptr);

// Why a file could not be opened as `format`, in words. nullptr: its extension stands for none. Of
// a damaged file it says that the answer was not to open it.
std::string ReasonNotOpened(const char *path, const VoiceFileFormat *format);

} // namespace tonewright
