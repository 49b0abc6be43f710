// What stands in a folder, with as few questions to the system as there are files in it. One
// implementation file a platform.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

enum class EntryKind { File, Folder, Link, Other };

// By which a changed file differs from what it was.
struct FileState {
    std::uint64_t size = 0;
    std::int64_t changed = 0; // its contents, in nanoseconds since 1970
    std::int64_t status = 0;  // the same of what the system notes of it, its name too; 0: nothing

    bool operator==(const FileState &) const = default;
};

// The same for whichever path leads to a file or folder; number 0 where that is unknown.
struct FileKey {
    std::uint64_t device = 0, number = 0;

    auto operator<=>(const FileKey &) const = default;
};

struct FolderEntry {
    std::string_view name;
    EntryKind kind = EntryKind::Other;
    FileState state; // of a file, as well as its key
    FileKey key;
};

// Lists a folder in the order that the system has, without the entries for itself and the one
// above. `path` ends in no separator; that of the root of a file system is empty there. visit()
// ends it with false. 0, or the errno of why it could not be listed, or not to its end, or why one
// of its entries, which is left out, could not be looked at.
int ListFolder(const std::string &path, const std::function<bool(const FolderEntry &)> &visit);

// What a path leads to, behind links. Nothing, the reason in errno, when it leads nowhere.
struct PathTarget {
    EntryKind kind = EntryKind::Other; // never Link
    FileState state;
    FileKey key;
};
std::optional<PathTarget> TargetOf(const std::string &path);

// Whether a folder holds what the system says of itself, in the form of files.
bool IsSystemFolder(std::string_view path);

} // namespace tonewright
