// Writing beside a file, and in its place where that cannot be.
#include "common/whole_file.h"

#include "common/file_bytes.h"
#include "common/open_file.h"
#include "common/text.h"
#include "common/utf8_path.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <functional>
#include <random>
#include <string>
#include <system_error>
#include <vector>

namespace tonewright {
namespace {

namespace fs = std::filesystem;
using Bytes = std::span<const std::uint8_t>;

bool FailFor(int reason) {
    errno = reason;
    return false;
}

fs::file_type TypeOf(const std::string &path) {
    std::error_code ignored;
    return fs::symlink_status(PathOfUtf8(path), ignored).type();
}

WriteBytes PutBytes(Bytes bytes) {
    return [bytes](std::FILE *file, std::size_t &written) {
        written = bytes.size();
        return bytes.empty() || std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    };
}

// In pieces, since a file may be longer than memory.
WriteBytes PutCopyOf(std::FILE *source) {
    return [source](std::FILE *file, std::size_t &written) {
        std::vector<std::uint8_t> piece(64 * 1024);
        if (std::fseek(source, 0, SEEK_SET) != 0) {
            return false;
        }
        while (const std::size_t size = std::fread(piece.data(), 1, piece.size(), source)) {
            if (std::fwrite(piece.data(), 1, size, file) != size) {
                return false;
            }
            written += size;
        }
        return std::ferror(source) == 0;
    };
}

// From the start of the file to the disk, and nothing behind it.
bool PutAll(std::FILE *file, const WriteBytes &put) {
    std::size_t size = 0;
    return std::fseek(file, 0, SEEK_SET) == 0 && put(file, size) && SetFileSize(file, size) &&
           FlushToDisk(file);
}

bool PutBack(std::FILE *file, const std::vector<std::uint8_t> &former) {
    if (PutAll(file, PutBytes(former))) {
        return true;
    }
    // What could not be written now, could not be overwritten before either: it is still there.
    std::clearerr(file);
    return SetFileSize(file, former.size()) && std::fseek(file, 0, SEEK_SET) == 0 &&
           ReadBytesOf(file, former.size()) == former && FlushToDisk(file);
}

constexpr std::size_t InPlaceLimit = 64 * 1024 * 1024; // bytes of the former file, kept in memory

bool WriteInPlace(const std::string &path, const WriteBytes &put, const BeforeReplacing &before) {
    const FilePointer file = OpenFile(path.c_str(), "r+b");
    if (!file) {
        return false;
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const std::vector<std::uint8_t> former = ReadBytesOf(file.get(), InPlaceLimit + 1);
    if (std::ferror(file.get())) {
        return false;
    }
    if (former.size() > InPlaceLimit) {
        return FailFor(EFBIG);
    }
    if (before) {
        before(Replacing::InPlace);
    }
    if (PutAll(file.get(), put)) {
        return true;
    }
    const int reason = errno;
    return FailFor(PutBack(file.get(), former) ? reason : ENOTRECOVERABLE);
}

// Whether it is the folder that takes no new file, or none with these users.
bool IsForPlace(int reason) {
    return reason == EACCES || reason == EPERM || reason == EROFS || reason == EBUSY;
}

void RemoveKeepingReason(const std::string &path) {
    const int reason = errno;
    std::error_code ignored;
    fs::remove(PathOfUtf8(path), ignored);
    errno = reason;
}

// The names of files beside a file are what comes before a number and what comes behind it.
constexpr std::string_view EndBeside = ".new";

std::string StartBeside(const fs::path &path) {
    // With number and end no longer than the 255 bytes that most file systems take.
    constexpr std::size_t longest = 230;
    const std::string name = Utf8OfPath(path.filename());
    return std::string(CutText(name, longest)) + ".";
}

bool IsNameBeside(std::string_view name, std::string_view start) {
    if (!name.starts_with(start) || !name.ends_with(EndBeside) ||
        name.size() <= start.size() + EndBeside.size()) {
        return false;
    }
    name.remove_prefix(start.size());
    name.remove_suffix(EndBeside.size());
    return std::ranges::all_of(name, [](char digit) { return digit >= '0' && digit <= '9'; });
}

// Removes what programs that were ended have left; a younger file may be in use.
void RemoveLeftBeside(const fs::path &folder, std::string_view start) {
    const auto young = fs::file_time_type::clock::now() - std::chrono::hours(1);
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, error);
    while (!error && entry != fs::directory_iterator()) {
        const fs::path path = entry->path();
        std::error_code ignored;
        if (IsNameBeside(Utf8OfPath(path.filename()), start) &&
            fs::is_regular_file(entry->symlink_status(ignored))) {
            const auto time = fs::last_write_time(path, ignored);
            if (!ignored && time < young) {
                fs::remove(path, ignored);
            }
        }
        entry.increment(error);
    }
}

// Brings a file beside `path` to the disk; its path, or nothing, with the reason in errno.
std::optional<std::string> WriteBeside(const std::string &path, const WriteBytes &put,
                                       const std::string &model, NewFileUsers users) {
    const fs::path folder = PathOfUtf8(path).parent_path();
    const std::string start = StartBeside(PathOfUtf8(path));
    RemoveLeftBeside(folder, start);
    const std::string beside =
        Utf8OfPath(folder / PathOfUtf8(start + std::to_string(std::random_device()()) +
                                       std::string(EndBeside)));
    FilePointer file = CreateFileLike(beside.c_str(), model.c_str(), users);
    if (!file) {
        return std::nullopt;
    }
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const bool written = PutAll(file.get(), put);
    const int reason = errno;
    // Some file systems report a full disk only here.
    const bool closed = std::fclose(file.release()) == 0;
    if (written && closed) {
        return beside;
    }
    errno = written ? errno : reason;
    RemoveKeepingReason(beside);
    return std::nullopt;
}

// `path` is no link that is to be followed; `model` tells which users may use the new file.
bool Replace(const std::string &path, const WriteBytes &put, const std::string &model,
             NewFileUsers users, const BeforeReplacing &before) {
    if (PathOfUtf8(path).filename().empty()) {
        return FailFor(ENOENT);
    }
    const bool canBeWrittenInPlace = TypeOf(path) == fs::file_type::regular;
    const auto beside = WriteBeside(path, put, model, users);
    if (!beside) {
        return canBeWrittenInPlace && IsForPlace(errno) && WriteInPlace(path, put, before);
    }
    if (before) {
        before(Replacing::AsAWhole);
    }
    if (RenameOver(beside->c_str(), path.c_str())) {
        return true;
    }
    RemoveKeepingReason(*beside);
    return canBeWrittenInPlace && IsForPlace(errno) && WriteInPlace(path, put, {});
}

} // namespace

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

bool WriteFileWhole(const char *path, const WriteBytes &write, const BeforeReplacing &before) {
    const auto target = BehindLinks(PathOfUtf8(path));
    if (!target) {
        return FailFor(ELOOP);
    }
    const std::string file = Utf8OfPath(*target);
    if (TypeOf(file) != fs::file_type::not_found && !OpenFile(file.c_str(), "r+b")) {
        return false; // read-only, or no regular file
    }
    if (IsMoreThanItsName(file.c_str())) {
        return WriteInPlace(file, write, before);
    }
    return Replace(file, write, file, NewFileUsers::AsModel, before);
}

bool WriteFileWhole(const char *path, Bytes bytes, const BeforeReplacing &before) {
    return WriteFileWhole(path, PutBytes(bytes), before);
}

bool WriteFileWhole(const char *path, std::string_view text, const BeforeReplacing &before) {
    return WriteFileWhole(
        path, Bytes(reinterpret_cast<const std::uint8_t *>(text.data()), text.size()), before);
}

bool CopyFileWhole(const char *from, const char *to) {
    const FilePointer source = OpenFile(from, "rb");
    if (!source) {
        return false;
    }
    switch (TypeOf(to)) {
    case fs::file_type::not_found:
    case fs::file_type::regular:
    case fs::file_type::symlink:
        return Replace(to, PutCopyOf(source.get()), from, NewFileUsers::AsModelOrFewer, {});
    default:
        return FailFor(EEXIST);
    }
}

} // namespace tonewright
