// Files of ours that are replaced as a whole: whoever looks at one, at whatever moment, finds the
// former file or the new one, and never a part, but for those that can be written in place only.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string_view>

namespace tonewright {

// What a path leads to, which need not exist; nothing when links lead round in a circle. On Windows
// it is the path itself: the library does not look behind links there, and a symbolic link may be
// replaced by the file that is written.
std::optional<std::filesystem::path> BehindLinks(std::filesystem::path path);

enum class Replacing {
    AsAWhole, // the new bytes are on the disk, in a file beside it
    InPlace,  // they are about to be written over the former ones, which may fail
};
// Called once before a file changes, and not at all when it is clear by then that it will not.
using BeforeReplacing = std::function<void(Replacing)>;

// Puts `bytes` in the place of the file, behind links too; the users who may read and write it stay
// the same. On the way they stand in a file beside it, whose name has a number and ".new" behind
// the name; such files that are older than an hour are removed, since whoever was writing them has
// been ended. The bytes are written in place, and when that fails the former ones again, where the
// folder takes no new file, where a new file could not have the owner, group and permissions of the
// former one, and where the former one has other names or a list of access rights. For that it may
// have no more than 64 MB (EFBIG).
//
// True when all is on the disk. False, the reason in errno, when it is not, or when a read-only
// file, a folder, a pipe or a device stands in its place; the file is then as it was, or there is
// none. ENOTRECOVERABLE stands for the one exception: it was written in place, and the former bytes
// could not be brought back.
bool WriteFileWhole(const char *path, std::span<const std::uint8_t> bytes,
                    const BeforeReplacing &before = {});
bool WriteFileWhole(const char *path, std::string_view text, const BeforeReplacing &before = {});

// Writes all bytes of a file, from where it stands; `written` grows with them. False, with the
// reason in errno, when they are not all there. It may be called a second time, for another file.
using WriteBytes = std::function<bool(std::FILE *file, std::size_t &written)>;
// The same with bytes of any length, which need not be in memory at one time.
bool WriteFileWhole(const char *path, const WriteBytes &write, const BeforeReplacing &before = {});

// The same with the bytes of another file, of any length, and for the users of that one as far as
// the system lets their files be made. A `to` that is a link, or has other names, becomes a file of
// its own; a read-only one is replaced.
bool CopyFileWhole(const char *from, const char *to);

} // namespace tonewright
