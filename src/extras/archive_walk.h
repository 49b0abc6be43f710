// Compares the folders of an archive with what it knows of them: which files are to be read, and
// which are gone. Nothing is read or written here.
#pragma once

#include "extras/archive_store.h"
#include "extras/folder_listing.h"

#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tonewright {

constexpr std::uint32_t NoFile = ~std::uint32_t{0};

// A row of the archive's table, in little room.
struct KnownFile {
    std::int64_t id = 0, folder = 0;
    FileState state;
    std::uint64_t content = 0, voices = 0;
    std::size_t name = 0; // where it begins in KnownFiles::names
    std::uint32_t nameSize = 0;
    ReadAgain again = ReadAgain::No;
    bool failed = false; // could not be read
    bool seen = false;   // stands on the disk

    // False for one that was only looked into and is none of ours.
    bool WasRead() const { return content != 0 || failed; }
};

// All rows, found by folder and name.
struct KnownFiles {
    std::vector<KnownFile> files;
    std::string names;
    std::vector<std::uint32_t> slots; // of a hash table: numbers of files, or NoFile

    void Add(const ArchiveFile &file);
    void Prepare(); // for Find, when all are added
    KnownFile *Find(std::int64_t folder, std::string_view name);
    std::string_view NameOf(const KnownFile &file) const;
};

// A folder that was listed.
struct WalkedFolder {
    std::string path;
    std::int64_t id = 0; // 0: the archive has no row for it yet
};

// A file that is new or has changed.
struct FileAhead {
    std::uint32_t folder = 0;     // number among the walked ones
    std::uint32_t known = NoFile; // number among the known ones
    std::string name;
};

struct ArchiveWalk {
    // Filled in before.
    KnownFiles known;
    std::map<std::string, std::int64_t> folderIds; // by path
    std::vector<std::string> elsewhere; // real paths of folders that were added and are not looked
                                        // through now: links to what they reach are left alone
    std::function<bool(std::uint64_t found, const std::string &folder)> goOn;
    std::function<void(const std::string &path, const std::string &reason)> tell;

    // What was found.
    std::vector<WalkedFolder> folders;
    std::vector<FileAhead> toRead;
    std::uint64_t found = 0; // files
    std::uint64_t unchanged = 0, skipped = 0, failed = 0;
    bool cancelled = false;
    std::set<std::string, std::less<>> kept; // folders that could not be looked through: what the
                                             // archive knows of them and below stays

    // What is left for the end of the walk, so that a folder is known by its own path rather than
    // by that of a link to it.
    struct FoundLink {
        std::uint32_t folder;
        std::string name;
    };
    std::vector<FoundLink> links, fileLinks;
    std::set<FileKey> folderKeys;
    std::vector<FileKey> fileKeys;
};

// The path of a file or folder without links in it; as it is when it leads nowhere.
std::string RealPath(const std::string &path);
std::string RealFolder(const std::string &path);
// Whether looking through a folder reaches a path, both without links: not where a part of it on
// the way is hidden, or the system's own.
bool IsReachedFrom(std::string_view folder, std::string_view path);
// Walks through these folders and all below them, following links, each folder once.
void WalkFolders(ArchiveWalk &walk, std::vector<std::string> roots);
// Whether a folder, or one that it stands in, was kept.
bool IsKept(const ArchiveWalk &walk, std::string_view folder);

} // namespace tonewright
