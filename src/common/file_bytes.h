// Reading and writing whole files of a known, small size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <span>
#include <vector>

namespace tonewright {

// Up to `limit` bytes from the start of a regular file. Nothing when it cannot be opened or read,
// or is a folder.
std::optional<std::vector<std::uint8_t>> ReadFileBytes(const char *path, std::size_t limit);

// Up to `limit` bytes of an open file from where it stands. Memory is taken as the file delivers: a
// limit beyond its end costs nothing.
std::vector<std::uint8_t> ReadBytesOf(std::FILE *file, std::size_t limit);

enum class WriteOutcome {
    Done,
    NotOpened, // the file could not be opened for writing; it is as it was
    Short,     // not all bytes could be written; the file has been deleted
};
// Cuts the file to zero length and writes `bytes`.
WriteOutcome WriteFileBytes(const char *path, std::span<const std::uint8_t> bytes);

// Removes a file that was opened for writing. Anything but a regular file (a device node, a pipe)
// is no file of ours and stays.
void DeleteWrittenFile(const char *path);

// Copies a file, replacing `to`. False when not all of it could be copied.
bool CopyFileTo(const char *from, const char *to);
bool FileExists(const char *path);

} // namespace tonewright
