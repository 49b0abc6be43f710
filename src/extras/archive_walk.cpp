// Compares the folders of an archive with what it knows of them.
#include "extras/archive_walk.h"

#include "common/utf8_path.h"
#include "extras/collection_files.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <system_error>

namespace tonewright {
namespace {

constexpr const char *NotThere = "The folder is not there. What the archive knows of it is kept.";
constexpr const char *Emptied = "The folder is empty. What the archive knows of it is kept.";
constexpr const char *Circle = "The link leads back to a folder that it stands in.";
constexpr const char *TooLarge = "The file is larger than 1 GB and was not read.";

std::size_t HashOf(std::int64_t folder, std::string_view name) {
    return std::hash<std::string_view>()(name) ^ static_cast<std::size_t>(folder);
}

bool IsKnown(const FileKey &key) {
    return key.number != 0;
}

void Tell(ArchiveWalk &walk, const std::string &path, const std::string &reason) {
    if (walk.tell) {
        walk.tell(path, reason);
    }
}

// A folder that could not be looked through.
void Keep(ArchiveWalk &walk, const std::string &path, const std::string &reason) {
    walk.kept.insert(path);
    ++walk.failed;
    Tell(walk, path, reason);
}

// Whether a file is as the archive knows it.
bool IsUnchanged(const KnownFile *known, const FileState &state) {
    return known && known->again == ReadAgain::No && known->state == state;
}

void TakeFile(ArchiveWalk &walk, std::uint32_t folder, std::string_view name,
              const FileState &state) {
    ++walk.found;
    const WalkedFolder &in = walk.folders[folder];
    KnownFile *known = walk.known.Find(in.id, name);
    if (IsUnchanged(known, state)) {
        known->seen = true;
        ++(known->WasRead() ? walk.unchanged : walk.skipped);
        return;
    }
    switch (JudgeFile(name, state.size)) {
    case FileJudgement::Skip:
        ++walk.skipped;
        return;
    case FileJudgement::TooLarge:
        ++walk.skipped;
        Tell(walk, PathInFolder(in.path, std::string(name)), TooLarge);
        return;
    case FileJudgement::Read:
    case FileJudgement::LookInside:
        break;
    }
    if (known) {
        known->seen = true;
    }
    const auto number =
        known ? static_cast<std::uint32_t>(known - walk.known.files.data()) : NoFile;
    walk.toRead.push_back({folder, number, std::string(name)});
}

// Lists a folder; those in it go to `below`. The number of entries, hidden ones too.
std::size_t ListOne(ArchiveWalk &walk, const std::string &path, std::vector<std::string> &below,
                    int &reason) {
    const auto number = static_cast<std::uint32_t>(walk.folders.size());
    const auto id = walk.folderIds.find(path);
    walk.folders.push_back({path, id == walk.folderIds.end() ? 0 : id->second});
    std::size_t entries = 0;
    const std::size_t firstToRead = walk.toRead.size(), firstLink = walk.links.size(),
                      firstBelow = below.size();
    reason = ListFolder(path, [&](const FolderEntry &entry) {
        ++entries;
        if (IsHidden(entry.name)) {
            return true;
        }
        switch (entry.kind) {
        case EntryKind::File:
            walk.fileKeys.push_back(entry.key);
            TakeFile(walk, number, entry.name, entry.state);
            break;
        case EntryKind::Folder:
            below.push_back(PathInFolder(path, std::string(entry.name)));
            break;
        case EntryKind::Link:
            walk.links.push_back({number, std::string(entry.name)});
            break;
        case EntryKind::Other:
            break;
        }
        walk.cancelled = walk.goOn && !walk.goOn(walk.found, path);
        return !walk.cancelled;
    });
    std::sort(walk.links.begin() + static_cast<std::ptrdiff_t>(firstLink), walk.links.end(),
              [](const auto &one, const auto &other) { return one.name < other.name; });
    // Files are read, and get their numbers, in the order of their names.
    std::sort(walk.toRead.begin() + static_cast<std::ptrdiff_t>(firstToRead), walk.toRead.end(),
              [](const FileAhead &one, const FileAhead &other) { return one.name < other.name; });
    // The last one is walked first.
    std::sort(below.begin() + static_cast<std::ptrdiff_t>(firstBelow), below.end(),
              std::greater<>());
    return entries;
}

// Whether the archive knows files in a folder or below, which were made, or got their names there,
// after a time.
bool HasKnownFiles(const ArchiveWalk &walk, const std::string &folder,
                   std::int64_t after = std::numeric_limits<std::int64_t>::min()) {
    std::set<std::int64_t> ids;
    if (const auto itself = walk.folderIds.find(folder); itself != walk.folderIds.end()) {
        ids.insert(itself->second);
    }
    const std::string below = folder + '/';
    for (auto at = walk.folderIds.lower_bound(below);
         at != walk.folderIds.end() && at->first.starts_with(below); ++at) {
        ids.insert(at->second);
    }
    return !ids.empty() && std::ranges::any_of(walk.known.files, [&ids,
                                                                  after](const KnownFile &file) {
        return ids.contains(file.folder) && std::max(file.state.changed, file.state.status) > after;
    });
}

// Whether an empty folder is the place where a disk that is not plugged in would stand. Below the
// one that was added it is so when nothing has changed in it since its files were there: what is
// taken out of a folder changes the time of it.
bool IsPlaceOfDisk(const ArchiveWalk &walk, const std::string &path, bool isTop,
                   const FileState &state) {
    return isTop ? HasKnownFiles(walk, path) : HasKnownFiles(walk, path, state.changed);
}

// A folder and all below it, but for what links lead to.
void WalkBelow(ArchiveWalk &walk, const std::string &top) {
    std::vector<std::string> waiting = {top};
    while (!waiting.empty() && !walk.cancelled) {
        const std::string path = std::move(waiting.back());
        waiting.pop_back();
        const auto target = TargetOf(path);
        if (!target && errno != ENOENT && errno != ENOTDIR) {
            Keep(walk, path, std::strerror(errno));
        }
        if (!target || target->kind != EntryKind::Folder || IsSystemFolder(path) ||
            (IsKnown(target->key) && !walk.folderKeys.insert(target->key).second)) {
            continue; // gone in this moment, none to enter, or reached by another path before
        }
        int reason = 0;
        const std::size_t entries = ListOne(walk, path, waiting, reason);
        if (reason != 0 && reason != ENOENT) {
            Keep(walk, path, std::strerror(reason));
        } else if (entries == 0 && IsPlaceOfDisk(walk, path, path == top, target->state)) {
            Keep(walk, path, Emptied);
        }
    }
}

// A folder that was added, or that a link leads to, with all below it.
void WalkTree(ArchiveWalk &walk, const std::string &top) {
    const auto before = TargetOf(top);
    if (before && before->kind == EntryKind::Folder) {
        WalkBelow(walk, top);
    }
    // A disk may be pulled out meanwhile, with all that was not seen yet.
    const auto after = TargetOf(top);
    if (!walk.cancelled &&
        (!before || before->kind != EntryKind::Folder || !after || after->key != before->key)) {
        Keep(walk, top, NotThere);
    }
}

// Whether what a link leads to is looked through when its own turn comes.
bool IsElsewhere(const ArchiveWalk &walk, const std::string &real) {
    return std::ranges::any_of(
        walk.elsewhere, [&real](const std::string &root) { return IsReachedFrom(root, real); });
}

// What a link leads to, if it is a folder to which no other path has led. One to a file waits.
void FollowLink(ArchiveWalk &walk, const ArchiveWalk::FoundLink &link) {
    const std::string folder = walk.folders[link.folder].path;
    const std::string path = PathInFolder(folder, link.name);
    const auto target = TargetOf(path);
    if (!target && errno == ELOOP) {
        Tell(walk, path, Circle);
    } else if (!target) {
        const int reason = errno;
        KnownFile *known = walk.known.Find(walk.folders[link.folder].id, link.name);
        if (known) {
            known->seen = true;
        }
        // Many links of other programs lead nowhere.
        if (known || reason != ENOENT || HasKnownFiles(walk, path)) {
            Keep(walk, path, std::strerror(reason));
        }
    } else if (target->kind == EntryKind::File) {
        walk.fileLinks.push_back(link);
    } else if (target->kind == EntryKind::Folder) {
        const std::string real = RealFolder(path);
        if (IsInArchiveFolder(RealFolder(folder), real)) {
            Tell(walk, path, Circle);
        } else if (IsKnown(target->key) && !IsSystemFolder(real) && !IsElsewhere(walk, real)) {
            // Links of folders without a key could lead on for ever.
            WalkTree(walk, path);
        }
    }
}

// The files that links lead to, each once, and none that stands in the folders by itself.
void FollowFileLinks(ArchiveWalk &walk) {
    std::ranges::sort(walk.fileKeys);
    std::set<FileKey> taken;
    for (const ArchiveWalk::FoundLink &link : walk.fileLinks) {
        const std::string path = PathInFolder(walk.folders[link.folder].path, link.name);
        const auto target = TargetOf(path);
        if (!target) {
            continue; // gone in this moment
        }
        const bool isTaken =
            IsKnown(target->key) && (std::ranges::binary_search(walk.fileKeys, target->key) ||
                                     !taken.insert(target->key).second);
        if (!isTaken && !IsElsewhere(walk, RealPath(path))) {
            TakeFile(walk, link.folder, link.name, target->state);
        }
    }
}

} // namespace

void KnownFiles::Add(const ArchiveFile &file) {
    KnownFile &known = files.emplace_back();
    known.id = file.id;
    known.folder = file.folder;
    known.state = {file.size, file.changed, file.status};
    known.content = file.content;
    known.voices = file.voices;
    known.name = names.size();
    known.nameSize = static_cast<std::uint32_t>(file.name.size());
    known.again = file.again;
    known.failed = !file.fault.empty();
    names += file.name;
}

void KnownFiles::Prepare() {
    std::size_t size = 16;
    while (size < 2 * files.size()) {
        size *= 2;
    }
    slots.assign(size, NoFile);
    for (std::uint32_t number = 0; number < files.size(); ++number) {
        std::size_t slot = HashOf(files[number].folder, NameOf(files[number])) & (size - 1);
        while (slots[slot] != NoFile) {
            slot = (slot + 1) & (size - 1);
        }
        slots[slot] = number;
    }
}

KnownFile *KnownFiles::Find(std::int64_t folder, std::string_view name) {
    if (folder == 0) {
        return nullptr;
    }
    const std::size_t mask = slots.size() - 1;
    for (std::size_t slot = HashOf(folder, name) & mask; slots[slot] != NoFile;
         slot = (slot + 1) & mask) {
        KnownFile &file = files[slots[slot]];
        if (file.folder == folder && NameOf(file) == name) {
            return &file;
        }
    }
    return nullptr;
}

std::string_view KnownFiles::NameOf(const KnownFile &file) const {
    return std::string_view(names).substr(file.name, file.nameSize);
}

std::string RealPath(const std::string &path) {
    std::error_code error;
    const std::filesystem::path real = std::filesystem::canonical(PathOfUtf8(path), error);
    return error ? path : ArchiveFolderPath(Utf8OfPath(real));
}

std::string RealFolder(const std::string &path) {
    const std::string real = RealPath(path + '/');
    return real == path + '/' ? path : real;
}

bool IsReachedFrom(std::string_view folder, std::string_view path) {
    bool reached = IsInArchiveFolder(path, folder);
    for (std::size_t end = folder.size(); reached && end < path.size();) {
        const std::size_t begin = end + 1;
        end = std::min(path.find('/', begin), path.size());
        reached =
            !IsHidden(path.substr(begin, end - begin)) && !IsSystemFolder(path.substr(0, end));
    }
    return reached;
}

void WalkFolders(ArchiveWalk &walk, std::vector<std::string> roots) {
    // A folder that was added by its own path before one that was added by a link to it.
    std::stable_partition(roots.begin(), roots.end(),
                          [](const std::string &root) { return RealFolder(root) == root; });
    for (const std::string &root : roots) {
        if (!walk.cancelled) {
            WalkTree(walk, root);
        }
    }
    for (std::size_t link = 0; link < walk.links.size() && !walk.cancelled; ++link) {
        FollowLink(walk, ArchiveWalk::FoundLink(walk.links[link])); // which may find more of them
    }
    if (!walk.cancelled && !walk.fileLinks.empty()) {
        FollowFileLinks(walk);
    }
}

bool IsKept(const ArchiveWalk &walk, std::string_view folder) {
    for (;;) {
        if (walk.kept.contains(folder)) {
            return true;
        }
        const std::size_t slash = folder.rfind('/');
        if (slash == std::string_view::npos) {
            return false;
        }
        folder = folder.substr(0, slash);
    }
}

} // namespace tonewright
