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
// or is a folder, a pipe or a device.
std::optional<std::vector<std::uint8_t>> ReadFileBytes(const char *path, std::size_t limit);

// Up to `limit` bytes of an open file from where it stands. Memory is taken as the file delivers: a
// limit beyond its end costs nothing.
std::vector<std::uint8_t> ReadBytesOf(std::FILE *file, std::size_t limit);
// The same behind the `bytes` that are there, up to `limit` of them in all.
void ReadOnBehind(std::vector<std::uint8_t> &bytes, std::FILE *file, std::size_t limit);

enum class WriteOutcome {
    Done,
    NotOpened, // the file could not be opened for writing, or is no regular file; it is as it was
    Short,     // not all bytes could be written; the file has been deleted
};
// Cuts the file to zero length and writes `bytes`, behind a link too. A link to a file that has
// been deleted stays. Where not all was done, errno tells why.
WriteOutcome WriteFileBytes(const char *path, std::span<const std::uint8_t> bytes);

// Removes a file that was written here. Behind a link it is the file that goes, since that is what
// was cut; the link stays for the next file. Anything but a regular file (a device node, a pipe) is
// no file of ours and stays. Keeps errno, which tells why the writing failed.
void DeleteWrittenFile(const char *path);

// Whether `path` stands for that entry of a folder, or is a link that leads to it or through it:
// without the entry there would be no file behind `path`.
bool LeadsThrough(const char *path, const char *entry);

// Copies a file, replacing `to`; when `to` is a link to some file, or another name of it, that file
// stays as it is. False when not all of it could be copied, or when both paths lead to the same
// entry of a folder, of which there is but one.
bool CopyFileTo(const char *from, const char *to);
bool FileExists(const char *path);

} // namespace tonewright
