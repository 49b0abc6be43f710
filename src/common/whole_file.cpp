// Writing beside a file, and in its place where that cannot be.
#include "common/whole_file.h"

#include "common/file_bytes.h"
#include "common/open_file.h"

#include <cerrno>
#include <filesystem>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;
using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t AnySize = std::numeric_limits<std::size_t>::max();

fs::path PathOf(const std::string &utf8) {
    return fs::path(reinterpret_cast<const char8_t *>(utf8.c_str()));
}

std::string Utf8Of(const fs::path &path) {
    const std::u8string utf8 = path.u8string();
    return {utf8.begin(), utf8.end()};
}

bool FailFor(int reason) {
    errno = reason;
    return false;
}

// What a path leads to, which need not exist; nothing when links lead round in a circle.
std::optional<fs::path> BehindLinks(fs::path path) {
    constexpr int linkLimit = 40; // as many as the system follows
    for (int link = 0; link < linkLimit; ++link) {
        std::error_code error;
        const fs::path next = fs::read_symlink(path, error);
        if (error) {
            return path;
        }
        path = path.parent_path() / next;
    }
    return std::nullopt;
}

fs::file_type TypeOf(const std::string &path) {
    std::error_code ignored;
    return fs::symlink_status(PathOf(path), ignored).type();
}

// From the start of the file to the disk.
bool Put(std::FILE *file, Bytes bytes) {
    return std::fseek(file, 0, SEEK_SET) == 0 &&
           (bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size()) &&
           FlushToDisk(file);
}

bool PutAll(const std::string &path, std::FILE *file, Bytes bytes) {
    if (!Put(file, bytes)) {
        return false;
    }
    std::error_code error;
    fs::resize_file(PathOf(path), bytes.size(), error);
    return !error && FlushToDisk(file);
}

bool WriteInPlace(const std::string &path, Bytes bytes) {
    const FilePointer file = OpenFile(path.c_str(), "r+b");
    if (!file) {
        return false;
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const std::vector<std::uint8_t> former = ReadBytesOf(file.get(), AnySize);
    if (std::ferror(file.get())) {
        return false;
    }
    if (PutAll(path, file.get(), bytes)) {
        return true;
    }
    // As much as could be written has its place on the disk already.
    const int reason = errno;
    PutAll(path, file.get(), former);
    return FailFor(reason);
}

void RemoveKeepingReason(const std::string &path) {
    const int reason = errno;
    std::error_code ignored;
    fs::remove(PathOf(path), ignored);
    errno = reason;
}

// `path` is no link that is to be followed; `model` tells which users may use the new file.
bool Replace(const std::string &path, Bytes bytes, const std::string &model) {
    if (PathOf(path).filename().empty()) {
        return FailFor(ENOENT);
    }
    const bool canBeWrittenInPlace = TypeOf(path) == fs::file_type::regular;
    const std::string beside = path + "." + std::to_string(std::random_device()()) + ".new";
    FilePointer file = CreateFileLike(beside.c_str(), model.c_str());
    if (!file) {
        return canBeWrittenInPlace && WriteInPlace(path, bytes);
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const bool written = Put(file.get(), bytes);
    // Some file systems report a full disk only here.
    const bool closed = std::fclose(file.release()) == 0;
    if (!written || !closed) {
        RemoveKeepingReason(beside);
        return false;
    }
    if (RenameOver(beside.c_str(), path.c_str())) {
        return true;
    }
    RemoveKeepingReason(beside);
    return canBeWrittenInPlace && WriteInPlace(path, bytes);
}

} // namespace

bool WriteFileWhole(const char *path, Bytes bytes) {
    const auto target = BehindLinks(PathOf(path));
    if (!target) {
        return FailFor(ELOOP);
    }
    const std::string file = Utf8Of(*target);
    if (TypeOf(file) != fs::file_type::not_found && !OpenFile(file.c_str(), "r+b")) {
        return false; // read-only, or no regular file
    }
    return Replace(file, bytes, file);
}

bool WriteFileWhole(const char *path, std::string_view text) {
    return WriteFileWhole(path,
                          Bytes(reinterpret_cast<const std::uint8_t *>(text.data()), text.size()));
}

bool CopyFileWhole(const char *from, const char *to) {
    const auto bytes = ReadFileBytes(from, AnySize);
    if (!bytes) {
        return false;
    }
    switch (TypeOf(to)) {
    case fs::file_type::not_found:
    case fs::file_type::regular:
    case fs::file_type::symlink:
        return Replace(to, *bytes, from);
    default:
        return FailFor(EEXIST);
    }
}

} // namespace tonewright
