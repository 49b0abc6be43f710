// Reading and writing whole files of a known, small size.
#include "common/file_bytes.h"

#include "common/open_file.h"
#include "common/utf8_path.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace tonewright {

namespace {

namespace fs = std::filesystem;

// The entry of a folder that a path stands for: links on the way are followed, one at the end is an
// entry of its own. Empty when the folder does not exist.
fs::path EntryOf(const fs::path &path) {
    std::error_code error;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    const fs::path real = fs::canonical(folder, error);
    return error ? fs::path() : real / path.filename();
}

} // namespace

std::vector<std::uint8_t> ReadBytesOf(std::FILE *file, std::size_t limit) {
    std::vector<std::uint8_t> bytes;
    ReadOnBehind(bytes, file, limit);
    return bytes;
}

void ReadOnBehind(std::vector<std::uint8_t> &bytes, std::FILE *file, std::size_t limit) {
    const auto read = [file](std::uint8_t *place, std::size_t size) {
        return std::fread(place, 1, size, file);
    };
    ReadInPieces(limit, bytes, read, bytes.size());
}

std::optional<std::vector<std::uint8_t>> ReadFileBytes(const char *path, std::size_t limit) {
    std::vector<std::uint8_t> bytes;
    if (!ReadStartOfFile(path, limit, bytes)) {
        return std::nullopt;
    }
    return bytes;
}

WriteOutcome WriteFileBytes(const char *path, std::span<const std::uint8_t> bytes) {
    FilePointer file = OpenFile(path, "wb");
    if (!file) {
        return WriteOutcome::NotOpened;
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const bool written =
        (bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size()) &&
        std::fflush(file.get()) == 0;
    // Some file systems report a full disk only here.
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed) {
        DeleteWrittenFile(path);
        return WriteOutcome::Short;
    }
    return WriteOutcome::Done;
}

void DeleteWrittenFile(const char *path) {
    const int reason = errno;
    std::error_code error;
    const fs::path target = fs::canonical(PathOfUtf8(path), error);
    if (!error && fs::is_regular_file(target, error)) {
        fs::remove(target, error);
    }
    errno = reason;
}

bool LeadsThrough(const char *path, const char *entry) {
    constexpr int linkLimit = 40; // as many as the system follows
    const fs::path wanted = EntryOf(PathOfUtf8(entry));
    fs::path followed = PathOfUtf8(path);
    std::error_code error;
    for (int link = 0; link < linkLimit; ++link) {
        followed = EntryOf(followed);
        if (followed == wanted) {
            return true;
        }
        const fs::path next = fs::read_symlink(followed, error);
        if (error) {
            return false;
        }
        followed = followed.parent_path() / next;
    }
    return false;
}

bool CopyFileTo(const char *from, const char *to) {
    const fs::path source = PathOfUtf8(from);
    const fs::path target = PathOfUtf8(to);
    if (LeadsThrough(from, to)) {
        return false;
    }
    std::error_code error;
    // The earlier copy goes first, since it may be read-only, or another name of the very file that
    // is copied; a folder in its place stays.
    const fs::file_status status = fs::symlink_status(target, error);
    if (fs::is_regular_file(status) || fs::is_symlink(status)) {
        fs::remove(target, error);
    }
    const bool targetIsFree = !fs::exists(fs::symlink_status(target, error));
    if (fs::copy_file(source, target, error)) {
        return true;
    }
    // The part of a copy is no copy.
    if (targetIsFree) {
        DeleteWrittenFile(to);
    }
    return false;
}

bool FileExists(const char *path) {
    std::error_code error;
    const fs::file_status status = fs::status(PathOfUtf8(path), error);
    return fs::exists(status) && !fs::is_directory(status);
}

} // namespace tonewright
