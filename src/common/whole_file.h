// Files of ours that are replaced as a whole: whoever looks at one, at whatever moment, finds the
// former file or the new one, and never a part.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace tonewright {

// Puts `bytes` in the place of the file, behind links too; the users who may read and write it stay
// the same. On the way they stand in a file beside it, whose name has a number and ".new" behind
// the name. Where there can be no such file, or it cannot take the other's name, they are written
// in place, and when that fails, the former bytes again.
//
// True when all is on the disk. False, the reason in errno, when it is not, or when a read-only
// file, a folder, a pipe or a device stands in its place; the file is then as it was, or there is
// none.
bool WriteFileWhole(const char *path, std::span<const std::uint8_t> bytes);
bool WriteFileWhole(const char *path, std::string_view text);

// The same with the bytes of another file, and for the users of that one. A link `to` is replaced,
// and so is a read-only file.
bool CopyFileWhole(const char *from, const char *to);

} // namespace tonewright
