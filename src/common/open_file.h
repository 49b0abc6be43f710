// Files by their UTF-8 paths, as far as platforms differ: opening, making, bringing to the disk,
// renaming. One implementation file a platform.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace tonewright {

struct FileCloser {
    void operator()(std::FILE *file) const { std::fclose(file); }
};
using FilePointer = std::unique_ptr<std::FILE, FileCloser>;

// As std::fopen, for regular files only: `mode` is "rb", "r+b", "wb",
// "w+b" or "a+b". Null, with the reason
// in errno, when there is no such file, it cannot be opened, or a folder, a pipe or a device stands
// in its place. Never waits for the other end of a pipe.
FilePointer OpenFile(const char *path, const char *mode);

enum class NewFileUsers {
    AsModel, // owner, group and permissions are those of the model, or no file is made: EPERM
    AsModelOrFewer, // as far as they can be given; nobody may do more than with the model
};
// On Windows a new file has the users that its folder gives it, whatever the model's are;
// RenameOver hands it those of the file that it replaces.
//
// Makes a file that does not exist, open for writing, for the users of the file `model` if there is
// one. Null, with the reason in errno, when it cannot be made, or exists; there is none then that
// was not there before.
FilePointer CreateFileLike(const char *path, const char *model, NewFileUsers users);

// Whether a new file in the place of this one would lose what belongs to the file and not to its
// name: its other names, its list of access rights (which RenameOver keeps on Windows).
bool IsMoreThanItsName(const char *path);

// The size of an open file in bytes, with those that were written and are still on their way; what
// is read or written next begins with a seek. Nothing when the platform cannot tell it.
std::optional<std::uint64_t> SizeOfFile(std::FILE *file);

// Gives a file that is open for writing its size in bytes. False, with the reason in errno, when it
// keeps the former one.
bool SetFileSize(std::FILE *file, std::size_t size);

// Brings all that was written to the disk. False, with the reason in errno, when not all of it is
// there.
bool FlushToDisk(std::FILE *file);

// Gives a file another name, in the place of the file that has it, in one step. The step is on the
// disk too, unless the folder cannot be waited for: after a power cut the name may then stand for
// the former file. False, with the reason in errno, when it keeps its name; on Windows after a
// third of a second in which another program did not let go of either file.
bool RenameOver(const char *from, const char *to);

// Replaces `bytes`, whose room is used again, by up to `limit` bytes from the start of a regular
// file. False, with the reason in errno, when it cannot be opened, as above, or not be read. Memory
// is taken as the file delivers: a limit beyond its end costs nothing. `size` becomes the size of
// the whole file in bytes.
bool ReadStartOfFile(const char *path, std::size_t limit, std::vector<std::uint8_t> &bytes,
                     std::uint64_t *size = nullptr);

// A regular file that is read from its start to its end without a stream's own room for bytes; it
// is closed at the end of its life. Every call is one call of the system.
struct FileToRead {
    int descriptor = -1;
    std::uint64_t size = 0; // in bytes, when it was opened; 0 also where that is not told

    FileToRead() = default;
    FileToRead(const FileToRead &) = delete;
    FileToRead &operator=(const FileToRead &) = delete;
    ~FileToRead();
};
// False, with the reason in errno, where OpenFile opens nothing for reading.
bool OpenToRead(FileToRead &file, const char *path);
// Reads some of the bytes that follow, and tells how many; 0 at the end. Nothing, with the reason
// in errno, when they cannot be read.
std::optional<std::size_t> ReadOn(FileToRead &file, std::span<std::uint8_t> bytes);

// Keeps the first `have` of `bytes` and reads on behind them up to `limit` bytes in all, for which
// room is made in pieces each as long as all before it: read(place, size) gives how many bytes it
// has written there, which may be fewer than `size` anywhere, and 0 at the end.
template <typename Read>
void ReadInPieces(std::size_t limit, std::vector<std::uint8_t> &bytes, Read read,
                  std::size_t have = 0) {
    constexpr std::size_t firstPiece = 64 * 1024;
    std::size_t room = have, got = 1;
    while (have < limit && got != 0) {
        if (have == room) {
            room += std::min(limit - have, std::max(have, firstPiece));
            bytes.resize(room);
        }
        got = read(bytes.data() + have, room - have);
        have += got;
    }
    bytes.resize(have);
}

} // namespace tonewright
